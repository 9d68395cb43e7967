#include "app/StripGesture.h"

#include <cstdlib>
#include <limits>

StripGesture::Drag CatchMark(int column, std::optional<int> start, std::optional<int> end) {
    constexpr int kFar = std::numeric_limits<int>::max();
    const int toStart = start ? std::abs(column - *start) : kFar;
    const int toEnd = end ? std::abs(column - *end) : kFar;
    if (toStart > StripGesture::kCatchPixels && toEnd > StripGesture::kCatchPixels) {
        return StripGesture::Drag::Range;
    }
    const bool takesStart = toStart < toEnd || (toStart == toEnd && column < *start);
    return takesStart ? StripGesture::Drag::Start : StripGesture::Drag::End;
}

void StripGesture::Press(int column, std::optional<int> start, std::optional<int> end) {
    m_pressed = column;
    m_caught = CatchMark(column, start, end);
    m_isDragging = false;
}

StripGesture::Drag StripGesture::Move(int column) {
    if (!m_pressed) {
        return Drag::None;
    }
    m_isDragging = m_isDragging || std::abs(column - *m_pressed) >= kDragPixels;
    return m_isDragging ? m_caught : Drag::None;
}

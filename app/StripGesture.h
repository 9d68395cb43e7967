#pragma once

#include <optional>

/// What the hand on the mouse is doing on the wave strip: a press, and from the fourth pixel on a
/// drag that marks a range or takes a mark along. Numbers are columns of the strip.
class StripGesture {
public:
    static constexpr int kDragPixels = 4;  ///< less is a press that trembled
    static constexpr int kCatchPixels = 3; ///< a mark this near to the press is what a drag takes

    enum class Drag { None, Range, Start, End };

    /// @param start, end  where the marks are; empty where they are not set
    void Press(int column, std::optional<int> start, std::optional<int> end);
    /// @return what is dragged to this column; stays None until the drag has begun
    Drag Move(int column);
    void Release() { m_pressed.reset(); }

    bool IsPressed() const { return m_pressed.has_value(); }
    int GetOrigin() const { return m_pressed.value_or(0); } ///< where the press was

private:
    std::optional<int> m_pressed;
    Drag m_caught = Drag::Range; // what a drag from the press takes
    bool m_isDragging = false;
};

/// The mark that is as near to a column as kCatchPixels, the nearer one of two; of marks at the
/// same place the one that can go on in the pointer's direction. Range where there is none.
StripGesture::Drag CatchMark(int column, std::optional<int> start, std::optional<int> end);

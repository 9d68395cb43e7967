#include "app/PlaceTicks.h"

#include <QPainter>

#include <algorithm>

PlaceTicks::PlaceTicks(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("placeTicks"));
    setFixedHeight(kHeight);
    hide();
}

void PlaceTicks::SetPositions(std::vector<unsigned long long> positions) {
    m_positions = std::move(positions);
    update();
}

void PlaceTicks::SetView(int left, unsigned int bytesPerPixel) {
    if (left != m_left || bytesPerPixel != m_bytesPerPixel) {
        m_left = left;
        m_bytesPerPixel = bytesPerPixel;
        update();
    }
}

void PlaceTicks::paintEvent(QPaintEvent* /*event*/) {
    if (m_bytesPerPixel == 0) {
        return;
    }
    QPainter painter(this);
    const unsigned long long first = static_cast<unsigned long long>(m_left) * m_bytesPerPixel;
    constexpr int kNone = -1;
    int drawn = kNone; // many places can share a pixel
    for (auto place = std::ranges::lower_bound(m_positions, first); place != m_positions.end();
         ++place) {
        const unsigned long long x = (*place - first) / m_bytesPerPixel;
        if (x >= static_cast<unsigned long long>(width())) {
            return;
        }
        if (static_cast<int>(x) != drawn) {
            drawn = static_cast<int>(x);
            painter.fillRect(drawn, 0, 1, height(), palette().color(QPalette::WindowText));
        }
    }
}

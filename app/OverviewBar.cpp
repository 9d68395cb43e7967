#include "app/OverviewBar.h"

#include "app/MarkerColor.h"

#include <QEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

OverviewBar::OverviewBar(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("overviewBar"));
    setAccessibleName(tr("全体"));
    setFixedHeight(kHeight);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void OverviewBar::RestartWave(bool isSameAudio) {
    if (!isSameAudio) {
        m_bars.Clear();
    }
    m_bars.Restart(width());
    update();
}

void OverviewBar::UpdateWave(const WaveContext& wave) {
    if (m_bars.Update(wave)) {
        update();
    }
}

void OverviewBar::SetView(const OverviewView& view) {
    if (!(view == m_view)) {
        m_view = view;
        update();
    }
}

int OverviewBar::ColumnOf(double share) const {
    return std::clamp(static_cast<int>(share * width()), 0, std::max(width() - 1, 0));
}

void OverviewBar::DrawBars(QPainter& painter) const {
    constexpr int kCentre = kHeight / 2;
    constexpr int kWaveHalf = 100; // pixels of a bar of the wave image at full scale
    QImage image(width(), kHeight, QImage::Format_RGBX8888);
    image.fill(Qt::black);
    const auto count = std::min(m_bars.Get().size(), static_cast<std::size_t>(width()));
    for (std::size_t x = 0; x < count; ++x) {
        const OverviewBars::Bar bar = m_bars.Get()[x];
        for (const auto& [length, direction] : {std::pair(bar.up, -1), std::pair(bar.down, 1)}) {
            const int pixels = (length * kCentre + kWaveHalf - 1) / kWaveHalf;
            for (int distance = 1; distance <= pixels; ++distance) {
                auto* const row = reinterpret_cast<std::uint32_t*>(
                    image.scanLine(kCentre + direction * distance));
                row[x] = m_colors[static_cast<std::size_t>(distance)];
            }
        }
    }
    painter.drawImage(0, 0, image);
}

void OverviewBar::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::black);
    DrawBars(painter);

    const QColor shade(0, 0, 0, 150);
    const int left = ColumnOf(m_view.left);
    const int right = ColumnOf(m_view.left + m_view.width);
    painter.fillRect(0, 0, left, height(), shade);
    painter.fillRect(right + 1, 0, width() - right - 1, height(), shade);
    painter.setPen(palette().color(QPalette::Highlight));
    painter.drawRect(left, 0, right - left, height() - 1);

    const std::pair<const std::optional<double>&, const MarkerStyle&> lines[] = {
        {m_view.start, kStartMarker}, {m_view.end, kEndMarker}, {m_view.position, kCurrentMarker}};
    for (const auto& [share, style] : lines) {
        if (share) {
            painter.fillRect(ColumnOf(*share), 0, 1, height(), MarkerColor(style));
        }
    }
}

void OverviewBar::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    m_bars.Restart(width());
}

void OverviewBar::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        setAccessibleName(tr("全体"));
    }
}

void OverviewBar::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || width() == 0) {
        event->ignore();
        return;
    }
    // A press beside the visible part brings its middle there.
    const double share = event->position().x() / width();
    const double inside = share - m_view.left;
    m_grabbed = inside >= 0.0 && inside <= m_view.width ? inside : m_view.width / 2.0;
    Q_EMIT viewMoved(share - m_grabbed);
}

void OverviewBar::mouseMoveEvent(QMouseEvent* event) {
    if ((event->buttons() & Qt::LeftButton) != 0 && width() > 0) {
        Q_EMIT viewMoved(event->position().x() / width() - m_grabbed);
    }
}

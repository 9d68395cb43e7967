#include "app/WaveScrollArea.h"

#include "app/WaveView.h"

#include <QEvent>
#include <QScrollBar>
#include <QStyle>

int WaveScroll::Keep(int seenAt, int column, int visible) {
    const bool wasSeen = seenAt >= 0 && seenAt < visible;
    return column - (wasSeen ? seenAt : visible / 2);
}

int WaveScroll::Follow(int column, int scrolled, int visible) {
    constexpr int kMargin = 10; // parts of what is visible: the ear is a little behind the eye
    const bool isSeen = column >= scrolled && column < scrolled + visible;
    return isSeen ? scrolled : column - visible / kMargin;
}

WaveScrollArea::WaveScrollArea(QWidget* parent) : QScrollArea(parent) {
    FitHeight();
}

void WaveScrollArea::FitHeight() {
    // The scroll bar's room is kept when there is none, so that zooming moves nothing below.
    setFixedHeight(WaveView::kWaveHeight + style()->pixelMetric(QStyle::PM_ScrollBarExtent));
}

void WaveScrollArea::changeEvent(QEvent* event) {
    QScrollArea::changeEvent(event);
    if (event->type() == QEvent::StyleChange) {
        FitHeight();
    }
}

void WaveScrollArea::SetStrip(WaveView* strip) {
    m_strip = strip;
    connect(strip, &WaveView::layoutWillChange, this,
            [this] { m_seenAt = m_strip->GetAnchorColumn() - horizontalScrollBar()->value(); });
    connect(strip, &WaveView::layoutDidChange, this, [this] {
        horizontalScrollBar()->setValue(
            WaveScroll::Keep(m_seenAt, m_strip->GetAnchorColumn(), viewport()->width()));
    });
    connect(strip, &WaveView::draggedTo, this,
            [this](int column) { ensureVisible(column, 0, 0, 0); });
    connect(strip, &WaveView::scrollRequested, this, [this](int pixels) {
        horizontalScrollBar()->setValue(horizontalScrollBar()->value() + pixels);
    });
}

void WaveScrollArea::Follow() {
    QScrollBar* const bar = horizontalScrollBar();
    bar->setValue(
        WaveScroll::Follow(m_strip->GetPositionColumn(), bar->value(), viewport()->width()));
}

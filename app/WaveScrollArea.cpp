#include "app/WaveScrollArea.h"

#include "app/WaveView.h"

#include <QEvent>
#include <QResizeEvent>
#include <QScrollBar>
#include <QStyle>

#include <cmath>

int WaveScroll::Keep(double share, int oldWidth, int newWidth, int scrolled, int visible) {
    const double seenAt = share * oldWidth - scrolled;
    const bool isSeen = seenAt >= 0.0 && seenAt <= visible;
    return static_cast<int>(std::lround(share * newWidth - (isSeen ? seenAt : visible / 2.0)));
}

int WaveScroll::Follow(double share, int width, int scrolled, int visible) {
    constexpr double kMargin = 0.1; // of what is visible: the ear is a little behind the eye
    const double at = share * width;
    const bool isSeen = at >= scrolled && at < scrolled + visible;
    return isSeen ? scrolled : static_cast<int>(std::lround(at - kMargin * visible));
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

double WaveScrollArea::PositionShare() const {
    return static_cast<const WaveView*>(widget())->GetPositionShare();
}

void WaveScrollArea::Follow() {
    QScrollBar* const bar = horizontalScrollBar();
    bar->setValue(
        WaveScroll::Follow(PositionShare(), widget()->width(), bar->value(), viewport()->width()));
}

bool WaveScrollArea::eventFilter(QObject* watched, QEvent* event) {
    if (watched != widget() || event->type() != QEvent::Resize) {
        return QScrollArea::eventFilter(watched, event);
    }
    const auto* const change = static_cast<QResizeEvent*>(event);
    const int scrolled =
        WaveScroll::Keep(PositionShare(), change->oldSize().width(), change->size().width(),
                         horizontalScrollBar()->value(), viewport()->width());
    const bool isHandled = QScrollArea::eventFilter(watched, event); // sets the bar's range
    horizontalScrollBar()->setValue(scrolled);
    return isHandled;
}

#include "app/WaveView.h"

#include "adaptor/KlipraMac.h"
#include "app/KeyCodes.h"

#include <QEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace {

QColor ColorOf(std::uint32_t color) {
    return {static_cast<int>(color & 0xFF), static_cast<int>(color >> 8 & 0xFF),
            static_cast<int>(color >> 16 & 0xFF)};
}

} // namespace

WaveView::WaveView(QWidget* parent) : QWidget(parent) {
    constexpr std::chrono::milliseconds kResizeEnd{150};
    m_resizeEnd.setSingleShot(true);
    m_resizeEnd.setInterval(kResizeEnd);
    m_resizeEnd.callOnTimeout(this, &WaveView::viewDidEndLiveResize);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void WaveView::setWaveSize(int width) {
    waveWidth = width;
    waveHeight = kWaveHeight;
    resize(waveWidth, waveHeight);
}

void WaveView::LayOut(int width) {
    Q_EMIT layoutWillChange();
    setWaveSize(width);
    pKlipraMac->SetWaveSize(width);
    pKlipraMac->CreateWaveImage();
    Q_EMIT layoutDidChange();
}

// The last position is seen at the strip's edge, not behind it.
int WaveView::ColumnOf(unsigned long long position) const {
    const std::uint32_t last = static_cast<std::uint32_t>(std::max(waveWidth - 1, 0));
    return static_cast<int>(std::min(MarkerColumn(position, pKlipraMac->bytesPerPixel), last));
}

int WaveView::GetPositionColumn() const {
    const bool hasPosition =
        pKlipraMac != nullptr && pKlipraMac->channel != 0 && pKlipraMac->bytesPerPixel != 0;
    return hasPosition ? ColumnOf(pKlipraMac->GetCurrentPosition()) : 0;
}

void WaveView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const QRect visible = event->rect();
    painter.fillRect(visible, Qt::black);
    if (resizing || pKlipraMac == nullptr || !pKlipraMac->GetWaveContext()) {
        return;
    }
    DrawWave(painter, visible);
    QFont labelFont = font();
    constexpr int kLabelPixels = 14;
    labelFont.setPixelSize(kLabelPixels);
    painter.setFont(labelFont);
    if (pKlipraMac->GetStartPosition() != kUnsetPosition) {
        DrawTimeLine(painter, pKlipraMac->GetStartPosition(), kStartMarker);
    }
    if (pKlipraMac->GetEndPosition() != kUnsetPosition) {
        DrawTimeLine(painter, pKlipraMac->GetEndPosition(), kEndMarker);
    }
    if (pKlipraMac->channel != 0) { // no stream has a position
        DrawTimeLine(painter, pKlipraMac->GetCurrentPosition(), kCurrentMarker);
    }
}

void WaveView::DrawWave(QPainter& painter, const QRect& visible) const {
    const WaveContext& wave = *pKlipraMac->GetWaveContext();
    const QRect finished(0, 0, wave.GetFinishedColumns(), wave.GetSize().height);
    const QRect part = visible & finished;
    if (part.isEmpty()) {
        return;
    }
    // From the first visible column on: what lies to the left may be beyond a painter's range.
    const QImage columns(reinterpret_cast<const uchar*>(wave.GetPixels() + part.left()),
                         part.width(), finished.height(),
                         static_cast<qsizetype>(wave.GetBytesPerRow()), QImage::Format_RGBX8888);
    painter.drawImage(part, columns, QRect(0, part.top(), part.width(), part.height()));
}

void WaveView::DrawTimeLine(QPainter& painter, unsigned long long position,
                            const MarkerStyle& style) const {
    const int column = ColumnOf(position);
    const auto milliseconds =
        static_cast<std::uint32_t>(pKlipraMac->PositionToMilliSeconds(position));
    const QString label = QString::fromStdString(TimeLabel(milliseconds));
    const QSize labelSize = painter.fontMetrics().size(Qt::TextSingleLine, label);
    const QColor color = ColorOf(style.color);
    painter.fillRect(column, 0, 1, waveHeight, color);
    painter.setPen(color);
    painter.drawText(
        QRect(QPoint(LabelLeft(static_cast<std::uint32_t>(column), waveWidth, labelSize.width()),
                     static_cast<int>(style.labelOffset)),
              labelSize),
        Qt::TextSingleLine, label);
}

void WaveView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || pKlipraMac == nullptr) {
        event->ignore();
        return;
    }
    const QPointF point = event->position();
    if (point.y() < waveHeight) {
        const double position = std::max(point.x(), 0.0) * pKlipraMac->bytesPerPixel;
        pKlipraMac->SetCurrentPosition(static_cast<unsigned long long>(position));
    }
    display();
}

void WaveView::wheelEvent(QWheelEvent* event) {
    constexpr double kUnitsANotch = 120.0;
    constexpr double kZoomANotch = 3.0; // three notches are about as fine as ten times the zoom
    if (event->angleDelta().y() == 0 || pKlipraMac == nullptr) {
        event->ignore(); // a sideways wheel scrolls
        return;
    }
    m_wheelRest += event->angleDelta().y() / kUnitsANotch * kZoomANotch;
    const double delta = std::trunc(m_wheelRest);
    m_wheelRest -= delta;
    pKlipraMac->ZoomDelta(static_cast<int>(delta));
}

void WaveView::handleKeyCode(std::uint16_t keyCode) {
    if (pKlipraMac == nullptr) {
        return;
    }
    if (keyCode == KeyCode::kLeftArrow) {
        pKlipraMac->MovePositionLeft();
        display();
    } else if (keyCode == KeyCode::kRightArrow) {
        pKlipraMac->MovePositionRight();
        display();
    }
}

bool WaveView::event(QEvent* event) {
    if (event->type() == QEvent::ParentAboutToChange && parent() != nullptr) {
        parent()->removeEventFilter(this);
    } else if (event->type() == QEvent::ParentChange && parent() != nullptr) {
        parent()->installEventFilter(this);
    }
    return QWidget::event(event);
}

bool WaveView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize && watched == parent() && pKlipraMac != nullptr) {
        const auto* const change = static_cast<QResizeEvent*>(event);
        if (change->size().width() != change->oldSize().width()) {
            viewWillStartLiveResize();
        }
    }
    return QWidget::eventFilter(watched, event);
}

void WaveView::viewWillStartLiveResize() {
    resizing = true;
    m_resizeEnd.start();
    update();
}

void WaveView::viewDidEndLiveResize() {
    m_resizeEnd.stop();
    if (pKlipraMac != nullptr) {
        LayOut(pKlipraMac->zoom * parentWidget()->width());
    }
    resizing = false;
    update();
}

#include "app/WaveView.h"

#include "adaptor/KlipraMac.h"
#include "app/KeyCodes.h"
#include "app/MarkerColor.h"
#include "app/SceneStretch.h"

#include <QEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <chrono>
#include <cmath>

WaveView::WaveView(QWidget* parent) : QWidget(parent) {
    constexpr std::chrono::milliseconds kResizeEnd{150};
    m_resizeEnd.setSingleShot(true);
    m_resizeEnd.setInterval(kResizeEnd);
    m_resizeEnd.callOnTimeout(this, &WaveView::viewDidEndLiveResize);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true); // the pointer tells where a mark can be caught
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

bool WaveView::HasImage() const {
    return pKlipraMac != nullptr && pKlipraMac->channel != 0 && pKlipraMac->bytesPerPixel != 0;
}

int WaveView::GetPositionColumn() const {
    return HasImage() ? ColumnOf(pKlipraMac->GetCurrentPosition()) : 0;
}

int WaveView::GetAnchorColumn() const {
    return HasImage() && m_pinned ? ColumnOf(*m_pinned) : GetPositionColumn();
}

std::optional<int> WaveView::MarkColumn(unsigned long long position) const {
    return position == kUnsetPosition ? std::nullopt : std::optional(ColumnOf(position));
}

std::optional<int> WaveView::GetStartColumn() const {
    return HasImage() ? MarkColumn(pKlipraMac->GetStartPosition()) : std::nullopt;
}

std::optional<int> WaveView::GetEndColumn() const {
    return HasImage() ? MarkColumn(pKlipraMac->GetEndPosition()) : std::nullopt;
}

unsigned long long WaveView::PositionAt(double x) const {
    const double position = std::max(x, 0.0) * pKlipraMac->bytesPerPixel;
    const auto length = static_cast<double>(pKlipraMac->length);
    return pKlipraMac->SampleFrameAt(position < length ? static_cast<unsigned long long>(position)
                                                       : pKlipraMac->length);
}

void WaveView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const QRect visible = event->rect();
    painter.fillRect(visible, Qt::black);
    if (resizing || pKlipraMac == nullptr || !pKlipraMac->GetWaveContext()) {
        return;
    }
    DrawWave(painter, visible);
    DrawRange(painter, visible);
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
    if (m_isFocusShown) {
        painter.setPen(palette().color(QPalette::Highlight));
        painter.drawRect(visibleRegion().boundingRect().adjusted(0, 0, -1, -1));
    }
}

// Told by the eye only to who comes here with the Tab key: it is where the keyboard is at first.
void WaveView::focusInEvent(QFocusEvent* event) {
    const Qt::FocusReason reason = event->reason();
    m_isFocusShown = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason;
    QWidget::focusInEvent(event);
}

void WaveView::focusOutEvent(QFocusEvent* event) {
    m_isFocusShown = false;
    QWidget::focusOutEvent(event);
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

void WaveView::DrawRange(QPainter& painter, const QRect& visible) const {
    const std::optional<int> start = GetStartColumn();
    const std::optional<int> end = GetEndColumn();
    if (start && end) {
        const auto [first, last] = std::minmax(*start, *end);
        const QColor tint(90, 150, 255, 64);
        painter.fillRect(visible & QRect(first, 0, last - first, waveHeight), tint);
    }
}

void WaveView::DrawTimeLine(QPainter& painter, unsigned long long position,
                            const MarkerStyle& style) const {
    const int column = ColumnOf(position);
    const auto milliseconds =
        static_cast<std::uint32_t>(pKlipraMac->PositionToMilliSeconds(position));
    const QString label = QString::fromStdString(TimeLabel(milliseconds));
    const QSize labelSize = painter.fontMetrics().size(Qt::TextSingleLine, label);
    const QColor color = MarkerColor(style);
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
        m_gesture.Press(static_cast<int>(point.x()), GetStartColumn(), GetEndColumn());
        m_pressedAt = PositionAt(point.x());
        const double position = std::max(point.x(), 0.0) * pKlipraMac->bytesPerPixel;
        pKlipraMac->SetCurrentPosition(static_cast<unsigned long long>(position));
        Q_EMIT positionDidMove();
    }
    display();
}

void WaveView::mouseMoveEvent(QMouseEvent* event) {
    if (!HasImage()) {
        return;
    }
    const auto column = static_cast<int>(std::floor(event->position().x()));
    if (!m_gesture.IsPressed()) {
        const auto caught = CatchMark(column, GetStartColumn(), GetEndColumn());
        setCursor(caught == StripGesture::Drag::Range ? Qt::ArrowCursor : Qt::SizeHorCursor);
        return;
    }
    const StripGesture::Drag what = m_gesture.Move(column);
    if (what != StripGesture::Drag::None) {
        Drag(what, PositionAt(event->position().x()));
        Q_EMIT draggedTo(std::clamp(column, 0, std::max(waveWidth - 1, 0)));
    }
}

void WaveView::Drag(StripGesture::Drag what, unsigned long long position) {
    CutPositions& marks = pKlipraMac->cutPositions;
    if (what == StripGesture::Drag::Range) {
        marks = {m_pressedAt, position};
    } else {
        (what == StripGesture::Drag::Start ? marks.start : marks.end) = position;
        pKlipraMac->SetCurrentPosition(position);
        Q_EMIT positionDidMove();
    }
    Q_EMIT marksDidChange();
}

void WaveView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        m_gesture.Release();
    }
}

void WaveView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !HasImage() || event->position().y() >= waveHeight) {
        event->ignore();
        return;
    }
    pKlipraMac->cutPositions = StretchAround(PositionAt(event->position().x()),
                                             pKlipraMac->sceneChangePositions, pKlipraMac->length);
    Q_EMIT marksDidChange();
}

void WaveView::wheelEvent(QWheelEvent* event) {
    constexpr double kUnitsANotch = 120.0;
    // Some systems turn the wheel sideways themselves while Shift is held.
    const bool isScroll = event->modifiers().testFlag(Qt::ShiftModifier);
    const int turned = isScroll && event->angleDelta().y() == 0 ? event->angleDelta().x()
                                                                : event->angleDelta().y();
    if (turned == 0 || pKlipraMac == nullptr) {
        event->ignore(); // a sideways wheel scrolls
        return;
    }
    if (isScroll) {
        constexpr double kPixelsANotch = 80.0;
        Q_EMIT scrollRequested(static_cast<int>(-turned / kUnitsANotch * kPixelsANotch));
        return;
    }
    if (event->modifiers().testFlag(Qt::ControlModifier) && HasImage()) {
        m_pinned = PositionAt(event->position().x());
    }
    ZoomBy(turned / kUnitsANotch);
    m_pinned.reset();
}

void WaveView::ZoomBy(double notches) {
    constexpr double kZoomANotch = 3.0; // three notches are about as fine as ten times the zoom
    m_wheelRest += notches * kZoomANotch;
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

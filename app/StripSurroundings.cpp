#include "app/StripSurroundings.h"

#include "adaptor/KlipraMac.h"
#include "app/WaveScrollArea.h"
#include "app/WaveView.h"
#include "audio/bass.h"

#include <QCoreApplication>
#include <QScrollBar>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <algorithm>

StripSurroundings::StripSurroundings(WaveScrollArea* area, WaveView* strip, QVBoxLayout* layout,
                                     QWidget* caption)
    : QObject(area), m_area(area), m_strip(strip), m_overview(new OverviewBar),
      m_ruler(new TimeRuler), m_ticks(new PlaceTicks), m_caption(caption) {
    const int place = layout->indexOf(area);
    layout->insertWidget(place, m_ruler);
    layout->insertWidget(place, m_overview);
    layout->insertWidget(layout->indexOf(area) + 1, m_ticks);
    for (QWidget* const widget :
         {static_cast<QWidget*>(m_overview), static_cast<QWidget*>(m_ruler)}) {
        widget->hide();
        widget->installEventFilter(this);
    }
    area->parentWidget()->installEventFilter(this);
    connect(m_overview, &OverviewBar::viewMoved, this, &StripSurroundings::MoveView);
    connect(area->horizontalScrollBar(), &QScrollBar::valueChanged, this,
            &StripSurroundings::Refresh);
    connect(strip, &WaveView::layoutDidChange, this, &StripSurroundings::RestartWave);
}

// Zooming in makes these two appear where the strip was: the wheel goes on turning for the strip.
bool StripSurroundings::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::Wheel || watched == m_area->parentWidget()) {
        if (event->type() == QEvent::Resize && watched == m_area->parentWidget()) {
            MakeRoom();
        }
        return QObject::eventFilter(watched, event);
    }
    const auto& wheel = static_cast<QWheelEvent&>(*event);
    const QPointF point(wheel.position().x() + m_area->horizontalScrollBar()->value(), 0.0);
    QWheelEvent forStrip(point, wheel.globalPosition(), wheel.pixelDelta(), wheel.angleDelta(),
                         wheel.buttons(), wheel.modifiers(), wheel.phase(), wheel.inverted());
    return QCoreApplication::sendEvent(m_strip, &forStrip);
}

void StripSurroundings::RestartWave() {
    // Kept as wide as the strip is seen while it is hidden too, so that it need not wait for the
    // wave of a zoomed strip.
    if (m_overview->isHidden()) {
        m_overview->resize(m_area->width(), OverviewBar::kHeight);
    }
    const std::uint32_t stream = m_strip->pKlipraMac->channel;
    m_overview->RestartWave(stream == m_stream);
    m_stream = stream;
    Refresh();
}

void StripSurroundings::MakeRoom() {
    constexpr int kLeastBelow = 60; // pixels: three entries
    int needed = m_caption->sizeHint().height() + kLeastBelow;
    for (const QWidget* const widget :
         {static_cast<QWidget*>(m_overview), static_cast<QWidget*>(m_ruler),
          static_cast<QWidget*>(m_area), static_cast<QWidget*>(m_ticks)}) {
        needed += widget->isHidden() ? 0 : widget->minimumHeight(); // which is fixed
    }
    m_caption->setVisible(m_area->parentWidget()->height() >= needed);
}

void StripSurroundings::MoveView(double left) {
    m_area->horizontalScrollBar()->setValue(static_cast<int>(left * m_strip->width()));
}

double StripSurroundings::SecondsPerPixel() const {
    constexpr int kPixels = 1000; // more than one: a time is that of whole sample frames
    const KlipraMac& engine = *m_strip->pKlipraMac;
    return BASS_ChannelBytes2Seconds(engine.channel, QWORD{engine.bytesPerPixel} * kPixels) /
           kPixels;
}

OverviewView StripSurroundings::MakeView() const {
    const double width = std::max(m_strip->width(), 1);
    const auto share = [&](std::optional<int> column) {
        return column ? std::optional(*column / width) : std::nullopt;
    };
    return {m_area->horizontalScrollBar()->value() / width, m_area->viewport()->width() / width,
            share(m_strip->GetPositionColumn()), share(m_strip->GetStartColumn()),
            share(m_strip->GetEndColumn())};
}

void StripSurroundings::Refresh() {
    const KlipraMac* const engine = m_strip->pKlipraMac;
    if (engine == nullptr) {
        return;
    }
    if (engine->GetWaveContext()) {
        m_overview->UpdateWave(*engine->GetWaveContext());
    }
    const bool isZoomed = engine->zoom > 1 && engine->channel != 0;
    m_overview->setVisible(isZoomed);
    m_ruler->setVisible(isZoomed);
    MakeRoom();
    const int left = m_area->horizontalScrollBar()->value();
    m_ticks->SetView(left, engine->channel == 0 ? 0 : engine->bytesPerPixel);
    if (isZoomed) {
        m_overview->SetView(MakeView());
        m_ruler->SetView(left, SecondsPerPixel(),
                         BASS_ChannelBytes2Seconds(engine->channel, engine->length));
    }
}

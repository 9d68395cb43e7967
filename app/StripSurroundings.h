#pragma once

#include "app/OverviewBar.h"
#include "app/PlaceTicks.h"
#include "app/TimeRuler.h"

#include <QObject>

class KlipraMac;
class QVBoxLayout;
class WaveScrollArea;
class WaveView;

/// What goes with the wave strip: above it, while it is zoomed, the whole file and the times of
/// what is seen; under it the ticks of quiet places. They show what the strip does and scroll it.
class StripSurroundings : public QObject {
    Q_OBJECT

public:
    /// Puts its widgets around the scroll area, which lies in the layout.
    /// @param caption  of what lies below; gives way in a low window
    StripSurroundings(WaveScrollArea* area, WaveView* strip, QVBoxLayout* layout, QWidget* caption);

    /// Shows what has become of the strip and its engine.
    void Refresh();

    PlaceTicks& GetTicks() { return *m_ticks; }

private:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void RestartWave();
    void MoveView(double left);
    OverviewView MakeView() const;
    double SecondsPerPixel() const;
    void MakeRoom();

    WaveScrollArea* const m_area;
    WaveView* const m_strip;
    OverviewBar* const m_overview; // as the others the window's
    TimeRuler* const m_ruler;
    PlaceTicks* const m_ticks;
    QWidget* const m_caption;
    std::uint32_t m_stream = 0; // whose wave the overview shows
};

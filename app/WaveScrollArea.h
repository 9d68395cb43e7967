#pragma once

#include <QScrollArea>

class WaveView;

/// Where a strip should be scrolled to, in pixels from its left edge.
/// @param visible  width of what is seen of it
namespace WaveScroll {

/// After a strip has changed its width: the position stays where it is seen; when it was not seen,
/// it comes to the middle.
/// @param seenAt  where the position was seen before, from the left edge of what is visible
/// @param column  the position's column now
int Keep(int seenAt, int column, int visible);

/// While a position moves: as it is as long as the position is seen, otherwise a page that has the
/// position near its left edge.
int Follow(int column, int scrolled, int visible);

} // namespace WaveScroll

/// Scrolls the wave strip sideways, and keeps its current position in view when it is zoomed.
class WaveScrollArea : public QScrollArea {
    Q_OBJECT

public:
    explicit WaveScrollArea(QWidget* parent = nullptr);

    /// Keeps the position in view when this strip, its widget, changes its width.
    void SetStrip(WaveView* strip);

    /// Brings the current position into view where it is not; for playback.
    void Follow();

protected:
    void changeEvent(QEvent* event) override;

private:
    void FitHeight();

    WaveView* m_strip = nullptr;
    int m_seenAt = 0; // of the position, before the strip changed its width
};

#pragma once

#include <QScrollArea>

/// Where a strip should be scrolled to, in pixels from its left edge.
/// @param visible  width of what is seen of it
namespace WaveScroll {

/// After a strip has changed its width: the position stays where it is seen; when it was not seen,
/// it comes to the middle.
/// @param share     the position's place in the strip, 0 to 1
/// @param scrolled  how far the strip was scrolled before
int Keep(double share, int oldWidth, int newWidth, int scrolled, int visible);

/// While a position moves: as it is as long as the position is seen, otherwise a page that has the
/// position near its left edge.
int Follow(double share, int width, int scrolled, int visible);

} // namespace WaveScroll

/// Scrolls the wave strip sideways, and keeps its current position in view when it is zoomed.
class WaveScrollArea : public QScrollArea {
public:
    explicit WaveScrollArea(QWidget* parent = nullptr);

    /// Brings the current position into view where it is not; for playback.
    void Follow();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    double PositionShare() const;
    void FitHeight();
};

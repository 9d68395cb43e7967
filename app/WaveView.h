#pragma once

#include "app/Markers.h"
#include "app/StripGesture.h"

#include <QTimer>
#include <QWidget>

#include <cstdint>
#include <optional>

class KlipraMac;
class QPainter;

/// The wave strip: the wave image of the current entry, over it lines with times for the start, the
/// end and the current position, and the range between the first two tinted.
///
/// A press moves the position, a drag marks a range or takes a mark along, a double click marks the
/// stretch between two scene changes. The wheel zooms, with Ctrl at the pointer, and scrolls with
/// Shift; the arrow keys step.
///
/// One pixel of the image is one of the widget's units. Lies in a scroll area, whose width it
/// exceeds at zoom factors above 1: only what is visible is ever drawn. While the scroll area
/// changes its width nothing is drawn; then the image is made anew for that width.
class WaveView : public QWidget {
    Q_OBJECT

public:
    static constexpr int kWaveHeight = 201; ///< pixels of the strip, at the top of the view

    explicit WaveView(QWidget* parent = nullptr);

    /// The engine whose state is drawn; not owned, null for none.
    KlipraMac* pKlipraMac = nullptr;

    /// Makes the strip and the view this wide.
    void setWaveSize(int width);
    void display() { repaint(); } ///< draws at once
    /// Steps for the arrow keys' codes, then draws.
    void handleKeyCode(std::uint16_t keyCode);

    /// The column that the current position is drawn in; 0 without a stream.
    int GetPositionColumn() const;
    /// The column that keeps its place in the window when the strip gets another width: under the
    /// pointer that zooms, otherwise that of the current position.
    int GetAnchorColumn() const;
    /// The columns of the start and the end; empty where they are not set.
    std::optional<int> GetStartColumn() const;
    std::optional<int> GetEndColumn() const;
    /// Makes the strip this wide and has the wave image made anew for it.
    void LayOut(int width);

    /// The window's width is changing, and has changed.
    void viewWillStartLiveResize();
    void viewDidEndLiveResize();

Q_SIGNALS:
    /// The strip is about to get another width, and has got it together with its image.
    void layoutWillChange();
    void layoutDidChange();
    /// The pointer has moved the position; has set or moved the marks.
    void positionDidMove();
    void marksDidChange();
    /// The pointer drags something to this column, which ought to be seen.
    void draggedTo(int column);
    /// The strip is to be scrolled by so many pixels, to the right where they are more than 0.
    void scrollRequested(int pixels);

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void DrawWave(QPainter& painter, const QRect& visible) const;
    void DrawRange(QPainter& painter, const QRect& visible) const;
    bool HasImage() const;
    int ColumnOf(unsigned long long position) const;
    std::optional<int> MarkColumn(unsigned long long position) const;
    unsigned long long PositionAt(double x) const;
    void Drag(StripGesture::Drag what, unsigned long long position);
    void ZoomBy(double notches);
    void DrawTimeLine(QPainter& painter, unsigned long long position,
                      const MarkerStyle& style) const;

    int waveWidth = 0;
    int waveHeight = 0;
    bool resizing = false;
    bool m_isFocusShown = false;
    StripGesture m_gesture;
    unsigned long long m_pressedAt = 0;         // where the gesture began
    std::optional<unsigned long long> m_pinned; // the position that is under the pointer
    double m_wheelRest = 0.0;                   // of a zoom step, that the wheel has turned
    QTimer m_resizeEnd; // runs out when the width has not changed for a while
};

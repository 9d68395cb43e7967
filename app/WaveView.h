#pragma once

#include "app/Markers.h"

#include <QTimer>
#include <QWidget>

#include <cstdint>

class KlipraMac;
class QPainter;

/// The wave strip: the wave image of the current entry, over it lines with times for the start, the
/// end and the current position. A click moves the position, the wheel zooms, the arrow keys step.
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
    /// Makes the strip this wide and has the wave image made anew for it.
    void LayOut(int width);

    /// The window's width is changing, and has changed.
    void viewWillStartLiveResize();
    void viewDidEndLiveResize();

Q_SIGNALS:
    /// The strip is about to get another width, and has got it together with its image.
    void layoutWillChange();
    void layoutDidChange();

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void DrawWave(QPainter& painter, const QRect& visible) const;
    int ColumnOf(unsigned long long position) const;
    void DrawTimeLine(QPainter& painter, unsigned long long position,
                      const MarkerStyle& style) const;

    int waveWidth = 0;
    int waveHeight = 0;
    bool resizing = false;
    double m_wheelRest = 0.0; // of a zoom step, that the wheel has turned
    QTimer m_resizeEnd;       // runs out when the width has not changed for a while
};

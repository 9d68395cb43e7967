#pragma once

#include <QWidget>

#include <string>

/// Which times a ruler labels, and how finely.
struct RulerScale {
    double stepSeconds = 1.0; ///< between two labels; 1, 2 or 5 times a power of ten, or a clock's
    int divisions = 5;        ///< ticks to a step
};

/// The finest scale whose labels are no closer than this.
/// @param secondsPerPixel  more than 0
RulerScale ChooseRulerScale(double secondsPerPixel, int leastPixels);

/// A time as h:mm:ss or m:ss, with as many decimals as the step between two labels needs.
std::string RulerLabel(double seconds, double stepSeconds);

/// The times above the visible part of the wave strip.
class TimeRuler : public QWidget {
    Q_OBJECT

public:
    explicit TimeRuler(QWidget* parent = nullptr);

    /// @param left             the strip's column at the ruler's left edge
    /// @param secondsPerPixel  0: there is nothing to measure
    void SetView(int left, double secondsPerPixel, double lengthSeconds);

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void FitHeight();

    int m_left = 0;
    double m_secondsPerPixel = 0.0;
    double m_lengthSeconds = 0.0;
};

#pragma once

#include "adaptor/LevelColors.h"
#include "app/OverviewBars.h"

#include <QWidget>

#include <optional>

/// What the overview shows over its wave. Places are shares of the whole, 0 to 1.
struct OverviewView {
    double left = 0.0;  ///< of the part that is visible in the strip
    double width = 1.0; ///< of the same
    std::optional<double> position;
    std::optional<double> start;
    std::optional<double> end;

    bool operator==(const OverviewView&) const = default;
};

/// The whole file, small, above the strip: the part of it that the strip shows stands out and can
/// be dragged.
class OverviewBar : public QWidget {
    Q_OBJECT

public:
    static constexpr int kHeight = 41; ///< pixels

    explicit OverviewBar(QWidget* parent = nullptr);

    /// A new wave image is being painted.
    /// @param isSameAudio  only its width is another one; the old picture stays until it is painted
    void RestartWave(bool isSameAudio);
    /// Takes in what has been painted.
    void UpdateWave(const WaveContext& wave);
    void SetView(const OverviewView& view);

Q_SIGNALS:
    /// The visible part is to begin here, a share of the whole; may lie outside.
    void viewMoved(double left);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    void DrawBars(QPainter& painter) const;
    int ColumnOf(double share) const;

    OverviewBars m_bars;
    OverviewView m_view;
    double m_grabbed = 0.0; // where in the visible part the hand is, a share of the whole
    const LevelColors m_colors = MakeLevelColors(kHeight);
};

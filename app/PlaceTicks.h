#pragma once

#include <QWidget>

#include <vector>

/// Ticks under the visible part of the wave strip: where its quiet places are.
class PlaceTicks : public QWidget {
    Q_OBJECT

public:
    static constexpr int kHeight = 7; ///< pixels

    explicit PlaceTicks(QWidget* parent = nullptr);

    /// @param positions  bytes, ascending
    void SetPositions(std::vector<unsigned long long> positions);
    /// @param left           the strip's column at the left edge
    /// @param bytesPerPixel  0: there is nothing to show
    void SetView(int left, unsigned int bytesPerPixel);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::vector<unsigned long long> m_positions;
    int m_left = 0;
    unsigned int m_bytesPerPixel = 0;
};

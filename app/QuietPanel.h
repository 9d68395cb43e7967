#pragma once

#include "app/QuietPlacesModel.h"

#include <QDockWidget>

#include <functional>
#include <vector>

class QLabel;
class QListView;
class QPushButton;
class QSlider;

/// The list of quiet places: what counts as quiet is tried out with two sliders, on levels that
/// have been read once, and the list follows at once.
class QuietPanel : public QDockWidget {
    Q_OBJECT

public:
    explicit QuietPanel(QWidget* parent = nullptr);

    /// The levels of the entry that is shown; none while they are not known.
    /// @param length          of the stream, bytes
    /// @param millisecondsOf  the time of a position
    void SetLevels(std::vector<Block> blocks, unsigned long long length,
                   std::function<long long(unsigned long long)> millisecondsOf);
    void ClearLevels();
    /// How far the levels are known, while the list waits for them.
    void ShowProgress(int percent);

    void SetThresholds(float level, float seconds); ///< the nearest that the sliders have
    float GetLevel() const;
    float GetSeconds() const;

    const std::vector<QuietStretch>& GetPlaces() const { return m_model.GetPlaces(); }

Q_SIGNALS:
    /// The person has moved a slider.
    void thresholdsChosen();
    /// The list is another one.
    void placesChanged();
    /// A place was chosen in the list; its position in bytes.
    void placeChosen(unsigned long long position);
    void exportRequested();
    void splitRequested();

protected:
    void changeEvent(QEvent* event) override;

private:
    void Translate();
    void Relist();
    void Choose(const QModelIndex& index);

    bool m_isSetting = false; // the thresholds, which nobody has chosen
    std::vector<Block> m_blocks;
    unsigned long long m_length = 0;
    std::function<long long(unsigned long long)> m_millisecondsOf;
    QuietPlacesModel m_model;

    // Children.
    QLabel* const m_levelTitle;
    QLabel* const m_levelText;
    QSlider* const m_level;
    QLabel* const m_secondsTitle;
    QLabel* const m_secondsText;
    QSlider* const m_seconds;
    QLabel* const m_count;
    QListView* const m_list;
    QPushButton* const m_export;
    QPushButton* const m_split;
};

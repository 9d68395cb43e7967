#pragma once

#include "app/LevelReader.h"
#include "engine/EditFailure.h"

#include <QObject>

#include <cstdint>
#include <functional>
#include <string>

class KlipraMac;
class PlaceTicks;
class QAction;
class QMainWindow;
class QuietPanel;

/// The list of quiet places at work: reads the levels of the current entry while the list is seen,
/// shows them as ticks, goes to a place, and writes lists and pieces.
class QuietPlaces : public QObject {
    Q_OBJECT

public:
    /// Does work while the window stays alive, telling what it is.
    using Worker = std::function<bool(const QString& what, const std::function<bool()>& work)>;

    /// @param toggle  shows and hides the list
    QuietPlaces(QMainWindow* window, QAction* toggle, PlaceTicks& ticks, Worker worker);

    /// Whose entries are searched; not owned, null for none.
    void SetEngine(KlipraMac* engine);
    /// Another entry may have become current.
    void Refresh();

Q_SIGNALS:
    void positionDidMove();
    /// What has come of an export or a split, for the status bar.
    void told(const QString& text);

private:
    void ShowLevels(const std::vector<Block>& blocks, unsigned long long length);
    void ShowTicks();
    void TakeThresholds();
    void GoTo(unsigned long long position);
    void Export();
    void Split();
    std::vector<unsigned long long> Positions() const;
    std::vector<double> PieceBounds() const;
    bool MayWrite(const std::vector<std::string>& names) const;
    std::string EntryPath() const;
    std::string ProposedPath(const std::string& ending) const;
    double Seconds(unsigned long long position) const;

    KlipraMac* m_engine = nullptr;
    QuietPanel* const m_panel; // the window's
    PlaceTicks& m_ticks;
    Worker m_worker;
    LevelReader m_reader;
    std::uint32_t m_stream = 0; // whose levels are shown or being read; 0: nobody's
    float m_level = 0.0F;       // the engine's thresholds, as the sliders show them
    float m_seconds = 0.0F;
};

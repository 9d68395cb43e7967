#include "engine/BlockReader.h"
#include "engine/Klipra.h"
#include "engine/QuietStretches.h"

int Klipra::SearchSceanChange() {
    PlayStop();
    sceneChangePositions.clear();
    m_searchPosition = 0;
    if (const HistoryItem* const item = FindCurrentHistoryItem(); item != nullptr) {
        const BlockReader reader(item->path);
        QuietStretches stretches(thresholdLevel, thresholdTime);
        for (Block block; reader.Read(block);) {
            m_searchPosition.store(block.position, std::memory_order_relaxed);
            stretches.Add(block);
        }
        stretches.Finish(reader.GetLength());
        for (const QuietStretch& stretch : stretches.Found()) {
            stretch.AppendPositions(sceneChangePositions);
        }
    }
    if (!sceneChangePositions.empty()) {
        SetCurrentPosition(sceneChangePositions.front());
    }
    return static_cast<int>(sceneChangePositions.size());
}

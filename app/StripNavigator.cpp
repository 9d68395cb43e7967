#include "app/StripNavigator.h"

#include "adaptor/KlipraMac.h"
#include "app/WaveScrollArea.h"
#include "app/WaveView.h"
#include "audio/bass.h"
#include "mpeg/MPAException.h"
#include "mpeg/MPAFile.h"
#include "ui_MainWindow.h"

#include <QScrollBar>

#include <algorithm>

namespace {

/// What a file is cut in, in seconds; 10 ms where that would be too fine for a step.
double UnitSeconds(const KlipraMac& engine) {
    constexpr double kStepOfWAV = 0.01;
    if (engine.formatType != FormatType::MP3) {
        return kStepOfWAV;
    }
    try {
        const CMPAFile file(engine.histories.front().path.c_str());
        const CMPAHeader& header = *file.GetFirstFrame()->GetHeader();
        return static_cast<double>(header.GetSamplesPerFrame()) / header.GetSamplingRateHz();
    } catch (const CMPAException&) {
        return kStepOfWAV; // played all the same, but not cut
    }
}

} // namespace

int ZoomToFit(unsigned long long rangeBytes, unsigned long long lengthBytes, int maxZoom) {
    constexpr double kShare = 0.9; // of what is visible, so that both marks are seen
    const double zoom =
        kShare * static_cast<double>(lengthBytes) / static_cast<double>(std::max(rangeBytes, 1ULL));
    return static_cast<int>(std::clamp(zoom, 1.0, static_cast<double>(std::max(maxZoom, 1))));
}

StripNavigator::StripNavigator(const Ui::MainWindow& ui) : m_ui(ui) {
    const auto connectTo = [this](QAction* item, auto command) {
        connect(item, &QAction::triggered, this, [this, command] {
            if (m_engine != nullptr && m_engine->channel != 0) {
                command();
            }
        });
    };
    constexpr double kMany = 10.0;
    constexpr double kTenth = 0.1;
    connectTo(ui.StepBackFineMenu, [this] { MoveByUnits(-1); });
    connectTo(ui.StepNextFineMenu, [this] { MoveByUnits(1); });
    connectTo(ui.StepBackTenthMenu, [this] { MoveBySteps(-kTenth); });
    connectTo(ui.StepNextTenthMenu, [this] { MoveBySteps(kTenth); });
    connectTo(ui.StepBackTenMenu, [this] { MoveBySteps(-kMany); });
    connectTo(ui.StepNextTenMenu, [this] { MoveBySteps(kMany); });
    connectTo(ui.GoStartMenu, [this] { GoTo(m_engine->GetStartPosition()); });
    connectTo(ui.GoEndMenu, [this] { GoTo(m_engine->GetEndPosition()); });
    connectTo(ui.ZoomRangeMenu, [this] { ZoomToRange(); });
}

void StripNavigator::SetEngine(KlipraMac* engine) {
    m_engine = engine;
    m_unitBytes = 0;
}

void StripNavigator::MoveBySteps(double steps) {
    const double amount = m_engine->moveAmount;
    m_engine->moveAmount = amount * steps;
    m_engine->MovePositionRight();
    m_engine->moveAmount = amount;
    Q_EMIT positionDidMove();
}

unsigned long long StripNavigator::UnitBytes() {
    if (m_unitBytes == 0) {
        m_unitBytes = std::max(BASS_ChannelSeconds2Bytes(m_engine->channel, UnitSeconds(*m_engine)),
                               QWORD{1});
    }
    return m_unitBytes;
}

void StripNavigator::MoveByUnits(int units) {
    const unsigned long long step = UnitBytes();
    const unsigned long long position = m_engine->GetCurrentPosition();
    GoTo(units < 0 ? position - std::min(step, position)
                   : std::min(position + step, m_engine->length));
}

void StripNavigator::GoTo(unsigned long long position) {
    if (position != kUnsetPosition) {
        m_engine->SetCurrentPosition(position);
        Q_EMIT positionDidMove();
    }
}

void StripNavigator::ZoomToRange() {
    const CutPositions& marks = m_engine->cutPositions;
    if (m_engine->GetDefinedCutPositionCount() != 2) {
        return;
    }
    const auto [first, last] = std::minmax(marks.start, marks.end);
    const int zoom = ZoomToFit(last - first, m_engine->length, m_engine->maxZoom);
    m_engine->ZoomDelta(zoom - m_engine->zoom);
    const int middle = (*m_ui.waveView->GetStartColumn() + *m_ui.waveView->GetEndColumn()) / 2;
    QScrollBar* const bar = m_ui.waveScrollArea->horizontalScrollBar();
    bar->setValue(middle - m_ui.waveScrollArea->viewport()->width() / 2);
}

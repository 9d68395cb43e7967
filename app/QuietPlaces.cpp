#include "app/QuietPlaces.h"

#include "adaptor/KlipraMac.h"
#include "app/FailureTexts.h"
#include "app/PieceWriter.h"
#include "app/PlaceTicks.h"
#include "app/PlacesExport.h"
#include "app/QuietPanel.h"
#include "audio/bass.h"
#include "engine/Format.h"
#include "platform/Desktop.h"

#include <QAction>
#include <QFile>
#include <QMainWindow>
#include <QSaveFile>

#include <algorithm>
#include <filesystem>

QuietPlaces::QuietPlaces(QMainWindow* window, QAction* toggle, PlaceTicks& ticks, Worker worker)
    : m_panel(new QuietPanel(window)), m_ticks(ticks), m_worker(std::move(worker)) {
    window->addDockWidget(Qt::RightDockWidgetArea, m_panel);
    m_panel->hide();
    connect(toggle, &QAction::toggled, m_panel, &QWidget::setVisible);
    connect(m_panel->toggleViewAction(), &QAction::toggled, toggle, &QAction::setChecked);
    connect(m_panel->toggleViewAction(), &QAction::toggled, this, &QuietPlaces::Refresh);
    connect(m_panel, &QuietPanel::thresholdsChosen, this, &QuietPlaces::TakeThresholds);
    connect(m_panel, &QuietPanel::placesChanged, this, &QuietPlaces::ShowTicks);
    connect(m_panel, &QuietPanel::placeChosen, this, &QuietPlaces::GoTo);
    connect(m_panel, &QuietPanel::exportRequested, this, &QuietPlaces::Export);
    connect(m_panel, &QuietPanel::splitRequested, this, &QuietPlaces::Split);
    connect(&m_reader, &LevelReader::progressed, m_panel, &QuietPanel::ShowProgress);
    connect(&m_reader, &LevelReader::finished, this, &QuietPlaces::ShowLevels);
}

void QuietPlaces::SetEngine(KlipraMac* engine) {
    m_engine = engine;
    m_reader.Stop();
    m_stream = 0;
    m_panel->ClearLevels();
}

void QuietPlaces::Refresh() {
    const bool isSeen = !m_panel->isHidden();
    m_ticks.setVisible(isSeen);
    if (m_engine == nullptr || !isSeen) {
        return;
    }
    if (m_level != m_engine->thresholdLevel || m_seconds != m_engine->thresholdTime) {
        m_level = m_engine->thresholdLevel;
        m_seconds = m_engine->thresholdTime;
        m_panel->SetThresholds(m_level, m_seconds);
    }
    const std::uint32_t stream = m_engine->channel;
    if (stream == m_stream) {
        return;
    }
    m_stream = stream;
    m_panel->ClearLevels();
    m_reader.Stop();
    if (stream != 0) {
        m_panel->ShowProgress(0);
        m_reader.Start(EntryPath());
    }
}

void QuietPlaces::ShowLevels(const std::vector<Block>& blocks, unsigned long long length) {
    if (m_engine != nullptr && m_stream == m_engine->channel) {
        m_panel->SetLevels(blocks, length, [this](unsigned long long position) {
            return m_engine->PositionToMilliSeconds(position);
        });
    } // else another entry is current, whose levels come next
}

void QuietPlaces::TakeThresholds() {
    m_engine->thresholdLevel = m_level = m_panel->GetLevel();
    m_engine->thresholdTime = m_seconds = m_panel->GetSeconds();
}

std::vector<unsigned long long> QuietPlaces::Positions() const {
    std::vector<unsigned long long> positions;
    for (const QuietStretch& place : m_panel->GetPlaces()) {
        place.AppendPositions(positions);
    }
    return positions;
}

void QuietPlaces::ShowTicks() {
    m_ticks.SetPositions(Positions());
}

void QuietPlaces::GoTo(unsigned long long position) {
    m_engine->SetCurrentPosition(position);
    Q_EMIT positionDidMove();
}

double QuietPlaces::Seconds(unsigned long long position) const {
    return BASS_ChannelBytes2Seconds(m_engine->channel, position);
}

std::string QuietPlaces::EntryPath() const {
    return m_engine->FindHistoryItem(m_engine->currentHistoryId)->path;
}

std::string QuietPlaces::ProposedPath(const std::string& ending) const {
    return std::filesystem::path(m_engine->histories.front().path).stem().string() + ending;
}

void QuietPlaces::Export() {
    const std::string opened = m_engine->histories.front().path;
    const std::string folder = std::filesystem::path(opened).parent_path().string();
    const std::string path =
        AskListPath(folder.empty() ? "." : folder, ProposedPath(".cue"), PlacesExtensions());
    if (path.empty()) {
        return;
    }
    ExportedPlaces places{.audioName = Klipra::ExtractFilename(opened),
                          .isWav = m_engine->formatType == FormatType::WAV,
                          .positions = Positions()};
    std::ranges::transform(places.positions, std::back_inserter(places.seconds),
                           [this](unsigned long long position) { return Seconds(position); });
    const std::optional<std::string> text = PlacesText(path, places);
    if (!text || m_engine->IsUsedByHistory(path)) {
        Q_EMIT told(tr("書き出せるのは .cue、.txt、.csv のファイルだけです"));
        return;
    }
    if (text->empty()) {
        Q_EMIT told(tr("場所が多すぎて、CUEシートには書けません"));
        return;
    }
    const QString name = QFile::decodeName(path.c_str());
    QSaveFile file(name);
    const bool isWritten = file.open(QIODevice::WriteOnly) &&
                           file.write(text->data(), std::ssize(*text)) == std::ssize(*text) &&
                           file.commit();
    Q_EMIT told(isWritten ? tr("書き出しました: %1").arg(name)
                          : tr("書き出せませんでした: %1").arg(file.errorString()));
}

// In the middle of each place; what is quiet at the beginning and at the end divides nothing.
std::vector<double> QuietPlaces::PieceBounds() const {
    std::vector<double> bounds = {0.0};
    for (const QuietStretch& place : m_panel->GetPlaces()) {
        if (place.begin != 0 && !place.lastsToTheEnd) {
            bounds.push_back(Seconds((place.begin + place.end) / 2));
        }
    }
    bounds.push_back(Seconds(m_engine->length));
    return bounds;
}

bool QuietPlaces::MayWrite(const std::vector<std::string>& names) const {
    if (std::ranges::any_of(
            names, [this](const std::string& name) { return m_engine->IsUsedByHistory(name); })) {
        ShowErrorMsg(tr("編集履歴が使っているファイルには保存できません。").toUtf8().constData());
        return false;
    }
    const auto existing = std::ranges::count_if(names, [](const std::string& name) {
        return QFile::exists(QFile::decodeName(name.c_str()));
    });
    constexpr int kReplace = 1;
    return existing == 0 ||
           AskQuestion(tr("%1個のファイルは既に存在します。").arg(existing).toStdString(),
                       tr("置き換えると、今の内容は失われます。").toStdString(),
                       {tr("キャンセル").toStdString(), tr("置き換える").toStdString()}) ==
               kReplace;
}

void QuietPlaces::Split() {
    const std::vector<double> bounds = PieceBounds();
    const Format* const format = FindFormat(m_engine->formatType);
    constexpr std::size_t kLeastBounds = 3; // of two pieces
    if (bounds.size() < kLeastBounds || format == nullptr) {
        Q_EMIT told(tr("分割する場所がありません"));
        return;
    }
    const std::string folder =
        std::filesystem::path(m_engine->histories.front().path).parent_path().string();
    const std::string ending = std::string("-%.") + format->extension;
    const std::string path =
        AskOutputPath(folder.empty() ? "." : folder, ProposedPath(ending), format->extension);
    if (path.empty()) {
        return;
    }
    const std::vector<std::string> names = PieceNames(path, bounds.size() - 1);
    if (!MayWrite(names)) {
        return;
    }
    EditFailure failure;
    const std::string source = EntryPath();
    const bool isWritten = m_worker(tr("分割して保存しています…"), [&] {
        return WritePieces(source, m_engine->formatType, bounds, names, failure);
    });
    if (isWritten) {
        Q_EMIT told(tr("%1個のファイルに保存しました: %2")
                        .arg(names.size())
                        .arg(QFile::decodeName(Klipra::ExtractFolder(names.front()).c_str())));
    } else {
        Q_EMIT told(failure.IsCancelled() ? tr("キャンセルしました") : FailureText(failure));
    }
}

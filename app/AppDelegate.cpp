#include "app/AppDelegate.h"

#include "adaptor/SessionJournal.h"
#include "app/CommandBar.h"
#include "app/FailureTexts.h"
#include "app/FitToScreen.h"
#include "app/HistoryOutline.h"
#include "app/KeyCodes.h"
#include "app/PreferenceWindowController.h"
#include "app/TintedIcon.h"
#include "audio/bass.h"
#include "platform/Desktop.h"
#include "ui_MainWindow.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QToolButton>

#include <filesystem>

namespace {

constexpr int kRefusedExitCode = 1;

bool FileExists(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::exists(path, ignored);
}

/// A window takes "[*]" in its title for the mark of an unsaved document, and two of them for one
/// that is meant.
QString TitleOf(const std::string& name) {
    return QString::fromStdString(name).replace("[*]", "[*][*]");
}

} // namespace

AppDelegate::AppDelegate() : m_ui(std::make_unique<Ui::MainWindow>()) {
    m_ui->setupUi(&window);
    window.addToolBar(MakeCommandBar(*m_ui->toolBarLayout, &window));
    m_ui->mainLayout->removeItem(m_ui->toolBarLayout);
    delete m_ui->toolBarLayout; // empty by now
    for (QToolButton* const button : window.findChildren<QToolButton*>()) {
        if (const QString name = button->property("iconName").toString(); !name.isEmpty()) {
            button->setIcon(MakeTintedIcon(":/icons/" + name + ".svg"));
        }
    }
    SetUpStrip();
    SetUpStatusBar();
    m_workWatch = new WorkWatch(&window); // owned by it
    ConnectCommands();
    constexpr int kRefreshMilliseconds = 100;
    myTimer.setInterval(kRefreshMilliseconds);
    myTimer.callOnTimeout(this, &AppDelegate::onTick);
    window.installEventFilter(this);
    // Not where a signal ends the program: what was edited is offered again then.
    connect(this, &AppDelegate::terminate, this, [this] {
        if (pKlipraMac != nullptr) {
            pKlipraMac->EndSession();
        }
    });
    connect(m_workWatch, &WorkWatch::closeRequested, &window, &QWidget::close);
    m_ui->HistoryOutlineView->installEventFilter(this);
}

AppDelegate::~AppDelegate() {
    applicationWillTerminate();
}

void AppDelegate::SetUpStrip() {
    // Dark in every style, the scroll bar too: the wave's colours are made for black.
    QPalette dark;
    dark.setColor(QPalette::Window, Qt::black);
    dark.setColor(QPalette::Base, Qt::black);
    dark.setColor(QPalette::Button, QColor(0x3A, 0x3D, 0x40));
    m_ui->waveScrollArea->setPalette(dark);
    m_ui->waveScrollArea->SetStrip(m_ui->waveView);
    m_stripSurroundings =
        new StripSurroundings(m_ui->waveScrollArea, m_ui->waveView, m_ui->mainLayout);
    m_navigator = std::make_unique<StripNavigator>(*m_ui);
    connect(m_navigator.get(), &StripNavigator::positionDidMove, this, &AppDelegate::ShowPosition);
    connect(m_ui->waveView, &WaveView::positionDidMove, this, &AppDelegate::Redraw);
    connect(m_ui->waveView, &WaveView::marksDidChange, this, &AppDelegate::MarksDidChange);
    m_ui->mainView->setFocus();
}

void AppDelegate::SetUpStatusBar() {
    m_outputLabel->setText("音声出力なし");
    m_outputLabel->setToolTip("音声出力がないため、無音で再生します。");
    m_outputLabel->hide();
    m_journalLabel->setText("編集の復元不可");
    m_journalLabel->setToolTip("作業状態を記録できないため、異常終了すると編集内容は失われます。");
    m_journalLabel->setObjectName("journalLabel");
    m_journalLabel->hide();
    const std::pair<QLabel*, const char*> labels[] = {{m_fileLabel, "fileLabel"},
                                                      {m_rangeLabel, "rangeLabel"},
                                                      {m_scenesLabel, "scenesLabel"},
                                                      {m_readFailureLabel, "readFailureLabel"}};
    constexpr int kMargin = 6; // pixels on each side
    for (const auto& [label, name] : labels) {
        label->setObjectName(name);
        label->setContentsMargins(kMargin, 0, kMargin, 0);
        m_ui->statusBar->addWidget(label);
    }
    m_messageLabel->setObjectName("messageLabel");
    m_messageLabel->setContentsMargins(kMargin, 0, kMargin, 0);
    m_ui->statusBar->addWidget(m_messageLabel, 1);
    m_waveformLabel->setObjectName("waveformLabel");
    m_outputLabel->setObjectName("outputLabel");
    m_ui->statusBar->addPermanentWidget(m_waveformLabel);
    m_ui->statusBar->addPermanentWidget(m_journalLabel);
    m_ui->statusBar->addPermanentWidget(m_outputLabel);
}

void AppDelegate::applicationDidFinishLaunching(const std::vector<std::string>& arguments) {
    const auto launch = CheckLaunch(arguments, FileExists, BASS_GetVersion());
    if (const auto* const refusal = std::get_if<LaunchRefusal>(&launch)) {
        ShowErrorMsg(refusal->text.c_str());
        Q_EMIT terminate(kRefusedExitCode);
        return;
    }
    OpenFile(std::get<LaunchFile>(launch));
}

void AppDelegate::OpenFile(const LaunchFile& file) {
    const std::string name = Klipra::ExtractFilename(file.path);
    window.setWindowTitle(TitleOf(name));
    FitToScreen(window);
    window.show(); // only now has the content view its width

    pKlipraMac = std::make_unique<KlipraMac>(this, file.format, file.path);
    const int width = pKlipraMac->zoom * m_ui->mainView->width();
    m_ui->waveView->setWaveSize(width);
    pKlipraMac->SetWaveSize(width);
    pKlipraMac->SetDrawSize(width);
    m_ui->waveView->pKlipraMac = pKlipraMac.get();
    m_navigator->SetEngine(pKlipraMac.get());

    pKlipraMac->PushHistory("# " + name, file.path, true, 0);
    pKlipraMac->LoadPlayFile();
    m_ui->mainView->setDelegate(this);
    m_historyOutline = std::make_unique<HistoryOutline>(
        m_ui->HistoryOutlineView, [this](int id) { SelectedEntryDidChange(id); });
    refreshHistoryOutlineView(pKlipraMac->currentHistoryId);
    ShowStatus();
    ShowMessage(FailureText({{pKlipraMac->WhyUncuttable(), file.path}}));
    window.raise();
    window.activateWindow();
    if (!pKlipraMac->BeginSession(SessionJournal::Folder())) {
        ShowFailure();
    }
}

bool AppDelegate::QueryToTerminate() {
    constexpr int kYes = 1;
    return pKlipraMac == nullptr || pKlipraMac->histories.size() < 2 ||
           AskQuestion("確認", "編集内容が保存されていません。終了して良いですか。",
                       {"いいえ", "はい"}) == kYes;
}

QString AppDelegate::ObjectionTo(const std::string& path) const {
    return pKlipraMac != nullptr && pKlipraMac->IsUsedByHistory(path)
               ? tr("編集履歴が使っているファイルには保存できません。")
               : QString();
}

void AppDelegate::sessionShouldEnd(QSessionManager& session) {
    if (session.allowsInteraction()) {
        const bool mayEnd = QueryToTerminate();
        session.release();
        if (!mayEnd) {
            session.cancel();
        }
    }
}

void AppDelegate::applicationWillTerminate() {
    disableTimer();
    goWindowController.reset();
    PreferenceWindowController::sharedPreferenceWindowController().closeForGood();
    m_historyOutline.reset();
    m_ui->mainView->setDelegate(nullptr);
    m_ui->waveView->pKlipraMac = nullptr;
    m_navigator->SetEngine(nullptr);
    pKlipraMac.reset();
    QCoreApplication::removePostedEvents(this); // what the engine's threads still had to say
}

bool AppDelegate::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &window && event->type() == QEvent::Close) {
        if (!windowShouldClose()) {
            event->ignore();
            return true;
        }
        Q_EMIT terminate(0);
    }
    if (watched == m_ui->HistoryOutlineView && event->type() == QEvent::KeyPress &&
        KeyCodeOf(static_cast<QKeyEvent*>(event)->key()) != KeyCode::kOther) {
        return QCoreApplication::sendEvent(m_ui->mainView, event); // plays and steps there too
    }
    return QObject::eventFilter(watched, event);
}

#include "app/AppDelegate.h"

#include "adaptor/SessionJournal.h"
#include "app/ButtonTips.h"
#include "app/CommandBar.h"
#include "app/FailureTexts.h"
#include "app/FitToScreen.h"
#include "app/HistoryOutline.h"
#include "app/KeyCodes.h"
#include "app/Language.h"
#include "app/PreferenceWindowController.h"
#include "app/Remembered.h"
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
const std::string kChoose = "--choose"; ///< asks for the file, unless one follows

bool FileExists(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::exists(path, ignored);
}

/// A window takes "[*]" in its title for the mark of an unsaved document, and two of them for one
/// that is meant.
QString TitleOf(const std::string& name) {
    return QString::fromStdString(name).replace(QStringLiteral("[*]"), QStringLiteral("[*][*]"));
}

} // namespace

AppDelegate::AppDelegate() : m_ui(std::make_unique<Ui::MainWindow>()) {
    m_ui->setupUi(&window);
    window.addToolBar(MakeCommandBar(*m_ui->toolBarLayout, &window));
    m_ui->mainLayout->removeItem(m_ui->toolBarLayout);
    delete m_ui->toolBarLayout; // empty by now
    for (QToolButton* const button : window.findChildren<QToolButton*>()) {
        if (const QString name = button->property("iconName").toString(); !name.isEmpty()) {
            button->setIcon(MakeTintedIcon(QStringLiteral(":/icons/%1.svg").arg(name)));
        }
    }
    ConnectCommands();
    SetUpStrip();
    SetUpStatusBar();
    m_fileOpener = new FileOpener(&window, m_ui->OpenMenu, m_ui->RecentMenu);
    FillLanguageMenu(m_ui->LanguageMenu);
    m_workWatch = new WorkWatch(&window); // owned by it
    connect(m_workWatch, &WorkWatch::cancelled, this, &AppDelegate::AbandonSearch);
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
    OnLanguageChange(&window, [this] { Translate(); });
}

AppDelegate::~AppDelegate() {
    applicationWillTerminate();
}

void AppDelegate::Translate() {
    const QString title = window.windowTitle();
    m_ui->retranslateUi(&window);
    window.setWindowTitle(title);
    DescribeButtons(window);
    m_outputLabel->setText(tr("音声出力なし"));
    m_outputLabel->setToolTip(tr("音が出る装置がないため、無音で再生します。"));
    m_journalLabel->setText(tr("編集の復元不可"));
    m_journalLabel->setToolTip(
        tr("作業状態を記録できないため、異常終了すると編集内容は失われます。"));
    ShowMessage({}); // of another language
    if (pKlipraMac != nullptr) {
        m_historyOutline->DetailsDidChange();
        ShowStatus();
    }
}

void AppDelegate::SetUpStrip() {
    // Dark in every style, the scroll bar too: the wave's colours are made for black.
    QPalette dark;
    dark.setColor(QPalette::Window, Qt::black);
    dark.setColor(QPalette::Base, Qt::black);
    dark.setColor(QPalette::Button, QColor(0x3A, 0x3D, 0x40));
    m_ui->waveScrollArea->setPalette(dark);
    m_ui->waveScrollArea->SetStrip(m_ui->waveView);
    m_stripSurroundings = new StripSurroundings(m_ui->waveScrollArea, m_ui->waveView,
                                                m_ui->mainLayout, m_ui->historyLabel);
    m_navigator = std::make_unique<StripNavigator>(*m_ui);
    m_quietPlaces = std::make_unique<QuietPlaces>(
        &window, m_ui->QuietListMenu, m_stripSurroundings->GetTicks(),
        [this](const QString& what, const auto& work) { return DoWork(what, work); });
    connect(m_quietPlaces.get(), &QuietPlaces::positionDidMove, this, &AppDelegate::ShowPosition);
    connect(m_quietPlaces.get(), &QuietPlaces::told, this, &AppDelegate::ShowMessage);
    connect(m_navigator.get(), &StripNavigator::positionDidMove, this, &AppDelegate::ShowPosition);
    connect(m_ui->waveView, &WaveView::positionDidMove, this, [this] {
        m_audition.Stop();
        Redraw();
    });
    connect(m_ui->waveView, &WaveView::marksDidChange, this, &AppDelegate::MarksDidChange);
    // Who has the keyboard hears of the strip, and every key goes to the content view all the same.
    m_ui->mainView->setFocusProxy(m_ui->waveView);
    m_ui->waveView->installEventFilter(this);
    m_ui->mainView->setFocus();
}

void AppDelegate::SetUpStatusBar() {
    m_outputLabel->hide();
    m_journalLabel->setObjectName(QStringLiteral("journalLabel"));
    m_journalLabel->hide();
    const std::pair<QLabel*, const char*> labels[] = {{m_positionLabel, "positionLabel"},
                                                      {m_rangeLabel, "rangeLabel"},
                                                      {m_fileLabel, "fileLabel"},
                                                      {m_scenesLabel, "scenesLabel"},
                                                      {m_readFailureLabel, "readFailureLabel"}};
    constexpr int kMargin = 6; // pixels on each side
    for (const auto& [label, name] : labels) {
        label->setObjectName(QLatin1String(name));
        label->setContentsMargins(kMargin, 0, kMargin, 0);
        m_ui->statusBar->addWidget(label);
    }
    m_messageLabel->setObjectName(QStringLiteral("messageLabel"));
    m_messageLabel->setContentsMargins(kMargin, 0, kMargin, 0);
    m_ui->statusBar->addWidget(m_messageLabel, 1);
    m_waveformLabel->setObjectName(QStringLiteral("waveformLabel"));
    m_outputLabel->setObjectName(QStringLiteral("outputLabel"));
    m_ui->statusBar->addPermanentWidget(m_waveformLabel);
    m_ui->statusBar->addPermanentWidget(m_journalLabel);
    m_ui->statusBar->addPermanentWidget(m_outputLabel);
}

void AppDelegate::applicationDidFinishLaunching(const std::vector<std::string>& arguments) {
    std::vector<std::string> file = arguments;
    if (file.size() > 1 && file[1] == kChoose) {
        file.erase(file.begin() + 1);
        if (file.size() < 2) {
            file.push_back(AskFileToOpen(""));
        }
        if (file[1].empty()) {
            Q_EMIT terminate(0);
            return;
        }
    }
    const auto launch = CheckLaunch(file, FileExists, BASS_GetVersion());
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
    if (const QSize size = Remembered().GetWindowSize(); size.isValid()) {
        window.resize(size);
    }
    FitToScreen(window);
    window.show(); // only now has the content view its width

    pKlipraMac = std::make_unique<KlipraMac>(this, file.format, file.path);
    const int width = pKlipraMac->zoom * m_ui->mainView->width();
    m_ui->waveView->setWaveSize(width);
    pKlipraMac->SetWaveSize(width);
    pKlipraMac->SetDrawSize(width);
    m_ui->waveView->pKlipraMac = pKlipraMac.get();
    m_navigator->SetEngine(pKlipraMac.get());
    m_quietPlaces->SetEngine(pKlipraMac.get());

    pKlipraMac->PushHistory("# " + name, file.path, true, 0);
    (void)pKlipraMac->LoadPlayFile(); // why not has been shown; the window stays, without sound
    m_ui->mainView->setDelegate(this);
    m_historyOutline = std::make_unique<HistoryOutline>(
        m_ui->HistoryOutlineView,
        [this](const HistoryItem& item) { return m_historyTexts.DetailsOf(*pKlipraMac, item); },
        [this](int id) { SelectedEntryDidChange(id); });
    refreshHistoryOutlineView(pKlipraMac->currentHistoryId);
    ShowStatus();
    ShowMessage(FailureText({{pKlipraMac->WhyUncuttable(), file.path}}));
    if (pKlipraMac->channel != 0) {
        m_fileOpener->DidOpen(file.path);
    }
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

void AppDelegate::applicationWillTerminate() {
    disableTimer();
    if (pKlipraMac != nullptr) {
        Remembered().SetWindowSize(window.isMaximized() ? window.normalGeometry().size()
                                                        : window.size());
    }
    m_audition.Stop();
    goWindowController.reset();
    PreferenceWindowController::sharedPreferenceWindowController().closeForGood();
    m_historyOutline.reset();
    m_ui->mainView->setDelegate(nullptr);
    m_ui->waveView->pKlipraMac = nullptr;
    m_navigator->SetEngine(nullptr);
    m_quietPlaces->SetEngine(nullptr);
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
    if (watched == m_ui->waveView && event->type() == QEvent::KeyPress) {
        return QCoreApplication::sendEvent(m_ui->mainView, event);
    }
    if (watched == m_ui->HistoryOutlineView && event->type() == QEvent::KeyPress &&
        KeyCodeOf(static_cast<QKeyEvent*>(event)->key()) != KeyCode::kOther) {
        return QCoreApplication::sendEvent(m_ui->mainView, event); // plays and steps there too
    }
    return QObject::eventFilter(watched, event);
}

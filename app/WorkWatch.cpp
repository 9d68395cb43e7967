#include "app/WorkWatch.h"

#include "adaptor/BackgroundWork.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QEventLoop>
#include <QKeyEvent>
#include <QMainWindow>
#include <QProgressBar>
#include <QPushButton>
#include <QStatusBar>
#include <QTimer>
#include <QWidgetAction>

namespace {

constexpr int kProgressSteps = 1000;

bool IsInput(QEvent::Type type) {
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::DragEnter:
    case QEvent::Drop:
        return true;
    default:
        return false;
    }
}

} // namespace

WorkWatch::WorkWatch(QMainWindow* window)
    : QObject(window), m_window(window), m_progress(new QProgressBar), m_cancel(new QPushButton) {
    m_progress->setObjectName(QStringLiteral("workProgress"));
    m_progress->setTextVisible(false);
    constexpr int kWidth = 160; // pixels
    m_progress->setFixedWidth(kWidth);
    m_progress->hide();
    m_cancel->setObjectName(QStringLiteral("cancelButton"));
    m_cancel->hide();
    window->statusBar()->addPermanentWidget(m_progress);
    window->statusBar()->addPermanentWidget(m_cancel);
    connect(m_cancel, &QPushButton::clicked, this, [this] {
        if (m_work != nullptr) {
            m_work->Cancel();
        }
        Q_EMIT cancelled();
    });
}

void WorkWatch::Await(BackgroundWork& work) {
    m_work = &work;
    m_wasToClose = false;
    DisableCommands();
    qApp->installEventFilter(this);

    QEventLoop loop;
    work.WhenDone([&loop] { QMetaObject::invokeMethod(&loop, "quit", Qt::QueuedConnection); });
    QTimer refresh;
    constexpr int kRefreshMilliseconds = 100; // work that is done sooner shows nothing of this
    refresh.callOnTimeout(this, &WorkWatch::ShowProgress);
    refresh.start(kRefreshMilliseconds);
    loop.exec();
    if (!work.IsDone()) { // the program is to end
        work.Cancel();
        work.Wait();
    }

    qApp->removeEventFilter(this);
    m_work = nullptr;
    HideShare();
    EnableCommands();
    if (m_wasToClose) {
        QMetaObject::invokeMethod(this, &WorkWatch::closeRequested, Qt::QueuedConnection);
    }
}

void WorkWatch::ShowProgress() {
    const long long all = m_work->GetBytesInAll();
    ShowShare(all > 0 ? static_cast<double>(m_work->GetBytesDone()) / static_cast<double>(all)
                      : -1.0);
}

void WorkWatch::ShowShare(double share) {
    m_cancel->setText(tr("キャンセル"));
    m_progress->setAccessibleName(tr("進み具合"));
    m_progress->setRange(0, share < 0.0 ? 0 : kProgressSteps); // with no end it moves to and fro
    if (share >= 0.0) {
        m_progress->setValue(static_cast<int>(share * kProgressSteps));
    }
    m_progress->show();
    m_cancel->show();
}

void WorkWatch::HideShare() {
    m_progress->hide();
    m_cancel->hide();
}

void WorkWatch::DisableCommands() {
    m_disabled.clear();
    for (QAction* const action : m_window->findChildren<QAction*>()) {
        // Those that hold a tool bar's buttons would enable all of them again.
        if (action->isEnabled() && qobject_cast<QWidgetAction*>(action) == nullptr) {
            action->setEnabled(false);
            m_disabled.emplace_back(action);
        }
    }
    for (QAbstractButton* const button : m_window->findChildren<QAbstractButton*>()) {
        if (button->isEnabled() && button != m_cancel) {
            button->setEnabled(false);
            m_disabled.emplace_back(button);
        }
    }
}

void WorkWatch::EnableCommands() {
    for (const QPointer<QObject>& object : m_disabled) {
        if (!object.isNull()) {
            object->setProperty("enabled", true);
        }
    }
    m_disabled.clear();
}

bool WorkWatch::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Close && watched == m_window) {
        m_wasToClose = true;
        m_work->Cancel();
        event->ignore();
        return true;
    }
    if (!IsInput(event->type()) || watched == m_cancel) {
        return false;
    }
    // A key is offered to the window's shortcuts first.
    if ((event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride) &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        m_work->Cancel();
        event->accept();
        return true;
    }
    // What the window system hands to a window goes on to the widget in it, the button among them.
    return watched->isWidgetType();
}

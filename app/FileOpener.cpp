#include "app/FileOpener.h"

#include "app/Remembered.h"
#include "engine/Format.h"
#include "platform/Desktop.h"

#include <QAction>
#include <QDropEvent>
#include <QFile>
#include <QFileInfo>
#include <QMainWindow>
#include <QMenu>
#include <QMimeData>

#include <filesystem>

namespace {

QStringList LocalFiles(const QMimeData& data) {
    QStringList files;
    for (const QUrl& url : data.urls()) {
        if (url.isLocalFile()) {
            files << url.toLocalFile();
        }
    }
    return files;
}

} // namespace

std::string AskFileToOpen(const std::string& folder) {
    std::vector<std::string> extensions;
    for (const FormatType type : {FormatType::MP3, FormatType::WAV}) {
        extensions.emplace_back(FindFormat(type)->extension);
    }
    return AskInputPath(folder, extensions);
}

FileOpener::FileOpener(QMainWindow* window, QAction* open, QMenu* recent)
    : QObject(window), m_recent(recent) {
    connect(open, &QAction::triggered, this, &FileOpener::Ask);
    connect(recent, &QMenu::aboutToShow, this, &FileOpener::ListRecent);
    window->setAcceptDrops(true);
    window->installEventFilter(this);
}

void FileOpener::DidOpen(const std::string& path) {
    const std::filesystem::path absolute = std::filesystem::absolute(path);
    m_folder = absolute.parent_path().string();
    Remembered().AddRecentFile(QFile::decodeName(absolute.c_str()));
}

void FileOpener::Ask() {
    if (const std::string path = AskFileToOpen(m_folder); !path.empty()) {
        OpenInWindow(path);
    }
}

void FileOpener::ListRecent() {
    m_recent->clear();
    for (const QString& path : Remembered().GetRecentFiles()) {
        // An ampersand would mark a letter.
        QString name = QFileInfo(path).fileName();
        QAction* const item = m_recent->addAction(name.replace(u'&', QStringLiteral("&&")));
        item->setStatusTip(path);
        item->setToolTip(path);
        item->setEnabled(QFile::exists(path));
        connect(item, &QAction::triggered, this,
                [path] { OpenInWindow(QFile::encodeName(path).toStdString()); });
    }
    if (m_recent->isEmpty()) {
        m_recent->addAction(tr("なし"))->setEnabled(false);
    }
}

bool FileOpener::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::DragEnter || event->type() == QEvent::Drop) {
        auto* const drop = static_cast<QDropEvent*>(event);
        const QStringList files = LocalFiles(*drop->mimeData());
        if (!files.isEmpty()) {
            drop->acceptProposedAction();
        }
        if (event->type() == QEvent::Drop) {
            for (const QString& path : files) {
                OpenInWindow(QFile::encodeName(path).toStdString());
            }
        }
        return true;
    }
    return QObject::eventFilter(watched, event);
}

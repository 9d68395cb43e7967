#pragma once

#include <QObject>

#include <string>

class QAction;
class QMenu;
class QMainWindow;

/// Asks for a file that can be opened.
/// @param folder  where to begin; empty for the current one
/// @return empty when the person cancels
[[nodiscard]] std::string AskFileToOpen(const std::string& folder);

/// The ways to open another file, in a window of its own: the panel, the files opened last, and
/// what is dropped on the window.
class FileOpener : public QObject {
    Q_OBJECT

public:
    FileOpener(QMainWindow* window, QAction* open, QMenu* recent);

    /// A file has been opened in this window: the panel begins in its folder, and it is remembered.
    void DidOpen(const std::string& path);

private:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void Ask();
    void ListRecent();

    QMenu* const m_recent;
    std::string m_folder;
};

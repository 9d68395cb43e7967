#pragma once

#include <QSettings>
#include <QSize>
#include <QStringList>

/// What the program remembers from one run to the next, in the person's configuration folder: the
/// size of its window, the language, and the files opened last.
class Remembered {
public:
    static constexpr int kRecentFiles = 10;

    Remembered();

    QSize GetWindowSize() const; ///< invalid where none is remembered
    void SetWindowSize(const QSize& size);

    QString GetLanguage() const; ///< empty where none was chosen
    void SetLanguage(const QString& code);

    QStringList GetRecentFiles() const; ///< paths, the last one first
    void AddRecentFile(const QString& path);

private:
    QSettings m_settings;
};

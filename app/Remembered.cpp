#include "app/Remembered.h"

#include <QStandardPaths>

namespace {

const QString kWindowSize = QStringLiteral("windowSize");
const QString kLanguage = QStringLiteral("language");
const QString kRecent = QStringLiteral("recentFiles");

} // namespace

Remembered::Remembered()
    : m_settings(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                     QStringLiteral("/klipra/klipra.ini"),
                 QSettings::IniFormat) {
}

QSize Remembered::GetWindowSize() const {
    return m_settings.value(kWindowSize).toSize();
}

void Remembered::SetWindowSize(const QSize& size) {
    m_settings.setValue(kWindowSize, size);
}

QString Remembered::GetLanguage() const {
    return m_settings.value(kLanguage).toString();
}

void Remembered::SetLanguage(const QString& code) {
    m_settings.setValue(kLanguage, code);
}

QStringList Remembered::GetRecentFiles() const {
    return m_settings.value(kRecent).toStringList();
}

void Remembered::AddRecentFile(const QString& path) {
    QStringList files = GetRecentFiles();
    files.removeAll(path);
    files.prepend(path);
    m_settings.setValue(kRecent, files.mid(0, kRecentFiles));
}

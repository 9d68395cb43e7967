#include "app/LaunchCheck.h"

#include "audio/bass.h"

#include <QCoreApplication>

namespace {

QString Text(const char* text) {
    return QCoreApplication::translate("LaunchCheck", text);
}

} // namespace

std::variant<LaunchFile, LaunchRefusal>
CheckLaunch(const std::vector<std::string>& arguments,
            const std::function<bool(const std::string&)>& fileExists,
            std::uint32_t libraryVersion) {
    if (arguments.size() < 2) {
        return LaunchRefusal{
            Text(QT_TRANSLATE_NOOP("LaunchCheck", "ファイルが指定されていません。")).toStdString()};
    }
    const std::string& path = arguments[1];
    if (!fileExists(path)) {
        return LaunchRefusal{
            Text(QT_TRANSLATE_NOOP("LaunchCheck", "ファイル '%1' は存在しません。"))
                .arg(QString::fromStdString(path))
                .toStdString()};
    }
    constexpr int kRevisionBits = 16;
    if (libraryVersion >> kRevisionBits != BASSVERSION) {
        return LaunchRefusal{"An incorrect version of BASS.DLL"};
    }
    const std::optional<FormatType> format = GetFormat(path);
    if (!format) {
        return LaunchRefusal{
            Text(QT_TRANSLATE_NOOP("LaunchCheck", "サポート形式は、mp3とwavのみです。"))
                .toStdString()};
    }
    return LaunchFile{*format, path};
}

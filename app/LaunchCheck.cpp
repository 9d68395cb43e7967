#include "app/LaunchCheck.h"

#include "audio/bass.h"

std::variant<LaunchFile, LaunchRefusal>
CheckLaunch(const std::vector<std::string>& arguments,
            const std::function<bool(const std::string&)>& fileExists,
            std::uint32_t libraryVersion) {
    if (arguments.size() < 2) {
        return LaunchRefusal{"ファイルが指定されていません。"};
    }
    const std::string& path = arguments[1];
    if (!fileExists(path)) {
        return LaunchRefusal{"ファイル '" + path + "' は存在しません。"};
    }
    constexpr int kRevisionBits = 16;
    if (libraryVersion >> kRevisionBits != BASSVERSION) {
        return LaunchRefusal{"An incorrect version of BASS.DLL"};
    }
    const std::optional<FormatType> format = GetFormat(path);
    if (!format) {
        return LaunchRefusal{"サポート形式は、mp3とwavのみです。"};
    }
    return LaunchFile{*format, path};
}

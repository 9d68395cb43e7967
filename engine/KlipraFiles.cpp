#include "audio/bass.h"
#include "cutting/CutError.h"
#include "cutting/CutWholeWAV.h"
#include "engine/Busy.h"
#include "engine/Format.h"
#include "engine/Klipra.h"
#include "platform/FileReplacement.h"
#include "platform/FollowLink.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <unistd.h>

// What edits and saves do with files.

namespace {

namespace fs = std::filesystem;

// By path as well: a file that has gone away must not come back as something else.
bool IsSameFile(const std::string& a, const std::string& b) {
    std::error_code error;
    return a == b || fs::equivalent(a, b, error);
}

// The part of a path behind the last such character; all of it where there is none.
std::string After(const std::string& path, char separator) {
    const std::size_t found = path.rfind(separator);
    return found == std::string::npos ? path : path.substr(found + 1);
}

double SizeOf(const std::string& path) {
    std::error_code error;
    const auto bytes = fs::file_size(path, error);
    return error ? 0.0 : static_cast<double>(bytes);
}

} // namespace

bool Klipra::HasRoom(double bytes, const std::string& target) {
    std::error_code error;
    const fs::path folder = fs::path(target).parent_path();
    const fs::space_info space = fs::space(folder.empty() ? "." : folder, error);
    if (error || space.capacity == 0) {
        return true; // nobody knows
    }
    const double room = static_cast<double>(geteuid() == 0 ? space.free : space.available);
    if (bytes <= room) {
        return true;
    }
    m_lastFailure = {{CutReason::DiskFull, target}, static_cast<long long>(bytes - room)};
    return false;
}

bool Klipra::WriteReplacing(const std::string& source, const std::string& target, Lasting lasting,
                            double bytes, const WriteFile& write) {
    m_lastFailure = {};
    const bool isOpenedFile = !histories.empty() && IsSameFile(target, histories.front().path);
    if (isOpenedFile || IsSameFile(target, source) || !HasRoom(bytes, target)) {
        return false;
    }
    ResetCutFailure();
    FileReplacement replacement(target, source, lasting);
    const bool isWritten =
        !replacement.GetPath().empty() && write(replacement.GetPath()) && replacement.Commit();
    if (!isWritten) {
        m_lastFailure.problem = CutFailure();
        if (replacement.GetError()) {
            m_lastFailure.problem = {CutReason::OutputNotCreatable, target,
                                     replacement.GetError().value()};
        } else if (m_lastFailure.problem.path == replacement.GetPath()) {
            m_lastFailure.problem.path = target;
        }
    }
    return isWritten;
}

bool Klipra::CutExec(bool keep, const std::string& source, const std::string& target,
                     unsigned long long start, unsigned long long end) {
    // Exact where every second has as many bytes; of others an estimate.
    const auto [lo, hi] = std::minmax(std::min(start, length), std::min(end, length));
    const double share =
        length == 0 ? 0.0 : static_cast<double>(hi - lo) / static_cast<double>(length);
    return WriteReplacing(
        source, target, m_isForGood ? Lasting::ForGood : Lasting::Session,
        SizeOf(source) * (keep ? share : 1.0 - share),
        [&](const std::string& path) { return CutToFile(keep, source, path, start, end); });
}

bool Klipra::CutToFile(bool keep, const std::string& source, const std::string& output,
                       unsigned long long start, unsigned long long end) const {
    const auto [lo, hi] = std::minmax(
        {BASS_ChannelBytes2Seconds(channel, start), BASS_ChannelBytes2Seconds(channel, end)});
    if (lo < 0.0) {
        return false; // there is no stream to convert with
    }
    const Format* const format = FindFormat(formatType);
    return format != nullptr && format->cut(source.c_str(), output.c_str(), lo, hi, keep);
}

bool Klipra::IsUsedByHistory(const std::string& path) const {
    return std::any_of(histories.begin(), histories.end(),
                       [&](const HistoryItem& item) { return IsSameFile(path, item.path); });
}

std::string Klipra::ResolveOutput(const std::string& path) {
    std::string target = FollowLink(path);
    if (target.empty()) {
        m_lastFailure.problem = {CutReason::OutputNotCreatable, path, ENOENT};
    }
    return target;
}

void Klipra::SaveRangeBy(const WriteItem& write) {
    const HistoryItem* const item = FindCurrentHistoryItem();
    m_lastOutput.clear();
    m_finishNotes.clear();
    if (item == nullptr || m_isBusy) {
        return;
    }
    const Busy busy(m_isBusy, m_lastFailure);
    if (!HasRange()) {
        ErrorMsg(kErrorSave);
        return;
    }
    const std::string output = QueryOutputPath();
    if (output.empty()) {
        return;
    }
    const std::string target = ResolveOutput(output);
    if (target.empty() || IsUsedByHistory(target) || !write(*item, target)) {
        ReportFailure();
        return;
    }
    m_lastOutput = output;
}

void Klipra::SaveRange() {
    SaveRangeBy([this](const HistoryItem& item, const std::string& target) {
        m_isForGood = true;
        const bool isWritten =
            CutExec(true, item.path, target, cutPositions.start, cutPositions.end);
        m_isForGood = false;
        return isWritten;
    });
}

bool Klipra::SaveBy(std::string& path, const WriteItem& write) {
    HistoryItem* const item = FindCurrentHistoryItem();
    m_lastOutput.clear();
    m_finishNotes.clear();
    if (item == nullptr || m_isBusy) {
        return false;
    }
    const Busy busy(m_isBusy, m_lastFailure);
    path = QueryOutputPath();
    if (path.empty()) {
        return false;
    }
    const std::string target = ResolveOutput(path);
    if (target.empty() || IsUsedByHistory(target) || !write(*item, target)) {
        ReportFailure();
        return false;
    }
    m_lastOutput = path;
    item->saved = true;
    return true;
}

bool Klipra::Save(std::string& path) {
    return SaveBy(path, [this](const HistoryItem& item, const std::string& target) {
        return HasRoom(SizeOf(item.path), target) && CopyFile(item.path, target);
    });
}

std::string Klipra::ExtractFolder(const std::string& path) {
    return path.substr(0, path.rfind('/')); // npos: all of it
}

std::string Klipra::ExtractFilename(const std::string& path) {
    return After(path, '/');
}

std::string Klipra::ExtractExtension(const std::string& path) {
    return After(path, '.');
}

CutReason Klipra::WhyUncuttable() const {
    const bool isWAV = formatType == FormatType::WAV && !histories.empty() && channel != 0;
    return isWAV ? WhyNoCutterTakes(histories.front().path.c_str()) : CutReason::None;
}

#include "cli/WriteOutputs.h"

#include "cli/Exchange.h"
#include "cli/InterruptGuard.h"
#include "cli/OutputTargets.h"
#include "cli/Progress.h"
#include "cli/Report.h"
#include "cutting/CutFailure.h"
#include "cutting/CutProgress.h"
#include "places/PrintableText.h"
#include "platform/FileReplacement.h"
#include "platform/SyncFiles.h"
#include "platform/SystemError.h"

#include <algorithm>
#include <deque>

namespace {

/// Makes a new file for each target, and tells the guard of it.
bool MakeReplacements(const std::string& source, const std::vector<std::string>& targets,
                      InterruptGuard& guard, std::deque<FileReplacement>& replacements) {
    const Lasting lasting = targets.size() == 1 ? Lasting::ForGood : Lasting::Grouped;
    for (const std::string& target : targets) {
        const FileReplacement& replacement = replacements.emplace_back(target, source, lasting);
        if (replacement.GetPath().empty()) {
            ReportError(target, replacement.GetError().message());
            return false;
        }
        if (!replacement.GetHiddenPath().empty()) {
            guard.Add(replacement.GetHiddenPath());
        }
        if (InterruptGuard::IsInterrupted()) {
            return false;
        }
    }
    return guard.Begin();
}

void ReportCutFailure(const std::string& source, const std::vector<std::string>& names,
                      const std::vector<std::string>& paths) {
    const CutProblem& problem = CutFailure();
    if (problem.reason == CutReason::None) {
        return; // it has been reported
    }
    const auto path = std::ranges::find(paths, problem.path);
    const std::string& file =
        path == paths.end() ? source : names[static_cast<std::size_t>(path - paths.begin())];
    ReportError(file, DescribeFailure(problem));
}

std::string Describe(const std::vector<std::string>& names, const CutProgress& progress) {
    const std::string more =
        names.size() > 1 ? " and " + std::to_string(names.size() - 1) + " more" : "";
    const long long all = std::max(progress.bytesInAll.load(), 1LL);
    return "Writing " + Printable(names.front()) + more + ": " +
           std::to_string(progress.bytesDone * 100 / all) + " %";
}

/// Waits until all that was written is on the disk.
bool SyncAll(const std::vector<std::string>& targets, std::deque<FileReplacement>& replacements,
             const FileSystemSync& fileSystems) {
    const bool isAlone = replacements.size() == 1;
    const std::error_code error =
        isAlone ? (static_cast<void>(replacements.front().Sync()), replacements.front().GetError())
                : SystemError(fileSystems.Sync());
    if (error) {
        ReportError(targets.front(), "cannot be written: " + error.message());
    }
    return !error;
}

bool CommitAll(const std::vector<std::string>& targets, std::deque<FileReplacement>& replacements) {
    Exchange exchange;
    for (std::size_t i = 0; i < targets.size(); ++i) {
        if (!exchange.Add(replacements[i], targets[i], i + 1 < targets.size())) {
            return false;
        }
    }
    exchange.Keep();
    if (targets.size() > 1) {
        SyncFoldersOf(targets);
    }
    return true;
}

} // namespace

bool WriteWithProgress(const std::string& source, const std::vector<std::string>& names,
                       const std::vector<std::string>& paths, const OutputWriter& write) {
    CutProgress cut;
    const CutProgressScope scope(cut);
    const SilentDesktop silence;
    bool isWritten = false;
    {
        const Progress progress([&] { return Describe(names, cut); });
        isWritten = write(paths);
    }
    if (!isWritten) {
        ReportCutFailure(source, names, paths);
    }
    return isWritten;
}

bool WriteOutputs(const std::string& source, const std::vector<std::string>& names,
                  bool replacesNothing, const OutputWriter& write) {
    OutputTargets targets;
    if (!targets.Check(source, names, replacesNothing)) {
        return false;
    }
    InterruptGuard guard; // stands longer than the files that it guards
    std::deque<FileReplacement> replacements;
    if (!MakeReplacements(source, targets.Paths(), guard, replacements)) {
        return false;
    }
    std::vector<std::string> paths;
    std::ranges::transform(replacements, std::back_inserter(paths), &FileReplacement::GetPath);
    const FileSystemSync fileSystems(paths);
    if (!WriteWithProgress(source, names, paths, write) ||
        !SyncAll(names, replacements, fileSystems)) {
        return false;
    }
    guard.HoldOff();
    return CommitAll(targets.Paths(), replacements);
}

#include "cli/WriteOutputs.h"

#include "cli/InterruptGuard.h"
#include "cli/Progress.h"
#include "cli/Report.h"
#include "cutting/CutFailure.h"
#include "platform/Desktop.h"
#include "platform/FileReplacement.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <deque>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// A link that the person names is a name for its file, which is what they want written.
std::string FollowLink(const std::string& output) {
    std::error_code error;
    const std::filesystem::path target = std::filesystem::canonical(output, error);
    return !error && std::filesystem::is_symlink(output, error) ? target.string() : output;
}

bool IsInput(const std::string& source, const std::string& output) {
    std::error_code error;
    return std::filesystem::equivalent(source, output, error);
}

bool MakeReplacements(const std::string& source, const std::vector<std::string>& outputs,
                      std::deque<FileReplacement>& replacements) {
    for (const std::string& output : outputs) {
        if (IsInput(source, output)) {
            ReportError(output, "this is the input itself");
            return false;
        }
        const FileReplacement& replacement = replacements.emplace_back(output, source);
        if (replacement.GetPath().empty()) {
            ReportError(output, replacement.GetError().message());
            return false;
        }
    }
    return true;
}

std::vector<std::string> Paths(const std::deque<FileReplacement>& replacements) {
    std::vector<std::string> paths;
    paths.reserve(replacements.size());
    for (const FileReplacement& replacement : replacements) {
        paths.push_back(replacement.GetPath());
    }
    return paths;
}

std::string DescribeOutput(const std::string& output, const std::string& writtenPath) {
    std::error_code error;
    const auto bytes = std::filesystem::file_size(writtenPath, error);
    return "Writing " + output + ": " + std::to_string(error ? 0 : bytes / 1000000) + " MB";
}

/// Whatever the cutters show stands in CutFailure too, in words and with the file at fault.
class SilentDesktop : public Desktop {
public:
    SilentDesktop() : m_before(InstallDesktop(this)) {}
    SilentDesktop(const SilentDesktop&) = delete;
    SilentDesktop& operator=(const SilentDesktop&) = delete;
    ~SilentDesktop() override { InstallDesktop(m_before); }

    int ShowAlert(const std::string& /*headline*/, const std::string& /*text*/,
                  const std::vector<std::string>& /*buttons*/) override {
        return -1;
    }
    std::string AskOutputPath(const std::string& /*folder*/, const std::string& /*name*/,
                              const std::string& /*extension*/) override {
        return "";
    }

private:
    Desktop* m_before;
};

void ReportCutFailure(const std::string& source, const std::vector<std::string>& outputs,
                      const std::vector<std::string>& paths) {
    const CutProblem& problem = CutFailure();
    const auto path = std::ranges::find(paths, problem.path);
    const std::string& file =
        path == paths.end() ? source : outputs[static_cast<std::size_t>(path - paths.begin())];
    ReportError(file, DescribeFailure(problem));
}

bool WriteAll(const std::vector<std::string>& outputs, const std::vector<std::string>& paths,
              const OutputWriter& write) {
    std::atomic<std::size_t> current = 0; // main -> progress: the one being written
    const SilentDesktop silence;
    const Progress progress([&] { return DescribeOutput(outputs[current], paths[current]); });
    for (std::size_t i = 0; i < outputs.size(); ++i) {
        current = i;
        if (!write(i, paths[i])) {
            return false;
        }
    }
    return true;
}

/// Puts new files into the places of their targets, and takes all of it back unless Keep is called.
class Exchange {
public:
    Exchange() = default;
    Exchange(const Exchange&) = delete;
    Exchange& operator=(const Exchange&) = delete;
    ~Exchange() {
        for (const Step& step : m_steps) {
            Undo(step);
        }
    }

    /// @param keepsOld  whether the old file can be brought back; not needed for the last one
    /// @return false after a failure, which has been reported
    bool Add(FileReplacement& replacement, const std::string& output, bool keepsOld) {
        Step& step = m_steps.emplace_back(Step{output, replacement.GetPath() + "-old"});
        step.hasOld = keepsOld && KeepOld(step);
        step.isDone = replacement.Commit();
        if (!step.isDone) {
            ReportError(output, replacement.GetError().message());
        }
        return step.isDone;
    }

    void Keep() {
        for (const Step& step : m_steps) {
            unlink(step.oldPath.c_str());
        }
        m_steps.clear();
    }

private:
    struct Step {
        std::string output;
        std::string oldPath;
        bool hasOld = false;
        bool isDone = false;
    };

    // By a second name, so that the old file is there all the time. It steps aside where there are
    // no hard links, and where it belongs to someone else: a sticky folder would let us make the
    // second name, but not remove it again.
    static bool KeepOld(const Step& step) {
        const char* const output = step.output.c_str();
        const char* const old = step.oldPath.c_str();
        struct stat status {};
        return lstat(output, &status) == 0 &&
               ((status.st_uid == geteuid() && link(output, old) == 0) ||
                std::rename(output, old) == 0);
    }

    static void Undo(const Step& step) {
        if (step.hasOld) {
            std::rename(step.oldPath.c_str(), step.output.c_str());
            unlink(step.oldPath.c_str()); // still there when both were the same file
        } else if (step.isDone) {
            unlink(step.output.c_str());
        }
    }

    std::vector<Step> m_steps;
};

bool CommitAll(const std::vector<std::string>& outputs, std::deque<FileReplacement>& replacements) {
    Exchange exchange;
    for (std::size_t i = 0; i < outputs.size(); ++i) {
        if (!exchange.Add(replacements[i], outputs[i], i + 1 < outputs.size())) {
            return false;
        }
    }
    exchange.Keep();
    return true;
}

} // namespace

bool WriteOutputs(const std::string& source, const std::vector<std::string>& names,
                  const OutputWriter& write) {
    std::vector<std::string> outputs;
    std::ranges::transform(names, std::back_inserter(outputs), FollowLink);
    std::deque<FileReplacement> replacements;
    if (!MakeReplacements(source, outputs, replacements)) {
        return false;
    }
    const std::vector<std::string> paths = Paths(replacements);
    const InterruptGuard guard(paths);
    if (!WriteAll(outputs, paths, write)) {
        ReportCutFailure(source, outputs, paths);
        return false;
    }
    InterruptGuard::HoldOff();
    return CommitAll(outputs, replacements);
}

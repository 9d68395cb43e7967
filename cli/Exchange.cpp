#include "cli/Exchange.h"

#include "cli/Report.h"
#include "places/PrintableText.h"
#include "platform/SystemError.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>

Exchange::~Exchange() {
    std::for_each(m_steps.rbegin(), m_steps.rend(), Undo);
}

bool Exchange::Add(FileReplacement& replacement, const std::string& output, bool keepsOld) {
    Step& step =
        m_steps.emplace_back(Step{output, FileReplacement::HiddenNameBeside(output) + "-old"});
    if (keepsOld && !KeepOld(step)) {
        ReportError(output, "cannot be replaced: " + SystemErrorText(errno));
        return false;
    }
    step.isDone = replacement.Commit();
    if (!step.isDone) {
        ReportError(output, "cannot be written: " + replacement.GetError().message());
    }
    return step.isDone;
}

void Exchange::Keep() {
    for (const Step& step : m_steps) {
        if (step.hasOld && unlink(step.oldPath.c_str()) != 0) {
            ReportWarning(step.oldPath,
                          "the old file could not be removed: " + SystemErrorText(errno));
        }
    }
    m_steps.clear();
}

// By a second name, so that the old file is there all the time. It steps aside where there are no
// hard links, and where it belongs to someone else: a sticky folder would let us make the second
// name, but not remove it again. Returns false when neither can be had.
bool Exchange::KeepOld(Step& step) {
    const char* const output = step.output.c_str();
    const char* const old = step.oldPath.c_str();
    struct stat status {};
    if (lstat(output, &status) != 0) {
        return errno == ENOENT;
    }
    step.hasOld =
        (status.st_uid == geteuid() && link(output, old) == 0) || std::rename(output, old) == 0;
    return step.hasOld;
}

void Exchange::Undo(const Step& step) {
    const char* const output = step.output.c_str();
    const char* const old = step.oldPath.c_str();
    if (step.hasOld && std::rename(old, output) != 0) {
        ReportError(step.output, "the old file could not be put back (" + SystemErrorText(errno) +
                                     ") and is now " + Quoted(step.oldPath));
    } else if (step.hasOld) {
        unlink(old); // still there when both were names of one file
    } else if (step.isDone && unlink(output) != 0) {
        ReportError(step.output, "could not be removed again: " + SystemErrorText(errno));
    }
}

#include "platform/Desktop.h"

#include <cstdio>
#include <utility>

namespace {

Desktop* installedDesktop = nullptr;
thread_local Desktop* threadDesktop = nullptr; // of a thread that has its own

Desktop* Current() {
    return threadDesktop != nullptr ? threadDesktop : installedDesktop;
}

void Show(const std::string& headline, const std::string& text, const std::string& onTerminal) {
    if (Desktop* const desktop = Current(); desktop != nullptr) {
        desktop->ShowAlert(headline, text, {"OK"});
    } else {
        std::fprintf(stderr, "%s\n", onTerminal.c_str());
    }
}

} // namespace

Desktop* InstallDesktop(Desktop* desktop) {
    return std::exchange(installedDesktop, desktop);
}

Desktop* InstallThreadDesktop(Desktop* desktop) {
    return std::exchange(threadDesktop, desktop);
}

void ShowErrorMsg(const char* text) {
    Show("Error", text, text);
}

void ShowMsg(const std::string& message) {
    Show(message, "", message);
}

int AskQuestion(const std::string& headline, const std::string& text,
                const std::vector<std::string>& buttons) {
    Desktop* const desktop = Current();
    return desktop == nullptr ? -1 : desktop->ShowAlert(headline, text, buttons);
}

std::string AskOutputPath(const std::string& folder, const std::string& name,
                          const std::string& extension) {
    Desktop* const desktop = Current();
    return desktop == nullptr ? "" : desktop->AskOutputPath(folder, name, extension);
}

std::string AskListPath(const std::string& folder, const std::string& name,
                        const std::vector<std::string>& extensions) {
    Desktop* const desktop = Current();
    return desktop == nullptr ? "" : desktop->AskListPath(folder, name, extensions);
}

std::string AskInputPath(const std::string& folder, const std::vector<std::string>& extensions) {
    Desktop* const desktop = Current();
    return desktop == nullptr ? "" : desktop->AskInputPath(folder, extensions);
}

bool OpenInWindow(const std::string& path) {
    Desktop* const desktop = Current();
    return desktop != nullptr && desktop->OpenInWindow(path);
}

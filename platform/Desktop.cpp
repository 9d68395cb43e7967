#include "platform/Desktop.h"

#include <cstdio>
#include <utility>

namespace {

Desktop* installedDesktop = nullptr;

void Show(const std::string& headline, const std::string& text, const std::string& onTerminal) {
    if (installedDesktop != nullptr) {
        installedDesktop->ShowAlert(headline, text, {"OK"});
    } else {
        std::fprintf(stderr, "%s\n", onTerminal.c_str());
    }
}

} // namespace

Desktop* InstallDesktop(Desktop* desktop) {
    return std::exchange(installedDesktop, desktop);
}

void ShowErrorMsg(const char* text) {
    Show("Error", text, text);
}

void ShowMsg(const std::string& message) {
    Show(message, "", message);
}

int AskQuestion(const std::string& headline, const std::string& text,
                const std::vector<std::string>& buttons) {
    return installedDesktop == nullptr ? -1 : installedDesktop->ShowAlert(headline, text, buttons);
}

std::string AskOutputPath(const std::string& folder, const std::string& name,
                          const std::string& extension) {
    return installedDesktop == nullptr ? ""
                                       : installedDesktop->AskOutputPath(folder, name, extension);
}

#include "platform/Desktop.h"

#include <cstdio>

namespace {

Desktop* installedDesktop = nullptr;

} // namespace

void InstallDesktop(Desktop* desktop) {
    installedDesktop = desktop;
}

void ShowErrorMsg(const char* text) {
    if (installedDesktop != nullptr) {
        installedDesktop->ShowAlert("Error", text);
    } else {
        std::fprintf(stderr, "%s\n", text);
    }
}

std::string AskOutputPath(const std::string& folder, const std::string& name,
                          const std::string& extension) {
    return installedDesktop == nullptr ? ""
                                       : installedDesktop->AskOutputPath(folder, name, extension);
}

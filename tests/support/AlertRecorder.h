#pragma once

#include "platform/Desktop.h"

#include <string>

/// A desktop that keeps the texts of all alerts, from its construction to its end, and answers
/// questions for a file as it is told.
class AlertRecorder : public Desktop {
public:
    AlertRecorder() { InstallDesktop(this); }
    AlertRecorder(const AlertRecorder&) = delete;
    AlertRecorder& operator=(const AlertRecorder&) = delete;
    ~AlertRecorder() override { InstallDesktop(nullptr); }

    int ShowAlert(const std::string& /*headline*/, const std::string& text,
                  const std::vector<std::string>& /*buttons*/) override {
        texts += text;
        return choice;
    }
    std::string AskOutputPath(const std::string& folder, const std::string& name,
                              const std::string& extension) override {
        question = folder + "|" + name + "|" + extension;
        return answer;
    }

    std::string AskInputPath(const std::string& folder,
                             const std::vector<std::string>& /*extensions*/) override {
        question = folder;
        return answer;
    }
    bool OpenInWindow(const std::string& path) override {
        opened += path + "|";
        return true;
    }

    std::string texts;
    std::string opened;   ///< the files that were to be opened, each followed by a bar
    std::string question; ///< the last one: folder, proposed name and extension
    std::string answer;   ///< empty: the person cancels
    int choice = 0;       ///< the button that the person presses
};

#pragma once

#include "platform/Desktop.h"

#include <string>

/// A desktop that keeps the texts of all alerts, from its construction to its end.
class AlertRecorder : public Desktop {
public:
    AlertRecorder() { InstallDesktop(this); }
    AlertRecorder(const AlertRecorder&) = delete;
    AlertRecorder& operator=(const AlertRecorder&) = delete;
    ~AlertRecorder() override { InstallDesktop(nullptr); }

    void ShowAlert(const std::string& /*headline*/, const std::string& text) override {
        texts += text;
    }

    std::string texts;
};

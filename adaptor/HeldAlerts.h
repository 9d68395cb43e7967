#pragma once

#include "platform/Desktop.h"

#include <string>
#include <utility>
#include <vector>

/// Keeps what a thread has to say to the person until the main thread can show it.
class HeldAlerts : public Desktop {
public:
    int ShowAlert(const std::string& headline, const std::string& text,
                  const std::vector<std::string>& /*buttons*/) override {
        m_alerts.emplace_back(headline, text);
        return -1;
    }
    /// Nobody is asked.
    std::string AskOutputPath(const std::string& /*folder*/, const std::string& /*name*/,
                              const std::string& /*extension*/) override {
        return "";
    }

    /// On the main thread.
    void Show() const {
        for (const auto& [headline, text] : m_alerts) {
            text.empty() ? ShowMsg(headline) : ShowErrorMsg(text.c_str());
        }
    }

private:
    std::vector<std::pair<std::string, std::string>> m_alerts; // headline, text
};

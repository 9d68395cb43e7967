#pragma once

#include "platform/Desktop.h"

/// The desktop of the window program: message boxes and the toolkit's save dialog, in front of
/// whichever window is active.
class QtDesktop : public Desktop {
public:
    int ShowAlert(const std::string& headline, const std::string& text,
                  const std::vector<std::string>& buttons) override;
    std::string AskOutputPath(const std::string& folder, const std::string& name,
                              const std::string& extension) override;
};

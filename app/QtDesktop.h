#pragma once

#include "platform/Desktop.h"

#include <QCoreApplication>
#include <QString>

#include <functional>
#include <string>
#include <utility>

/// The desktop of the window program: message boxes and the toolkit's save dialog, in front of
/// whichever window is active.
class QtDesktop : public Desktop {
    Q_DECLARE_TR_FUNCTIONS(QtDesktop)

public:
    int ShowAlert(const std::string& headline, const std::string& text,
                  const std::vector<std::string>& buttons) override;
    std::string AskOutputPath(const std::string& folder, const std::string& name,
                              const std::string& extension) override;
    std::string AskListPath(const std::string& folder, const std::string& name,
                            const std::vector<std::string>& extensions) override;
    std::string AskInputPath(const std::string& folder,
                             const std::vector<std::string>& extensions) override;
    bool OpenInWindow(const std::string& path) override;

    /// Has a path looked at before it is asked whether to replace a file there: a text for the
    /// person when nothing may be written to it, otherwise an empty one.
    void SetObjection(std::function<QString(const std::string& path)> objection) {
        m_objection = std::move(objection);
    }

private:
    std::function<QString(const std::string&)> m_objection = [](const std::string&) {
        return QString();
    };
};

#pragma once

#include <string>
#include <vector>

/// The files that a person wants written, with links followed to where they lead.
class OutputTargets {
public:
    /// Looks at all of them, and writes nothing: whether one is the source, or two are the same
    /// file, whether something that is no file stands in the way, or a file that is not to be
    /// replaced, and whether the folders can be written to.
    /// @return false when one cannot be written, which has been reported
    [[nodiscard]] bool Check(const std::string& source, const std::vector<std::string>& names,
                             bool replacesNothing);

    /// In the order of the names.
    const std::vector<std::string>& Paths() const { return m_paths; }

private:
    std::vector<std::string> m_paths;
};

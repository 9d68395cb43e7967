#pragma once

#include <functional>
#include <string>
#include <vector>

/// The names in a folder that are chosen, of regular files of this user's; links do not count.
/// Whatever cannot be read is not there.
std::vector<std::string> OwnFilesIn(const std::string& folder,
                                    const std::function<bool(const std::string& name)>& isChosen);

/// Removes those. What cannot be removed stays.
void RemoveOwnFiles(const std::string& folder,
                    const std::function<bool(const std::string& name)>& isChosen);

#pragma once

#include <string>

/// Where to write what a person has named: the path itself, or where it leads when it is a link.
/// @return empty for a link that leads nowhere
std::string FollowLink(const std::string& path);

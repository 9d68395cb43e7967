#pragma once

#include <algorithm>
#include <functional>
#include <span>

/// The few of many places, in ascending order, that are worth a look: cutters keep the order, so
/// they are those from the one on that is due next.
/// @param next   the place that is due
/// @param place  of an element
template <typename T, typename Place, typename Projection = std::identity>
std::span<const T> NextCandidates(std::span<const T> all, Place next, Projection place = {}) {
    constexpr std::size_t kMost = 64;
    const auto behind = std::ranges::lower_bound(all, next, {}, place) - all.begin();
    const std::size_t count = std::min(kMost, all.size());
    return all.subspan(std::min(static_cast<std::size_t>(behind), all.size() - count), count);
}

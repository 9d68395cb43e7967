#pragma once

#include <cstddef>
#include <memory>

/// Gives pages back to the system.
struct UnmapPages {
    void operator()(void* pages) const;

    std::size_t bytes = 0;
};

/// A large array in pages of the system's own, which are gone with it: the heap would keep them for
/// a next time that may not come.
template <typename Element>
using PageArray = std::unique_ptr<Element[], UnmapPages>;

/// Zeroed pages for so many bytes; null when there is too little memory. Those that nobody writes
/// to cost nothing.
void* MapPages(std::size_t bytes);

/// An array of zeros, for elements that take no construction.
/// @return null when there is too little memory
template <typename Element>
PageArray<Element> MakePageArray(std::size_t count) {
    const std::size_t bytes = count * sizeof(Element);
    return {static_cast<Element*>(MapPages(bytes)), UnmapPages{bytes}};
}

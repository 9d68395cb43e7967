#include "platform/PageArray.h"

#include <sys/mman.h>

void UnmapPages::operator()(void* pages) const {
    munmap(pages, bytes);
}

void* MapPages(std::size_t bytes) {
    void* const pages =
        mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return pages == MAP_FAILED ? nullptr : pages;
}

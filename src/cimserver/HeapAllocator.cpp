#include "cimserver/HeapAllocator.h"

#include <dlfcn.h>
#include <malloc.h>

#include <cstdint>

namespace ksv::server::heap {

namespace {

using Mallctl = int (*)(const char* name, void* oldValue, std::size_t* oldLength, void* newValue,
                        std::size_t newLength);

// Found at run time, so that one build serves the linked, the preloaded and the C library's
// allocator alike.
Mallctl jemallocControl() {
    static const Mallctl control = reinterpret_cast<Mallctl>(dlsym(RTLD_DEFAULT, "mallctl"));
    return control;
}

std::size_t jemallocBytesInUse(Mallctl control) {
    // jemalloc's statistics are a snapshot, refreshed by advancing its epoch.
    std::uint64_t epoch = 1;
    std::size_t length = sizeof epoch;
    control("epoch", &epoch, &length, &epoch, length);
    std::size_t allocated = 0;
    length = sizeof allocated;
    if (control("stats.allocated", &allocated, &length, nullptr, 0) != 0)
        return 0;
    return allocated;
}

// jemalloc's name for every arena at once (MALLCTL_ARENAS_ALL).
constexpr const char* kPurgeAllArenas = "arena.4096.purge";

} // namespace

std::size_t bytesInUse() {
    if (const Mallctl control = jemallocControl())
        return jemallocBytesInUse(control);
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

void returnFreePages() {
    if (const Mallctl control = jemallocControl()) {
        control(kPurgeAllArenas, nullptr, nullptr, nullptr, 0);
        return;
    }
    malloc_trim(0);
}

} // namespace ksv::server::heap

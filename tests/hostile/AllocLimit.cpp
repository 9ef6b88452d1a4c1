// Replaces every form of the global operator new so that a reader's largest
// request is known; storage still comes from malloc, so the sanitizers keep
// checking every block.
#include "AllocLimit.h"

#include <atomic>
#include <cstdlib>
#include <new>

#include <malloc.h>

namespace {

std::atomic<std::size_t> gLargest{0};
// Counted by the allocator's own block sizes, so that a release, which is not
// told the size, takes off exactly what its allocation added.
std::atomic<std::size_t> gLive{0};
std::atomic<std::size_t> gPeak{0};
std::atomic<std::size_t> gBase{0};

void Added(void* p) {
    const std::size_t live = gLive.fetch_add(::malloc_usable_size(p), std::memory_order_relaxed) +
                             ::malloc_usable_size(p);
    std::size_t peak = gPeak.load(std::memory_order_relaxed);
    while (live > peak && !gPeak.compare_exchange_weak(peak, live, std::memory_order_relaxed)) {
    }
}

void Release(void* p) {
    if (!p) return;
    gLive.fetch_sub(::malloc_usable_size(p), std::memory_order_relaxed);
    std::free(p);
}

void Note(std::size_t size) {
    std::size_t seen = gLargest.load(std::memory_order_relaxed);
    while (size > seen && !gLargest.compare_exchange_weak(seen, size, std::memory_order_relaxed)) {
    }
}

void* Take(std::size_t size) {
    Note(size);
    if (void* p = std::malloc(size ? size : 1)) {
        Added(p);
        return p;
    }
    throw std::bad_alloc();
}

void* TakeAligned(std::size_t size, std::align_val_t align) {
    Note(size);
    const std::size_t a = static_cast<std::size_t>(align);
    const std::size_t rounded = (size + a - 1) / a * a;
    if (void* p = std::aligned_alloc(a, rounded ? rounded : a)) {
        Added(p);
        return p;
    }
    throw std::bad_alloc();
}

} // namespace

namespace kvtest {

void ResetAllocationCounts() {
    gLargest.store(0, std::memory_order_relaxed);
    const std::size_t live = gLive.load(std::memory_order_relaxed);
    gBase.store(live, std::memory_order_relaxed);
    gPeak.store(live, std::memory_order_relaxed);
}
std::size_t LargestAllocation() { return gLargest.load(std::memory_order_relaxed); }
std::size_t PeakLiveGrowth() {
    const std::size_t peak = gPeak.load(std::memory_order_relaxed);
    const std::size_t base = gBase.load(std::memory_order_relaxed);
    return peak > base ? peak - base : 0;
}

} // namespace kvtest

void* operator new(std::size_t size) { return Take(size); }
void* operator new[](std::size_t size) { return Take(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return Take(size);
    } catch (...) {
        return nullptr;
    }
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return Take(size);
    } catch (...) {
        return nullptr;
    }
}
void* operator new(std::size_t size, std::align_val_t align) { return TakeAligned(size, align); }
void* operator new[](std::size_t size, std::align_val_t align) { return TakeAligned(size, align); }
void* operator new(std::size_t size, std::align_val_t align, const std::nothrow_t&) noexcept {
    try {
        return TakeAligned(size, align);
    } catch (...) {
        return nullptr;
    }
}
void* operator new[](std::size_t size, std::align_val_t align, const std::nothrow_t&) noexcept {
    try {
        return TakeAligned(size, align);
    } catch (...) {
        return nullptr;
    }
}

void operator delete(void* p) noexcept { Release(p); }
void operator delete[](void* p) noexcept { Release(p); }
void operator delete(void* p, std::size_t) noexcept { Release(p); }
void operator delete[](void* p, std::size_t) noexcept { Release(p); }
void operator delete(void* p, const std::nothrow_t&) noexcept { Release(p); }
void operator delete[](void* p, const std::nothrow_t&) noexcept { Release(p); }
void operator delete(void* p, std::align_val_t) noexcept { Release(p); }
void operator delete[](void* p, std::align_val_t) noexcept { Release(p); }
void operator delete(void* p, std::size_t, std::align_val_t) noexcept { Release(p); }
void operator delete[](void* p, std::size_t, std::align_val_t) noexcept { Release(p); }
void operator delete(void* p, std::align_val_t, const std::nothrow_t&) noexcept { Release(p); }
void operator delete[](void* p, std::align_val_t, const std::nothrow_t&) noexcept { Release(p); }

// SPDX-License-Identifier: Apache-2.0
// malloc, calloc and realloc that fail when they are told to.

#include "tests/support/no_memory.h"

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <dlfcn.h>

namespace stage {

namespace {

thread_local int untilFailure = 0; // 0: none fails

bool failsNow() {
    if (untilFailure == 0 || --untilFailure > 0) {
        return false;
    }
    errno = ENOMEM;
    return true;
}

/// Looking up the C library's functions may itself allocate; that is served from here.
alignas(std::max_align_t) char early[4096];
std::size_t earlyUsed = 0;
bool lookingUp = false;

void *allocateEarly(std::size_t size) {
    const std::size_t rounded = (size + alignof(std::max_align_t) - 1) / alignof(std::max_align_t) *
                                alignof(std::max_align_t);
    if (rounded > sizeof early - earlyUsed) {
        abort();
    }
    void *memory = early + earlyUsed; // zeroed, and never given back
    earlyUsed += rounded;
    return memory;
}

template <typename Function> Function lookUp(const char *name) {
    lookingUp = true;
    void *found = dlsym(RTLD_NEXT, name);
    lookingUp = false;
    if (found == nullptr) {
        abort();
    }
    return reinterpret_cast<Function>(found);
}

} // namespace

NoMemory::NoMemory(int failing) {
    untilFailure = failing;
}

NoMemory::~NoMemory() {
    untilFailure = 0;
}

int NoMemory::left() {
    return untilFailure == 0 ? 0 : untilFailure - 1;
}

} // namespace stage

// Default visibility, so that the library finds these before the C library's.
#pragma GCC visibility push(default)
extern "C" {

void *malloc(std::size_t size) noexcept(noexcept(::malloc(0))) {
    using Malloc = void *(*)(std::size_t);
    static Malloc next = nullptr;
    if (stage::failsNow()) {
        return nullptr;
    }
    if (next == nullptr) {
        if (stage::lookingUp) {
            return stage::allocateEarly(size);
        }
        next = stage::lookUp<Malloc>("malloc");
    }
    return next(size);
}

void *calloc(std::size_t count, std::size_t size) noexcept(noexcept(::calloc(0, 0))) {
    using Calloc = void *(*)(std::size_t, std::size_t);
    static Calloc next = nullptr;
    if (stage::failsNow()) {
        return nullptr;
    }
    if (next == nullptr) {
        if (stage::lookingUp) {
            return stage::allocateEarly(count * size);
        }
        next = stage::lookUp<Calloc>("calloc");
    }
    return next(count, size);
}

void *realloc(void *memory, std::size_t size) noexcept(noexcept(::realloc(nullptr, 0))) {
    using Realloc = void *(*)(void *, std::size_t);
    static Realloc next = nullptr;
    if (stage::failsNow()) {
        return nullptr;
    }
    if (next == nullptr) {
        next = stage::lookUp<Realloc>("realloc");
    }
    return next(memory, size);
}
}
#pragma GCC visibility pop

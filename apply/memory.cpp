// SPDX-License-Identifier: Apache-2.0
// Blocks from malloc, filled from their start.

#include "apply/memory.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "host/text.h"

namespace frruci::apply {

namespace {

constexpr std::size_t kBlockBytes = 16384;
constexpr std::size_t kAlignment = alignof(std::max_align_t);

constexpr std::size_t aligned(std::size_t bytes) {
    return (bytes + kAlignment - 1) / kAlignment * kAlignment;
}

} // namespace

Arena::~Arena() {
    while (blocks_ != nullptr) {
        Block *next = blocks_->next;
        free(blocks_);
        blocks_ = next;
    }
}

void *Arena::take(std::size_t bytes) {
    bytes = aligned(bytes);
    if (bytes > left_) {
        left_ = bytes > kBlockBytes ? bytes : kBlockBytes;
        constexpr std::size_t kHead = aligned(sizeof(Block));
        auto *block = static_cast<Block *>(host::grow(nullptr, kHead + left_));
        block->next = blocks_;
        blocks_ = block;
        free_ = reinterpret_cast<char *>(block) + kHead;
    }
    void *taken = free_;
    free_ += bytes;
    left_ -= bytes;
    return taken;
}

const char *Arena::copy(const char *text, std::size_t bytes) {
    auto *copied = static_cast<char *>(take(bytes + 1));
    memcpy(copied, text, bytes);
    copied[bytes] = '\0';
    return copied;
}

const char *Arena::copy(const char *text) {
    return copy(text, strlen(text));
}

} // namespace frruci::apply

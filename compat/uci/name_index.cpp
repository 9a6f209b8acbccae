// SPDX-License-Identifier: Apache-2.0
// Finds the elements of many lists by name while a file is read.

#include "name_index.h"

#include <cstdlib>
#include <cstring>

namespace frruci::uci {

namespace {

constexpr std::size_t kFirstSlots = 64;

std::size_t hash(const uci_list *head, const char *name) {
    auto value = static_cast<uint64_t>(reinterpret_cast<uintptr_t>(head)) >> 4U;
    for (; *name != '\0'; ++name) {
        value = value * 33 + static_cast<unsigned char>(*name);
    }
    value *= 0x9e3779b97f4a7c15U; // spreads near values over all bits
    return static_cast<std::size_t>(value >> 32U);
}

} // namespace

NameIndex::~NameIndex() {
    free(slots_);
}

/// The slot of that name, or the free one where it belongs; there is always a free one.
NameIndex::Slot *NameIndex::place(const uci_list *head, const char *name) const {
    std::size_t at = hash(head, name) & (slotCount_ - 1);
    while (slots_[at].head != nullptr &&
           (slots_[at].head != head || strcmp(slots_[at].element->name, name) != 0)) {
        at = (at + 1) & (slotCount_ - 1);
    }
    return slots_ + at;
}

bool NameIndex::makeRoom() {
    if ((used_ + 1) * 2 <= slotCount_) {
        return true;
    }
    Slot *const before = slots_;
    const std::size_t beforeCount = slotCount_;
    const std::size_t count = beforeCount == 0 ? kFirstSlots : beforeCount * 2;
    auto *slots = static_cast<Slot *>(calloc(count, sizeof(Slot)));
    if (slots == nullptr) {
        return false;
    }
    slots_ = slots;
    slotCount_ = count;
    for (std::size_t i = 0; i < beforeCount; ++i) {
        if (before[i].head != nullptr) {
            *place(before[i].head, before[i].element->name) = before[i];
        }
    }
    free(before);
    return true;
}

uci_element *NameIndex::find(const uci_list *head, const char *name) const {
    return slotCount_ == 0 ? nullptr : place(head, name)->element;
}

bool NameIndex::add(const uci_list *head, uci_element *element) {
    if (!makeRoom()) {
        return false;
    }
    Slot *slot = place(head, element->name);
    if (slot->head == nullptr) {
        *slot = {head, element};
        ++used_;
    }
    return true;
}

} // namespace frruci::uci

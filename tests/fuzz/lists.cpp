// SPDX-License-Identifier: Apache-2.0
#include "tests/fuzz/lists.h"

#include <cstdint>
#include <cstdlib>

#include "common/dlist.h"
#include "tests/fuzz/request.h"

namespace {

using fuzz::insist;

constexpr std::size_t kMaxLists = 8192;

dlist *lists[kMaxLists];
std::size_t listCount = 0;

void release(dlist *list) {
    while (list->head != nullptr) {
        insist(dlistDelete(list, list->head) == 0);
    }
    free(list);
}

void check(const dlist &list) {
    uint64_t count = 0;
    for (const dlist_node *node = list.head; node != nullptr; node = node->next) {
        insist(node->next == nullptr ? node == list.tail : node->next->prev == node);
        ++count;
    }
    insist(count == list.count);
}

} // namespace

dlist *dlistCreate(dlist_destroy_fn data_destroy, dlist_cmp_fn data_cmp) {
    auto *list = static_cast<dlist *>(calloc(1, sizeof(dlist)));
    insist(list != nullptr && listCount < kMaxLists);
    list->data_destroy = data_destroy;
    list->data_cmp = data_cmp;
    lists[listCount++] = list;
    return list;
}

void dlistDestroy(dlist *list) {
    for (std::size_t i = 0; i < listCount; ++i) {
        if (lists[i] == list) {
            release(list);
            lists[i] = lists[--listCount];
            return;
        }
    }
    // Else it is the handle that a new key has damaged: given up unread.
}

namespace fuzz {

void checkLists() {
    for (std::size_t i = 0; i < listCount; ++i) {
        check(*lists[i]);
    }
}

void releaseLists() {
    while (listCount > 0) {
        release(lists[--listCount]);
    }
}

} // namespace fuzz

// SPDX-License-Identifier: Apache-2.0
// The doubly linked list: plain records from malloc, one place each that links and unlinks a node.

#include "common/dlist.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>

#include "common/status.h"

namespace {

using frruci::common::kInvalidArgument;
using frruci::common::kSuccess;

constexpr int32_t kNoNode = 1; // memory is exhausted: a code of the list alone
constexpr int32_t kStopVisit = 2;

// Hosts read these records directly.
static_assert(sizeof(dlist_node) == 24 && offsetof(dlist_node, prev) == 0 &&
              offsetof(dlist_node, next) == 8 && offsetof(dlist_node, data) == 16);
static_assert(sizeof(dlist) == 40 && offsetof(dlist, head) == 0 && offsetof(dlist, tail) == 8 &&
              offsetof(dlist, count) == 16 && offsetof(dlist, data_destroy) == 24 &&
              offsetof(dlist, data_cmp) == 32);

/// What a function requires of its arguments, and the number of its report.
struct Requirement {
    const char *function;
    int number; // fixed by the interface
    const char *condition;
};

constexpr const char *kListAndData = "thiz != NULL && data != NULL";
constexpr const char *kList = "thiz != NULL";

constexpr Requirement kFindByData = {"dlistFindByData", 104, kListAndData};
constexpr Requirement kFindByKey = {"dlistFindByKey", 135,
                                    "thiz != NULL && cmp != NULL && key != NULL"};
constexpr Requirement kHead = {"dlistHead", 165, kList};
constexpr Requirement kTail = {"dlistTail", 185, kList};
constexpr Requirement kAddSort = {"dlistAddSort", 209, kListAndData};
constexpr Requirement kAddSortNode = {"dlistAddSort", 212, "new_node != NULL"};
constexpr Requirement kInsertAfter = {"dlistInsertAfter", 272, kListAndData};
constexpr Requirement kInsertAfterNode = {"dlistInsertAfter", 275, "nn != NULL"};
constexpr Requirement kAppend = {"dlistAppend", 349, kList};
constexpr Requirement kDelete = {"dlistDelete", 370, kList};
constexpr Requirement kSort = {"dlistSort", 422, "thiz != NULL && data_sort != NULL"};
constexpr Requirement kLength = {"dlistLength", 495, kList};
constexpr Requirement kVisit = {"dlistVisit", 520, "thiz != NULL && visit != NULL"};

/// Passes on whether the requirement is met; reports it when it is not.
bool require(bool met, const Requirement &requirement) {
    if (!met) {
        (void)printf("%s:%d %s failed.\r\n", requirement.function, requirement.number,
                     requirement.condition);
    }
    return met;
}

dlist_node *makeNode(void *data) {
    auto *node = static_cast<dlist_node *>(calloc(1, sizeof(dlist_node)));
    if (node != nullptr) {
        node->data = data;
    }
    return node;
}

/// Links node before next, or at the tail when next is null.
void linkBefore(dlist *list, dlist_node *next, dlist_node *node) {
    dlist_node *prev = next != nullptr ? next->prev : list->tail;
    node->prev = prev;
    node->next = next;
    (prev != nullptr ? prev->next : list->head) = node;
    (next != nullptr ? next->prev : list->tail) = node;
    ++list->count;
}

void unlinkNode(dlist *list, dlist_node *node) {
    (node->prev != nullptr ? node->prev->next : list->head) = node->next;
    (node->next != nullptr ? node->next->prev : list->tail) = node->prev;
    node->prev = nullptr;
    node->next = nullptr;
}

/// The first node that data must precede by cmp; null when there is none.
dlist_node *successor(const dlist *list, dlist_cmp_fn cmp, void *data) {
    dlist_node *node = list->head;
    while (node != nullptr && cmp(data, node->data) >= 0) {
        node = node->next;
    }
    return node;
}

} // namespace

dlist *dlistCreate(dlist_destroy_fn data_destroy, dlist_cmp_fn data_cmp) {
    auto *list = static_cast<dlist *>(calloc(1, sizeof(dlist)));
    if (list != nullptr) {
        list->data_destroy = data_destroy;
        list->data_cmp = data_cmp;
    }
    return list;
}

dlist_node *dlistFindByData(dlist *list, void *data) {
    if (!require(list != nullptr && data != nullptr, kFindByData)) {
        return nullptr;
    }
    dlist_node *node = list->head;
    while (node != nullptr && node->data != data) {
        node = node->next;
    }
    return node;
}

dlist_node *dlistFindByKey(dlist *list, dlist_keycmp_fn keycmp, void *key) {
    if (!require(list != nullptr && keycmp != nullptr && key != nullptr, kFindByKey)) {
        return nullptr;
    }
    dlist_node *node = list->head;
    while (node != nullptr && keycmp(key, node->data) != 0) {
        node = node->next;
    }
    return node;
}

dlist_node *dlistHead(dlist *list) {
    return require(list != nullptr, kHead) ? list->head : nullptr;
}

dlist_node *dlistTail(dlist *list) {
    return require(list != nullptr, kTail) ? list->tail : nullptr;
}

int32_t dlistAddSort(dlist *list, void *data) {
    if (!require(list != nullptr && data != nullptr, kAddSort)) {
        return kInvalidArgument;
    }
    dlist_node *node = makeNode(data);
    if (!require(node != nullptr, kAddSortNode)) {
        return kNoNode;
    }
    dlist_node *next = list->data_cmp != nullptr ? successor(list, list->data_cmp, data) : nullptr;
    linkBefore(list, next, node);
    return kSuccess;
}

int32_t dlistInsertAfter(dlist *list, dlist_node *node, void *data) {
    if (!require(list != nullptr && data != nullptr, kInsertAfter)) {
        return kInvalidArgument;
    }
    dlist_node *added = makeNode(data);
    if (!require(added != nullptr, kInsertAfterNode)) {
        return kNoNode;
    }
    linkBefore(list, node != nullptr ? node->next : list->head, added);
    return kSuccess;
}

int32_t dlistPrepend(dlist *list, void *data) {
    return dlistInsertAfter(list, nullptr, data);
}

int32_t dlistAppend(dlist *list, void *data) {
    if (!require(list != nullptr, kAppend)) {
        return kInvalidArgument;
    }
    return dlistInsertAfter(list, list->tail, data);
}

int32_t dlistDelete(dlist *list, dlist_node *node) {
    if (!require(list != nullptr, kDelete)) {
        return kInvalidArgument;
    }
    if (node == nullptr) {
        return kSuccess;
    }
    unlinkNode(list, node);
    if (list->data_destroy != nullptr) {
        list->data_destroy(node->data);
    }
    free(node);
    --list->count;
    return kSuccess;
}

int32_t dlistSort(dlist *list, dlist_cmp_fn cmp) {
    if (!require(list != nullptr && cmp != nullptr, kSort)) {
        return kInvalidArgument;
    }
    dlist_node *moving = list->head;
    list->head = nullptr;
    list->tail = nullptr;
    list->count = 0;
    while (moving != nullptr) {
        dlist_node *rest = moving->next;
        linkBefore(list, successor(list, cmp, moving->data), moving);
        moving = rest;
    }
    return kSuccess;
}

uint64_t dlistLength(dlist *list) {
    return require(list != nullptr, kLength) ? list->count : 0;
}

int32_t dlistVisit(dlist *list, dlist_visit_fn visit, void *ctx) {
    if (!require(list != nullptr && visit != nullptr, kVisit)) {
        return kInvalidArgument;
    }
    int32_t result = kSuccess;
    for (dlist_node *node = list->head; node != nullptr; node = node->next) {
        result = visit(ctx, node->data);
        if (result == kStopVisit) {
            break; // the visitor may have deleted the node
        }
    }
    return result;
}

// Fixed by the interface: releases nothing.
void dlistDestroy(dlist *list) {
    if (list == nullptr) {
        abort();
    }
}

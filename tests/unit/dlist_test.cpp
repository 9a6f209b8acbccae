// SPDX-License-Identifier: Apache-2.0
// The list: records, order, reports of misuse, and a long random comparison with std::list.

#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <gtest/gtest.h>
#include <iterator>
#include <list>
#include <random>
#include <string>
#include <vector>

#include "common/dlist.h"
#include "tests/support/no_memory.h"

namespace {

struct Item {
    int key;
    int serial;
};

int32_t compareKeys(void *a, void *b) {
    return static_cast<Item *>(a)->key - static_cast<Item *>(b)->key;
}

int32_t compareKeysDown(void *a, void *b) {
    return -compareKeys(a, b);
}

int32_t matchKey(void *key, void *data) {
    return *static_cast<int *>(key) == static_cast<Item *>(data)->key ? 0 : 7;
}

/// A list that a test takes down again, which the library never does.
class OwnList {
public:
    explicit OwnList(dlist_cmp_fn cmp = nullptr, dlist_destroy_fn destroy = nullptr)
        : list_(dlistCreate(destroy, cmp)) {}
    ~OwnList() {
        while (list_->head != nullptr) {
            (void)dlistDelete(list_, list_->head);
        }
        free(list_);
    }
    OwnList(const OwnList &) = delete;
    OwnList &operator=(const OwnList &) = delete;
    operator dlist *() const { return list_; }
    dlist *operator->() const { return list_; }

private:
    dlist *list_;
};

/// The data from head to tail; checks every link and the count on the way.
std::vector<void *> contents(const dlist *list) {
    std::vector<void *> data;
    const dlist_node *before = nullptr;
    for (const dlist_node *node = list->head; node != nullptr; node = node->next) {
        EXPECT_EQ(node->prev, before);
        data.push_back(node->data);
        before = node;
    }
    EXPECT_EQ(list->tail, before);
    EXPECT_EQ(list->count, data.size());
    return data;
}

std::string keys(const dlist *list) {
    std::string text;
    for (const void *data : contents(list)) {
        text += std::to_string(static_cast<const Item *>(data)->key) + " ";
    }
    return text;
}

template <typename Call> std::string printed(Call call) {
    testing::internal::CaptureStdout();
    call();
    return testing::internal::GetCapturedStdout();
}

TEST(Dlist, RecordsHaveTheirFieldsInOrder) {
    EXPECT_EQ(offsetof(dlist_node, prev), 0U);
    EXPECT_EQ(offsetof(dlist_node, next), 8U);
    EXPECT_EQ(offsetof(dlist_node, data), 16U);
    EXPECT_EQ(offsetof(dlist, head), 0U);
    EXPECT_EQ(offsetof(dlist, tail), 8U);
    EXPECT_EQ(offsetof(dlist, count), 16U);
    EXPECT_EQ(offsetof(dlist, data_destroy), 24U);
    EXPECT_EQ(offsetof(dlist, data_cmp), 32U);
}

TEST(Dlist, CreateMakesAnEmptyListWithItsFunctions) {
    const OwnList list(compareKeys, free);
    ASSERT_NE(static_cast<dlist *>(list), nullptr);
    EXPECT_EQ(list->head, nullptr);
    EXPECT_EQ(list->tail, nullptr);
    EXPECT_EQ(list->count, 0U);
    EXPECT_EQ(list->data_destroy, free);
    EXPECT_EQ(list->data_cmp, compareKeys);
}

TEST(Dlist, MisuseIsReportedWithFixedNumbers) {
    const OwnList list;
    Item item = {1, 0};
    int key = 1;
    dlist_visit_fn visit = [](void *, void *) { return int32_t{0}; };
    const char *const listAndData = " thiz != NULL && data != NULL failed.\r\n";
    const char *const onlyList = " thiz != NULL failed.\r\n";
    const std::string byKey =
        "dlistFindByKey:135 thiz != NULL && cmp != NULL && key != NULL failed.\r\n";

    EXPECT_EQ(printed([&] { EXPECT_EQ(dlistFindByData(nullptr, &item), nullptr); }),
              std::string("dlistFindByData:104") + listAndData);
    EXPECT_EQ(printed([&] { EXPECT_EQ(dlistFindByData(list, nullptr), nullptr); }),
              std::string("dlistFindByData:104") + listAndData);
    EXPECT_EQ(printed([&] { EXPECT_EQ(dlistFindByKey(nullptr, matchKey, &key), nullptr); }), byKey);
    EXPECT_EQ(printed([&] { EXPECT_EQ(dlistFindByKey(list, nullptr, &key), nullptr); }), byKey);
    EXPECT_EQ(printed([&] { EXPECT_EQ(dlistFindByKey(list, matchKey, nullptr), nullptr); }), byKey);
    EXPECT_EQ(printed([&] { EXPECT_EQ(dlistHead(nullptr), nullptr); }),
              std::string("dlistHead:165") + onlyList);
    EXPECT_EQ(printed([&] { EXPECT_EQ(dlistTail(nullptr), nullptr); }),
              std::string("dlistTail:185") + onlyList);
    EXPECT_EQ(printed([&] { EXPECT_EQ(dlistAddSort(nullptr, &item), 3); }),
              std::string("dlistAddSort:209") + listAndData);
    EXPECT_EQ(printed([&] { EXPECT_EQ(dlistAddSort(list, nullptr), 3); }),
              std::string("dlistAddSort:209") + listAndData);
    EXPECT_EQ(printed([&] { EXPECT_EQ(dlistInsertAfter(nullptr, nullptr, &item), 3); }),
              std::string("dlistInsertAfter:272") + listAndData);
    EXPECT_EQ(printed([&] { EXPECT_EQ(dlistInsertAfter(list, nullptr, nullptr), 3); }),
              std::string("dlistInsertAfter:272") + listAndData);
    EXPECT_EQ(printed([&] { EXPECT_EQ(dlistDelete(nullptr, nullptr), 3); }),
              std::string("dlistDelete:370") + onlyList);
    EXPECT_EQ(printed([&] { EXPECT_EQ(dlistSort(nullptr, compareKeys), 3); }),
              "dlistSort:422 thiz != NULL && data_sort != NULL failed.\r\n");
    EXPECT_EQ(printed([&] { EXPECT_EQ(dlistSort(list, nullptr), 3); }),
              "dlistSort:422 thiz != NULL && data_sort != NULL failed.\r\n");
    EXPECT_EQ(printed([&] { EXPECT_EQ(dlistLength(nullptr), 0U); }),
              std::string("dlistLength:495") + onlyList);
    EXPECT_EQ(printed([&] { EXPECT_EQ(dlistVisit(nullptr, visit, nullptr), 3); }),
              "dlistVisit:520 thiz != NULL && visit != NULL failed.\r\n");
    EXPECT_EQ(printed([&] { EXPECT_EQ(dlistVisit(list, nullptr, nullptr), 3); }),
              "dlistVisit:520 thiz != NULL && visit != NULL failed.\r\n");
    EXPECT_EQ(list->count, 0U);
}

TEST(Dlist, PrependAndAppendReportThroughInsertAfter) {
    const OwnList list;
    Item item = {1, 0};
    const std::string throughInsert =
        "dlistInsertAfter:272 thiz != NULL && data != NULL failed.\r\n";
    EXPECT_EQ(printed([&] { EXPECT_EQ(dlistPrepend(nullptr, &item), 3); }), throughInsert);
    EXPECT_EQ(printed([&] { EXPECT_EQ(dlistPrepend(list, nullptr), 3); }), throughInsert);
    EXPECT_EQ(printed([&] { EXPECT_EQ(dlistAppend(list, nullptr), 3); }), throughInsert);
    EXPECT_EQ(printed([&] { EXPECT_EQ(dlistAppend(nullptr, &item), 3); }),
              "dlistAppend:349 thiz != NULL failed.\r\n");
}

TEST(Dlist, ExhaustedMemoryIsReportedAndChangesNothing) {
    const OwnList list;
    Item item = {1, 0};
    const auto withoutMemory = [&](auto call) {
        return printed([&] {
            const stage::NoMemory none(1);
            EXPECT_EQ(call(), 1);
        });
    };
    {
        const stage::NoMemory none(1);
        EXPECT_EQ(dlistCreate(nullptr, nullptr), nullptr);
    }
    EXPECT_EQ(withoutMemory([&] { return dlistAddSort(list, &item); }),
              "dlistAddSort:212 new_node != NULL failed.\r\n");
    const std::string insert = "dlistInsertAfter:275 nn != NULL failed.\r\n";
    EXPECT_EQ(withoutMemory([&] { return dlistInsertAfter(list, nullptr, &item); }), insert);
    EXPECT_EQ(withoutMemory([&] { return dlistPrepend(list, &item); }), insert);
    EXPECT_EQ(withoutMemory([&] { return dlistAppend(list, &item); }), insert);
    EXPECT_TRUE(contents(list).empty());
}

TEST(Dlist, GoodCallsPrintNothing) {
    const OwnList list;
    Item item = {1, 0};
    EXPECT_EQ(printed([&] {
                  EXPECT_EQ(dlistAppend(list, &item), 0);
                  EXPECT_EQ(dlistDelete(list, nullptr), 0);
                  EXPECT_EQ(dlistLength(list), 1U);
                  EXPECT_EQ(dlistHead(list), dlistTail(list));
                  int other = 0;
                  EXPECT_EQ(dlistFindByData(list, &other), nullptr);
              }),
              "");
}

TEST(Dlist, AddSortPutsEqualOnesBehindEachOther) {
    const OwnList list(compareKeys);
    Item items[] = {
        {5, 1},
        {3, 0},
        {5, 2},
        {1, 0}
    };
    for (Item &item : items) {
        EXPECT_EQ(dlistAddSort(list, &item), 0);
    }
    EXPECT_EQ(contents(list), (std::vector<void *>{&items[3], &items[1], &items[0], &items[2]}));
}

TEST(Dlist, AddSortWithoutAnOrderAppends) {
    const OwnList list;
    Item items[] = {
        {5, 0},
        {3, 0},
        {4, 0}
    };
    for (Item &item : items) {
        EXPECT_EQ(dlistAddSort(list, &item), 0);
    }
    EXPECT_EQ(keys(list), "5 3 4 ");
}

TEST(Dlist, InsertAfterANullNodeIsTheHead) {
    const OwnList list;
    Item items[] = {
        {1, 0},
        {2, 0},
        {3, 0},
        {4, 0}
    };
    EXPECT_EQ(dlistInsertAfter(list, nullptr, &items[0]), 0);
    EXPECT_EQ(list->head, list->tail);
    EXPECT_EQ(list->head->data, &items[0]);
    EXPECT_EQ(dlistInsertAfter(list, nullptr, &items[1]), 0);
    EXPECT_EQ(dlistInsertAfter(list, list->head, &items[2]), 0);
    EXPECT_EQ(dlistInsertAfter(list, list->tail, &items[3]), 0);
    EXPECT_EQ(keys(list), "2 3 1 4 ");
}

TEST(Dlist, DeleteFixesBothEnds) {
    const OwnList list;
    Item items[] = {
        {1, 0},
        {2, 0},
        {3, 0}
    };
    for (Item &item : items) {
        EXPECT_EQ(dlistAppend(list, &item), 0);
    }
    EXPECT_EQ(dlistDelete(list, list->head->next), 0);
    EXPECT_EQ(keys(list), "1 3 ");
    EXPECT_EQ(dlistDelete(list, list->head), 0);
    EXPECT_EQ(keys(list), "3 ");
    EXPECT_EQ(dlistDelete(list, list->tail), 0);
    EXPECT_EQ(keys(list), "");
    EXPECT_EQ(list->head, nullptr);
    EXPECT_EQ(dlistDelete(list, nullptr), 0);
}

/// What data_destroy saw of its list when it was called.
struct Witness {
    dlist *list;
    uint64_t countThen;
    dlist_node *headThen;
    int calls;
    const dlist_node *own = nullptr; // the node that is being deleted
    bool linksCleared = false;
};

void witness(void *data) {
    auto *seen = static_cast<Witness *>(data);
    seen->countThen = seen->list->count;
    seen->headThen = seen->list->head;
    seen->linksCleared =
        seen->own != nullptr && seen->own->prev == nullptr && seen->own->next == nullptr;
    ++seen->calls;
}

TEST(Dlist, DataAreReleasedAfterUnlinkingAndBeforeCountingDown) {
    const OwnList list(nullptr, witness);
    Witness first = {list, 0, nullptr, 0};
    Witness second = {list, 0, nullptr, 0};
    EXPECT_EQ(dlistAppend(list, &first), 0);
    EXPECT_EQ(dlistAppend(list, &second), 0);
    dlist_node *const left = list->tail;
    first.own = list->head;
    EXPECT_EQ(dlistDelete(list, list->head), 0);
    EXPECT_TRUE(first.linksCleared);
    EXPECT_EQ(first.calls, 1);
    EXPECT_EQ(first.countThen, 2U);
    EXPECT_EQ(first.headThen, left);
    EXPECT_EQ(second.calls, 0);
    EXPECT_EQ(list->count, 1U);
}

TEST(Dlist, DestroyReleasesNothing) {
    const OwnList list(nullptr, witness);
    Witness seen = {list, 0, nullptr, 0};
    EXPECT_EQ(dlistAppend(list, &seen), 0);
    EXPECT_EQ(printed([&] { dlistDestroy(list); }), "");
    EXPECT_EQ(seen.calls, 0);
    EXPECT_EQ(contents(list), (std::vector<void *>{&seen}));
}

TEST(DlistDeathTest, DestroyOfANullListEndsTheProcess) {
    // Nothing is printed; on another machine the emulator itself reports the signal.
    EXPECT_EXIT(dlistDestroy(nullptr), testing::KilledBySignal(SIGABRT), "^(qemu: [^\n]*\n)?$");
}

TEST(Dlist, FindByKeyHandsTheKeyFirst) {
    const OwnList list;
    Item items[] = {
        {4, 0},
        {9, 0},
        {9, 1}
    };
    for (Item &item : items) {
        EXPECT_EQ(dlistAppend(list, &item), 0);
    }
    int nine = 9;
    int five = 5;
    EXPECT_EQ(dlistFindByKey(list, matchKey, &nine), list->head->next);
    EXPECT_EQ(dlistFindByKey(list, matchKey, &five), nullptr);
    EXPECT_EQ(dlistFindByData(list, &items[2]), list->tail);
    // Matches only when the key comes first: no item lies at the key's address.
    dlist_keycmp_fn isNine = [](void *key, void *data) {
        return *static_cast<int *>(key) == 9 && static_cast<Item *>(data)->key == 4 ? 0 : 1;
    };
    EXPECT_EQ(dlistFindByKey(list, isNine, &nine), list->head);
}

struct Walk {
    std::vector<int> seen;
    int stopAt;
    int32_t result;
};

int32_t step(void *ctx, void *data) {
    auto *walk = static_cast<Walk *>(ctx);
    walk->seen.push_back(static_cast<Item *>(data)->key);
    return walk->seen.back() == walk->stopAt ? 2 : walk->result;
}

TEST(Dlist, VisitEndsWithTwoOnly) {
    const OwnList list;
    Walk none = {{}, 0, 5};
    EXPECT_EQ(dlistVisit(list, step, &none), 0);
    Item items[] = {
        {1, 0},
        {2, 0},
        {3, 0}
    };
    for (Item &item : items) {
        EXPECT_EQ(dlistAppend(list, &item), 0);
    }
    for (const int32_t result : {0, 1, 3, -2}) {
        Walk all = {{}, 0, result};
        EXPECT_EQ(dlistVisit(list, step, &all), result);
        EXPECT_EQ(all.seen, (std::vector<int>{1, 2, 3}));
    }
    Walk first = {{}, 1, 0};
    EXPECT_EQ(dlistVisit(list, step, &first), 2);
    EXPECT_EQ(first.seen, (std::vector<int>{1}));
    Walk second = {{}, 2, 0};
    EXPECT_EQ(dlistVisit(list, step, &second), 2);
    EXPECT_EQ(second.seen, (std::vector<int>{1, 2}));
}

int32_t takeOutAndStop(void *ctx, void *) {
    auto *list = static_cast<dlist *>(ctx);
    (void)dlistDelete(list, list->head);
    return 2;
}

TEST(Dlist, AVisitThatStopsLooksAtItsNodeNoMore) {
    const OwnList list;
    Item items[] = {
        {1, 0},
        {2, 0}
    };
    for (Item &item : items) {
        EXPECT_EQ(dlistAppend(list, &item), 0);
    }
    EXPECT_EQ(dlistVisit(list, takeOutAndStop, list), 2); // sanitizers see a look past the end
    EXPECT_EQ(keys(list), "2 ");
}

TEST(Dlist, AVisitorMayAppend) {
    const OwnList list;
    Item items[] = {
        {1, 0},
        {2, 0}
    };
    EXPECT_EQ(dlistAppend(list, &items[0]), 0);
    struct Growing {
        dlist *list;
        Item *added;
        int calls;
    } growing = {list, &items[1], 0};
    dlist_visit_fn grow = [](void *ctx, void *) {
        auto *self = static_cast<Growing *>(ctx);
        return ++self->calls == 1 ? dlistAppend(self->list, self->added) : 9;
    };
    EXPECT_EQ(dlistVisit(list, grow, &growing), 9); // the next node is taken after the call
    EXPECT_EQ(growing.calls, 2);
}

TEST(Dlist, SortIsStableAndKeepsTheNodes) {
    const OwnList list(compareKeysDown);
    Item items[] = {
        {2, 0},
        {1, 0},
        {2, 1},
        {1, 1},
        {0, 0}
    };
    for (Item &item : items) {
        EXPECT_EQ(dlistAppend(list, &item), 0);
    }
    dlist_node *const last = list->tail;
    EXPECT_EQ(dlistSort(list, compareKeys), 0);
    EXPECT_EQ(contents(list),
              (std::vector<void *>{&items[4], &items[1], &items[3], &items[0], &items[2]}));
    EXPECT_EQ(list->head, last);
    EXPECT_EQ(list->data_cmp, compareKeysDown);
}

/// The list and a std::list that go through the same operations.
class Twins {
public:
    explicit Twins(uint32_t seed) : random_(seed), list_(compareKeys) {}

    void operate() {
        switch (upTo(12)) {
        case 0:
            return append();
        case 1:
            return prepend();
        case 2:
        case 3:
            return addSort();
        case 4:
            return insertAfter();
        case 5:
        case 6:
        case 7:
            return erase();
        case 8:
            return sort();
        case 9:
            return findByKey();
        case 10:
            return findByData();
        default:
            return visit();
        }
    }

    void compare() {
        const dlist_node *node = list_->head;
        const dlist_node *before = nullptr;
        for (const Item *item : model_) {
            ASSERT_NE(node, nullptr);
            ASSERT_EQ(node->data, item);
            ASSERT_EQ(node->prev, before);
            before = node;
            node = node->next;
        }
        ASSERT_EQ(node, nullptr);
        ASSERT_EQ(dlistHead(list_), list_->head);
        ASSERT_EQ(dlistTail(list_), before);
        ASSERT_EQ(dlistLength(list_), model_.size());
    }

private:
    int upTo(int limit) { return static_cast<int>(random_() % static_cast<uint32_t>(limit)); }

    Item *newItem() {
        if (model_.size() > 60) {
            erase();
        }
        items_.push_back({upTo(12), static_cast<int>(items_.size())});
        return &items_.back();
    }

    /// The same place in both, any one; both ends (null, end) for an empty list.
    std::pair<dlist_node *, std::list<Item *>::iterator> anyPlace() {
        dlist_node *node = list_->head;
        auto place = model_.begin();
        for (int i = model_.empty() ? 0 : upTo(static_cast<int>(model_.size())); i > 0; --i) {
            node = node->next;
            ++place;
        }
        return {node, place};
    }

    void append() {
        Item *item = newItem();
        ASSERT_EQ(dlistAppend(list_, item), 0);
        model_.push_back(item);
    }
    void prepend() {
        Item *item = newItem();
        ASSERT_EQ(dlistPrepend(list_, item), 0);
        model_.push_front(item);
    }
    void addSort() {
        Item *item = newItem();
        ASSERT_EQ(dlistAddSort(list_, item), 0);
        auto place = model_.begin(); // the list need not be sorted
        while (place != model_.end() && (*place)->key <= item->key) {
            ++place;
        }
        model_.insert(place, item);
    }
    void insertAfter() {
        Item *item = newItem();
        const auto [node, place] = anyPlace();
        ASSERT_EQ(dlistInsertAfter(list_, node, item), 0);
        model_.insert(node == nullptr ? model_.begin() : std::next(place), item);
    }
    void erase() {
        const auto [node, place] = anyPlace();
        ASSERT_EQ(dlistDelete(list_, node), 0);
        if (node != nullptr) {
            model_.erase(place);
        }
    }
    void sort() {
        ASSERT_EQ(dlistSort(list_, compareKeys), 0);
        model_.sort([](const Item *a, const Item *b) { return a->key < b->key; }); // is stable
    }
    void findByKey() {
        int key = upTo(14);
        const dlist_node *node = dlistFindByKey(list_, matchKey, &key);
        const Item *expected = nullptr;
        for (const Item *item : model_) {
            if (item->key == key) {
                expected = item;
                break;
            }
        }
        ASSERT_EQ(node == nullptr ? nullptr : node->data, expected);
    }
    void findByData() {
        const auto [node, place] = anyPlace();
        if (node != nullptr) {
            ASSERT_EQ(dlistFindByData(list_, *place), node);
        }
        ASSERT_EQ(dlistFindByData(list_, this), nullptr);
    }
    void visit() {
        Walk walk = {{}, upTo(14), 0};
        const int32_t result = dlistVisit(list_, step, &walk);
        std::vector<int> expected;
        int32_t expectedResult = 0;
        for (const Item *item : model_) {
            expected.push_back(item->key);
            if (item->key == walk.stopAt) {
                expectedResult = 2;
                break;
            }
        }
        ASSERT_EQ(walk.seen, expected);
        ASSERT_EQ(result, expectedResult);
    }

    std::mt19937 random_;
    OwnList list_;
    std::list<Item *> model_;
    std::deque<Item> items_; // keeps its elements' addresses
};

TEST(Dlist, BehavesLikeAStandardListThroughRandomOperations) {
    constexpr int kOperations = 30000;
    for (const uint32_t seed : {1U, 2U, 3U, 4U, 20250101U}) {
        Twins twins(seed);
        for (int i = 0; i < kOperations; ++i) {
            twins.operate();
            twins.compare();
            ASSERT_FALSE(HasFatalFailure()) << "seed " << seed << ", operation " << i;
        }
    }
}

} // namespace

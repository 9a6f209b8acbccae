// SPDX-License-Identifier: Apache-2.0
// The store while memory runs out: every allocation of every operation fails once. Nothing crashes,
// the file is the old one or the new one, and what is reported as stored is stored.

#include <functional>

#include "common/frr_uci.h"
#include "tests/support/no_memory.h"
#include "tests/unit/store_world.h"

namespace {

using store::config;
using store::pending;

constexpr const char *kFile = "config a 'x'\n\toption o 'v'\n\tlist l '1'\nconfig b\n";
constexpr const char *kPendingLines = "p.x.m='1'\n|p.x.l='2'\n|p.x.o='w'\n|p.x.k='1'\n"
                                      "+p.cfg03abcd='t'\np.z='t'\n@p.z='zz'\np.x='aa'\n";
constexpr const char *kWithPending = "aa x(o=[v|w],l=[1|2],m=1,k=[1]) b *() t *() t zz()";
constexpr int kOutOfMemory = 1;

class UciOutOfMemory : public store::World {
protected:
    /// Runs work with each allocation failing in turn until none is left to fail.
    static void failEach(const std::function<int32_t()> &work,
                         const std::function<void(int32_t)> &check) {
        int failures = 0;
        for (int number = 1;; ++number) {
            store::write(config("p"), kFile);
            store::write(pending("p"), kPendingLines);
            int32_t code = 0;
            {
                const stage::NoMemory none(number);
                code = work();
            }
            check(code);
            if (code == 0) {
                break;
            }
            ++failures;
            ASSERT_EQ(code, kOutOfMemory) << "allocation " << number;
            ASSERT_LT(number, 10000);
        }
        EXPECT_GT(failures, 10) << "allocations are not made to fail";
    }
};

TEST_F(UciOutOfMemory, get) {
    char value[64];
    failEach([&] { return frr_uci_get("p", "x", "m", value, sizeof value); },
             [&](int32_t code) { EXPECT_STREQ(value, code == 0 ? "1" : ""); });
}

TEST_F(UciOutOfMemory, setByName) {
    failEach([] { return frr_uci_set("p", "x", "n", "new"); },
             [](int32_t code) {
                 const std::string committed = store::loaded("/etc/config/p");
                 if (code == 0) {
                     EXPECT_EQ(committed,
                               "aa x(o=[v|w],l=[1|2],m=1,k=[1],n=new) b *() t *() t zz()");
                 } else {
                     EXPECT_EQ(committed, "a x(o=v,l=[1]) b *()");
                     EXPECT_EQ(store::read(pending("p")).find(kPendingLines), 0U)
                         << "a pending change was lost";
                 }
             });
}

TEST_F(UciOutOfMemory, setByPath) {
    // Written twice: memory may run out at the second time, with the change in place.
    failEach([] { return frr_uci_set("/etc/config/p", "x", "n", "new"); },
             [](int32_t code) {
                 const std::string committed = store::loaded("/etc/config/p");
                 EXPECT_TRUE(committed == "a x(o=v,l=[1],n=new) b *()" ||
                             (code != 0 && committed == "a x(o=v,l=[1]) b *()"))
                     << committed;
             });
}

TEST_F(UciOutOfMemory, commitsWhatIsPending) {
    failEach(
        [] {
            store::Context context;
            uci_package *package = nullptr;
            if (context.get() == nullptr) {
                return static_cast<int>(UCI_ERR_MEM);
            }
            const int code = context.load("p", package);
            return code != UCI_OK ? code : uci_commit(context.get(), &package, false);
        },
        [](int32_t code) {
            EXPECT_EQ(store::loaded("p"), kWithPending);
            EXPECT_EQ(store::read(pending("p")), code == 0 ? "" : kPendingLines);
        });
}

TEST_F(UciOutOfMemory, addGivesNoSectionOrOne) {
    int notFound = 0;
    for (int number = 1; number < 400; ++number) {
        store::write(config("p"), kFile);
        int32_t code = 0;
        {
            const stage::NoMemory none(number);
            code = frr_uci_add_section("p", "cfg", "new");
        }
        EXPECT_TRUE(code == 0 || code == 1 || code == 3) << code; // 3: the load failed
        notFound += code == 3 ? 1 : 0;
        const std::string committed = store::loaded("/etc/config/p");
        EXPECT_TRUE(committed == "a x(o=v,l=[1]) b *()" ||
                    committed == "a x(o=v,l=[1]) b *() new *()")
            << committed;
        std::filesystem::remove_all(store::kPendingFolder);
    }
    EXPECT_GT(notFound, 10);
}

} // namespace

// SPDX-License-Identifier: Apache-2.0
// What the host runs once: folders and permissions, and the standard views.

#include <cstdint>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/no_memory.h"
#include "tests/support/stage.h"
#include "vty/frr_util.h"

namespace {

using Entries = std::vector<std::pair<std::string, std::string>>;

const Entries &standardViews() {
    static const Entries views = {
        {"enable_view",                "enable"                                              },
        {"configure_view",             "enable\nconfigure"                                   },
        {"interface_view",             "enable\nconfigure\ninterface eth1.<vid>"             },
        {"interface_v_view",           "enable\nconfigure\ninterface eth0.<vid>"             },
        {"keychain_keyid_keystr_view", "enable\nconfigure\nkey chain <keychain>\nkey <keyid>"},
    };
    return views;
}

class Startup : public testing::Test {
protected:
    void TearDown() override {
        dropRegistry(gPreCmdEntryList);
        gPreCmdEntryList = nullptr;
    }

    static void dropRegistry(dlist *registry) {
        while (registry != nullptr && registry->head != nullptr) {
            free(static_cast<FrrVtyView *>(registry->head->data)->entry_text);
            (void)dlistDelete(registry, registry->head);
        }
        free(registry);
    }
    static Entries registered() {
        Entries entries;
        for (const dlist_node *node = gPreCmdEntryList->head; node != nullptr; node = node->next) {
            const auto *view = static_cast<const FrrVtyView *>(node->data);
            entries.emplace_back(view->name, view->entry_text);
        }
        return entries;
    }

    stage::Stage stage_;
};

TEST_F(Startup, FoldersAndPermissionsInOrder) {
    stage_.shell("", {.status = 1}); // failing commands change nothing
    EXPECT_EQ(frr_process_init(), 0);
    EXPECT_STREQ(stage_.trace(), "system: \"[ ! -d /var/tmp/frr ] && mkdir -p /var/tmp/frr \"\n"
                                 "sleep: 1\n"
                                 "system: chmod -R 755 /tmp/vtyv\n"
                                 "system: chmod 755 /tmp/zebra*\n"
                                 "system: chmod 755 /tmp/zserv*\n"
                                 "system: chmod 755 /tmp/ospfd*\n"
                                 "system: chmod 755 /tmp/ripd*\n");
    EXPECT_STREQ(stage_.log(), "");
}

TEST_F(Startup, RegistersTheStandardViews) {
    EXPECT_EQ(frrVtyInit(), 0);
    EXPECT_EQ(registered(), standardViews());
    EXPECT_EQ(gPreCmdEntryList->data_destroy, free);
    EXPECT_EQ(gPreCmdEntryList->data_cmp, nullptr);
    EXPECT_STREQ(stage_.output(), "");
    EXPECT_EQ(frrVtyViewReg("enable_view", "other"), 1);
    EXPECT_EQ(registered(), standardViews());
}

TEST_F(Startup, ASecondCallStartsOver) {
    EXPECT_EQ(frrVtyInit(), 0);
    EXPECT_EQ(frrVtyViewReg("view_rip", "enable"), 0);
    dlist *const first = gPreCmdEntryList;
    EXPECT_EQ(frrVtyInit(), 0);
    EXPECT_NE(gPreCmdEntryList, first);
    EXPECT_EQ(registered(), standardViews());
    dropRegistry(first);
}

TEST_F(Startup, TheFirstFailingViewEndsIt) {
    const char *const messages[] = {
        "view register fail : enable_view",
        "view register fail : configure_view",
        "view register fail : interface_view",
        "view register fail : enable\nconfigure\ninterface eth0.<vid>",
        "view register fail : keychain_keyid_keystr_view",
    };
    for (int failing = 0; failing < 5; ++failing) {
        {
            // The registry is one allocation; a view is three: record, entry text, node.
            const stage::NoMemory none(2 + 3 * failing);
            EXPECT_EQ(frrVtyInit(), 4);
        }
        EXPECT_STREQ(stage_.output(), messages[failing]);
        EXPECT_EQ(registered(),
                  Entries(standardViews().begin(), standardViews().begin() + failing));
        dropRegistry(gPreCmdEntryList);
    }
    gPreCmdEntryList = nullptr;
}

TEST_F(Startup, TheInterfaceViewsLeadToBothSides) {
    EXPECT_EQ(frrVtyInit(), 0);
    for (const char *view : {"interface_view", "interface_v_view"}) {
        dlist *parameters = nullptr;
        char reply[512] = {};
        ASSERT_EQ(frrVtyParamInit(&parameters), 0);
        ASSERT_EQ(frrVtyParamIntSet(&parameters, "vid", 12), 2);
        EXPECT_EQ(frrVtyAutoRun(view, "/var/ripd.vty", "ip rip send version 2", &parameters,
                                sizeof reply, reply),
                  0);
    }
    EXPECT_STREQ(stage_.trace(),
                 "ripd: enable | configure | interface eth1.12 | ip rip send version 2\n"
                 "ripd: enable | configure | interface eth0.12 | ip rip send version 2\n");
}

TEST_F(Startup, TheKeyViewLeadsIntoAKey) {
    EXPECT_EQ(frrVtyInit(), 0);
    dlist *parameters = nullptr;
    char reply[512] = {};
    ASSERT_EQ(frrVtyParamInit(&parameters), 0);
    ASSERT_EQ(frrVtyParamStrSet(&parameters, "keychain", "k1"), 2);
    ASSERT_EQ(frrVtyParamIntSet(&parameters, "keyid", 5), 1);
    EXPECT_EQ(frrVtyAutoRun("keychain_keyid_keystr_view", "/var/ripd.vty", "key-string s",
                            &parameters, sizeof reply, reply),
              0);
    EXPECT_STREQ(stage_.trace(),
                 "ripd: enable | configure | key chain k1 | key 5 | key-string s\n");
}

} // namespace

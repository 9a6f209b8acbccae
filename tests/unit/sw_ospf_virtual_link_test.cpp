// SPDX-License-Identifier: Apache-2.0
// Virtual-link commands: what they record of a link that a host inserted, and that they never add
// one. Their texts are in golden/ospf/virtual_link_commands.golden.

#include <gtest/gtest.h>

#include "common/dlist.h"
#include "tests/unit/ospf_commands.h"

namespace {

using commands::Commands;
using commands::kNotFound;

constexpr const char *kArea = "0.0.0.1";
constexpr const char *kPeer = "10.0.0.2";

class VirtualLink : public Commands {
protected:
    ~VirtualLink() override { (void)stage_.trace(); }
    VirtualLink() = default;
    VirtualLink(const VirtualLink &) = delete;
    VirtualLink &operator=(const VirtualLink &) = delete;

    /// What a host does itself.
    static void insertLink() {
        OspfVirtualLinkCfg record;
        ASSERT_EQ(ucOspfVirtualLinkInit(&record), 0u);
        record.areaId = model::address(kArea);
        record.peerRouterId = model::address(kPeer);
        ASSERT_EQ(ucOspfVirtualLinkInsert(1, &record), 0u);
    }
    static uint32_t timers(uint32_t set) {
        return swOspfVirtualLink(2, kArea, kPeer, 11, 1, 41, 1, 2, 1, 65542, 1, set, 0);
    }
    static uint32_t auth(uint32_t set, uint32_t type) {
        return swOspfVirtualLinkAuth(2, kArea, kPeer, type, set);
    }
    static uint32_t key(uint32_t set) {
        return swOspfVirtualLinkAuthKey(2, kArea, kPeer, "secret77", set);
    }
    static uint32_t md5(uint32_t set, uint32_t id) {
        return swOspfVirtualLinkMd5Key(2, kArea, kPeer, id, "0123456789abcdef", set);
    }
    static std::string link(const std::string &rest) {
        return "slot 1 virtualLinks: 0.0.0.1 10.0.0.2 " + rest + "\n";
    }
};

TEST_F(VirtualLink, AnUnknownLinkIsNeverAdded) {
    EXPECT_EQ(changed(kNotFound, [] { return timers(1); }), "");
    EXPECT_EQ(changed(1, [] { return timers(0); }), "");
    EXPECT_EQ(changed(kNotFound, [] { return auth(1, 2); }), "");
    EXPECT_EQ(changed(1, [] { return auth(0, 2); }), "");
    EXPECT_EQ(changed(0, [] { return auth(2, 2); }), "");
    EXPECT_EQ(changed(kNotFound, [] { return key(1); }), "");
    EXPECT_EQ(changed(kNotFound, [] { return key(0); }), "");
    EXPECT_EQ(changed(kNotFound, [] { return md5(1, 5); }), "");
    EXPECT_EQ(changed(kNotFound, [] { return md5(0, 5); }), "");
    EXPECT_EQ(pucOspf->process[1].virtualLinks->count, 0u);
}

TEST_F(VirtualLink, TimersAreStoredAsTheirFlagsSay) {
    insertLink();
    EXPECT_EQ(changed(0, [] { return timers(1); }),
              link("timers 6/11/41/2 auth 0 ........ 0 ................"));
    EXPECT_EQ(
        changed(0,
                [] { return swOspfVirtualLink(2, kArea, kPeer, 1, 0, 50, 7, 3, 0, 9, 0, 1, 1); }),
        link("timers 6/11/50/2 auth 0 ........ 0 ................"));
}

TEST_F(VirtualLink, AnySetValueButOneRemovesALinkWithTimers) {
    insertLink();
    EXPECT_EQ(changed(0, [] { return timers(0); }), "slot 1 virtualLinks: \n");
    insertLink();
    EXPECT_EQ(changed(0, [] { return timers(2); }), "slot 1 virtualLinks: \n");
}

TEST_F(VirtualLink, AuthenticationIsStoredAndUnsettingRemovesTheLink) {
    insertLink();
    EXPECT_EQ(changed(0, [] { return auth(1, 2); }),
              link("timers 5/10/40/1 auth 2 ........ 0 ................"));
    EXPECT_EQ(changed(0, [] { return auth(1, 259); }),
              link("timers 5/10/40/1 auth 3 ........ 0 ................"));
    EXPECT_EQ(changed(0, [] { return auth(2, 1); }), "");
    EXPECT_EQ(changed(0, [] { return auth(0, 1); }), "slot 1 virtualLinks: \n");
}

TEST_F(VirtualLink, ASimpleKeyIsStoredForOneAndClearedForAnythingElse) {
    insertLink();
    EXPECT_EQ(changed(0, [] { return key(1); }),
              link("timers 5/10/40/1 auth 0 secret77 0 ................"));
    EXPECT_EQ(changed(0, [] { return key(0); }),
              link("timers 5/10/40/1 auth 0 ........ 0 ................"));
    ASSERT_EQ(key(1), 0u);
    EXPECT_EQ(changed(0, [] { return key(2); }),
              link("timers 5/10/40/1 auth 0 ........ 0 ................"));
}

TEST_F(VirtualLink, AnMd5KeyKeepsItsIdWhenUnset) {
    insertLink();
    EXPECT_EQ(changed(0, [] { return md5(1, 5); }),
              link("timers 5/10/40/1 auth 0 ........ 5 0123456789abcdef"));
    EXPECT_EQ(changed(0, [] { return md5(0, 6); }),
              link("timers 5/10/40/1 auth 0 ........ 6 ................"));
    ASSERT_EQ(md5(1, 5), 0u);
    EXPECT_EQ(changed(0, [] { return md5(2, 257); }),
              link("timers 5/10/40/1 auth 0 ........ 1 ................"));
}

TEST_F(VirtualLink, RefusalsAtEitherSendRecordNothing) {
    insertLink();
    for (const int send : {1, 2}) {
        SCOPED_TRACE(send);
        refuseFromSend(send);
        EXPECT_EQ(changed(1, [] { return timers(1); }), "");
        refuseFromSend(send);
        EXPECT_EQ(changed(1, [] { return auth(1, 2); }), "");
        refuseFromSend(send);
        EXPECT_EQ(changed(1, [] { return key(1); }), "");
        refuseFromSend(send);
        EXPECT_EQ(changed(1, [] { return md5(0, 5); }), "");
    }
}

TEST_F(VirtualLink, AProcessWithoutASlotRecordsNothing) {
    EXPECT_EQ(swOspfVirtualLink(3, kArea, kPeer, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0), 0u);
    EXPECT_EQ(swOspfVirtualLinkAuth(3, kArea, kPeer, 1, 0), 0u);
    EXPECT_EQ(swOspfVirtualLinkAuthKey(3, kArea, kPeer, "secret77", 1), 0u);
    EXPECT_EQ(swOspfVirtualLinkMd5Key(3, kArea, kPeer, 1, "0123456789abcdef", 1), 0u);
}

TEST_F(VirtualLink, OverlongTextsAreCutAtTheCommandsEnd) {
    const std::string area(300, 'a');
    EXPECT_EQ(swOspfVirtualLink(3, area.c_str(), kPeer, 10, 1, 40, 1, 0, 0, 0, 0, 1, 0), 0u);
    const std::string line = "ospfd: en | configure | router ospf | area " + area.substr(0, 250);
    EXPECT_EQ(stage_.trace(), line + "\n" + line + "\n");
}

} // namespace

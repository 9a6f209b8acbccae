// SPDX-License-Identifier: Apache-2.0
// Interface commands: what they record. Their texts are in golden/ospf/interface_commands.golden.

#include <functional>
#include <gtest/gtest.h>

#include "tests/unit/ospf_commands.h"

namespace {

using commands::Commands;
using commands::kNotFound;

constexpr uint32_t kVlan = 2;

/// A command, where its settings land after the first, and what they leave there.
struct Command {
    const char *name;
    std::function<uint32_t(uint32_t vlan, uint32_t set)> call;
    std::vector<const char *> set;
    std::vector<const char *> unset;
    int laterEntry;
};

uint32_t setMd5Key(uint32_t vlan, uint32_t set) {
    return swIpOspfAuthM5dKey(0, vlan, set, 261, "0123456789abcdef");
}

// Aligned columns would tear the calls apart.
// clang-format off
const Command kCommands[] = {
    {"hello", [](uint32_t v, uint32_t set) { return swIpOspfHelloInterval(0, v, set, 15); },
     {"helloInterval: 15"}, {"helloInterval: 10"}, 0},
    {"dead", [](uint32_t v, uint32_t set) { return swIpOspfDeadInterval(0, v, set, 65596); },
     {"deadInterval: 60"}, {"deadInterval: 40"}, 0},
    {"retransmit",
     [](uint32_t v, uint32_t set) { return swIpOspfRetransmitInterval(0, v, set, 7); },
     {"retransmitInterval: 7"}, {"retransmitInterval: 5"}, 0},
    {"delay", [](uint32_t v, uint32_t set) { return swIpOspfTransmitDelay(0, v, set, 3); },
     {"transmitDelay: 3"}, {"transmitDelay: 1"}, 0},
    {"cost", [](uint32_t v, uint32_t set) { return swIpOpsfCost(0, v, set, -1); },
     {"cost: 65535"}, {"cost: 1"}, 0},
    {"priority", [](uint32_t v, uint32_t set) { return swIpOspfPriority(0, v, set, 255); },
     {"priority: 255"}, {"priority: 1"}, 0},
    {"mtu", [](uint32_t v, uint32_t set) { return swIpOspfMtuIgnore(0, v, set); },
     {"mtuIgnore: 1"}, {"mtuIgnore: 0"}, 1},
    {"network", [](uint32_t v, uint32_t set) { return swIpOspfNetwork(0, v, set, 4); },
     {"networkType: 4"}, {"networkType: 0"}, 1},
    {"auth", [](uint32_t v, uint32_t set) { return swIpOspfAuth(0, v, set, 2); },
     {"authType: 2"}, {"authType: 0"}, 1},
    {"key", [](uint32_t v, uint32_t set) { return swIpOspfAuthKey(0, v, set, "secret77"); },
     {"simpleKey: secret77"}, {"simpleKey: ........"}, 1},
    {"md5", setMd5Key,
     {"md5Key: 0123456789abcdef", "md5KeyId: 5"}, {"md5Key: ................", "md5KeyId: 0"}, 1},
};
// clang-format on

std::set<std::string> inEntry(int entry, const std::vector<const char *> &fields) {
    std::set<std::string> lines;
    for (const char *field : fields) {
        lines.insert("entry " + std::to_string(entry) + " " + field);
    }
    return lines;
}

class Interface : public Commands {
protected:
    Interface() { stage_.shell("is_vlan_id", {.text = "1\n", .writeTo = "/tmp/cli_vid"}); }
    ~Interface() override { (void)stage_.trace(); }
    Interface(const Interface &) = delete;
    Interface &operator=(const Interface &) = delete;

    /// A model whose entry 0 is another VLAN's, and whose slot 14 already lost what a new key
    /// clears.
    static void freshModel() {
        ASSERT_EQ(ucOspfInit(), 0u);
        ASSERT_EQ(ucIpOspfAuthKey(100, 1, nullptr), 0u);
    }
};

TEST_F(Interface, TheFirstSettingTakesAnEntryAndLaterOnesLandWhereTheModelPutsThem) {
    for (const Command &command : kCommands) {
        SCOPED_TRACE(command.name);
        freshModel();
        std::set<std::string> first = inEntry(1, command.set);
        first.insert({"entry 1 inUse: 1", "entry 1 vlanId: 2"});
        EXPECT_EQ(changed(0, [&] { return command.call(kVlan, 1); }), model::lines(first));
        const int entry = command.laterEntry;
        EXPECT_EQ(changed(0, [&] { return command.call(kVlan, 1); }),
                  entry == 1 ? "" : model::lines(inEntry(entry, command.set)));
        EXPECT_EQ(changed(0, [&] { return command.call(kVlan, 0); }),
                  model::lines(inEntry(entry, command.unset)));
    }
}

TEST_F(Interface, UnsettingWithoutAnEntryIsSentAndRecordsNothing) {
    for (const Command &command : kCommands) {
        SCOPED_TRACE(command.name);
        EXPECT_EQ(changed(kNotFound, [&] { return command.call(kVlan, 0); }), "");
    }
}

TEST_F(Interface, ARefusedCommandRecordsNothing) {
    refuseFromSend(1);
    for (const Command &command : kCommands) {
        SCOPED_TRACE(command.name);
        EXPECT_EQ(changed(1, [&] { return command.call(kVlan, 1); }), "");
    }
}

TEST_F(Interface, AVlanThatIsNotOursRecordsNothing) {
    stage_.shell("vlan_id", {.text = "0\n", .writeTo = "/tmp/cli_vid"});
    for (const Command &command : kCommands) {
        SCOPED_TRACE(command.name);
        EXPECT_EQ(changed(1, [&] { return command.call(kVlan, 1); }), "");
    }
}

TEST_F(Interface, AFullTableIsAnsweredWithTheModelsCode) {
    for (uint32_t vlan = 1000; vlan < 1064; ++vlan) {
        ASSERT_EQ(ucIpOspfMtuIgnore(vlan, 1), 0u);
    }
    for (const Command &command : kCommands) {
        SCOPED_TRACE(command.name);
        EXPECT_EQ(changed(0xFFFFFFFF, [&] { return command.call(kVlan, 1); }), "");
    }
}

TEST_F(Interface, AnAuthTypeAboveTwoIsRecorded) {
    freshModel();
    EXPECT_EQ(changed(0, [] { return swIpOspfAuth(0, kVlan, 1, 3); }),
              "entry 1 authType: 3\nentry 1 inUse: 1\nentry 1 vlanId: 2\n");
    EXPECT_EQ(changed(0, [] { return swIpOspfAuth(0, kVlan, 0, 4); }), "");
    EXPECT_EQ(changed(0, [] { return swIpOspfAuth(0, kVlan, 0, 3); }), "entry 1 authType: 0\n");
}

TEST_F(Interface, UnknownNetworkTypesAreRecorded) {
    freshModel();
    EXPECT_EQ(changed(0, [] { return swIpOspfNetwork(0, kVlan, 1, 0x105); }),
              "entry 1 inUse: 1\nentry 1 networkType: 5\nentry 1 vlanId: 2\n");
}

TEST_F(Interface, AKeyOfANewVlanClearsTheFixedPlace) {
    pucOspf->process[15].processId = 4711;
    EXPECT_EQ(changed(0, [] { return swIpOspfAuthKey(0, kVlan, 1, "secret77"); }),
              "entry 0 inUse: 1\nentry 0 simpleKey: secret77\nentry 0 vlanId: 2\n" +
                  model::lostListLine() + "slot 15 processId: 0\n");
}

} // namespace

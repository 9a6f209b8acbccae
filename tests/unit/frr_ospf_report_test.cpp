// SPDX-License-Identifier: Apache-2.0
// The report of the OSPF model, byte for byte.

#include <arpa/inet.h>
#include <cstring>
#include <gtest/gtest.h>
#include <string>

#include "ospf/frr_ospf.h"
#include "ospf/uc_ospf.h"
#include "tests/support/stage.h"

namespace {

uint32_t address(const char *text) {
    return inet_addr(text);
}

class Report : public testing::Test {
protected:
    Report() { EXPECT_EQ(ucOspfInit(), 0u); }

    std::string report() {
        (void)stage_.output();
        ucOspfShowConfig();
        return stage_.output();
    }

    /// The lines of one process between its heading and the lists, with the model's defaults.
    static std::string defaults(const char *id) {
        return std::string("*****************Routing Protocol is ospf ") + id +
               "  *****************\n\n"
               " GracefulRestart                - Disable\r\n"
               " RFC 1583 Compatibility         - Disable\r\n"
               " Spf Delay Time                 - 0\r\n"
               " Spf Min Hold Time              - 50\r\n"
               " Spf Max Hold Time              - 5000\r\n"
               " Default Passive Setting        - Disable\r\n"
               " Maximum Paths                  - 16\r\n"
               " Default Metric                 - -1\r\n"
               " Admin Distance                 - 110\r\n\n\n"
               " Default Route Advertise        - Disable\r\n"
               " Always                         - Disable\r\n"
               " Metric                         - 1\r\n"
               " Metric Type                    - EXTERNAL TYPE 2\r\n\n\n"
               " AutoCost Ref BW                - 100000\r\n\n\n";
    }

    static constexpr const char *kEmptyLists = "\n\nnetwork\n"
                                               "\n\narea\n"
                                               "\n\nareaAgg\n"
                                               "\n\nvirtual link\n"
                                               "\n\nRedistribution\n";

    stage::Stage stage_;
};

TEST_F(Report, AFreshModelHasHeadingsOnly) {
    EXPECT_EQ(report(), "OSPF Instance:\r\n"
                        "OSPF Interface:\r\n"
                        "\n");
}

TEST_F(Report, WithoutAModelOnlyTheHeadingsAppear) {
    OspfModelBlock *model = pucOspf;
    pucOspf = nullptr;
    EXPECT_EQ(report(), "OSPF Instance:\r\nOSPF Interface:\r\n\n");
    pucOspf = model;
}

TEST_F(Report, TheExportedWrapperPrintsTheSame) {
    ASSERT_EQ(ucOspfEnableProcess(1), 0u);
    const std::string direct = report();
    swShowOspfConfig();
    EXPECT_EQ(stage_.output(), direct);
}

TEST_F(Report, AnEnabledProcessShowsItsDefaults) {
    ASSERT_EQ(ucOspfEnableProcess(1), 0u);
    EXPECT_EQ(report(),
              "OSPF Instance:\r\n" + defaults("1") + kEmptyLists + "OSPF Interface:\r\n\n");
}

TEST_F(Report, SlotsThatAreNotEnabledPrintNothing) {
    ASSERT_EQ(ucOspfEnableProcess(1), 0u);
    ASSERT_EQ(ucOspfEnableProcess(2), 0u);
    ASSERT_EQ(ucOspfDefaultProcessByNum(0), 0u);
    EXPECT_EQ(report(),
              "OSPF Instance:\r\n" + defaults("2") + kEmptyLists + "OSPF Interface:\r\n\n");
}

TEST_F(Report, AnyEnabledByteButZeroPrintsTheSlot) {
    pucOspf->process[15].enabled = 7;
    pucOspf->process[15].processId = 65535;
    EXPECT_EQ(report(),
              "OSPF Instance:\r\n" + defaults("65535") + kEmptyLists + "OSPF Interface:\r\n\n");
}

TEST_F(Report, EverySettingOfAProcess) {
    ASSERT_EQ(ucOspfEnableProcess(1), 0u);
    OspfProcessCfg process;
    ASSERT_EQ(ucOspfGetCfg(0, &process), 0u);
    process.routerId = address("10.1.2.3");
    process.routerIdSet = 1;
    process.gracefulRestart = 1;
    process.rfc1583Compatibility = 1;
    process.spfDelay = 65535;
    process.spfInitialHold = 1;
    process.spfMaximumHold = 2;
    process.passiveDefault = 1;
    process.maximumPaths = 255;
    process.defaultMetric = 16777214;
    process.adminDistance = 200;
    process.defaultRouteAdvertise = 1;
    process.always = 1;
    process.originateMetric = 77;
    process.metricType = 1;
    process.referenceBandwidth = 4294967;
    ASSERT_EQ(ucOspfSetCfg(0, &process), 0u);
    EXPECT_EQ(report(), std::string("OSPF Instance:\r\n"
                                    "*****************Routing Protocol is ospf 1  "
                                    "*****************\n\n"
                                    " Router ID                      - 10.1.2.3\r\n"
                                    " GracefulRestart                - Enable\r\n"
                                    " RFC 1583 Compatibility         - Enable\r\n"
                                    " Spf Delay Time                 - 65535\r\n"
                                    " Spf Min Hold Time              - 1\r\n"
                                    " Spf Max Hold Time              - 2\r\n"
                                    " Default Passive Setting        - Enable\r\n"
                                    " Maximum Paths                  - 255\r\n"
                                    " Default Metric                 - 16777214\r\n"
                                    " Admin Distance                 - 200\r\n\n\n"
                                    " Default Route Advertise        - Enable\r\n"
                                    " Always                         - Enable\r\n"
                                    " Metric                         - 77\r\n"
                                    " Metric Type                    - EXTERNAL TYPE 1\r\n\n\n"
                                    " AutoCost Ref BW                - 4294967\r\n\n\n") +
                            kEmptyLists + "OSPF Interface:\r\n\n");
}

TEST_F(Report, TheRouterIdIsShownOnlyWhenItsFlagIsOne) {
    ASSERT_EQ(ucOspfEnableProcess(1), 0u);
    pucOspf->process[0].routerId = address("10.1.2.3");
    for (const uint32_t flag : {0u, 2u}) {
        pucOspf->process[0].routerIdSet = flag;
        EXPECT_EQ(report().find("Router ID"), std::string::npos) << flag;
    }
    pucOspf->process[0].routerIdSet = 1;
    EXPECT_NE(report().find(" Router ID                      - 10.1.2.3\r\n"), std::string::npos);
}

TEST_F(Report, EveryKindOfListRecord) {
    ASSERT_EQ(ucOspfEnableProcess(1), 0u);
    const OspfNetworkCfg network = {address("10.0.0.0"), address("255.0.0.0"), 5};
    ASSERT_EQ(ucOspfNetworkInsert(0, &network), 0u);
    OspfAreaCfg area = {};
    area.areaId = address("0.0.0.1");
    area.areaType = 1;
    area.defaultCost = 16;
    area.noSummary = 1;
    ASSERT_EQ(ucOspfAreaInsert(0, &area), 0u);
    const OspfAreaAggCfg aggregate = {address("0.0.0.2"), address("10.8.0.0"),
                                      address("255.248.0.0"), 12, 1};
    ASSERT_EQ(ucOspfAreaAggInsert(0, &aggregate), 0u);
    OspfVirtualLinkCfg link = {};
    link.areaId = address("0.0.0.3");
    link.peerRouterId = address("9.9.9.9");
    link.retransmitInterval = 6;
    link.helloInterval = 11;
    link.deadInterval = 44;
    link.transmitDelay = 2;
    link.authType = 2;
    memcpy(link.simpleKey, "12345678", sizeof link.simpleKey);
    link.md5KeyId = 201;
    memcpy(link.md5Key, "0123456789abcdef", sizeof link.md5Key);
    ASSERT_EQ(ucOspfVirtualLinkInsert(0, &link), 0u);
    ASSERT_EQ(ucOspfRedistribute(0, 1, 3, 30, 1, 1, 1, 9), 0u);
    EXPECT_EQ(report(), "OSPF Instance:\r\n" + defaults("1") +
                            "\n\nnetwork\n"
                            " network ip                     - 10.0.0.0\r\n"
                            " network wildmask               - 255.0.0.0\r\n"
                            " network areaId                 - 5\r\n"
                            "\n\narea\n"
                            " areaId                         - 0.0.0.1\r\n"
                            " areaType                       - Stub\r\n"
                            " defaultCost                    - 16\r\n"
                            " no-summary                     - Enable\r\n"
                            "\n\nareaAgg\n"
                            " areaId                         - 0.0.0.2\r\n"
                            " ip                             - 10.8.0.0\r\n"
                            " mask                           - 255.248.0.0\r\n"
                            " cost                           - 12\r\n"
                            " advertise                      - Enable\r\n"
                            "\n\nvirtual link\n"
                            " areaId                         - 0.0.0.3\r\n"
                            " ip                             - 9.9.9.9\r\n"
                            " hello interval                 - 11\r\n"
                            " dead interval                  - 44\r\n"
                            " retransmit interval            - 6\r\n"
                            " transmit delay                 - 2\r\n"
                            " auth type                      - message-digest\r\n"
                            " simple key                     - 12345678\r\n"
                            " md5 keyId                      - 201\r\n"
                            " md5 key                        - 0123456789abcdef\r\n"
                            "\n\nRedistribution\n"
                            " networkType                    - Rip\r\n"
                            " metric                         - 30\r\n"
                            " metric type                    - EXTERNAL TYPE 1\r\n"
                            "OSPF Interface:\r\n\n");
}

TEST_F(Report, ListRecordsComeNewestFirst) {
    ASSERT_EQ(ucOspfEnableProcess(1), 0u);
    for (const char *text : {"10.0.0.0", "11.0.0.0"}) {
        const OspfNetworkCfg network = {address(text), address("255.0.0.0"), 0};
        ASSERT_EQ(ucOspfNetworkInsert(0, &network), 0u);
    }
    const std::string text = report();
    ASSERT_NE(text.find("11.0.0.0"), std::string::npos);
    EXPECT_LT(text.find("11.0.0.0"), text.find("10.0.0.0"));
}

TEST_F(Report, OnlyARedistributionFromOspfNamesItsProcess) {
    ASSERT_EQ(ucOspfEnableProcess(1), 0u);
    ASSERT_EQ(ucOspfRedistribute(0, 1, 2, 0, 0, 0, 0, 7), 0u);
    EXPECT_EQ(report(), "OSPF Instance:\r\n" + defaults("1") +
                            "\n\nnetwork\n\n\narea\n\n\nareaAgg\n\n\nvirtual link\n"
                            "\n\nRedistribution\n"
                            " networkType                    - Ospf\r\n"
                            " metric                         - 0\r\n"
                            " metric type                    - EXTERNAL TYPE 2\r\n"
                            " processId                      - 7\r\n"
                            "OSPF Interface:\r\n\n");
}

TEST_F(Report, AnInterfaceEntryNeverShowsItsMd5Key) {
    OspfInterfaceEntry &entry = pucOspf->interface[63];
    entry.inUse = 1;
    entry.vlanId = 4094;
    entry.processId = 1;
    entry.areaId = 12;
    entry.networkType = 4;
    entry.priority = 9;
    entry.retransmitInterval = 6;
    entry.helloInterval = 15;
    entry.deadInterval = 60;
    entry.transmitDelay = 3;
    entry.authType = 1;
    memcpy(entry.simpleKey, "secret", 6);
    entry.md5KeyId = 5;
    memcpy(entry.md5Key, "hidden", 6);
    entry.cost = 20;
    entry.mtuIgnore = 1;
    EXPECT_EQ(report(), "OSPF Instance:\r\n"
                        "OSPF Interface:\r\n"
                        " Vlan ID                        - 4094\r\n"
                        " OSPF Process ID                - 1\r\n"
                        " OSPF Area ID                   - 12\r\n"
                        " OSPF Network Type              - point-to-point\r\n"
                        " Router Priority                - 9\r\n"
                        " Retransmit Interval            - 6\r\n"
                        " Hello Interval                 - 15\r\n"
                        " Dead Interval                  - 60\r\n"
                        " Transmit Delay                 - 3\r\n"
                        " Authentication Type            - simple\r\n"
                        " Simple Key                     - secret\r\n"
                        " MD5 KeyId                      - 5\r\n"
                        " Metric Cost                    - 20\r\n"
                        " OSPF Mtu-ignore                - Enable\r\n"
                        "\n");
}

TEST_F(Report, AnEntryIsInUseOnlyWhenItsWordIsOne) {
    pucOspf->interface[0].inUse = 2;
    EXPECT_EQ(report(), "OSPF Instance:\r\nOSPF Interface:\r\n\n");
}

TEST_F(Report, CodesWithoutALabelShowNothing) {
    pucOspf->interface[0].inUse = 1;
    pucOspf->interface[0].networkType = 5;
    pucOspf->interface[0].authType = 255;
    pucOspf->interface[0].mtuIgnore = 4000000000u;
    const std::string text = report();
    EXPECT_NE(text.find(" OSPF Network Type              - \r\n"), std::string::npos);
    EXPECT_NE(text.find(" Authentication Type            - \r\n"), std::string::npos);
    EXPECT_NE(text.find(" OSPF Mtu-ignore                - \r\n"), std::string::npos);
}

TEST_F(Report, EveryLabelOfEveryCode) {
    ASSERT_EQ(ucOspfEnableProcess(1), 0u);
    const char *const sources[] = {"Not Configure", "Connect", "Ospf", "Rip", "Static"};
    for (uint32_t source = 0; source < 5; ++source) {
        ASSERT_EQ(ucOspfRedistribute(0, 1, source, 0, 0, 0, 1, 0), 0u);
        EXPECT_NE(report().find(std::string(" networkType                    - ") +
                                sources[source] + "\r\n"),
                  std::string::npos);
    }
    EXPECT_NE(report().find(" metric type                    - \r\n"), std::string::npos);
    const char *const types[] = {"Not Configure", "broadcast", "non-broadcast",
                                 "point-to-multipoint", "point-to-point"};
    pucOspf->interface[0].inUse = 1;
    for (uint8_t type = 0; type < 5; ++type) {
        pucOspf->interface[0].networkType = type;
        EXPECT_NE(
            report().find(std::string(" OSPF Network Type              - ") + types[type] + "\r\n"),
            std::string::npos);
    }
    const char *const authentications[] = {"null", "simple", "message-digest"};
    for (uint8_t type = 0; type < 3; ++type) {
        pucOspf->interface[0].authType = type;
        EXPECT_NE(report().find(std::string(" Authentication Type            - ") +
                                authentications[type] + "\r\n"),
                  std::string::npos);
    }
    const char *const areas[] = {"Normal", "Stub", "Nssa"};
    for (uint8_t type = 0; type < 3; ++type) {
        OspfAreaCfg area = {};
        area.areaType = type;
        ASSERT_EQ(ucOspfAreaInsert(0, &area), 0u);
        EXPECT_NE(
            report().find(std::string(" areaType                       - ") + areas[type] + "\r\n"),
            std::string::npos);
    }
}

TEST_F(Report, AListThatANewKeyHasDamagedIsLeftOut) {
    for (uint16_t id = 1; id <= 15; ++id) {
        ASSERT_EQ(ucOspfEnableProcess(id), 0u);
    }
    ASSERT_EQ(ucOspfRedistribute(14, 1, 3, 20, 1, 1, 1, 0), 0u);
    EXPECT_NE(report().find("networkType"), std::string::npos);
    ASSERT_EQ(ucIpOspfAuthKey(2, 1, "12345678"), 0u);
    // Only addresses that reach beyond their fifth byte are damaged.
    const bool damaged = reinterpret_cast<uintptr_t>(pucOspf->process[14].networks) >> 40 != 0;
    EXPECT_EQ(report().find("networkType") == std::string::npos, damaged);
}

} // namespace

// SPDX-License-Identifier: Apache-2.0
// The report of the whole OSPF model on standard output.

#include <cstddef>
#include <cstring>
#include <span>

#include "common/address.h"
#include "common/dlist.h"
#include "common/text.h"
#include "ospf/frr_ospf.h"
#include "ospf/uc_ospf.h"
#include "ospf/uc_ospf_block.h"

namespace {

using frruci::common::format;

using Labels = std::span<const char *const>;

// By the model's codes. The network types of the commands and of the store have codes of their own.
constexpr const char *kSwitchLabels[] = {"Disable", "Enable"};
constexpr const char *kMetricTypeLabels[] = {"", "EXTERNAL TYPE 1", "EXTERNAL TYPE 2"};
constexpr const char *kAreaTypeLabels[] = {"Normal", "Stub", "Nssa"};
constexpr const char *kAuthenticationLabels[] = {"null", "simple", "message-digest"};
constexpr const char *kSourceLabels[] = {"Not Configure", "Connect", "Ospf", "Rip", "Static"};
constexpr const char *kNetworkTypeLabels[] = {"Not Configure", "broadcast", "non-broadcast",
                                              "point-to-multipoint", "point-to-point"};

constexpr uint8_t kSourceOspf = 2;

enum class Show : uint8_t {
    kNumber,
    kAddress,
    kText,
    kSwitch,
    kMetricType,
    kAreaType,
    kAuthentication,
    kSource,
    kNetworkType,
};

struct Field {
    uint16_t offset;
    uint16_t size;
};

#define FIELD(record, member)                                                                      \
    { offsetof(record, member), sizeof(record::member) }

/// How a line ends, or when it is printed at all.
enum class Line : uint8_t { kPlain, kEndsGroup, kIfRouterIdSet, kIfFromOspf };

struct Row {
    const char *label;
    Show show;
    Field field;
    Line line;
};

#define PROCESS(member) FIELD(OspfProcessCfg, member)
constexpr Row kProcessRows[] = {
    {"Router ID",               Show::kAddress,    PROCESS(routerId),              Line::kIfRouterIdSet},
    {"GracefulRestart",         Show::kSwitch,     PROCESS(gracefulRestart),       Line::kPlain        },
    {"RFC 1583 Compatibility",  Show::kSwitch,     PROCESS(rfc1583Compatibility),  Line::kPlain        },
    {"Spf Delay Time",          Show::kNumber,     PROCESS(spfDelay),              Line::kPlain        },
    {"Spf Min Hold Time",       Show::kNumber,     PROCESS(spfInitialHold),        Line::kPlain        },
    {"Spf Max Hold Time",       Show::kNumber,     PROCESS(spfMaximumHold),        Line::kPlain        },
    {"Default Passive Setting", Show::kSwitch,     PROCESS(passiveDefault),        Line::kPlain        },
    {"Maximum Paths",           Show::kNumber,     PROCESS(maximumPaths),          Line::kPlain        },
    {"Default Metric",          Show::kNumber,     PROCESS(defaultMetric),         Line::kPlain        },
    {"Admin Distance",          Show::kNumber,     PROCESS(adminDistance),         Line::kEndsGroup    },
    {"Default Route Advertise", Show::kSwitch,     PROCESS(defaultRouteAdvertise), Line::kPlain        },
    {"Always",                  Show::kSwitch,     PROCESS(always),                Line::kPlain        },
    {"Metric",                  Show::kNumber,     PROCESS(originateMetric),       Line::kPlain        },
    {"Metric Type",             Show::kMetricType, PROCESS(metricType),            Line::kEndsGroup    },
    {"AutoCost Ref BW",         Show::kNumber,     PROCESS(referenceBandwidth),    Line::kEndsGroup    },
};
#undef PROCESS

#define NETWORK(member) FIELD(OspfNetworkCfg, member)
constexpr Row kNetworkRows[] = {
    {"network ip",       Show::kAddress, NETWORK(address), Line::kPlain},
    {"network wildmask", Show::kAddress, NETWORK(mask),    Line::kPlain},
    {"network areaId",   Show::kNumber,  NETWORK(areaId),  Line::kPlain},
};
#undef NETWORK

#define AREA(member) FIELD(OspfAreaCfg, member)
constexpr Row kAreaRows[] = {
    {"areaId",      Show::kAddress,  AREA(areaId),      Line::kPlain},
    {"areaType",    Show::kAreaType, AREA(areaType),    Line::kPlain},
    {"defaultCost", Show::kNumber,   AREA(defaultCost), Line::kPlain},
    {"no-summary",  Show::kSwitch,   AREA(noSummary),   Line::kPlain},
};
#undef AREA

#define AGGREGATE(member) FIELD(OspfAreaAggCfg, member)
constexpr Row kAggregateRows[] = {
    {"areaId",    Show::kAddress, AGGREGATE(areaId),    Line::kPlain},
    {"ip",        Show::kAddress, AGGREGATE(prefix),    Line::kPlain},
    {"mask",      Show::kAddress, AGGREGATE(mask),      Line::kPlain},
    {"cost",      Show::kNumber,  AGGREGATE(cost),      Line::kPlain},
    {"advertise", Show::kSwitch,  AGGREGATE(advertise), Line::kPlain},
};
#undef AGGREGATE

#define LINK(member) FIELD(OspfVirtualLinkCfg, member)
constexpr Row kVirtualLinkRows[] = {
    {"areaId",              Show::kAddress,        LINK(areaId),             Line::kPlain},
    {"ip",                  Show::kAddress,        LINK(peerRouterId),       Line::kPlain},
    {"hello interval",      Show::kNumber,         LINK(helloInterval),      Line::kPlain},
    {"dead interval",       Show::kNumber,         LINK(deadInterval),       Line::kPlain},
    {"retransmit interval", Show::kNumber,         LINK(retransmitInterval), Line::kPlain},
    {"transmit delay",      Show::kNumber,         LINK(transmitDelay),      Line::kPlain},
    {"auth type",           Show::kAuthentication, LINK(authType),           Line::kPlain},
    {"simple key",          Show::kText,           LINK(simpleKey),          Line::kPlain},
    {"md5 keyId",           Show::kNumber,         LINK(md5KeyId),           Line::kPlain},
    {"md5 key",             Show::kText,           LINK(md5Key),             Line::kPlain},
};
#undef LINK

#define REDISTRIBUTION(member) FIELD(OspfRedistributeCfg, member)
constexpr Row kRedistributionRows[] = {
    {"networkType", Show::kSource,     REDISTRIBUTION(source),          Line::kPlain     },
    {"metric",      Show::kNumber,     REDISTRIBUTION(metric),          Line::kPlain     },
    {"metric type", Show::kMetricType, REDISTRIBUTION(metricType),      Line::kPlain     },
    {"processId",   Show::kNumber,     REDISTRIBUTION(sourceProcessId), Line::kIfFromOspf},
};
#undef REDISTRIBUTION

// Fixed by the interface: the MD5 key of an interface has no line.
#define INTERFACE(member) FIELD(OspfInterfaceEntry, member)
constexpr Row kInterfaceRows[] = {
    {"Vlan ID",             Show::kNumber,         INTERFACE(vlanId),             Line::kPlain},
    {"OSPF Process ID",     Show::kNumber,         INTERFACE(processId),          Line::kPlain},
    {"OSPF Area ID",        Show::kNumber,         INTERFACE(areaId),             Line::kPlain},
    {"OSPF Network Type",   Show::kNetworkType,    INTERFACE(networkType),        Line::kPlain},
    {"Router Priority",     Show::kNumber,         INTERFACE(priority),           Line::kPlain},
    {"Retransmit Interval", Show::kNumber,         INTERFACE(retransmitInterval), Line::kPlain},
    {"Hello Interval",      Show::kNumber,         INTERFACE(helloInterval),      Line::kPlain},
    {"Dead Interval",       Show::kNumber,         INTERFACE(deadInterval),       Line::kPlain},
    {"Transmit Delay",      Show::kNumber,         INTERFACE(transmitDelay),      Line::kPlain},
    {"Authentication Type", Show::kAuthentication, INTERFACE(authType),           Line::kPlain},
    {"Simple Key",          Show::kText,           INTERFACE(simpleKey),          Line::kPlain},
    {"MD5 KeyId",           Show::kNumber,         INTERFACE(md5KeyId),           Line::kPlain},
    {"Metric Cost",         Show::kNumber,         INTERFACE(cost),               Line::kPlain},
    {"OSPF Mtu-ignore",     Show::kSwitch,         INTERFACE(mtuIgnore),          Line::kPlain},
};
#undef INTERFACE
#undef FIELD

struct Section {
    const char *heading;
    dlist *OspfProcessCfg::*records;
    std::span<const Row> rows;
};

constexpr Section kSections[] = {
    {"\n\nnetwork\n",        &OspfProcessCfg::networks,        kNetworkRows       },
    {"\n\narea\n",           &OspfProcessCfg::areas,           kAreaRows          },
    {"\n\nareaAgg\n",        &OspfProcessCfg::areaAggregates,  kAggregateRows     },
    {"\n\nvirtual link\n",   &OspfProcessCfg::virtualLinks,    kVirtualLinkRows   },
    {"\n\nRedistribution\n", &OspfProcessCfg::redistributions, kRedistributionRows},
};

Labels labelsOf(Show show) {
    switch (show) {
    case Show::kSwitch:
        return kSwitchLabels;
    case Show::kMetricType:
        return kMetricTypeLabels;
    case Show::kAreaType:
        return kAreaTypeLabels;
    case Show::kAuthentication:
        return kAuthenticationLabels;
    case Show::kSource:
        return kSourceLabels;
    case Show::kNetworkType:
        return kNetworkTypeLabels;
    default:
        return {};
    }
}

uint32_t numberOf(Field field, const void *record) {
    const char *bytes = static_cast<const char *>(record) + field.offset;
    uint8_t narrow = 0;
    uint16_t half = 0;
    uint32_t word = 0;
    switch (field.size) {
    case sizeof narrow:
        memcpy(&narrow, bytes, sizeof narrow);
        return narrow;
    case sizeof half:
        memcpy(&half, bytes, sizeof half);
        return half;
    default:
        memcpy(&word, bytes, sizeof word);
        return word;
    }
}

constexpr std::size_t kLineBytes = 256;
constexpr std::size_t kTextBytes = 32; // the longest key and its NUL

void printText(const Row &row, const char *text) {
    char line[kLineBytes];
    format(line, row.line == Line::kEndsGroup ? " %-30s - %s\r\n\n\n" : " %-30s - %s\r\n",
           row.label, text);
    (void)fputs(line, stdout); // where standard output is closed nobody reads the report
}

void printNumber(const Row &row, uint32_t number) {
    char line[kLineBytes];
    format(line, row.line == Line::kEndsGroup ? " %-30s - %d\r\n\n\n" : " %-30s - %d\r\n",
           row.label, static_cast<int32_t>(number));
    (void)fputs(line, stdout);
}

void printField(const Row &row, const void *record) {
    char text[kTextBytes] = {};
    if (row.show == Show::kText) {
        static_assert(sizeof(OspfVirtualLinkCfg::md5Key) < kTextBytes);
        memcpy(text, static_cast<const char *>(record) + row.field.offset, row.field.size);
        return printText(row, text);
    }
    const uint32_t number = numberOf(row.field, record);
    if (row.show == Show::kNumber) {
        return printNumber(row, number);
    }
    if (row.show == Show::kAddress) {
        (void)intIpToStrIp(text, number); // refuses a null text only
        return printText(row, text);
    }
    const Labels labels = labelsOf(row.show);
    printText(row, number < labels.size() ? labels[number] : "");
}

bool isPrinted(Line line, const void *record) {
    switch (line) {
    case Line::kIfRouterIdSet:
        return static_cast<const OspfProcessCfg *>(record)->routerIdSet == 1;
    case Line::kIfFromOspf:
        return static_cast<const OspfRedistributeCfg *>(record)->source == kSourceOspf;
    default:
        return true;
    }
}

void printRows(std::span<const Row> rows, const void *record) {
    for (const Row &row : rows) {
        if (isPrinted(row.line, record)) {
            printField(row, record);
        }
    }
}

void printProcess(const OspfProcessCfg &process) {
    (void)printf("*****************Routing Protocol is ospf %d  *****************\n\n",
                 process.processId);
    printRows(kProcessRows, &process);
    for (const Section &section : kSections) {
        (void)fputs(section.heading, stdout);
        const dlist *records = frruci::ospf::readable(process.*section.records);
        for (const dlist_node *node = records == nullptr ? nullptr : records->head; node != nullptr;
             node = node->next) {
            printRows(section.rows, node->data);
        }
    }
}

void printProcesses(const OspfModelBlock &model) {
    for (const OspfProcessCfg &slot : model.process) {
        const OspfProcessCfg process = slot;
        if (process.enabled != 0) {
            printProcess(process);
        }
    }
}

void printInterfaces(const OspfModelBlock &model) {
    const OspfModelBlock copy = model;
    for (const OspfInterfaceEntry &entry : copy.interface) {
        if (entry.inUse == 1) {
            printRows(kInterfaceRows, &entry);
        }
    }
}

} // namespace

void ucOspfShowConfig(void) {
    (void)puts("OSPF Instance:\r");
    if (pucOspf != nullptr) {
        printProcesses(*pucOspf);
    }
    (void)puts("OSPF Interface:\r");
    if (pucOspf != nullptr) {
        printInterfaces(*pucOspf);
    }
    (void)puts("");
}

void swShowOspfConfig(void) {
    ucOspfShowConfig();
}

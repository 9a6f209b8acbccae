// SPDX-License-Identifier: Apache-2.0
// The report of the whole OSPF model on standard output.

#include <array>
#include <cstddef>
#include <cstring>
#include <span>

#include "common/address.h"
#include "common/dlist.h"
#include "common/text.h"
#include "ospf/field.h"
#include "ospf/frr_ospf.h"
#include "ospf/numbers.h"
#include "ospf/uc_ospf_block.h"
#include "ospf/uc_ospf_clear.h"

namespace {

using frruci::common::format;
using namespace frruci::ospf;

using Labels = std::span<const char *const>;

// By the model's codes. The network types of the commands and of the store have codes of their own.
constexpr const char *kSwitchLabels[] = {"Disable", "Enable"};
constexpr const char *kMetricTypeLabels[] = {"", "EXTERNAL TYPE 1", "EXTERNAL TYPE 2"};
constexpr const char *kAreaTypeLabels[] = {"Normal", "Stub", "Nssa"};
constexpr const char *kAuthenticationLabels[] = {"null", "simple", "message-digest"};
constexpr const char *kSourceLabels[] = {"Not Configure", "Connect", "Ospf", "Rip", "Static"};
constexpr const char *kNetworkTypeLabels[] = {"Not Configure", "broadcast", "non-broadcast",
                                              "point-to-multipoint", "point-to-point"};

enum Show : uint8_t {
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

/// A line about one field of that kind of record.
template <typename Record> struct Row {
    const char *label;
    Show show;
    Field<Record> field;
};

constexpr Row<OspfProcessCfg> kRouterIdRows[] = {
    {"Router ID", kAddress, FRRUCI_FIELD(OspfProcessCfg, routerId)},
};

constexpr Row<OspfProcessCfg> kSettingRows[] = {
    {"GracefulRestart",         kSwitch, FRRUCI_FIELD(OspfProcessCfg, gracefulRestart)     },
    {"RFC 1583 Compatibility",  kSwitch, FRRUCI_FIELD(OspfProcessCfg, rfc1583Compatibility)},
    {"Spf Delay Time",          kNumber, FRRUCI_FIELD(OspfProcessCfg, spfDelay)            },
    {"Spf Min Hold Time",       kNumber, FRRUCI_FIELD(OspfProcessCfg, spfInitialHold)      },
    {"Spf Max Hold Time",       kNumber, FRRUCI_FIELD(OspfProcessCfg, spfMaximumHold)      },
    {"Default Passive Setting", kSwitch, FRRUCI_FIELD(OspfProcessCfg, passiveDefault)      },
    {"Maximum Paths",           kNumber, FRRUCI_FIELD(OspfProcessCfg, maximumPaths)        },
    {"Default Metric",          kNumber, FRRUCI_FIELD(OspfProcessCfg, defaultMetric)       },
    {"Admin Distance",          kNumber, FRRUCI_FIELD(OspfProcessCfg, adminDistance)       },
};

constexpr Row<OspfProcessCfg> kDefaultRouteRows[] = {
    {"Default Route Advertise", kSwitch,     FRRUCI_FIELD(OspfProcessCfg, defaultRouteAdvertise)},
    {"Always",                  kSwitch,     FRRUCI_FIELD(OspfProcessCfg, always)               },
    {"Metric",                  kNumber,     FRRUCI_FIELD(OspfProcessCfg, originateMetric)      },
    {"Metric Type",             kMetricType, FRRUCI_FIELD(OspfProcessCfg, metricType)           },
};

constexpr Row<OspfProcessCfg> kBandwidthRows[] = {
    {"AutoCost Ref BW", kNumber, FRRUCI_FIELD(OspfProcessCfg, referenceBandwidth)},
};

constexpr Row<OspfNetworkCfg> kNetworkRows[] = {
    {"network ip",       kAddress, FRRUCI_FIELD(OspfNetworkCfg, address)},
    {"network wildmask", kAddress, FRRUCI_FIELD(OspfNetworkCfg, mask)   },
    {"network areaId",   kNumber,  FRRUCI_FIELD(OspfNetworkCfg, areaId) },
};

constexpr Row<OspfAreaCfg> kAreaRows[] = {
    {"areaId",      kAddress,  FRRUCI_FIELD(OspfAreaCfg, areaId)     },
    {"areaType",    kAreaType, FRRUCI_FIELD(OspfAreaCfg, areaType)   },
    {"defaultCost", kNumber,   FRRUCI_FIELD(OspfAreaCfg, defaultCost)},
    {"no-summary",  kSwitch,   FRRUCI_FIELD(OspfAreaCfg, noSummary)  },
};

constexpr Row<OspfAreaAggCfg> kAggregateRows[] = {
    {"areaId",    kAddress, FRRUCI_FIELD(OspfAreaAggCfg, areaId)   },
    {"ip",        kAddress, FRRUCI_FIELD(OspfAreaAggCfg, prefix)   },
    {"mask",      kAddress, FRRUCI_FIELD(OspfAreaAggCfg, mask)     },
    {"cost",      kNumber,  FRRUCI_FIELD(OspfAreaAggCfg, cost)     },
    {"advertise", kSwitch,  FRRUCI_FIELD(OspfAreaAggCfg, advertise)},
};

constexpr Row<OspfVirtualLinkCfg> kVirtualLinkRows[] = {
    {"areaId",              kAddress,        FRRUCI_FIELD(OspfVirtualLinkCfg, areaId)            },
    {"ip",                  kAddress,        FRRUCI_FIELD(OspfVirtualLinkCfg, peerRouterId)      },
    {"hello interval",      kNumber,         FRRUCI_FIELD(OspfVirtualLinkCfg, helloInterval)     },
    {"dead interval",       kNumber,         FRRUCI_FIELD(OspfVirtualLinkCfg, deadInterval)      },
    {"retransmit interval", kNumber,         FRRUCI_FIELD(OspfVirtualLinkCfg, retransmitInterval)},
    {"transmit delay",      kNumber,         FRRUCI_FIELD(OspfVirtualLinkCfg, transmitDelay)     },
    {"auth type",           kAuthentication, FRRUCI_FIELD(OspfVirtualLinkCfg, authType)          },
    {"simple key",          kText,           FRRUCI_FIELD(OspfVirtualLinkCfg, simpleKey)         },
    {"md5 keyId",           kNumber,         FRRUCI_FIELD(OspfVirtualLinkCfg, md5KeyId)          },
    {"md5 key",             kText,           FRRUCI_FIELD(OspfVirtualLinkCfg, md5Key)            },
};

constexpr Row<OspfRedistributeCfg> kRedistributionRows[] = {
    {"networkType", kSource,     FRRUCI_FIELD(OspfRedistributeCfg, source)    },
    {"metric",      kNumber,     FRRUCI_FIELD(OspfRedistributeCfg, metric)    },
    {"metric type", kMetricType, FRRUCI_FIELD(OspfRedistributeCfg, metricType)},
};

constexpr Row<OspfRedistributeCfg> kSourceProcessRows[] = {
    {"processId", kNumber, FRRUCI_FIELD(OspfRedistributeCfg, sourceProcessId)},
};

// Fixed by the interface: the MD5 key of an interface has no line.
constexpr Row<OspfInterfaceEntry> kInterfaceRows[] = {
    {"Vlan ID",             kNumber,         FRRUCI_FIELD(OspfInterfaceEntry, vlanId)            },
    {"OSPF Process ID",     kNumber,         FRRUCI_FIELD(OspfInterfaceEntry, processId)         },
    {"OSPF Area ID",        kNumber,         FRRUCI_FIELD(OspfInterfaceEntry, areaId)            },
    {"OSPF Network Type",   kNetworkType,    FRRUCI_FIELD(OspfInterfaceEntry, networkType)       },
    {"Router Priority",     kNumber,         FRRUCI_FIELD(OspfInterfaceEntry, priority)          },
    {"Retransmit Interval", kNumber,         FRRUCI_FIELD(OspfInterfaceEntry, retransmitInterval)},
    {"Hello Interval",      kNumber,         FRRUCI_FIELD(OspfInterfaceEntry, helloInterval)     },
    {"Dead Interval",       kNumber,         FRRUCI_FIELD(OspfInterfaceEntry, deadInterval)      },
    {"Transmit Delay",      kNumber,         FRRUCI_FIELD(OspfInterfaceEntry, transmitDelay)     },
    {"Authentication Type", kAuthentication, FRRUCI_FIELD(OspfInterfaceEntry, authType)          },
    {"Simple Key",          kText,           FRRUCI_FIELD(OspfInterfaceEntry, simpleKey)         },
    {"MD5 KeyId",           kNumber,         FRRUCI_FIELD(OspfInterfaceEntry, md5KeyId)          },
    {"Metric Cost",         kNumber,         FRRUCI_FIELD(OspfInterfaceEntry, cost)              },
    {"OSPF Mtu-ignore",     kSwitch,         FRRUCI_FIELD(OspfInterfaceEntry, mtuIgnore)         },
};

Labels labelsOf(Show show) {
    switch (show) {
    case kSwitch:
        return kSwitchLabels;
    case kMetricType:
        return kMetricTypeLabels;
    case kAreaType:
        return kAreaTypeLabels;
    case kAuthentication:
        return kAuthenticationLabels;
    case kSource:
        return kSourceLabels;
    case kNetworkType:
        return kNetworkTypeLabels;
    default:
        return {};
    }
}

constexpr std::size_t kLineBytes = 256;
constexpr std::size_t kTextBytes = 32; // the longest key and its NUL

void print(const char *text) {
    (void)fputs(text, stdout); // where standard output is closed nobody reads the report
}

void printText(const char *label, const char *text) {
    char line[kLineBytes];
    format(line, " %-30s - %s\r\n", label, text);
    print(line);
}

void printLabel(const char *label, Show show, uint32_t number) {
    const Labels labels = labelsOf(show);
    printText(label, number < labels.size() ? labels[number] : "");
}

void printField(const char *label, Show show, const void *record, Place place) {
    char text[kTextBytes] = {};
    static_assert(sizeof(OspfVirtualLinkCfg::md5Key) < kTextBytes);
    switch (show) {
    case kText:
        memcpy(text, static_cast<const char *>(record) + place.offset, place.size);
        break;
    case kNumber:
        format(text, "%d", static_cast<int32_t>(numberAt(record, place)));
        break;
    case kAddress:
        (void)intIpToStrIp(text, numberAt(record, place)); // refuses a null text only
        break;
    default:
        return printLabel(label, show, numberAt(record, place));
    }
    printText(label, text);
}

template <typename Record, std::size_t N>
void printRows(const Row<Record> (&rows)[N], const Record &record) {
    for (const Row<Record> &row : rows) {
        printField(row.label, row.show, &record, row.field.place);
    }
}

void printRecord(const OspfNetworkCfg &network) {
    printRows(kNetworkRows, network);
}

void printRecord(const OspfAreaCfg &area) {
    printRows(kAreaRows, area);
}

void printRecord(const OspfAreaAggCfg &aggregate) {
    printRows(kAggregateRows, aggregate);
}

void printRecord(const OspfVirtualLinkCfg &link) {
    printRows(kVirtualLinkRows, link);
}

void printRecord(const OspfRedistributeCfg &redistribution) {
    printRows(kRedistributionRows, redistribution);
    if (redistribution.source == kSourceOspf) {
        printRows(kSourceProcessRows, redistribution);
    }
}

template <typename Record>
void printList(const char *heading, const OspfProcessCfg &process, ListOf<Record> list) {
    print(heading);
    const dlist *records = readableList(process.*list.handle);
    for (const dlist_node *node = records == nullptr ? nullptr : records->head; node != nullptr;
         node = node->next) {
        printRecord(*static_cast<const Record *>(node->data));
    }
}

template <std::size_t N>
void printGroup(const Row<OspfProcessCfg> (&rows)[N], const OspfProcessCfg &process) {
    printRows(rows, process);
    print("\n\n");
}

void printProcess(const OspfProcessCfg &process) {
    char heading[kLineBytes];
    format(heading, "*****************Routing Protocol is ospf %d  *****************\n\n",
           process.processId);
    print(heading);
    if (process.routerIdSet == 1) {
        printRows(kRouterIdRows, process);
    }
    printGroup(kSettingRows, process);
    printGroup(kDefaultRouteRows, process);
    printGroup(kBandwidthRows, process);
    printList("\n\nnetwork\n", process, kNetworks);
    printList("\n\narea\n", process, kAreas);
    printList("\n\nareaAgg\n", process, kAreaAggregates);
    printList("\n\nvirtual link\n", process, kVirtualLinks);
    printList("\n\nRedistribution\n", process, kRedistributions);
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
    std::array<OspfInterfaceEntry, kEntries> entries;
    static_assert(sizeof entries == sizeof model.interface);
    memcpy(entries.data(), model.interface, sizeof entries);
    for (const OspfInterfaceEntry &entry : entries) {
        if (entry.inUse == 1) {
            printRows(kInterfaceRows, entry);
        }
    }
}

} // namespace

void ucOspfShowConfig(void) {
    print("OSPF Instance:\r\n");
    if (pucOspf != nullptr) {
        printProcesses(*pucOspf);
    }
    print("OSPF Interface:\r\n");
    if (pucOspf != nullptr) {
        printInterfaces(*pucOspf);
    }
    print("\n");
}

void swShowOspfConfig(void) {
    ucOspfShowConfig();
}

// SPDX-License-Identifier: Apache-2.0
// The OSPF model as text.

#include "tests/unit/ospf_model_state.h"

#include <arpa/inet.h>
#include <cstring>

#include "common/dlist.h"

namespace model {

namespace {

using Fields = std::map<std::string, std::string>;

/// A key's bytes: letters as they are, zeroes as dots, anything else as a question mark.
template <std::size_t N> std::string bytes(const uint8_t (&field)[N]) {
    std::string text;
    for (const uint8_t byte : field) {
        text += byte == 0 ? '.' : byte < 32 || byte > 126 ? '?' : static_cast<char>(byte);
    }
    return text;
}

template <typename Number> std::string number(Number value) {
    return std::to_string(value);
}

std::string text(const OspfNetworkCfg &record) {
    return dotted(record.address) + "/" + dotted(record.mask) + " area " + number(record.areaId);
}

std::string text(const OspfAreaCfg &record) {
    return dotted(record.areaId) + " type " + number(record.areaType) + " cost " +
           number(record.defaultCost) + " no-summary " + number(record.noSummary) + " [" +
           bytes(record.trailing) + "]";
}

std::string text(const OspfAreaAggCfg &record) {
    return dotted(record.areaId) + " " + dotted(record.prefix) + "/" + dotted(record.mask) +
           " cost " + number(record.cost) + " advertise " + number(record.advertise);
}

std::string text(const OspfVirtualLinkCfg &record) {
    return dotted(record.areaId) + " " + dotted(record.peerRouterId) + " timers " +
           number(record.retransmitInterval) + "/" + number(record.helloInterval) + "/" +
           number(record.deadInterval) + "/" + number(record.transmitDelay) + " auth " +
           number(record.authType) + " " + bytes(record.simpleKey) + " " + number(record.md5KeyId) +
           " " + bytes(record.md5Key);
}

std::string text(const OspfRedistributeCfg &record) {
    return "source " + number(record.source) + " set " + number(record.set) + " metric " +
           number(record.metric) + " type " + number(record.metricType) + " process " +
           number(record.sourceProcessId);
}

template <typename Record> std::string list(const dlist *records) {
    if (records == nullptr) {
        return "(none)";
    }
    std::string all;
    for (const dlist_node *node = records->head; node != nullptr; node = node->next) {
        all += (all.empty() ? "" : "; ") + text(*static_cast<const Record *>(node->data));
    }
    return all;
}

void addProcess(Fields &fields, const std::string &at, const OspfProcessCfg &process) {
    fields[at + "enabled"] = number(process.enabled);
    fields[at + "processId"] = number(process.processId);
    fields[at + "reservedAddress"] = dotted(process.reservedAddress);
    fields[at + "routerId"] = dotted(process.routerId);
    fields[at + "routerIdSet"] = number(process.routerIdSet);
    fields[at + "gracefulRestart"] = number(process.gracefulRestart);
    fields[at + "defaultRouteAdvertise"] = number(process.defaultRouteAdvertise);
    fields[at + "always"] = number(process.always);
    fields[at + "originateMetric"] = number(process.originateMetric);
    fields[at + "metricType"] = number(process.metricType);
    fields[at + "adminDistance"] = number(process.adminDistance);
    fields[at + "rfc1583Compatibility"] = number(process.rfc1583Compatibility);
    fields[at + "defaultMetric"] = number(process.defaultMetric);
    fields[at + "maximumPaths"] = number(process.maximumPaths);
    fields[at + "passiveDefault"] = number(process.passiveDefault);
    fields[at + "referenceBandwidth"] = number(process.referenceBandwidth);
    fields[at + "spfDelay"] = number(process.spfDelay);
    fields[at + "spfInitialHold"] = number(process.spfInitialHold);
    fields[at + "spfMaximumHold"] = number(process.spfMaximumHold);
    fields[at + "networks"] = list<OspfNetworkCfg>(process.networks);
    fields[at + "areas"] = list<OspfAreaCfg>(process.areas);
    fields[at + "areaAggregates"] = list<OspfAreaAggCfg>(process.areaAggregates);
    fields[at + "virtualLinks"] = list<OspfVirtualLinkCfg>(process.virtualLinks);
}

void addEntry(Fields &fields, const std::string &at, const OspfInterfaceEntry &entry) {
    fields[at + "inUse"] = number(entry.inUse);
    fields[at + "vlanId"] = number(entry.vlanId);
    fields[at + "processId"] = number(entry.processId);
    fields[at + "areaId"] = number(entry.areaId);
    fields[at + "priority"] = number(entry.priority);
    fields[at + "retransmitInterval"] = number(entry.retransmitInterval);
    fields[at + "helloInterval"] = number(entry.helloInterval);
    fields[at + "deadInterval"] = number(entry.deadInterval);
    fields[at + "transmitDelay"] = number(entry.transmitDelay);
    fields[at + "cost"] = number(entry.cost);
    fields[at + "networkType"] = number(entry.networkType);
    fields[at + "spare"] = number(entry.spare);
    fields[at + "mtuIgnore"] = number(entry.mtuIgnore);
    fields[at + "authType"] = number(entry.authType);
    fields[at + "simpleKey"] = bytes(entry.simpleKey);
    fields[at + "md5KeyId"] = number(entry.md5KeyId);
    fields[at + "md5Key"] = bytes(entry.md5Key);
}

/// Whether the fixed clear has taken the upper bytes of slot 14's handle; it must not be followed.
bool isCut(const OspfProcessCfg &process) {
    const auto *bytesOfHandle = reinterpret_cast<const uint8_t *>(&process.redistributions);
    const auto *bytesOfOther = reinterpret_cast<const uint8_t *>(&process.networks);
    return memcmp(bytesOfHandle + 5, bytesOfOther + 5, 3) != 0;
}

} // namespace

std::string dotted(uint32_t address) {
    char text[INET_ADDRSTRLEN];
    return inet_ntop(AF_INET, &address, text, sizeof text);
}

uint32_t address(const char *text) {
    return inet_addr(text);
}

uint64_t words(uint32_t first, uint32_t second) {
    return static_cast<uint64_t>(second) << 32 | first;
}

Fields fields() {
    Fields all;
    for (std::size_t slot = 0; slot < 16; ++slot) {
        const std::string at = "slot " + std::to_string(slot) + " ";
        const OspfProcessCfg &process = pucOspf->process[slot];
        all[at + "word"] = number(pucOspf->processWord[slot]);
        addProcess(all, at, process);
        all[at + "redistributions"] = slot == 14 && isCut(process)
                                          ? "(cut)"
                                          : list<OspfRedistributeCfg>(process.redistributions);
    }
    for (std::size_t index = 0; index < 64; ++index) {
        addEntry(all, "entry " + std::to_string(index) + " ", pucOspf->interface[index]);
    }
    return all;
}

std::string lines(std::set<std::string> unordered) {
    std::string all;
    for (const std::string &line : unordered) {
        all += line + "\n";
    }
    return all;
}

std::string Changes::take() {
    const Fields now = fields();
    std::string changed;
    for (const auto &[name, value] : now) {
        if (before_[name] != value) {
            changed += name + ": " + value + "\n";
        }
    }
    before_ = now;
    return changed;
}

} // namespace model

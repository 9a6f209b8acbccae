// SPDX-License-Identifier: Apache-2.0
// The command tables of docs/ospf.md: every row is called, set and unset, and its texts must
// arrive.

#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <dlfcn.h>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

#include "ospf/uc_ospf.h"
#include "tests/support/stage.h"

namespace {

using Texts = std::vector<std::string>;

/// What an argument of that name is in the calls of this test; a name that is not here is 7.
const std::map<std::string, std::string> kTexts = {
    {"routerId", "10.0.0.1"        },
    {"address",  "10.1.0.0"        },
    {"mask",     "255.255.0.0"     },
    {"area",     "0.0.0.5"         },
    {"prefix",   "10.2.0.0"        },
    {"peer",     "10.0.0.2"        },
    {"key",      "0123456789abcdef"},
};
const std::map<std::string, uint64_t> kNumbers = {
    {"processId", 1},
    {"selector",  1},
    {"vlanId",    2},
    {"unused",    0},
};
constexpr uint64_t kOtherNumber = 7;

struct Row {
    std::string function;
    Texts arguments;
    std::string set;
    std::string unset;
};

/// The text between the first pair of backquotes after position, which moves past it.
std::string codeSpan(const std::string &line, std::size_t &position) {
    const std::size_t begin = line.find('`', position);
    const std::size_t end = begin == std::string::npos ? begin : line.find('`', begin + 1);
    if (end == std::string::npos) {
        return "";
    }
    position = end + 1;
    return line.substr(begin + 1, end - begin - 1);
}

Texts splitArguments(const std::string &list) {
    Texts arguments;
    std::string word;
    for (const char c : list + ",") {
        if (c == ',') {
            arguments.push_back(word);
            word.clear();
        } else if (c != ' ') {
            word += c;
        }
    }
    return arguments;
}

std::vector<Row> rowsOfThePage() {
    std::ifstream page(FRRUCI_OSPF_PAGE);
    EXPECT_TRUE(page) << FRRUCI_OSPF_PAGE;
    std::vector<Row> rows;
    std::string line;
    while (std::getline(page, line)) {
        const std::size_t open = line.find('(');
        if (line.rfind("| `sw", 0) != 0 || open == std::string::npos) {
            continue;
        }
        std::size_t position = 0;
        const std::string call = codeSpan(line, position);
        Row row;
        row.function = call.substr(0, call.find('('));
        row.arguments = splitArguments(
            call.substr(row.function.size() + 1, call.size() - row.function.size() - 2));
        row.set = codeSpan(line, position);
        row.unset = codeSpan(line, position);
        rows.push_back(row);
    }
    return rows;
}

std::string valueOf(const std::string &name) {
    if (const auto text = kTexts.find(name); text != kTexts.end()) {
        return text->second;
    }
    const auto number = kNumbers.find(name);
    return std::to_string(number != kNumbers.end() ? number->second : kOtherNumber);
}

/// The text with each <name> replaced by its value.
std::string filled(const std::string &text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '<') {
            result += text[i];
            continue;
        }
        const std::size_t end = text.find('>', i);
        const std::string name = text.substr(i + 1, end - i - 1);
        result += name == "length" ? "16" : valueOf(name);
        i = end;
    }
    return result;
}

uint32_t call(const Row &row, uint64_t set) {
    using Function =
        uint64_t (*)(uint64_t, uint64_t, uint64_t, uint64_t, uint64_t, uint64_t, uint64_t, uint64_t,
                     uint64_t, uint64_t, uint64_t, uint64_t, uint64_t);
    const auto function = reinterpret_cast<Function>(dlsym(RTLD_DEFAULT, row.function.c_str()));
    if (function == nullptr) {
        ADD_FAILURE() << "there is no " << row.function;
        return 0;
    }
    uint64_t at[13] = {};
    for (std::size_t i = 0; i < row.arguments.size() && i < 13; ++i) {
        const std::string &name = row.arguments[i];
        if (const auto text = kTexts.find(name); text != kTexts.end()) {
            at[i] = reinterpret_cast<uint64_t>(text->second.c_str());
        } else if (isdigit(static_cast<unsigned char>(name[0])) != 0) {
            at[i] = strtoull(name.c_str(), nullptr, 10);
        } else {
            at[i] = name == "set" ? set : strtoull(valueOf(name).c_str(), nullptr, 10);
        }
    }
    return static_cast<uint32_t>(function(at[0], at[1], at[2], at[3], at[4], at[5], at[6], at[7],
                                          at[8], at[9], at[10], at[11], at[12]));
}

/// The last command of each session on ospfd, those in the exec context left out.
Texts commandsSent(const std::string &trace) {
    Texts commands;
    std::size_t begin = 0;
    for (std::size_t end = trace.find('\n'); end != std::string::npos;
         begin = end + 1, end = trace.find('\n', begin)) {
        const std::string line = trace.substr(begin, end - begin);
        if (line.rfind("ospfd: en | configure | ", 0) != 0) {
            continue;
        }
        std::string command = line.substr(line.rfind(" | ") + 3);
        if (command[0] == '"') { // the stage quotes a text with spaces at an end
            command = command.substr(1, command.size() - 2);
        }
        commands.push_back(command);
    }
    return commands;
}

/// Virtual links and the router's settings, but for a network, are sent twice.
std::size_t sendsOf(const Row &row) {
    const bool once = row.function.rfind("swIp", 0) == 0 || row.function == "swOspfNetwork" ||
                      row.function.rfind("swOspfArea", 0) == 0;
    return once ? 1 : 2;
}

TEST(OspfPage, EveryRowSendsWhatItSays) {
    const std::vector<Row> rows = rowsOfThePage();
    ASSERT_GE(rows.size(), 55u);
    stage::Stage stage;
    stage.shell("is_vlan_id", {.text = "1\n", .writeTo = "/tmp/cli_vid"});
    for (const Row &row : rows) {
        SCOPED_TRACE(row.function + ": " + row.set);
        ASSERT_EQ(ucOspfInit(), 0u);
        (void)stage.trace();
        EXPECT_NE(call(row, 1), 1u);
        EXPECT_EQ(commandsSent(stage.trace()), Texts(sendsOf(row), filled(row.set)));
        (void)call(row, 0); // results are other tests' matter
        EXPECT_EQ(commandsSent(stage.trace()), Texts(sendsOf(row), filled(row.unset)));
    }
}

TEST(OspfPage, HasARowForEveryCommand) {
    std::map<std::string, int> rows;
    for (const Row &row : rowsOfThePage()) {
        ++rows[row.function];
    }
    for (const char *function : {"swOspfRouterId",
                                 "swOspfGracefulRestart",
                                 "swOspfRfc1583Compa",
                                 "swOspfDefaultMetric",
                                 "swOspfdistance",
                                 "swOspfMaxPaths",
                                 "swOspfAutoCostRef",
                                 "swOspfPassiveInterface",
                                 "swOspfTimerThrottleSpf",
                                 "swOspfOrignate",
                                 "swOspfNetwork",
                                 "swOspfRedistribute",
                                 "swOspfArea",
                                 "swOspfAreaSummary",
                                 "swOspfAreaDefaultCost",
                                 "swOspfAreaRange",
                                 "swOspfVirtualLink",
                                 "swOspfVirtualLinkAuth",
                                 "swOspfVirtualLinkAuthKey",
                                 "swOspfVirtualLinkMd5Key",
                                 "swIpOspfHelloInterval",
                                 "swIpOspfDeadInterval",
                                 "swIpOspfRetransmitInterval",
                                 "swIpOspfTransmitDelay",
                                 "swIpOpsfCost",
                                 "swIpOspfPriority",
                                 "swIpOspfMtuIgnore",
                                 "swIpOspfNetwork",
                                 "swIpOspfAuth",
                                 "swIpOspfAuthKey",
                                 "swIpOspfAuthM5dKey"}) {
        EXPECT_GE(rows[function], 1) << function;
    }
}

} // namespace

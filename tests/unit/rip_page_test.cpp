// SPDX-License-Identifier: Apache-2.0
// The tables of docs/rip.md: every row is called, and what it says must arrive.

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <dlfcn.h>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "rip/sw_rip.h"
#include "tests/support/stage.h"
#include "vty/frr_util.h"

namespace {

using Texts = std::vector<std::string>;

constexpr uint64_t kKey = 0x0000000200000001; // eth1.2

/// What an argument of that name is in the calls of this test.
const std::map<std::string, std::string> kTexts = {
    {"vrf",    "default"    },
    {"ip",     "10.1.0.0"   },
    {"mask",   "255.255.0.0"},
    {"ifname", "eth1.2"     }
};
constexpr const char *kLength = "16"; // of that mask

struct Command {
    std::string function;
    Texts arguments;
    std::string ranged; ///< the argument that has a range; empty when none has
    uint64_t low = 1;
    uint64_t high = 1;
    std::string set;
    std::string unset;
    bool twice = false;
};

struct Request {
    std::string handler;
    std::string words;
    Texts commands;
};

Texts cellsOf(const std::string &line) {
    Texts cells;
    std::istringstream stream(line);
    std::string cell;
    std::getline(stream, cell, '|'); // nothing stands in front of the first bar
    while (std::getline(stream, cell, '|')) {
        const std::size_t begin = cell.find_first_not_of(' ');
        const std::size_t end = cell.find_last_not_of(' ');
        cells.push_back(begin == std::string::npos ? "" : cell.substr(begin, end - begin + 1));
    }
    return cells;
}

/// The texts between backquotes.
Texts codeSpans(const std::string &cell) {
    Texts spans;
    for (std::size_t at = cell.find('`'); at != std::string::npos; at = cell.find('`', at + 1)) {
        const std::size_t end = cell.find('`', at + 1);
        spans.push_back(cell.substr(at + 1, end - at - 1));
        at = end;
    }
    return spans;
}

Texts linesOfThePage(const std::string &begin) {
    std::ifstream page(FRRUCI_RIP_PAGE);
    EXPECT_TRUE(page) << FRRUCI_RIP_PAGE;
    Texts lines;
    for (std::string line; std::getline(page, line);) {
        if (line.rfind(begin, 0) == 0) {
            lines.push_back(line);
        }
    }
    return lines;
}

Command commandOf(const Texts &cells) {
    Command command;
    const std::string call = codeSpans(cells[0]).at(0);
    command.function = call.substr(0, call.find('('));
    std::string list = call.substr(command.function.size() + 1);
    list.erase(std::remove(list.begin(), list.end(), ' '), list.end());
    std::istringstream arguments(list.substr(0, list.size() - 1));
    for (std::string argument; std::getline(arguments, argument, ',');) {
        command.arguments.push_back(argument);
    }
    if (!cells[1].empty()) {
        command.ranged = codeSpans(cells[1]).at(0);
        const std::string range = cells[1].substr(cells[1].rfind(' ') + 1);
        command.low = strtoull(range.c_str(), nullptr, 10);
        command.high = strtoull(range.substr(range.find("..") + 2).c_str(), nullptr, 10);
    }
    command.set = codeSpans(cells[2]).at(0);
    command.unset = codeSpans(cells[3]).at(0);
    command.twice = cells[4] == "twice";
    EXPECT_TRUE(command.twice || cells[4] == "once");
    return command;
}

std::vector<Command> commandsOfThePage() {
    std::vector<Command> commands;
    for (const std::string &line : linesOfThePage("| `swRip")) {
        const Texts cells = cellsOf(line);
        if (cells.size() == 6) { // those with texts to send
            commands.push_back(commandOf(cells));
        }
    }
    return commands;
}

std::vector<Request> requestsOfThePage() {
    std::vector<Request> requests;
    for (const std::string &line : linesOfThePage("| `process_rip")) {
        const Texts cells = cellsOf(line);
        requests.push_back(
            {codeSpans(cells.at(0)).at(0), codeSpans(cells.at(1)).at(0), codeSpans(cells.at(2))});
    }
    return requests;
}

/// The text with each <name> replaced by what the argument is.
std::string filled(const std::string &text, uint64_t ranged) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '<') {
            result += text[i];
            continue;
        }
        const std::size_t end = text.find('>', i);
        const std::string name = text.substr(i + 1, end - i - 1);
        const auto known = kTexts.find(name);
        result += name == "length"        ? kLength
                  : known != kTexts.end() ? known->second
                                          : std::to_string(ranged);
        i = end;
    }
    return result;
}

void *functionOf(const std::string &name) {
    void *function = dlsym(RTLD_DEFAULT, name.c_str());
    EXPECT_NE(function, nullptr) << name;
    return function;
}

uint32_t call(const Command &command, uint64_t ranged, uint64_t enable) {
    using Function =
        uint64_t (*)(uint64_t, uint64_t, uint64_t, uint64_t, uint64_t, uint64_t, uint64_t);
    uint64_t at[7] = {};
    for (std::size_t i = 0; i < command.arguments.size(); ++i) {
        const std::string &name = command.arguments[i];
        if (const auto text = kTexts.find(name); text != kTexts.end()) {
            at[i] = reinterpret_cast<uint64_t>(text->second.c_str());
        } else if (isdigit(static_cast<unsigned char>(name[0])) != 0) {
            at[i] = strtoull(name.c_str(), nullptr, 10);
        } else if (name == "key") {
            at[i] = kKey;
        } else if (name == "enable" || name == "add") {
            at[i] = enable;
        } else if (name == command.ranged) {
            at[i] = ranged;
        }
    }
    const auto function = reinterpret_cast<Function>(functionOf(command.function));
    return static_cast<uint32_t>(function(at[0], at[1], at[2], at[3], at[4], at[5], at[6]));
}

/// The last command of each session on ripd.
Texts commandsSent(const std::string &trace) {
    Texts commands;
    std::istringstream lines(trace);
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind("ripd: ", 0) == 0) {
            const std::size_t bar = line.rfind(" | ");
            commands.push_back(line.substr(bar == std::string::npos ? 6 : bar + 3));
        }
    }
    return commands;
}

class RipPage : public testing::Test {
protected:
    /// A fresh library with its instance, and nothing sent yet.
    void start() {
        ASSERT_EQ(frrVtyInit(), 0);
        ASSERT_EQ(swRipInit(), 0U);
        ASSERT_EQ(ucRipVrfAppend("default", nullptr), 0U);
        (void)stage.trace();
    }

    void expectSent(const Command &command, uint64_t ranged, uint64_t enable) {
        EXPECT_EQ(call(command, ranged, enable), 0U);
        const std::string &text = enable == 1 ? command.set : command.unset;
        EXPECT_EQ(commandsSent(stage.trace()), Texts(command.twice ? 2 : 1, filled(text, ranged)));
    }

    stage::Stage stage;
};

TEST_F(RipPage, EveryCommandSendsWhatItsRowSays) {
    const std::vector<Command> commands = commandsOfThePage();
    ASSERT_EQ(commands.size(), 23U);
    for (const Command &command : commands) {
        SCOPED_TRACE(command.function + ": " + command.set);
        start();
        // A metric of 0 has a row of its own where it has another text.
        const bool zeroApart = command.set.find("metric <metric>") != std::string::npos &&
                               command.function == "swRipRedistributeSet";
        expectSent(command, command.low + (zeroApart ? 1 : 0), 1);
        expectSent(command, command.high, 1);
        expectSent(command, command.high, 0);
        if (!command.ranged.empty()) {
            EXPECT_EQ(call(command, command.high + 1, 1), 1U);
            EXPECT_EQ(command.low == 0 ? 1U : call(command, command.low - 1, 1), 1U);
            EXPECT_STREQ(stage.trace(), "");
        }
    }
}

TEST_F(RipPage, HasARowForEveryCommand) {
    std::set<std::string> rows;
    for (const Command &command : commandsOfThePage()) {
        rows.insert(command.function);
    }
    const std::set<std::string> wanted = {"swRipNetworkSet",          "swRipNeighborSet",
                                          "swRipVersionSet",          "swRipDistanceSet",
                                          "swRipDefaultMetricSet",    "swRipAutoSummSet",
                                          "swRipRouteStaticSet",      "swRipDefaultInformationSet",
                                          "swRipRedistributeSet",     "swRipTimerSet",
                                          "swRipIfSplitHorizonSet",   "swRipIfSendVersionSet",
                                          "swRipIfReceiveVersionSet", "swRipIfV2BroadcastSet"};
    EXPECT_EQ(rows, wanted);
}

TEST_F(RipPage, EveryRequestSendsWhatItsRowSays) {
    const std::vector<Request> requests = requestsOfThePage();
    ASSERT_EQ(requests.size(), 28U);
    for (const Request &request : requests) {
        SCOPED_TRACE(request.handler + " " + request.words);
        start();
        Texts words;
        std::istringstream stream(request.words);
        for (std::string word; stream >> word;) {
            words.push_back(word);
        }
        std::vector<char *> vector;
        for (std::string &word : words) {
            vector.push_back(word.data());
        }
        const auto handler =
            reinterpret_cast<void (*)(int32_t, char **)>(functionOf(request.handler));
        handler(static_cast<int32_t>(vector.size()), vector.data());
        const std::string trace = stage.trace();
        Texts wanted;
        for (const std::string &command : request.commands) {
            wanted.insert(wanted.end(), request.handler == "process_rip_interface" ? 1 : 2,
                          command);
        }
        EXPECT_EQ(commandsSent(trace), wanted);
        EXPECT_NE(trace.find("reply ospf_pipe_c2lua: ok\n"), std::string::npos);
    }
}

} // namespace

// SPDX-License-Identifier: Apache-2.0
// The tables of builders and keywords in docs/ospf-front.md are those of the library.

#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "ospf/frr_ospf.h"
#include "tests/support/stage.h"

namespace {

using Cells = std::vector<std::string>;

constexpr int32_t kSet = 1;
constexpr int32_t kUnset = 0;
constexpr int32_t kNumber = 7;
constexpr const char *kName = "eth1.2";

/// The rows of the table whose header begins with these cells, without the code marks.
std::vector<Cells> tableOf(const std::string &header) {
    std::ifstream document(FRRUCI_DOCS "/ospf-front.md");
    std::vector<Cells> rows;
    bool within = false;
    for (std::string line; std::getline(document, line);) {
        if (line.empty()) {
            within = false;
        } else if (line.rfind(header, 0) == 0) {
            within = true;
        } else if (within && line.rfind("| `", 0) == 0) {
            Cells cells;
            static const std::regex kCell("\\| ([^|]*) (?=\\|)");
            for (std::sregex_iterator cell(line.begin(), line.end(), kCell), end; cell != end;
                 ++cell) {
                cells.push_back(std::regex_replace((*cell)[1].str(), std::regex("`"), ""));
            }
            rows.push_back(cells);
        }
    }
    return rows;
}

/// Puts the values into a documented command.
std::string filled(std::string command) {
    command = std::regex_replace(command, std::regex(" V$"), " 7");
    command = std::regex_replace(command, std::regex(" I( |$)"), " 5$1");
    return std::regex_replace(command, std::regex(" K$"), " key");
}

std::string session(const std::string &command) {
    return std::string("ospfd: en | configure | interface ") + kName + " | " + command + "\n";
}

using Call = std::function<uint32_t(int32_t enable)>;

template <auto Builder> Call number(int32_t value = kNumber) {
    return [value](int32_t enable) { return Builder(0, kName, 1, enable, value); };
}

Call networkType(uint32_t code) {
    return [code](int32_t enable) { return ip_ospf_network_type(0, kName, 1, enable, code); };
}

template <auto Builder> Call plain() {
    return [](int32_t enable) { return Builder(0, kName, 1, enable); };
}

const std::map<std::string, Call> &builders() {
    static const std::map<std::string, Call> kBuilders = {
        {"ip_ospf_cost",           number<ip_ospf_cost>()                                 },
        {"ip_ospf_retransmit",     number<ip_ospf_retransmit>()                           },
        {"ip_ospf_transmit",       number<ip_ospf_transmit>()                             },
        {"ip_ospf_priority",       number<ip_ospf_priority>()                             },
        {"ip_ospf_hello",          number<ip_ospf_hello>()                                },
        {"ip_ospf_dead",           number<ip_ospf_dead>()                                 },
        {"ip_ospf_network_type 0", networkType(0)                                         },
        {"ip_ospf_network_type 1", networkType(1)                                         },
        {"ip_ospf_network_type 2", networkType(2)                                         },
        {"ip_ospf_mtu_ignore",     plain<ip_ospf_mtu_ignore>()                            },
        {"ip_ospf_passive",        plain<ip_ospf_passive>()                               },
        {"ip_ospf_auth 0",         number<ip_ospf_auth>(0)                                },
        {"ip_ospf_auth 1",         number<ip_ospf_auth>(1)                                },
        {"ip_ospf_auth 2",         number<ip_ospf_auth>(2)                                },
        {"ip_ospf_auth_key",
         [](int32_t enable) { return ip_ospf_auth_key(0, kName, 1, enable, "key"); }      },
        {"ip_ospf_auth_md5key",
         [](int32_t enable) { return ip_ospf_auth_md5key(0, kName, 1, enable, 5, "key"); }},
    };
    return kBuilders;
}

TEST(OspfDocs, EveryBuilderSendsWhatItsRowSays) {
    stage::Stage stage;
    std::set<std::string> seen;
    for (const Cells &row : tableOf("| Builder | Set |")) {
        ASSERT_EQ(row.size(), 3u) << row[0];
        const auto builder = builders().find(row[0]);
        ASSERT_NE(builder, builders().end()) << row[0];
        EXPECT_EQ(builder->second(kSet), 0u);
        EXPECT_EQ(stage.trace(), session(filled(row[1])));
        EXPECT_EQ(builder->second(kUnset), 0u);
        EXPECT_EQ(stage.trace(), session(filled(row[2])));
        seen.insert(row[0]);
    }
    EXPECT_EQ(seen.size(), builders().size());
}

/// The commands of the set and of the unset form of a builder with the value 1.
Cells commandsOf(const std::string &builder) {
    for (const Cells &row : tableOf("| Builder | Set |")) {
        if (row[0] == builder || row[0] == builder + " 1") {
            return {std::regex_replace(row[1], std::regex(" V$"), " 1"), row[2]};
        }
    }
    return {"no such builder", "no such builder"};
}

void give(const std::string &keyword, const char *value) {
    std::string words[] = {kName, "wan", keyword, value};
    char *argv[] = {words[0].data(), words[1].data(), words[2].data(), words[3].data(), nullptr};
    process_ospf_interface(4, argv);
}

TEST(OspfDocs, EveryKeywordCallsTheBuilderOfItsRow) {
    stage::Stage stage;
    const std::string reply = "reply ospf_pipe_c2lua: ok\n";
    std::size_t rows = 0;
    for (const Cells &row : tableOf("| Keyword | Builder |")) {
        ASSERT_EQ(row.size(), 3u) << row[0];
        const Cells commands = commandsOf(row[1]);
        give(row[0], "1");
        EXPECT_EQ(stage.trace(), session(commands[0]) + reply);
        if (row[2] == "switch") {
            give(row[0], "0");
            EXPECT_EQ(stage.trace(), session(commands[1]) + reply);
        } else {
            EXPECT_EQ(row[2], "number");
        }
        ++rows;
    }
    EXPECT_EQ(rows, 9u);
}

} // namespace

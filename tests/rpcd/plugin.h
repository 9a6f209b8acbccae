// SPDX-License-Identifier: Apache-2.0
// Calls the plugin as rpcd does, against fake daemons.
#ifndef FRRUCI_TESTS_RPCD_PLUGIN_H
#define FRRUCI_TESTS_RPCD_PLUGIN_H

#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "tests/host/program.h"
#include "tests/rpcd/json_text.h"
#include "tests/support/stage.h"

namespace plugin {

using program::frruci;
using program::has;
using program::Outcome;

/// The methods, by what a login needs for them.
constexpr const char *kReading[] = {"status", "neighbors",  "database", "interfaces",
                                    "rip",    "nhrp_cache", "diff",     "doctor"};
constexpr const char *kWriting[] = {"apply", "call"};

/// What came of an apply.
constexpr const char *kApplied = "/tmp/tmp/applied";

/// The least that a method takes.
inline std::string leastFor(const std::string &method) {
    return method == "call" ? R"({"handler":"process_ospf_neighbor"})" : "{}";
}

class Plugin : public testing::Test {
protected:
    void SetUp() override {
        // Sanitizers load libraries in the program's name, without its run path.
        setenv("FRRUCI_LIBRARY", LIBRARY, 1);
        unlink(kApplied);
        for (const char *package : {"ospf", "rip", "nhrp"}) {
            store(package, "");
        }
    }

    static void store(const std::string &package, const std::string &text) {
        stage::writeFile(("/etc/config/" + package).c_str(), text.c_str());
    }

    static Outcome call(const std::string &method, const std::string &arguments = "{}") {
        return frruci({"--timeout", "1", "rpcd", "call", method}, arguments);
    }

    /// The answer without spaces; it has to be one.
    static std::string answer(const std::string &method, const std::string &arguments = "{}") {
        const Outcome outcome = call(method, arguments);
        EXPECT_EQ(outcome.status, 0) << method << outcome.errors;
        EXPECT_EQ(outcome.errors, "") << method;
        return jsontext::compact(outcome.output);
    }

    /// Without them the real daemons would be started, and take the fake ones' places.
    const program::Daemons processes_{
        {"zebra", "ospfd", "ripd", "nhrpd"}
    };
    stage::Stage stage_;
};

} // namespace plugin

#endif

/* SPDX-License-Identifier: Apache-2.0 */
/* The program and its daemons, for the tests that apply stores. */
#ifndef FRRUCI_TESTS_APPLY_PROGRAM_H
#define FRRUCI_TESTS_APPLY_PROGRAM_H

#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/real_daemons.h"

namespace program {

using routers::Router;

inline const Router &router() {
    static const Router kRouter = Router::first();
    return kRouter;
}

constexpr const char *kDaemons[] = {"ospfd", "ripd", "nhrpd", "zebra", "mgmtd"};

/// Starts the daemons, mgmtd before them where the version has one.
inline void start(std::initializer_list<const char *> daemons) {
    ASSERT_TRUE(router().answers("mgmtd") || router().startManagement());
    for (const char *daemon : daemons) {
        ASSERT_TRUE(router().start(daemon)) << daemon;
    }
}

inline void stopAll() {
    for (const char *daemon : kDaemons) {
        EXPECT_TRUE(router().stop(daemon)) << daemon;
    }
}

/// What a run of frruci left: its exit status and all that it printed.
struct Outcome {
    int status;
    std::string text;
};

inline Outcome frruci(const std::string &words) {
    const int status = router().run("FRRUCI_LIBRARY=" FRRUCI_LIBRARY " " FRRUCI_HOST " " + words +
                                    " > /tmp/frruci.out 2>&1");
    std::ifstream out("/tmp/frruci.out");
    std::stringstream text;
    text << out.rdbuf();
    return {status, text.str()};
}

inline void write(const std::string &package, const std::string &text) {
    std::ofstream("/etc/config/" + package) << text;
}

/// The lines of a configuration, each with the contexts that it stands in. Order and blank lines do
/// not count, nor do interfaces without settings.
inline std::set<std::string> lines(const std::string &text) {
    std::set<std::string> result;
    std::vector<std::string> contexts;
    std::istringstream from(text);
    for (std::string line; std::getline(from, line);) {
        const std::size_t depth = line.find_first_not_of(' ');
        if (depth == std::string::npos || line[depth] == '!' || line.substr(depth) == "exit") {
            continue;
        }
        line.erase(line.find_last_not_of(' ') + 1);
        contexts.resize(std::min(contexts.size(), depth));
        std::string path;
        for (const std::string &context : contexts) {
            path += context + " / ";
        }
        contexts.push_back(line.substr(depth));
        if (depth > 0 || line.compare(0, 10, "interface ") != 0) {
            result.insert(path + line.substr(depth));
        }
    }
    return result;
}

inline std::set<std::string> running(const std::string &daemon) {
    return lines(router().runningConfig(daemon));
}

/// What one has and the other lacks, for messages.
inline std::string missing(const std::set<std::string> &from, const std::set<std::string> &in) {
    std::string text;
    for (const std::string &line : in) {
        text += from.count(line) == 0 ? "  " + line + "\n" : "";
    }
    return text;
}

inline void expectSame(const std::set<std::string> &expected, const std::set<std::string> &got) {
    EXPECT_EQ(missing(got, expected), "") << "lines that are missing";
    EXPECT_EQ(missing(expected, got), "") << "lines that are too many";
}

} // namespace program

#endif

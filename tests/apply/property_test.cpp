// SPDX-License-Identifier: Apache-2.0
// From any store to any other: what apply leaves equals what a fresh daemon has after the replay.

#include <cstdlib>
#include <map>

#include "tests/apply/program.h"
#include "tests/apply/stores.h"

namespace {

using namespace program;

constexpr unsigned kSeed = 20000;

unsigned number(const char *variable, unsigned otherwise) {
    const char *wanted = std::getenv(variable);
    return wanted == nullptr ? otherwise : static_cast<unsigned>(std::atoi(wanted));
}

/// FRRUCI_APPLY_PAIRS asks for more, FRRUCI_APPLY_FIRST for others.
unsigned firstPair() {
    return number("FRRUCI_APPLY_FIRST", 0);
}

unsigned endOfPairs() {
    return firstPair() + number("FRRUCI_APPLY_PAIRS", 30);
}

class Property : public testing::Test {
protected:
    void TearDown() override { stopAll(); }

    static void applied(const std::string &protocol) {
        const Outcome run = frruci("apply " + protocol);
        ASSERT_EQ(run.status, 0) << run.text;
    }

    /// The difference is empty, and a second time nothing is sent.
    static void settled(const std::string &protocol) {
        const Outcome diff = frruci("diff " + protocol);
        EXPECT_EQ(diff.status, 0);
        EXPECT_EQ(diff.text, "");
        const Outcome again = frruci("apply " + protocol);
        EXPECT_EQ(again.status, 0);
        EXPECT_EQ(again.text, "");
    }

    /// Ends with a daemon that has nothing, and that mgmtd has nothing of.
    static void restart(const std::string &daemon) {
        ASSERT_TRUE(router().stop(daemon));
        if (daemon == "ripd") {
            ASSERT_TRUE(router().stop("mgmtd") && router().startManagement());
        }
        ASSERT_TRUE(router().start(daemon));
    }
};

TEST_F(Property, Ospf) {
    start({"zebra", "ospfd"});
    for (unsigned i = firstPair(); i < endOfPairs(); ++i) {
        SCOPED_TRACE("pair " + std::to_string(i));
        write("ospf", stores::ospf(kSeed + 2 * i));
        applied("ospf");
        write("ospf", stores::ospf(kSeed + 2 * i + 1));
        applied("ospf");
        const auto got = running("ospfd");
        settled("ospf");

        restart("ospfd");
        (void)frruci("recover ospf"); // some of its commands are refused
        expectSame(running("ospfd"), got);
        ASSERT_FALSE(HasFailure()) << stores::ospf(kSeed + 2 * i) << "\nthen\n"
                                   << stores::ospf(kSeed + 2 * i + 1);
    }
}

TEST_F(Property, Rip) {
    start({"zebra", "ripd"});
    for (unsigned i = firstPair(); i < endOfPairs(); ++i) {
        SCOPED_TRACE("pair " + std::to_string(i));
        write("rip", stores::rip(kSeed + 2 * i));
        applied("rip");
        write("rip", stores::rip(kSeed + 2 * i + 1));
        applied("rip");
        const auto got = running("ripd");
        settled("rip");

        restart("ripd");
        ASSERT_EQ(router().configure("ripd", {"router rip"}).code, 0);
        (void)frruci("recover rip"); // some of its commands are refused
        expectSame(running("ripd"), got);
        ASSERT_FALSE(HasFailure()) << stores::rip(kSeed + 2 * i) << "\nthen\n"
                                   << stores::rip(kSeed + 2 * i + 1);
    }
}

/// The lines of tun0 and the global ones that are frruci's, after one more store.
class NhrpModel {
public:
    void take(const stores::NhrpValues &values) {
        for (const auto &[option, value] : values) {
            auto &lines = lines_[option.name];
            if (value == "0" || (!value.empty() && !option.isList)) {
                lines.clear();
            }
            if (!value.empty() && value != "0") {
                lines.insert((option.isGlobal ? "" : "interface tun0 / ") +
                             std::string(option.words) + (option.hasValue ? value : ""));
            }
        }
    }

    std::set<std::string> of(bool zebra) const {
        std::set<std::string> all;
        for (const stores::NhrpOption &option : stores::kNhrpOptions) {
            const auto found = lines_.find(option.name);
            if (option.isZebras == zebra && found != lines_.end()) {
                all.insert(found->second.begin(), found->second.end());
            }
        }
        return all;
    }

private:
    std::map<std::string, std::set<std::string>> lines_;
};

/// Without the lines that every configuration has.
std::set<std::string> without(std::set<std::string> lines, const std::set<std::string> &base) {
    for (const std::string &line : base) {
        lines.erase(line);
    }
    return lines;
}

TEST_F(Property, Nhrp) {
    start({"zebra", "nhrpd"});
    const auto nhrpd = running("nhrpd");
    const auto zebra = running("zebra");
    NhrpModel model;
    for (unsigned i = 2 * firstPair(); i < 2 * endOfPairs(); ++i) {
        SCOPED_TRACE("store " + std::to_string(i));
        const auto values = stores::nhrpValues(kSeed + i);
        write("nhrp", stores::nhrp(values));
        model.take(values);
        applied("nhrp");
        settled("nhrp");
        expectSame(model.of(false), without(running("nhrpd"), nhrpd));
        expectSame(model.of(true), without(running("zebra"), zebra));
        ASSERT_FALSE(HasFailure()) << stores::nhrp(values);
    }
}

} // namespace

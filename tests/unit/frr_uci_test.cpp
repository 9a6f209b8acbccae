// SPDX-License-Identifier: Apache-2.0
// The store operations on real files.

#include "common/frr_uci.h"

#include <sys/stat.h>
#include <vector>

#include "tests/unit/store_world.h"

namespace {

using store::config;
using store::kLog;
using store::pending;

constexpr const char *kOspf = "config global 'global'\n"
                              "\toption enable 'dis'\n"
                              "\toption long 'abcdefghijklmnopqrst'\n"
                              "\tlist l 'one'\n"
                              "\n"
                              "config network\n"
                              "\toption ip '10.0.0.0'\n"
                              "\n"
                              "config other 'x'\n"
                              "\n"
                              "config network 'n2'\n"
                              "\toption ip '10.1.0.0'\n"
                              "\n";

class FrrUci : public store::World {
protected:
    FrrUci() { store::write(config("ospf"), kOspf); }

    /// The value's text, or "code N"; also insists that the rest of the buffer is clear.
    static std::string get(const char *package, const char *section, const char *option) {
        char out[64];
        memset(out, 'x', sizeof out);
        const int32_t code = frr_uci_get(package, section, option, out, sizeof out);
        for (std::size_t i = strnlen(out, sizeof out); i < sizeof out; ++i) {
            EXPECT_EQ(out[i], '\0') << i;
        }
        EXPECT_LT(strnlen(out, sizeof out), sizeof out);
        EXPECT_TRUE(code == 0 || out[0] == '\0');
        return code == 0 ? out : "code " + std::to_string(code);
    }
};

TEST_F(FrrUci, getReadsAnOption) {
    EXPECT_EQ(get("ospf", "global", "enable"), "dis");
    EXPECT_EQ(get("ospf", "n2", "ip"), "10.1.0.0");
    EXPECT_EQ(get("/etc/config/ospf", "n2", "ip"), "10.1.0.0");
}

TEST_F(FrrUci, getOfWhatIsMissing) {
    EXPECT_EQ(get("ospf", "global", "nosuch"), "code 3");
    EXPECT_EQ(get("ospf", "nosuch", "enable"), "code 3");
    EXPECT_EQ(get("nosuch", "global", "enable"), "code 3");
    EXPECT_EQ(get("/etc/config/nosuch", "global", "enable"), "code 3");
    EXPECT_EQ(get("ospf", "Global", "enable"), "code 3");
    EXPECT_EQ(get("ospf", "global", "enabl"), "code 3");
    EXPECT_EQ(get("ospf", "global", "enable2"), "code 3");
}

TEST_F(FrrUci, getOfAListIsNotFound) {
    EXPECT_EQ(get("ospf", "global", "l"), "code 3");
}

TEST_F(FrrUci, getOfNullsTouchesNothing) {
    EXPECT_EQ(get(nullptr, "global", "enable"), "code 2");
    EXPECT_EQ(get("ospf", nullptr, "enable"), "code 3");
    EXPECT_EQ(get("ospf", "global", nullptr), "code 3");
    EXPECT_EQ(frr_uci_get("ospf", "global", "enable", nullptr, 64), 0);
}

TEST_F(FrrUci, getOfAMalformedFile) {
    store::write(config("ospf"), "config global 'global'\n\toption\n");
    EXPECT_EQ(get("ospf", "global", "enable"), "code 5");
    EXPECT_EQ(store::read(config("ospf")), "config global 'global'\n\toption\n");
}

TEST_F(FrrUci, getOfABadPackageName) {
    EXPECT_EQ(get("", "global", "enable"), "code 2");
    EXPECT_EQ(get("os pf", "global", "enable"), "code 2");
    EXPECT_EQ(get(".ospf", "global", "enable"), "code 3");
}

TEST_F(FrrUci, getCutsAtTheBuffersLastByte) {
    char out[10];
    memset(out, 'x', sizeof out);
    EXPECT_EQ(frr_uci_get("ospf", "global", "long", out, 8), 0);
    EXPECT_STREQ(out, "abcdefg");
    EXPECT_EQ(out[8], 'x');
    EXPECT_EQ(out[9], 'x');
}

TEST_F(FrrUci, getIntoTheSmallestBuffers) {
    char out[2] = {'x', 'y'};
    EXPECT_EQ(frr_uci_get("ospf", "global", "long", out, 1), 0);
    EXPECT_EQ(out[0], '\0');
    EXPECT_EQ(out[1], 'y');
    out[0] = 'x';
    EXPECT_EQ(frr_uci_get("ospf", "global", "long", out, 0), 0);
    EXPECT_EQ(out[0], 'x');
}

TEST_F(FrrUci, getIntoTheLargestBuffer) {
    const std::string value(70000, 'v');
    store::write(config("ospf"), "config a 'a'\n\toption o '" + value + "'\n");
    std::vector<char> out(65536, 'x');
    EXPECT_EQ(frr_uci_get("ospf", "a", "o", out.data(), 65535), 0);
    EXPECT_EQ(std::string(out.data()), value.substr(0, 65534));
    EXPECT_EQ(out[65535], 'x');
}

TEST_F(FrrUci, getSeesWhatIsPendingByNameOnly) {
    store::write(pending("ospf"), "ospf.global.enable='en'\n");
    EXPECT_EQ(get("ospf", "global", "enable"), "en");
    EXPECT_EQ(get("/etc/config/ospf", "global", "enable"), "dis");
}

TEST_F(FrrUci, setChangesOneOptionAndKeepsTheRest) {
    EXPECT_EQ(frr_uci_set("ospf", "global", "enable", "en"), 0);
    std::string expected = kOspf;
    expected.replace(expected.find("dis"), 3, "en");
    EXPECT_EQ(store::read(config("ospf")), "\n" + expected);
    EXPECT_EQ(store::read(pending("ospf")), "");
    EXPECT_EQ(get("ospf", "global", "enable"), "en");
}

TEST_F(FrrUci, setOfTheSameValueLeavesTheFilesBytes) {
    EXPECT_EQ(frr_uci_set("ospf", "global", "enable", "dis"), 0);
    EXPECT_EQ(store::read(config("ospf")), kOspf);
}

TEST_F(FrrUci, setAddsAnOption) {
    EXPECT_EQ(frr_uci_set("ospf", "n2", "area", "it's 0"), 0);
    EXPECT_EQ(get("ospf", "n2", "area"), "it's 0");
    EXPECT_EQ(get("ospf", "n2", "ip"), "10.1.0.0");
}

TEST_F(FrrUci, setByPath) {
    store::write(config("nhrp"), "config tunnel 'tun0'\n");
    EXPECT_EQ(frr_uci_set("/etc/config/nhrp", "tun0", "holdtime", "600"), 0);
    EXPECT_EQ(store::read(config("nhrp")), "\nconfig tunnel 'tun0'\n\toption holdtime '600'\n\n");
    EXPECT_EQ(store::read(pending("nhrp")), "(none)");
    EXPECT_EQ(frr_uci_set("/etc/config/nhrp", "tun0", "text", "a\tb\x01"), 0);
    EXPECT_EQ(get("/etc/config/nhrp", "tun0", "text"), "a\tb\x01") << "not filtered by path";
}

TEST_F(FrrUci, setInAMissingSectionChangesNothing) {
    EXPECT_EQ(frr_uci_set("ospf", "nosuch", "enable", "en"), 2);
    EXPECT_EQ(frr_uci_set("/etc/config/ospf", "nosuch", "enable", "en"), 2);
    EXPECT_EQ(store::read(config("ospf")), kOspf);
    EXPECT_EQ(store::read(pending("ospf")), "(none)");
}

TEST_F(FrrUci, setInAMissingPackageMakesNone) {
    EXPECT_EQ(frr_uci_set("nosuch", "global", "enable", "en"), 3);
    EXPECT_EQ(frr_uci_set("/etc/config/nosuch", "global", "enable", "en"), 3);
    EXPECT_EQ(store::read(config("nosuch")), "(none)");
}

TEST_F(FrrUci, setInAMalformedFileLeavesIt) {
    const std::string malformed = "config global 'global'\n\toption enable 'en\n";
    store::write(config("ospf"), malformed);
    EXPECT_EQ(frr_uci_set("ospf", "global", "enable", "dis"), 5);
    EXPECT_EQ(frr_uci_set("/etc/config/ospf", "global", "enable", "dis"), 5);
    EXPECT_EQ(frr_uci_add_section("ospf", "cfg", "abc"), 3);
    EXPECT_EQ(store::read(config("ospf")), malformed);
}

TEST_F(FrrUci, emptyValueRemovesTheOption) {
    EXPECT_EQ(frr_uci_set("ospf", "global", "enable", ""), 0);
    EXPECT_EQ(get("ospf", "global", "enable"), "code 3");
    EXPECT_EQ(get("ospf", "global", "long"), "abcdefghijklmnopqrst");
    EXPECT_EQ(frr_uci_set("ospf", "global", "nosuch", ""), 0);
}

TEST_F(FrrUci, emptyValueWithoutAnOptionRemovesTheSection) {
    EXPECT_EQ(frr_uci_set("ospf", "global", nullptr, ""), 0);
    EXPECT_EQ(store::loaded("ospf"), "network *(ip=10.0.0.0) other x() network n2(ip=10.1.0.0)");
}

TEST_F(FrrUci, nullOptionSetsTheSectionsType) {
    EXPECT_EQ(frr_uci_set("ospf", "x", nullptr, "changed"), 0);
    EXPECT_EQ(frr_uci_set("ospf", "made", nullptr, "new"), 0);
    EXPECT_EQ(store::loaded("ospf"),
              "global global(enable=dis,long=abcdefghijklmnopqrst,l=[one]) network *(ip=10.0.0.0) "
              "changed x() network n2(ip=10.1.0.0) new made()");
}

TEST_F(FrrUci, setOverAListMakesItOneText) {
    EXPECT_EQ(frr_uci_set("ospf", "global", "l", "two"), 0);
    EXPECT_EQ(get("ospf", "global", "l"), "two");
}

TEST_F(FrrUci, whatCannotBePendingIsNotStoredThoughAccepted) {
    EXPECT_EQ(frr_uci_set("ospf", "global", "bad-name", "v"), 0);
    EXPECT_EQ(frr_uci_set("ospf", "global", "enable", "a\x01z"), 0);
    EXPECT_EQ(frr_uci_set("ospf", "bad-section", nullptr, "type"), 0);
    EXPECT_EQ(store::read(config("ospf")), kOspf);
}

TEST_F(FrrUci, setKeepsTheFilesModeAndASymbolicLink) {
    store::write("/etc/config/kept/ospf", kOspf);
    (void)remove("/etc/config/ospf");
    ASSERT_EQ(symlink("kept/ospf", "/etc/config/ospf"), 0);
    ASSERT_EQ(chmod("/etc/config/kept/ospf", 0640), 0);
    EXPECT_EQ(frr_uci_set("ospf", "global", "enable", "en"), 0);
    struct stat status;
    ASSERT_EQ(lstat("/etc/config/ospf", &status), 0);
    EXPECT_TRUE(S_ISLNK(status.st_mode));
    ASSERT_EQ(stat("/etc/config/ospf", &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0640U);
    EXPECT_EQ(get("ospf", "global", "enable"), "en");
}

TEST_F(FrrUci, addedSectionStaysAnonymousAndEmpty) {
    EXPECT_EQ(frr_uci_add_section("ospf", "cfg", "abc"), 0);
    EXPECT_EQ(store::read(config("ospf")), "\n" + std::string(kOspf) + "config abc\n\n");
    EXPECT_EQ(frr_uci_add_section("/etc/config/ospf", "named", "abc"), 0);
    EXPECT_EQ(store::read(config("ospf")),
              "\n" + std::string(kOspf) + "config abc\n\nconfig abc\n\n");
    EXPECT_EQ(store::read(kLog), "(none)");
}

TEST_F(FrrUci, addWithANameLongerThanTheMadeUpOne) {
    const std::string name(5000, 'n');
    EXPECT_EQ(frr_uci_add_section("ospf", name.c_str(), "abc"), 0);
    EXPECT_EQ(frr_uci_add_section("/etc/config/ospf", name.c_str(), "abc"), 0);
    EXPECT_EQ(frr_uci_add_section("ospf", "", "abc"), 0);
    EXPECT_EQ(frr_uci_add_section("ospf", nullptr, "abc"), 0);
    EXPECT_EQ(store::read(config("ospf")),
              "\n" + std::string(kOspf) +
                  "config abc\n\nconfig abc\n\nconfig abc\n\nconfig abc\n\n");
}

TEST_F(FrrUci, addWithoutAType) {
    EXPECT_EQ(frr_uci_add_section("ospf", "cfg", nullptr), 2);
    EXPECT_EQ(store::read(config("ospf")), kOspf);
}

TEST_F(FrrUci, addToAMissingPackageIsLogged) {
    EXPECT_EQ(frr_uci_add_section("nosuch", "cfg", "abc"), 3);
    EXPECT_EQ(frr_uci_add_section(nullptr, "cfg", "abc"), 3);
    EXPECT_EQ(store::read(kLog), "frr_uci:102:  ret=1, uci_load nosuch\n"
                                 "frr_uci:102:  ret=1, uci_load \n");
}

std::string &visited() {
    static std::string text;
    return text;
}

int32_t visit(uci_context *context, uci_section *section) {
    uci_element *found = nullptr;
    if (uci_lookup_next(context, &found, &section->options, "ip") == UCI_OK) {
        visited() += std::string(reinterpret_cast<uci_option *>(found)->v.string) + " ";
    } else {
        visited() += "- ";
    }
    return -1; // without meaning: the walk goes on
}

std::string visitAll(const char *package, const char *type) {
    visited() = "";
    frr_uci_foreach_section(package, type, visit);
    return visited();
}

TEST_F(FrrUci, foreachVisitsTheTypeInFileOrder) {
    EXPECT_EQ(visitAll("ospf", "network"), "10.0.0.0 10.1.0.0 ");
    EXPECT_EQ(visitAll("/etc/config/ospf", "network"), "10.0.0.0 10.1.0.0 ");
    EXPECT_EQ(visitAll("ospf", "other"), "- ");
}

TEST_F(FrrUci, foreachComparesTheWholeType) {
    EXPECT_EQ(visitAll("ospf", "net"), "");
    EXPECT_EQ(visitAll("ospf", "networks"), "");
    EXPECT_EQ(visitAll("ospf", "Network"), "");
    EXPECT_EQ(visitAll("ospf", ""), "");
}

TEST_F(FrrUci, foreachOfNothing) {
    EXPECT_EQ(visitAll("nosuch", "network"), "");
    EXPECT_EQ(visitAll(nullptr, "network"), "");
    EXPECT_EQ(visitAll("ospf", nullptr), "");
    frr_uci_foreach_section("ospf", "network", nullptr);
}

TEST_F(FrrUci, initWritesItsValuesAndSections) {
    store::write(config("iptv"), "config iptv 'iptv'\n");
    store::write(config("ospf"), "config global 'global'\nconfig global 'global2'\n");
    EXPECT_EQ(frr_uci_init(), 0);
    EXPECT_EQ(store::loaded("iptv"), "iptv iptv(handle_time=20) abc *()");
    EXPECT_EQ(store::loaded("ospf"),
              "global global(enable=en) global global2(enable=en) abc *() abc *() abc2 *()");
}

} // namespace

// SPDX-License-Identifier: Apache-2.0
// What an observer sees of each leaving point, and that a rehearsal lets nothing leave.

#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

#include "frruci/frruci.h"
#include "tests/support/stage.h"

namespace {

const char *const kKinds[] = {"",     "connect", "command", "answer", "shell", "listing",
                              "file", "pause",   "kill",    "store",  "reply"};

std::string textOf(const char *text) {
    return text == nullptr ? "-" : text;
}

/// One line an event, fields that do not apply left out.
std::string lineOf(const FrruciEvent &event) {
    std::string line = std::string(kKinds[event.kind]) + (event.done != 0 ? " done" : "");
    if (event.place != nullptr) {
        line += " " + textOf(event.place);
    }
    if (event.text != nullptr) {
        line += " <" +
                (event.kind == FRRUCI_ANSWER ? std::string(event.text, event.text_size)
                                             : std::string(event.text)) +
                ">";
    }
    if (event.kind == FRRUCI_STORE) {
        line += " " + textOf(event.section) + " " + textOf(event.option);
    }
    if (event.number != 0) {
        line += " number " + std::to_string(event.number);
    }
    if (event.kind == FRRUCI_ANSWER) {
        line += " code " + std::to_string(event.code);
    } else if (event.done != 0 && event.result != 0) {
        line += " result " + std::to_string(event.result);
    }
    return line + "\n";
}

class Observed : public testing::Test {
protected:
    ~Observed() override {
        frruciObserve(nullptr);
        close(daemon_);
    }

    void observe(bool rehearsal) {
        const FrruciObserver observer = {sizeof observer, rehearsal ? 1U : 0U, see, this};
        ASSERT_EQ(frruciObserve(&observer), 0);
    }

    static void see(FrruciEvent *event, void *context) {
        auto *self = static_cast<Observed *>(context);
        EXPECT_EQ(event->size, sizeof *event);
        EXPECT_TRUE(event->fd >= 0 || event->kind != FRRUCI_COMMAND);
        self->lines_ += lineOf(*event);
        if (self->reply_) {
            self->reply_(*event);
        }
    }

    /// A descriptor from which text is read, and then the end.
    static int holding(const std::string &text) {
        int ends[2];
        if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0 ||
            write(ends[1], text.data(), text.size()) < 0) {
            return -1;
        }
        close(ends[1]);
        return ends[0];
    }

    /// Plays a daemon that accepts a session and answers each command with answer and code.
    void play(FrruciEvent &event, const std::string &answer = "", char code = '\0') {
        if (event.kind == FRRUCI_CONNECT) {
            int ends[2];
            ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
            event.fd = ends[0];
            close(daemon_);
            daemon_ = ends[1];
        } else if (event.kind == FRRUCI_COMMAND) {
            const std::string bytes = answer + std::string(3, '\0') + code;
            ASSERT_EQ(write(daemon_, bytes.data(), bytes.size()),
                      static_cast<ssize_t>(bytes.size()));
        }
    }

    stage::Stage stage_;
    int daemon_ = -1;
    std::string lines_;
    std::function<void(FrruciEvent &)> reply_;
};

TEST_F(Observed, ASessionWithItsCommandsAndAnswers) {
    stage_.answer("ospfd", "distance 120", {.code = 1, .text = "% No.\n"});
    observe(false);
    EXPECT_EQ(vtyOspfConfigOspf(0, "distance 120", 1), 1U);
    EXPECT_EQ(lines_, "connect /var/ospfd.vty\n"
                      "connect done /var/ospfd.vty\n"
                      "command <en>\n"
                      "answer done <> code 0\n"
                      "command <configure>\n"
                      "answer done <> code 0\n"
                      "command <router ospf>\n"
                      "answer done <> code 0\n"
                      "command <distance 120>\n"
                      "answer done <% No.\n> code 1\n");
    EXPECT_STREQ(stage_.trace(), "ospfd: en | configure | router ospf | distance 120\n");
}

TEST_F(Observed, AnAnswerComesInThePiecesThatAreRead) {
    const std::string text(300, 'x');
    stage_.answer("nhrpd", "show ip nhrp cache json", {.code = 7, .text = text.c_str()});
    observe(false);
    stage_.noPipe("nhrp_pipe_c2lua_cache");
    EXPECT_EQ(swNhrpShow(0, "cache"), 0U);
    EXPECT_NE(lines_.find("answer done <" + std::string(256, 'x') + "> code -1\n"),
              std::string::npos);
    EXPECT_NE(lines_.find("answer done <" + std::string(44, 'x') + "> code 7\n"),
              std::string::npos);
    EXPECT_NE(lines_.find("reply /tmp/tmp/nhrp_pipe_c2lua_cache <"), std::string::npos);
}

/// The marker ends one piece, and the completion code is the next one.
TEST_F(Observed, ACodeThatComesAloneIsThatOfItsAnswer) {
    const std::string text(253, 'x');
    stage_.answer("ripd", "show ip rip status", {.code = 4, .text = text.c_str()});
    observe(false);
    int32_t fd = -1;
    uint8_t code = 0;
    ASSERT_EQ(frrVtyConnect("/var/ripd.vty", &fd), 0);
    EXPECT_EQ(frrVtyPrint(fd, "show ip rip status", &code, 0, 0, 2), 4);
    EXPECT_EQ(frrVtyDisconnect(fd), 0);
    EXPECT_NE(lines_.find("> code -1\nanswer done <> code 4\n"), std::string::npos);
}

/// The text ends at the first NUL, and the completion code is three bytes behind it: a damaged
/// answer may go on after that, in any number of pieces.
TEST_F(Observed, NothingIsACodeAfterTheCode) {
    const std::string damaged = "ab" + std::string(1, '\0') + std::string(600, 'y');
    stage_.answer("nhrpd", "show ip nhrp cache json",
                  {.rawBytes = damaged.data(), .rawSize = static_cast<int>(damaged.size())});
    observe(false);
    stage_.noPipe("nhrp_pipe_c2lua_cache");
    EXPECT_EQ(swNhrpShow(0, "cache"), 0U);
    const std::size_t first = lines_.find("answer done <ab> code 121\n");
    ASSERT_NE(first, std::string::npos);
    const std::string later = lines_.substr(first + 1);
    int pieces = 0;
    for (std::size_t at = 0; (at = later.find("answer done ", at)) != std::string::npos; ++at) {
        EXPECT_EQ(later.find("answer done <> code -1\n", at), at);
        ++pieces;
    }
    EXPECT_EQ(pieces, 2);
}

TEST_F(Observed, ADaemonThatIsNotThereOrGoesAway) {
    stage_.absent("zebra");
    stage_.answer("ospfd", "configure", {.closeEarly = true});
    observe(false);
    EXPECT_EQ(doVtyZebraConfigInterface(0, "tun0", "no link-detect"), 1U);
    EXPECT_EQ(lines_, "connect /var/zebra.vty\nconnect done /var/zebra.vty result -1\n");
    lines_.clear();
    EXPECT_EQ(vtyOspfConfigOspf(0, "distance 120", 1), 1U);
    EXPECT_NE(lines_.find("answer done <> code -1\n"), std::string::npos);
}

TEST_F(Observed, ShellListingPauseKillStoreAndReply) {
    stage_.shell("ps -w", {.text = "  77 root zebra -d\n"});
    stage_.noPipe("ospf_pipe_c2lua");
    stage::writeFile("/etc/config/nhrp", "config nhrp 'sdwan'\n");
    stage_.shell("is_vlan_id", {.text = "1\n", .writeTo = "/tmp/cli_vid"});
    observe(false);
    EXPECT_EQ(process_exist("zebra", 1), 1);
    EXPECT_EQ(sw_is_lan_vid(5), 1);
    EXPECT_EQ(frr_uci_set("/etc/config/nhrp", "sdwan", "map", "1"), 0);
    EXPECT_EQ(frr_uci_set("/etc/config/nhrp", "nobody", "map", "1"), 2);
    EXPECT_EQ(frr_uci_add_section("/etc/config/nhrp", "name", "type"), 0);
    EXPECT_EQ(write_pipe_to_lua("ok", "/tmp/tmp/ospf_pipe_c2lua"), -1);
    EXPECT_EQ(lines_,
              "listing <ps -w | grep -v grep | grep zebra>\n"
              "kill number 77\n"
              "kill done number 77\n"
              "shell <lua -e 'require \"luci.controller.admin.lan\".is_vlan_id(\"5\")'>\n"
              "shell done <lua -e 'require \"luci.controller.admin.lan\".is_vlan_id(\"5\")'>\n"
              "file /tmp/cli_vid\n"
              "store /etc/config/nhrp <1> sdwan map\n"
              "store done /etc/config/nhrp <1> sdwan map\n"
              "store /etc/config/nhrp <1> nobody map\n"
              "store done /etc/config/nhrp <1> nobody map result 2\n"
              "store /etc/config/nhrp <type> name -\n"
              "store done /etc/config/nhrp <type> name -\n"
              "reply /tmp/tmp/ospf_pipe_c2lua <ok>\n"
              "reply done /tmp/tmp/ospf_pipe_c2lua <ok> result -1\n");
    lines_.clear();
    stage_.shell("ps -w", {});
    EXPECT_EQ(zebra_enable(), 0);
    EXPECT_EQ(lines_, "listing <ps -w | grep -v grep | grep zebra>\n"
                      "shell <zebra -d >\nshell done <zebra -d >\n"
                      "pause number 1000000\npause done number 1000000\n");
}

TEST_F(Observed, ARehearsalLetsNothingLeave) {
    stage::writeFile("/etc/config/nhrp", "config nhrp 'sdwan'\n");
    stage_.absent("ospfd");
    (void)stage_.log();
    reply_ = [this](FrruciEvent &event) { play(event); };
    observe(true);
    EXPECT_EQ(zebra_enable(), 0);
    EXPECT_EQ(vtyOspfConfigOspf(0, "distance 120", 1), 0U);
    EXPECT_EQ(frr_uci_set("/etc/config/nhrp", "sdwan", "map", "1"), 0);
    EXPECT_EQ(frr_uci_add_section("/etc/config/nhrp", "name", "type"), 0);
    EXPECT_EQ(write_pipe_to_lua("ok", "/tmp/tmp/none"), 0);
    char line[] = " 77 root";
    EXPECT_EQ(kill_process(line), 0);
    EXPECT_EQ(process_rip_interface_show(0, nullptr), 0);
    EXPECT_STREQ(stage_.trace(), "");
    EXPECT_STREQ(stage_.log(), "");
    char text[8];
    EXPECT_EQ(frr_uci_get("/etc/config/nhrp", "sdwan", "map", text, sizeof text), 3);
    EXPECT_EQ(lines_, "listing <ps -w | grep -v grep | grep zebra>\n"
                      "shell <zebra -d >\n"
                      "pause number 1000000\n"
                      "connect /var/ospfd.vty\n"
                      "command <en>\nanswer done <> code 0\n"
                      "command <configure>\nanswer done <> code 0\n"
                      "command <router ospf>\nanswer done <> code 0\n"
                      "command <distance 120>\nanswer done <> code 0\n"
                      "store /etc/config/nhrp <1> sdwan map\n"
                      "store /etc/config/nhrp <type> name -\n"
                      "reply /tmp/tmp/none <ok>\n"
                      "kill number 77\n"
                      "connect /var/ripd.vty\n"
                      "command <show ip rip status>\nanswer done <> code 0\n"
                      "pause number 100000\n");
}

TEST_F(Observed, ARehearsalIsAnsweredByTheHost) {
    const std::string rows = "first\n" + std::string(1000, 'r') + "\nlast\n";
    reply_ = [&](FrruciEvent &event) {
        const std::string command = event.kind == FRRUCI_COMMAND ? event.text : "";
        if (event.kind == FRRUCI_LISTING) {
            event.fd = holding("  7 root ospfd\n  8 root ospfd\n");
        } else if (event.kind == FRRUCI_FILE) {
            event.fd = holding("12\n");
        } else if (event.kind == FRRUCI_SHELL || event.kind == FRRUCI_STORE) {
            event.result = 6;
        } else if (command == "show") {
            play(event, rows);
        } else {
            play(event, command == "refused" ? "% No.\n" : "", command == "refused" ? '\15' : '\0');
        }
    };
    observe(true);
    EXPECT_EQ(process_exist("ospfd", 0), 2);
    EXPECT_EQ(sw_is_lan_vid(5), 12);
    EXPECT_EQ(frr_uci_set("nhrp", "sdwan", "map", "1"), 6);
    EXPECT_EQ(frr_uci_add_section("nhrp", "name", "type"), 6);
    int32_t fd = -1;
    uint8_t code = 0;
    ASSERT_EQ(frrVtyConnect("/var/ripd.vty", &fd), 0);
    char reply[512] = {};
    EXPECT_EQ(frrVtyRun(fd, "refused", &code, reply, sizeof reply), 13);
    EXPECT_STREQ(reply, "% No.\n");
    (void)stage_.output();
    EXPECT_EQ(frrVtyPrint(fd, "show", &code, 0, 0, 2), 0);
    EXPECT_EQ(std::string(stage_.output()).find("first\r\n"), 0U);
    memset(reply, 0, sizeof reply);
    EXPECT_EQ(frrVtyRun(fd, "fine", &code, reply, sizeof reply), 0);
    EXPECT_EQ(frrVtyDisconnect(fd), 0);
    EXPECT_STREQ(stage_.trace(), "");
}

/// Nothing is read from the session's descriptor, which is no socket here.
TEST_F(Observed, AnAnswerMayComeWithTheCommand) {
    const std::string ending(3, '\0');
    std::string answer;
    reply_ = [&](FrruciEvent &event) {
        if (event.kind == FRRUCI_CONNECT) {
            event.fd = open("/dev/null", O_RDWR | O_CLOEXEC);
        } else if (event.kind == FRRUCI_COMMAND) {
            answer = event.text == std::string("refused") ? "% No.\n" + ending + '\15'
                     : event.text == std::string("show")
                         ? "first\n" + std::string(250, 'r') + "\nlast\n" + ending + '\4'
                         : ending + '\0';
            event.answer = answer.data();
            event.answer_size = static_cast<uint32_t>(answer.size());
        }
    };
    observe(true);
    int32_t fd = -1;
    uint8_t code = 0;
    ASSERT_EQ(frrVtyConnect("/var/ripd.vty", &fd), 0);
    char reply[64] = {};
    EXPECT_EQ(frrVtyRun(fd, "refused", &code, reply, sizeof reply), 13);
    EXPECT_STREQ(reply, "% No.\n");
    EXPECT_EQ(frrVtyPrint(fd, "show", &code, 0, 0, 2), 4);
    EXPECT_NE(std::string(stage_.output()).find("last\r\n"), std::string::npos);
    memset(reply, 0, sizeof reply);
    EXPECT_EQ(frrVtyRun(fd, "fine", &code, reply, sizeof reply), 0);
    EXPECT_EQ(frrVtyDisconnect(fd), 0);
    EXPECT_NE(lines_.find("command <refused>\nanswer done <% No.\n> code 13\n"), std::string::npos);
}

/// What the host leaves unread is no part of the next answer.
TEST_F(Observed, AnAnswerThatCameWithACommandIsOfThatCommandOnly) {
    static const char kLong[] = "more than is read\0\0\0";
    reply_ = [&](FrruciEvent &event) {
        if (event.kind == FRRUCI_COMMAND && event.text == std::string("long")) {
            event.answer = kLong;
            event.answer_size = sizeof kLong;
        } else {
            play(event);
        }
    };
    observe(true);
    int32_t fd = -1;
    uint8_t code = 0;
    ASSERT_EQ(frrVtyConnect("/var/ripd.vty", &fd), 0);
    char reply[8] = {};
    EXPECT_EQ(frrVtyRun(fd, "long", &code, reply, 4), -1);
    memset(reply, 0, sizeof reply);
    EXPECT_EQ(frrVtyRun(fd, "next", &code, reply, sizeof reply), 0);
    EXPECT_STREQ(reply, "");
    EXPECT_EQ(frrVtyDisconnect(fd), 0);
}

TEST_F(Observed, ARehearsalReadsAPackageOnce) {
    const auto store = [](const std::string &package, const std::string &value) {
        stage::writeFile(("/etc/config/" + package).c_str(),
                         ("config x 'named'\n\toption word '" + value + "'\n").c_str());
    };
    const auto read = [](const std::string &package) {
        char value[16];
        (void)frr_uci_get(package.c_str(), "named", "word", value, sizeof value);
        return std::string(value);
    };
    const std::string packages[] = {"a", "b", "/etc/config/c", "d", "e", std::string(40, 'f')};
    const auto storeAll = [&](const std::string &value) {
        for (const std::string &package : packages) {
            store(package.substr(package.rfind('/') + 1), value);
        }
    };
    const int before = stage::Stage::openDescriptors();
    storeAll("old");
    observe(true);
    for (const std::string &package : packages) {
        EXPECT_EQ(read(package), "old");
    }
    storeAll("new");
    EXPECT_EQ(read("a"), "old");
    EXPECT_EQ(read("/etc/config/c"), "old");
    EXPECT_EQ(read("d"), "old");
    EXPECT_EQ(read("e"), "new"); // there is room for four
    EXPECT_EQ(read(std::string(40, 'f')), "new");
    EXPECT_EQ(read("missing"), "");
    observe(true); // the next rehearsal
    EXPECT_EQ(read("a"), "new");
    storeAll("newest");
    observe(false);
    EXPECT_EQ(read("a"), "newest");
    EXPECT_EQ(stage::Stage::openDescriptors(), before);
}

TEST_F(Observed, ASectionsVisitorMayReadTheStoreInARehearsal) {
    stage::writeFile("/etc/config/a", "config x 'one'\n\toption word '1'\nconfig x 'two'\n");
    stage::writeFile("/etc/config/b", "config x 'one'\n\toption word 'b'\n");
    observe(true);
    static std::string seen;
    seen.clear();
    frr_uci_foreach_section("a", "x", [](uci_context *, uci_section *) -> int32_t {
        char value[16];
        for (const char *package : {"a", "b"}) {
            (void)frr_uci_get(package, "one", "word", value, sizeof value);
            seen += value;
        }
        return 0;
    });
    EXPECT_EQ(seen, "1b1b");
}

TEST_F(Observed, WithoutAnAnswerThereIsNoDaemonNoListingAndNoFile) {
    stage_.shell("ps -w", {.text = "  7 root ospfd\n"});
    stage::writeFile("/tmp/cli_vid", "9\n");
    observe(true);
    EXPECT_EQ(vtyOspfConfigOspf(0, "distance 120", 1), 1U);
    EXPECT_EQ(process_exist("ospfd", 0), 0);
    EXPECT_EQ(sw_is_lan_vid(5), 0);
    EXPECT_EQ(sw_is_wan_vid(5), 1);
    EXPECT_STREQ(stage_.trace(), "");
}

TEST_F(Observed, AnEmptyListingIsOne) {
    reply_ = [](FrruciEvent &event) { event.fd = holding(""); };
    observe(true);
    rip_enable(); // no rule is listed, so it is added
    EXPECT_NE(lines_.find("-I INPUT"), std::string::npos);
}

TEST_F(Observed, RehearsalsLeaveNoDescriptorOpen) {
    reply_ = [this](FrruciEvent &event) {
        if (event.kind == FRRUCI_LISTING || event.kind == FRRUCI_FILE) {
            event.fd = holding("1\n");
        } else {
            play(event);
        }
    };
    observe(true);
    EXPECT_EQ(vtyOspfConfigOspf(0, "distance 120", 1), 0U);
    const int before = stage::Stage::openDescriptors();
    for (int i = 0; i < 50; ++i) {
        EXPECT_EQ(vtyOspfConfigOspf(0, "distance 120", 1), 0U);
        EXPECT_EQ(sw_is_lan_vid(i), 1);
        EXPECT_EQ(process_exist("ospfd", 0), 1);
    }
    EXPECT_EQ(stage::Stage::openDescriptors(), before);
}

TEST_F(Observed, WrongRecordsAreNotTaken) {
    FrruciObserver observer = {23, 0, see, this};
    EXPECT_EQ(frruciObserve(&observer), 1);
    observer = {sizeof observer, 0, nullptr, this};
    EXPECT_EQ(frruciObserve(&observer), 1);
    EXPECT_EQ(vtyOspfConfigOspf(0, "distance 120", 1), 0U);
    EXPECT_EQ(lines_, "");
    observer = {sizeof observer + 8, 0, see, this}; // of a later host
    EXPECT_EQ(frruciObserve(&observer), 0);
    EXPECT_EQ(vtyOspfConfigOspf(0, "distance 120", 1), 0U);
    EXPECT_NE(lines_, "");
}

TEST_F(Observed, TheEndOfItIsTheEnd) {
    observe(true);
    EXPECT_EQ(frruciObserve(nullptr), 0);
    EXPECT_EQ(vtyOspfConfigOspf(0, "distance 120", 1), 0U);
    EXPECT_EQ(lines_, "");
    EXPECT_STREQ(stage_.trace(), "ospfd: en | configure | router ospf | distance 120\n");
}

} // namespace

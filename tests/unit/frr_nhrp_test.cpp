// SPDX-License-Identifier: Apache-2.0
// Every builder and phrase of docs/nhrp.md: counts, wrong words, refusals, store contents, and what
// happens when a daemon goes away or the store cannot be written.

#include <cstdint>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "nhrp/frr_nhrp.h"
#include "nhrp/sw_nhrp.h"
#include "tests/support/stage.h"

namespace {

/// Called before each connection that the library makes; empty most of the time.
std::function<void()> beforeConnect;

} // namespace

// Takes the C library's place, to let something happen between store write and delivery.
extern "C" int connect(int fd, const sockaddr *address, socklen_t length) {
    if (beforeConnect) {
        std::exchange(beforeConnect, nullptr)();
    }
    return static_cast<int>(syscall(SYS_connect, fd, address, length));
}

namespace {

using Texts = std::vector<std::string>;
using Options = std::vector<std::pair<std::string, std::string>>;

constexpr const char *kStore = "/etc/config/nhrp";
constexpr const char *kEmptyStore = "config nhrp 'sdwan'\n";
constexpr const char *kInterface = "tun0";
constexpr uint8_t kRefusals[] = {1, 2, 3, 4}; // completion codes

// ---------------------------------------------------------------- the tables of the documentation

Texts split(const std::string &text, char separator) {
    Texts parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);) {
        parts.push_back(part);
    }
    return parts;
}

std::string trimmed(const std::string &cell) {
    const std::size_t begin = cell.find_first_not_of(" `");
    const std::size_t end = cell.find_last_not_of(" `");
    return begin == std::string::npos ? "" : cell.substr(begin, end - begin + 1);
}

/// The rows of the table whose header begins with this cell.
std::vector<Texts> tableOf(const std::string &header) {
    std::ifstream document(FRRUCI_DOCS "/nhrp.md");
    std::vector<Texts> rows;
    bool within = false;
    for (std::string line; std::getline(document, line);) {
        if (line.rfind("| " + header + " |", 0) == 0) {
            within = true;
        } else if (line.rfind("| `", 0) == 0 && within) {
            Texts cells;
            for (const std::string &cell : split(line.substr(1), '|')) {
                cells.push_back(trimmed(cell));
            }
            rows.push_back(cells);
        } else if (line.empty()) {
            within = false;
        }
    }
    return rows;
}

bool isValue(const std::string &word) {
    return word.find_first_of("abcdefghijklmnopqrstuvwxyz-") == std::string::npos;
}

struct Builder {
    std::string name;
    Texts command;
    std::string daemon;
    bool global;
    std::string option;
    std::string stored;

    std::size_t valueCount() const {
        std::size_t count = 0;
        for (const std::string &word : command) {
            count += isValue(word) ? 1 : 0;
        }
        return count;
    }
    bool stores() const { return option != "-"; }
    bool records() const { return stores() && stored != "0" && !global; }
};

struct Phrase {
    Texts words;
    int leastArgc;
    std::string builder;
};

const std::vector<Builder> &builders() {
    static const std::vector<Builder> kAll = [] {
        std::vector<Builder> all;
        for (const Texts &row : tableOf("Builder")) {
            const Texts place = split(row.at(2), ' ');
            all.push_back({row.at(0), split(row.at(1), ' '), place.at(0),
                           place.at(1) == "configuration", row.at(3), row.at(4)});
        }
        return all;
    }();
    return kAll;
}

const Builder &builderOf(const std::string &name) {
    for (const Builder &builder : builders()) {
        if (builder.name == name) {
            return builder;
        }
    }
    ADD_FAILURE() << "no builder " << name;
    return builders().front();
}

const std::vector<Phrase> &phrases() {
    static const std::vector<Phrase> kAll = [] {
        std::vector<Phrase> all;
        for (const Texts &row : tableOf("Phrase")) {
            all.push_back({split(row.at(0), ' '), std::stoi(row.at(1)), row.at(2)});
        }
        return all;
    }();
    return kAll;
}

// ---------------------------------------------------------------- what must happen

std::string joined(const Texts &words, const std::string &separator = " ") {
    std::string text;
    for (const std::string &word : words) {
        text += (text.empty() ? "" : separator) + word;
    }
    return text;
}

/// The words with each value replaced by its own text.
Texts filled(const Texts &words, const Texts &values) {
    Texts result = words;
    std::size_t next = 0;
    for (std::string &word : result) {
        if (isValue(word)) {
            word = values.at(next++);
        }
    }
    return result;
}

std::string sessionOf(const Builder &builder, const std::string &command) {
    Texts steps = {"enable", "configure"};
    if (!builder.global) {
        steps.push_back(std::string("interface ") + kInterface);
    }
    steps.push_back(command);
    return builder.daemon + ": " + joined(steps, " | ") + "\n";
}

std::string replied(const std::string &word) {
    return "reply nhrp_pipe_c2lua: " + word + "\n";
}

Options storedBy(const Builder &builder, const Texts &values) {
    Options options;
    if (builder.records()) {
        options.emplace_back("interface", kInterface);
    }
    if (builder.stores()) {
        options.emplace_back(isValue(builder.option) ? values.at(0) : builder.option,
                             isValue(builder.stored) && builder.stored.find_first_of("01") != 0
                                 ? values.at(0)
                                 : builder.stored);
    }
    return options;
}

std::string contentOf(const std::string &path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

Options storedOptions() {
    Options options;
    for (const std::string &line : split(contentOf(kStore), '\n')) {
        const Texts words = split(line, ' ');
        if (words.size() >= 3 && words[0] == "\toption") {
            const std::string quoted = line.substr(line.find('\''));
            options.emplace_back(words[1], quoted.substr(1, quoted.size() - 2));
        }
    }
    return options;
}

/// A stage with an empty store section.
class World {
public:
    World() { stage::writeFile(kStore, kEmptyStore); }
    stage::Stage stage;
};

constexpr int32_t kOwnCount = -77;

void callInterface(const Texts &words, int32_t argc = kOwnCount) {
    Texts all = {"x", kInterface};
    all.insert(all.end(), words.begin(), words.end());
    std::vector<char *> vector;
    for (std::string &word : all) {
        vector.push_back(word.data());
    }
    vector.push_back(nullptr);
    process_nhrp_interface(argc == kOwnCount ? static_cast<int32_t>(all.size()) : argc,
                           vector.data());
}

/// Values that differ from each other and from every word of a phrase.
Texts valuesOf(const Builder &builder) {
    const Texts values = {"first-value", "second-value"};
    return {values.begin(), values.begin() + static_cast<std::ptrdiff_t>(builder.valueCount())};
}

/// The words of a request with this phrase. A word of the phrase may itself be the builder's value.
Texts requestOf(const Phrase &phrase) {
    return filled(phrase.words, {"first-value", "second-value"});
}

/// The builder's values in such a request: the last words of it.
Texts valuesIn(const Phrase &phrase) {
    const Texts request = requestOf(phrase);
    const auto count = static_cast<std::ptrdiff_t>(builderOf(phrase.builder).valueCount());
    return {request.end() - count, request.end()};
}

// ---------------------------------------------------------------- builders

uint32_t call(const std::string &name, const Texts &values) {
    using OfNone = uint32_t (*)(uint16_t, const char *);
    using OfOne = uint32_t (*)(uint16_t, const char *, const char *);
    using OfTwo = uint32_t (*)(uint16_t, const char *, const char *, const char *);
    static const std::map<std::string, OfNone> kOfNone = {
        {"nhrp_ip_nhrp_registration", nhrp_ip_nhrp_registration},
        {"nhrp_no_link_detect",       nhrp_no_link_detect      }
    };
    static const std::map<std::string, OfOne> kOfOne = {
        {"nhrp_ip_nhrp",                  nhrp_ip_nhrp                 },
        {"nhrp_no_ip_nhrp",               nhrp_no_ip_nhrp              },
        {"nhrp_ip_address",               nhrp_ip_address              },
        {"no_nhrp_ip_address",            no_nhrp_ip_address           },
        {"nhrp_ip_nhrp_network",          nhrp_ip_nhrp_network         },
        {"nhrp_ip_nhrp_nhs_nbma",         nhrp_ip_nhrp_nhs_nbma        },
        {"nhrp_no_ip_nhrp_nhs_nbma",      nhrp_no_ip_nhrp_nhs_nbma     },
        {"nhrp_ip_nhrp_map_multicast",    nhrp_ip_nhrp_map_multicast   },
        {"nhrp_no_ip_nhrp_map_multicast", nhrp_no_ip_nhrp_map_multicast},
        {"nhrp_tunnel_profile",           nhrp_tunnel_profile          },
        {"nhrp_tunnel_source",            nhrp_tunnel_source           }
    };
    static const std::map<std::string, OfTwo> kOfTwo = {
        {"nhrp_tunnel_spoke_link",     nhrp_tunnel_spoke_link    },
        {"nhrp_tunnel_set_spoke_link", nhrp_tunnel_set_spoke_link},
        {"nhrp_no_tunnel_spoke_link",  nhrp_no_tunnel_spoke_link }
    };
    static const std::map<std::string, OfNone> kGlobal = {
        {"nhrp_nflog",           nhrp_nflog          },
        {"multicast_nhrp_nflog", multicast_nhrp_nflog}
    };
    if (kOfNone.contains(name)) {
        return kOfNone.at(name)(9, kInterface);
    }
    if (kOfOne.contains(name)) {
        return kOfOne.at(name)(9, kInterface, values.at(0).c_str());
    }
    if (kOfTwo.contains(name)) {
        return kOfTwo.at(name)(9, kInterface, values.at(0).c_str(), values.at(1).c_str());
    }
    if (kGlobal.contains(name)) {
        return kGlobal.at(name)(9, values.at(0).c_str());
    }
    ADD_FAILURE() << "no function " << name;
    return 77;
}

TEST(Tables, TheDocumentationHasAllRows) {
    EXPECT_EQ(builders().size(), 18U);
    EXPECT_EQ(phrases().size(), 17U);
    for (const Phrase &phrase : phrases()) {
        EXPECT_EQ(phrase.leastArgc, static_cast<int>(phrase.words.size()) + 2)
            << joined(phrase.words);
    }
}

TEST(Builders, AcceptedTheySendAndStore) {
    for (const Builder &builder : builders()) {
        SCOPED_TRACE(builder.name);
        World world;
        const Texts values = valuesOf(builder);
        const std::string command = joined(filled(builder.command, values));
        EXPECT_EQ(call(builder.name, values), 0U);
        EXPECT_EQ(sessionOf(builder, command), world.stage.trace());
        EXPECT_EQ(storedOptions(), storedBy(builder, values));
        EXPECT_NE(std::string(world.stage.log()).find(": generate cmd:" + command + "\n"),
                  std::string::npos);
    }
}

TEST(Builders, EachLogsALineNumberOfItsOwn) {
    std::map<std::string, std::string> builderOfLine;
    for (const Builder &builder : builders()) {
        World world;
        EXPECT_EQ(call(builder.name, valuesOf(builder)), 0U);
        (void)world.stage.trace(); // looked at above
        const std::string log = world.stage.log();
        const std::string line = log.substr(0, log.find(": generate cmd:"));
        ASSERT_TRUE(std::regex_match(line, std::regex("frr_nhrp:[1-9][0-9]*"))) << log;
        EXPECT_EQ(builderOfLine.emplace(line, builder.name).first->second, builder.name);
    }
}

TEST(Builders, RefusedTheyHaveStoredAllTheSame) {
    for (const Builder &builder : builders()) {
        for (const uint8_t code : kRefusals) {
            SCOPED_TRACE(builder.name + " code " + std::to_string(code));
            World world;
            const Texts values = valuesOf(builder);
            const std::string command = joined(filled(builder.command, values));
            world.stage.answer(builder.daemon.c_str(), command.c_str(), {.code = code});
            EXPECT_EQ(call(builder.name, values), 1U);
            EXPECT_EQ(sessionOf(builder, command), world.stage.trace());
            EXPECT_EQ(storedOptions(), storedBy(builder, values));
        }
    }
}

TEST(Builders, NoneSendsToTheOtherDaemon) {
    for (const Builder &builder : builders()) {
        SCOPED_TRACE(builder.name);
        World world;
        world.stage.absent(builder.daemon == "zebra" ? "nhrpd" : "zebra");
        EXPECT_EQ(call(builder.name, valuesOf(builder)), 0U);
        (void)world.stage.trace(); // looked at above
    }
}

TEST(Builders, CommandsCarry255Characters) {
    for (const Builder &builder : builders()) {
        SCOPED_TRACE(builder.name);
        World world;
        const Texts values(builder.valueCount(), std::string(300, 'v'));
        const std::string whole = joined(filled(builder.command, values));
        EXPECT_EQ(call(builder.name, values), 0U);
        EXPECT_EQ(sessionOf(builder, whole.substr(0, 255)), world.stage.trace());
        EXPECT_EQ(storedOptions(), storedBy(builder, values)); // the store gets all of it
    }
}

TEST(Builders, NullTextsAreRefusedBeforeAnythingHappens) {
    World world;
    EXPECT_EQ(nhrp_ip_nhrp(0, nullptr, "redirect"), 1U);
    EXPECT_EQ(nhrp_ip_nhrp(0, kInterface, nullptr), 1U);
    EXPECT_EQ(nhrp_no_ip_nhrp(0, kInterface, nullptr), 1U);
    EXPECT_EQ(nhrp_ip_address(0, kInterface, nullptr), 1U);
    EXPECT_EQ(nhrp_ip_nhrp_registration(0, nullptr), 1U);
    EXPECT_EQ(nhrp_no_link_detect(0, nullptr), 1U);
    EXPECT_EQ(nhrp_tunnel_spoke_link(0, kInterface, nullptr, "b"), 1U);
    EXPECT_EQ(nhrp_tunnel_spoke_link(0, kInterface, "a", nullptr), 1U);
    EXPECT_EQ(nhrp_nflog(0, nullptr), 1U);
    EXPECT_EQ(multicast_nhrp_nflog(0, nullptr), 1U);
    EXPECT_STREQ(world.stage.trace(), "");
    EXPECT_STREQ(world.stage.log(), "");
    EXPECT_EQ(contentOf(kStore), kEmptyStore);
}

// ---------------------------------------------------------------- phrases

void expectCarriedOut(const Phrase &phrase, World &world) {
    const Builder &builder = builderOf(phrase.builder);
    EXPECT_EQ(sessionOf(builder, joined(requestOf(phrase))) + replied("ok"), world.stage.trace());
    EXPECT_EQ(storedOptions(), storedBy(builder, valuesIn(phrase)));
}

void expectNothingDone(World &world) {
    EXPECT_EQ(replied("ok"), world.stage.trace());
    EXPECT_EQ(contentOf(kStore), kEmptyStore);
}

TEST(Phrases, AtAndAboveTheLeastCountTheyAreCarriedOut) {
    for (const Phrase &phrase : phrases()) {
        for (int more = 0; more <= 3; ++more) {
            SCOPED_TRACE(joined(phrase.words) + " and " + std::to_string(more));
            World world;
            Texts words = requestOf(phrase);
            words.insert(words.end(), static_cast<std::size_t>(more), "more");
            callInterface(words);
            expectCarriedOut(phrase, world);
        }
    }
}

TEST(Phrases, BelowTheLeastCountNothingHappens) {
    for (const Phrase &phrase : phrases()) {
        for (int argc = 2; argc < phrase.leastArgc; ++argc) {
            SCOPED_TRACE(joined(phrase.words) + " argc " + std::to_string(argc));
            {
                World world;
                callInterface(requestOf(phrase), argc); // the words are there, argc hides them
                expectNothingDone(world);
            }
            World world;
            Texts words = requestOf(phrase);
            words.resize(static_cast<std::size_t>(argc - 2)); // null after them, argc too large
            callInterface(words, phrase.leastArgc);
            expectNothingDone(world);
        }
    }
}

/// Another phrase that the words are, or begin with.
bool isSomePhrase(const Texts &words) {
    for (const Phrase &phrase : phrases()) {
        bool same = words.size() >= phrase.words.size();
        for (std::size_t i = 0; same && i < phrase.words.size(); ++i) {
            same = isValue(phrase.words[i]) || phrase.words[i] == words[i];
        }
        if (same) {
            return true;
        }
    }
    return false;
}

Texts wrongForms(const std::string &word) {
    std::string capital = word;
    capital[0] = static_cast<char>(capital[0] - 'a' + 'A');
    return {"wrong", "",         word + "x", word.substr(0, word.size() - 1),
            capital, " " + word, word + " ", std::string(300, 'w')};
}

TEST(Phrases, WithAnyWordWrongNothingHappens) {
    int tried = 0;
    for (const Phrase &phrase : phrases()) {
        for (std::size_t wrong = 0; wrong < phrase.words.size(); ++wrong) {
            if (isValue(phrase.words[wrong])) {
                continue;
            }
            for (const std::string &form : wrongForms(phrase.words[wrong])) {
                Texts words = requestOf(phrase);
                words[wrong] = form;
                SCOPED_TRACE(joined(words, "|"));
                ASSERT_FALSE(isSomePhrase(words));
                World world;
                callInterface(words);
                expectNothingDone(world);
                ++tried;
            }
        }
    }
    EXPECT_EQ(tried, 56 * 8); // forms of the words of all phrases that are no values
}

TEST(Phrases, WordsOfOnePhraseInTheOrderOfAnother) {
    // Every word of every phrase in every place of every other: only what is a phrase does
    // anything.
    for (const Phrase &phrase : phrases()) {
        for (const Phrase &other : phrases()) {
            for (std::size_t at = 0; at < phrase.words.size() && at < other.words.size(); ++at) {
                Texts words = requestOf(phrase);
                words[at] = requestOf(other)[at];
                if (isSomePhrase(words)) {
                    continue;
                }
                SCOPED_TRACE(joined(words, "|"));
                World world;
                callInterface(words);
                expectNothingDone(world);
            }
        }
    }
}

TEST(Phrases, ValuesMayBeAnyText) {
    for (const Phrase &phrase : phrases()) {
        for (const std::string &value :
             {std::string(300, 'v'), std::string("no"), std::string("%s%n")}) {
            if (!isValue(phrase.words.back())) {
                continue;
            }
            SCOPED_TRACE(joined(phrase.words) + " " + value);
            World world;
            const Builder &builder = builderOf(phrase.builder);
            const Texts values = {value, value};
            callInterface(filled(phrase.words, values));
            const std::string whole = joined(filled(phrase.words, values));
            EXPECT_EQ(sessionOf(builder, whole.substr(0, 255)) + replied("ok"),
                      world.stage.trace());
            EXPECT_EQ(storedOptions(), storedBy(builder, values));
        }
    }
}

TEST(Phrases, RefusedTheyReplyFail) {
    for (const Phrase &phrase : phrases()) {
        for (const uint8_t code : kRefusals) {
            SCOPED_TRACE(joined(phrase.words) + " code " + std::to_string(code));
            World world;
            const Builder &builder = builderOf(phrase.builder);
            const std::string command = joined(requestOf(phrase));
            world.stage.answer(builder.daemon.c_str(), command.c_str(), {.code = code});
            callInterface(requestOf(phrase));
            EXPECT_EQ(sessionOf(builder, command) + replied("fail"), world.stage.trace());
            EXPECT_EQ(storedOptions(), storedBy(builder, valuesIn(phrase)));
        }
    }
}

TEST(Phrases, AbsurdCountsDoNotReachBeyondTheNullEntry) {
    World world;
    callInterface({"ip", "nhrp", "shortcut"}, INT32_MAX);
    EXPECT_EQ(sessionOf(builderOf("nhrp_ip_nhrp"), "ip nhrp shortcut") + replied("ok"),
              world.stage.trace());
    callInterface({"ip", "nhrp"}, INT32_MAX);
    EXPECT_EQ(replied("ok"), world.stage.trace());
    callInterface({"ip", "nhrp", "shortcut"}, INT32_MIN);
    EXPECT_STREQ(world.stage.trace(), "");
}

TEST(Handlers, NullVectorsAreTaken) {
    World world;
    process_nhrp_interface(5, nullptr);
    process_nhrp_show(4, nullptr);
    EXPECT_STREQ(world.stage.trace(), "");
    process_nhrp_global(3, nullptr);
    EXPECT_EQ(replied("ok"), world.stage.trace());
}

TEST(Handlers, ARestartLooksAtTheEntriesAfterArgc) {
    World world;
    std::string words[] = {"nhrp", "nflog-group", "3"};
    char *vector[] = {words[0].data(), words[1].data(), words[2].data(), nullptr};
    process_nhrp_global(1, vector);
    EXPECT_EQ("system: killall nhrpd;nhrpd -d\n" +
                  sessionOf(builderOf("nhrp_nflog"), "nhrp nflog-group 3") + replied("ok"),
              world.stage.trace());
}

TEST(Handlers, AShowLooksAtTheEntriesAfterArgc) {
    World world;
    std::string words[] = {"nhrp", "ip", "nhrp", "cache"};
    char *vector[] = {words[0].data(), words[1].data(), words[2].data(), words[3].data(), nullptr};
    process_nhrp_show(1, vector);
    EXPECT_STREQ(world.stage.trace(), "nhrpd: enable | show ip nhrp cache json\n");
}

TEST(Handlers, ANullNameChangesNothingOfWhatFollows) {
    for (const int32_t argc : {1, 3}) {
        World world;
        std::string words[] = {"nflog-group", "3"};
        char *vector[] = {nullptr, words[0].data(), words[1].data(), nullptr};
        process_nhrp_global(argc, vector);
        EXPECT_EQ((argc == 1 ? "system: killall nhrpd;nhrpd -d\n" : "") +
                      sessionOf(builderOf("nhrp_nflog"), "nhrp nflog-group 3") + replied("ok"),
                  world.stage.trace());
    }
    for (const int32_t argc : {1, 4}) {
        World world;
        std::string words[] = {"ip", "nhrp", "cache"};
        char *vector[] = {nullptr, words[0].data(), words[1].data(), words[2].data(), nullptr};
        process_nhrp_show(argc, vector);
        EXPECT_STREQ(world.stage.trace(), "nhrpd: enable | show ip nhrp cache json\n");
    }
}

TEST(Handlers, GlobalKeywordsTakeAnyText) {
    for (const char *name : {"nhrp_nflog", "multicast_nhrp_nflog"}) {
        World world;
        const Builder &builder = builderOf(name);
        std::string keyword = builder.command.at(1);
        std::string value(300, '7');
        std::string self = "x";
        char *vector[] = {self.data(), keyword.data(), value.data(), nullptr};
        process_nhrp_global(3, vector);
        const std::string whole = joined(filled(builder.command, {value}));
        EXPECT_EQ(sessionOf(builder, whole.substr(0, 255)) + replied("ok"), world.stage.trace());
        EXPECT_EQ(storedOptions(), storedBy(builder, {value}));
    }
}

// ---------------------------------------------------------------- faults

TEST(Faults, ADaemonThatGoesBetweenStoreAndDelivery) {
    for (const Phrase &phrase : phrases()) {
        SCOPED_TRACE(joined(phrase.words));
        World world;
        const Builder &builder = builderOf(phrase.builder);
        bool storedBefore = false;
        beforeConnect = [&] {
            storedBefore = storedOptions() == storedBy(builder, valuesIn(phrase));
            world.stage.absent(builder.daemon.c_str());
        };
        callInterface(requestOf(phrase));
        EXPECT_FALSE(beforeConnect) << "nothing was connected";
        EXPECT_TRUE(storedBefore);
        EXPECT_EQ(replied("fail"), world.stage.trace());
        EXPECT_EQ(storedOptions(), storedBy(builder, valuesIn(phrase)));
    }
}

TEST(Faults, ADaemonThatDoesNotRun) {
    for (const Phrase &phrase : phrases()) {
        SCOPED_TRACE(joined(phrase.words));
        World world;
        const Builder &builder = builderOf(phrase.builder);
        world.stage.absent(builder.daemon.c_str());
        callInterface(requestOf(phrase));
        EXPECT_EQ(replied("fail"), world.stage.trace());
        EXPECT_EQ(storedOptions(), storedBy(builder, valuesIn(phrase)));
    }
}

/// Makes the store read-only for a scope: as a mount of its own or, where mounts are refused, for a
/// user who may not write it.
class ReadOnlyStore {
public:
    explicit ReadOnlyStore(const std::string &content)
        : mounted_(mount("none", kFolder, "tmpfs", 0, nullptr) == 0) {
        stage::writeFile(kStore, content.c_str());
        if (mounted_) {
            EXPECT_EQ(mount("none", kFolder, nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
            return;
        }
        for (const char *path : {"/tmp/tmp/nhrp_pipe_c2lua", "/var/nhrpd.vty", "/var/zebra.vty"}) {
            EXPECT_EQ(chmod(path, 0666), 0);
        }
        EXPECT_EQ(chmod(kFolder, 0755), 0);
        EXPECT_EQ(seteuid(kNobody), 0);
    }
    ~ReadOnlyStore() {
        if (mounted_) {
            EXPECT_EQ(umount2(kFolder, MNT_DETACH), 0);
        } else {
            EXPECT_EQ(seteuid(0), 0);
        }
    }
    ReadOnlyStore(const ReadOnlyStore &) = delete;
    ReadOnlyStore &operator=(const ReadOnlyStore &) = delete;

private:
    static constexpr const char *kFolder = "/etc/config";
    static constexpr uid_t kNobody = 65534;
    bool mounted_;
};

constexpr int32_t kInputOutput = 4; // libuci's code

TEST(Faults, AReadOnlyStoreDoesNotKeepTheCommandBack) {
    const std::string content = "config nhrp 'sdwan'\n\toption shortcut '1' # as written by hand\n";
    for (const Phrase &phrase : phrases()) {
        SCOPED_TRACE(joined(phrase.words));
        stage::Stage stage;
        const ReadOnlyStore store(content);
        callInterface(requestOf(phrase));
        EXPECT_EQ(sessionOf(builderOf(phrase.builder), joined(requestOf(phrase))) + replied("ok"),
                  stage.trace());
        EXPECT_EQ(contentOf(kStore), content);
    }
}

TEST(Faults, AReadOnlyStoreShowsInTheResult) {
    stage::Stage stage;
    const ReadOnlyStore store(kEmptyStore);
    EXPECT_EQ(nhrp_set_interface(kInterface, 1), kInputOutput);
    EXPECT_EQ(nhrp_set_interface(kInterface, 0), kInputOutput);
    EXPECT_EQ(nhrp_set_interface_config("sdwan", "network_id", kInterface, "5", 1), kInputOutput);
    EXPECT_EQ(nhrp_set_enable_config("sdwan", "nflog_group", "3", 1), kInputOutput);
    EXPECT_EQ(contentOf(kStore), kEmptyStore);
}

/// The log with a star for each line number.
std::string logOf(stage::Stage &stage) {
    return std::regex_replace(std::string(stage.log()), std::regex("^frr_nhrp:[0-9]+:"),
                              "frr_nhrp:*:");
}

// Golden cases cannot show empty lines.
TEST(Log, HandlersLeaveAnEmptyLineAfterTheirMessage) {
    stage::Stage stage;
    std::string words[] = {"x", "ip", "nhrp", "cache"};
    char *vector[] = {words[0].data(), words[1].data(), words[2].data(), words[3].data(), nullptr};
    process_nhrp_interface(2, vector);
    EXPECT_EQ(logOf(stage), "frr_nhrp:*: process_nhrp_interface argc:2,argv:ip\n\n");
    process_nhrp_global(1, vector);
    EXPECT_EQ(logOf(stage), "frr_nhrp:*: process_nhrp_global argc:1,argv:x\n\n");
    process_nhrp_show(2, vector);
    const std::string shown = logOf(stage);
    EXPECT_EQ(shown.substr(0, shown.find("\n\n") + 2),
              "frr_nhrp:*: process_nhrp_show argc:2,argv:ip,nhrp,cache\n\n");
    stage.absent("nhrpd");
    process_nhrp_show(4, vector);
    const std::string failed = logOf(stage);
    EXPECT_NE(failed.find(": process_nhrp_show argc:4,argv:cache,failed\n\n"), std::string::npos)
        << failed;
}

} // namespace

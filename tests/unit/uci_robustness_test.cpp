// SPDX-License-Identifier: Apache-2.0
// The store under load: random edits against a model, killed and concurrent writers, large files,
// full and read-only folders.

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <random>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <vector>

#include "common/frr_uci.h"
#include "tests/unit/store_world.h"

namespace {

using store::config;
using store::pending;

using Clock = std::chrono::steady_clock;

class UciRobustness : public store::World {};

/// Runs work in a process of its own, which ends with its result.
pid_t start(const std::function<int()> &work) {
    const pid_t child = fork();
    if (child == 0) {
        _exit(work());
    }
    return child;
}

int resultOf(pid_t child) {
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// ---- Random edits against a model ----

struct Option {
    std::string name;
    std::vector<std::string> values;
    bool isList;
};

struct Section {
    std::string type;
    std::string name; // empty: anonymous
    std::vector<Option> options;
};

std::string quoted(const std::string &text) {
    std::string out = "'";
    for (const char c : text) {
        out += c == '\'' ? "'\\''" : std::string(1, c);
    }
    return out + "'";
}

/// A store file as the model has it, and the same edits on both.
class Model {
public:
    explicit Model(unsigned seed) : random_(seed) {
        sections_ = {
            {"global",  "s0", {{"enable", {"en"}, false}, {"l", {"a", "b'c"}, true}}},
            {"network", "",   {{"ip", {"10.0.0.0"}, false}}                         },
            {"network", "s1", {{"l", {""}, true}}                                   },
            {"network", "",   {}                                                    },
        };
    }

    std::string text() const {
        std::string out;
        for (const Section &section : sections_) {
            out += "\nconfig " + section.type;
            out += (section.name.empty() ? "" : " " + quoted(section.name)) + "\n";
            for (const Option &option : section.options) {
                for (const std::string &value : option.values) {
                    out += std::string("\t") + (option.isList ? "list " : "option ") + option.name +
                           " " + quoted(value) + "\n";
                }
            }
        }
        return out + "\n";
    }

    /// One random edit of the stored package and of the model.
    void edit(const char *package) {
        switch (random_() % 10) {
        case 0:
            setType(package);
            break;
        case 1:
            addSection(package);
            break;
        case 2:
            remove(package);
            break;
        default:
            setOption(package);
        }
    }

private:
    std::string pick(const char *prefix, unsigned count) {
        return prefix + std::to_string(random_() % count);
    }
    Section *find(const std::string &name) {
        for (Section &section : sections_) {
            if (section.name == name) {
                return &section;
            }
        }
        return nullptr;
    }
    std::string randomValue() {
        static const std::string kBytes = "ab'\"\\ \t\n\r#;=.\xc3\xff$19";
        std::string value = pick("v", 100);
        for (auto i = random_() % 20; i > 0; --i) {
            value += kBytes[random_() % kBytes.size()];
        }
        return value;
    }

    void setType(const char *package) {
        const std::string name = pick("s", 12);
        const std::string type = pick("t", 3);
        EXPECT_EQ(frr_uci_set(package, name.c_str(), nullptr, type.c_str()), 0);
        Section *section = find(name);
        if (section == nullptr) {
            sections_.push_back({type, name, {}});
        } else {
            section->type = type;
        }
    }
    void addSection(const char *package) {
        if (sections_.size() < 40) {
            const std::string type = pick("t", 3);
            EXPECT_EQ(frr_uci_add_section(package, "cfg", type.c_str()), 0);
            sections_.push_back({type, "", {}});
        }
    }
    void remove(const char *package) {
        const std::string name = pick("s", 12);
        const bool whole = random_() % 4 == 0;
        const std::string option = pick("o", 8);
        Section *section = find(name);
        EXPECT_EQ(frr_uci_set(package, name.c_str(), whole ? nullptr : option.c_str(), ""),
                  section == nullptr && !whole ? 2 : 0);
        if (section != nullptr && whole) {
            sections_.erase(sections_.begin() + (section - sections_.data()));
        } else if (section != nullptr) {
            std::erase_if(section->options, [&](const Option &o) { return o.name == option; });
        }
    }
    void setOption(const char *package) {
        const std::string name = pick("s", 12);
        const std::string option = random_() % 15 == 0 ? "l" : pick("o", 8);
        const std::string value = randomValue();
        Section *section = find(name);
        EXPECT_EQ(frr_uci_set(package, name.c_str(), option.c_str(), value.c_str()),
                  section == nullptr ? 2 : 0);
        if (section == nullptr) {
            return;
        }
        for (Option &known : section->options) {
            if (known.name == option) {
                known = {option, {value}, false};
                return;
            }
        }
        section->options.push_back({option, {value}, false});
    }

    std::mt19937 random_;
    std::vector<Section> sections_;
};

void editAtRandom(const char *package, unsigned seed) {
    Model model(seed);
    store::write(config("p"), model.text());
    for (int edit = 0; edit < 1000; ++edit) {
        model.edit(package);
        ASSERT_EQ(store::read(config("p")), model.text()) << "edit " << edit << " seed " << seed;
    }
}

TEST_F(UciRobustness, thousandRandomEditsByName) {
    editAtRandom("p", 1);
}

TEST_F(UciRobustness, thousandRandomEditsByPath) {
    editAtRandom("/etc/config/p", 2);
}

// ---- Killed writers ----

/// What a writer has begun and what it was told is stored; shared with its parent.
struct Progress {
    volatile int begun;
    volatile int stored;
};

Progress *sharedProgress() {
    void *memory =
        mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    return memory == MAP_FAILED ? nullptr : new (memory) Progress{0, 0};
}

/// Forty sections around the one option that changes.
std::string countingFile(int number) {
    std::string text;
    for (int i = 0; i < 40; ++i) {
        text += "\nconfig filler 'f" + std::to_string(i) + "'\n";
        text += i == 20 ? "\toption n '" + std::to_string(number) + "'\n" : "";
        text += "\tlist l '" + std::string(200, 'x') + "'\n";
    }
    return text + "\n";
}

int countUp(const char *package, Progress *progress) {
    for (int number = progress->begun + 1;; ++number) {
        progress->begun = number;
        if (frr_uci_set(package, "f20", "n", std::to_string(number).c_str()) != 0) {
            return 1;
        }
        progress->stored = number;
    }
}

void expectWhole(const char *package, const Progress &progress) {
    // By name the last change may still be pending; the file is whole in any case.
    const std::string bytes = store::read(config("p"));
    bool whole = false;
    for (int number = progress.stored; number <= progress.begun && !whole; ++number) {
        whole = bytes == countingFile(number);
    }
    ASSERT_TRUE(whole) << "stored " << progress.stored << " begun " << progress.begun << "\n"
                       << bytes;
    char value[64];
    ASSERT_EQ(frr_uci_get(package, "f20", "n", value, sizeof value), 0);
    ASSERT_GE(atoi(value), progress.stored);
    ASSERT_LE(atoi(value), progress.begun);
}

/// The longest of a few changes on this machine, as busy as it is.
int64_t microsecondsOfAChange(const char *package) {
    int64_t longest = 0;
    for (int i = 0; i < 5; ++i) {
        const auto begin = Clock::now();
        EXPECT_EQ(frr_uci_set(package, "f20", "n", std::to_string(-i).c_str()), 0);
        const auto took =
            std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - begin);
        longest = std::max(longest, int64_t{took.count()});
    }
    return longest;
}

void killAtRandom(const char *package, int kills) {
    store::write(config("p"), countingFile(0));
    // Under an emulator a change takes long; the kills must still fall all over it and after it.
    const int64_t window = std::max(int64_t{3000}, 3 * microsecondsOfAChange(package));
    store::write(config("p"), countingFile(0));
    Progress *progress = sharedProgress();
    ASSERT_NE(progress, nullptr);
    std::mt19937 random(3);
    int working = 0;
    for (int i = 0; i < kills; ++i) {
        const int before = progress->begun;
        const pid_t child = start([&] { return countUp(package, progress); });
        const auto deadline = Clock::now() + std::chrono::seconds(20);
        while (progress->begun == before && Clock::now() < deadline) {
            // The random moment counts from the first change.
        }
        const auto moment =
            Clock::now() + std::chrono::microseconds(static_cast<int64_t>(random()) % window);
        while (Clock::now() < moment) {
        }
        ASSERT_EQ(kill(child, SIGKILL), 0);
        ASSERT_EQ(resultOf(child), -1) << "ended by itself";
        working += progress->begun > before ? 1 : 0;
        expectWhole(package, *progress);
        if (testing::Test::HasFatalFailure()) {
            return;
        }
    }
    EXPECT_EQ(working, kills);
    EXPECT_GT(progress->stored, kills / 2) << "too slow to say anything";
    (void)munmap(progress, sizeof *progress);
}

TEST_F(UciRobustness, twoHundredKillsByName) {
    killAtRandom("p", 200);
}

TEST_F(UciRobustness, twoHundredKillsByPath) {
    killAtRandom("/etc/config/p", 200);
}

// ---- Concurrent writers ----

constexpr int kWriters = 4;
constexpr int kUpdates = 60;

/// Sets options of its own and adds sections of its own type; the result is the first failure.
int writeMany(int writer) {
    const std::string section = "w" + std::to_string(writer);
    for (int i = 0; i < kUpdates; ++i) {
        const std::string option = "o" + std::to_string(i);
        int32_t code =
            frr_uci_set("p", section.c_str(), option.c_str(), (section + option).c_str());
        if (code == 0 && i % 2 == 0) {
            code = frr_uci_add_section("p", "cfg", "same");
        }
        if (code != 0) {
            return code;
        }
    }
    return 0;
}

int added;
int32_t countAdded(uci_context *, uci_section *) {
    ++added;
    return 0;
}

void expectAllOf(int writer) {
    const std::string section = "w" + std::to_string(writer);
    for (int i = 0; i < kUpdates; ++i) {
        const std::string option = "o" + std::to_string(i);
        char value[64];
        // By path: what is only pending does not count as committed.
        EXPECT_EQ(
            frr_uci_get("/etc/config/p", section.c_str(), option.c_str(), value, sizeof value), 0)
            << section << " " << option;
        EXPECT_EQ(value, section + option);
    }
}

void writeSections() {
    std::string text;
    for (int writer = 0; writer <= kWriters; ++writer) {
        text += "config writer 'w" + std::to_string(writer) + "'\n";
    }
    store::write(config("p"), text);
}

TEST_F(UciRobustness, fourWritersLoseNothing) {
    writeSections();
    std::vector<pid_t> children;
    for (int writer = 0; writer < kWriters; ++writer) {
        children.push_back(start([=] { return writeMany(writer); }));
    }
    for (const pid_t child : children) {
        EXPECT_EQ(resultOf(child), 0);
    }
    for (int writer = 0; writer < kWriters; ++writer) {
        expectAllOf(writer);
    }
    added = 0;
    frr_uci_foreach_section("/etc/config/p", "same", countAdded);
#ifdef FRRUCI_STAND_IN
    EXPECT_EQ(added, kWriters * kUpdates / 2);
#else
    // libuci takes two sections that were given the same made-up name for one.
    EXPECT_GE(added, kUpdates / 2);
    EXPECT_LE(added, kWriters * kUpdates / 2);
#endif
}

TEST_F(UciRobustness, writersLoseNothingWhenOthersAreKilled) {
    writeSections();
    std::vector<pid_t> children;
    for (int writer = 0; writer < kWriters - 1; ++writer) {
        children.push_back(start([=] { return writeMany(writer); }));
    }
    std::mt19937 random(4);
    for (int kills = 0; kills < 50; ++kills) {
        const pid_t victim = start([] {
            for (int i = 0;; ++i) {
                (void)frr_uci_set("p", "w4", "n", std::to_string(i).c_str());
            }
            return 0;
        });
        const auto moment = Clock::now() + std::chrono::microseconds(500 + random() % 3000);
        while (Clock::now() < moment) {
        }
        ASSERT_EQ(kill(victim, SIGKILL), 0);
        ASSERT_EQ(resultOf(victim), -1);
    }
    for (const pid_t child : children) {
        EXPECT_EQ(resultOf(child), 0);
    }
    for (int writer = 0; writer < kWriters - 1; ++writer) {
        expectAllOf(writer);
    }
}

TEST_F(UciRobustness, readersAlwaysSeeAWholeFile) {
    store::write(config("p"), countingFile(0));
    Progress *progress = sharedProgress();
    ASSERT_NE(progress, nullptr);
    const pid_t child = start([&] { return countUp("p", progress); });
    int last = 0;
    for (int i = 0; i < 2000; ++i) {
        char value[64];
        ASSERT_EQ(frr_uci_get("p", "f20", "n", value, sizeof value), 0);
        ASSERT_GE(atoi(value), last) << "went back";
        last = atoi(value);
    }
    ASSERT_EQ(kill(child, SIGKILL), 0);
    EXPECT_EQ(resultOf(child), -1);
    EXPECT_GT(last, 0);
    (void)munmap(progress, sizeof *progress);
}

/// True once some process waits for a flock, as the kernel's table tells.
bool someoneWaits() {
    const auto deadline = Clock::now() + std::chrono::seconds(20);
    while (Clock::now() < deadline) {
        if (store::read("/proc/locks").find("-> FLOCK") != std::string::npos) {
            return true;
        }
    }
    return false;
}

TEST_F(UciRobustness, writersAndReadersWaitForTheLock) {
    for (const bool writing : {true, false}) {
        store::write(config("p"), "config a 'x'\n\toption o 'v'\n");
        const int file = open(config("p").c_str(), O_RDONLY | O_CLOEXEC);
        ASSERT_EQ(flock(file, LOCK_EX), 0);
        const pid_t child = start([=] {
            char value[64];
            return writing ? frr_uci_set("/etc/config/p", "x", "o", "new")
                           : frr_uci_get("p", "x", "o", value, sizeof value);
        });
        EXPECT_TRUE(someoneWaits());
        EXPECT_EQ(waitpid(child, nullptr, WNOHANG), 0);
        ASSERT_EQ(flock(file, LOCK_UN), 0);
        EXPECT_EQ(resultOf(child), 0);
        (void)close(file);
        EXPECT_EQ(store::loaded("p"), writing ? "a x(o=new)" : "a x(o=v)");
    }
}

TEST_F(UciRobustness, readersShareTheLock) {
    store::write(config("p"), "config a 'x'\n\toption o 'v'\n");
    const int file = open(config("p").c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(file, LOCK_SH), 0);
    const pid_t child = start([] {
        alarm(20); // the only way out of a wait for this process
        char value[64];
        return frr_uci_get("p", "x", "o", value, sizeof value);
    });
    EXPECT_EQ(resultOf(child), 0);
    (void)close(file);
}

// ---- Large files, full and read-only folders ----

TEST_F(UciRobustness, megabyteFile) {
    std::string text;
    int sections = 0;
    while (text.size() < (1U << 20U)) {
        text += "\nconfig network 'n" + std::to_string(sections++) +
                "'\n\toption ip '10.0.0.0'\n\toption mask '255.0.0.0'\n\tlist l 'it'\\''s'\n";
    }
    text += "\nconfig last 'last'\n\toption o 'old'\n\n";
    store::write(config("p"), text);
    const auto begin = Clock::now();
    EXPECT_EQ(frr_uci_set("p", "last", "o", "new"), 0);
    EXPECT_EQ(frr_uci_set("/etc/config/p", "n0", "ip", "11.0.0.0"), 0);
    const std::chrono::duration<double> took = Clock::now() - begin;
    RecordProperty("seconds", std::to_string(took.count()));
    text.replace(text.find("10.0.0.0"), 8, "11.0.0.0");
    text.replace(text.find("'old'"), 5, "'new'");
    EXPECT_EQ(store::read(config("p")), text);
    char value[64];
    EXPECT_EQ(frr_uci_get("p", "last", "o", value, sizeof value), 0);
    EXPECT_STREQ(value, "new");
}

constexpr const char *kSmall = "config a 'x'\n\toption o 'v'\n";

TEST_F(UciRobustness, readOnlyFolder) {
    store::write(config("p"), kSmall);
    ASSERT_EQ(mount("none", store::kConfigFolder, "tmpfs", 0, "mode=0755"), 0);
    store::write(config("p"), kSmall);
    ASSERT_EQ(mount(nullptr, store::kConfigFolder, nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
    EXPECT_EQ(frr_uci_set("/etc/config/p", "x", "o", "new"), 4);
    EXPECT_EQ(frr_uci_set("p", "x", "o", "new"), 4);
    EXPECT_EQ(frr_uci_add_section("/etc/config/p", "cfg", "t"), 0) << "not reported, as intended";
    EXPECT_EQ(store::read(config("p")), kSmall);
    char value[64];
    EXPECT_EQ(frr_uci_get("/etc/config/p", "x", "o", value, sizeof value), 0);
    EXPECT_STREQ(value, "v");
    ASSERT_EQ(umount(store::kConfigFolder), 0);
}

TEST_F(UciRobustness, fullFolder) {
    ASSERT_EQ(mount("none", store::kConfigFolder, "tmpfs", 0, "mode=0755,size=64k"), 0);
    const std::string file =
        "config a 'x'\n\toption big '" + std::string(40000, 'b') + "'\n\toption o 'v'\n";
    store::write(config("p"), file);
    EXPECT_EQ(frr_uci_set("/etc/config/p", "x", "o", "new"), 4);
    EXPECT_EQ(frr_uci_set("p", "x", "o", "new"), 4);
    EXPECT_EQ(store::read(config("p")), file);
    int entries = 0;
    for (const auto &entry : std::filesystem::directory_iterator(store::kConfigFolder)) {
        EXPECT_EQ(entry.path(), config("p"));
        ++entries;
    }
    EXPECT_EQ(entries, 1) << "a temporary file was left";
    EXPECT_EQ(store::read(pending("p")), "p.x.o='new'\n") << "the change stays pending";
    ASSERT_EQ(umount(store::kConfigFolder), 0);
    store::write(config("p"), kSmall);
    EXPECT_EQ(frr_uci_set("p", "x", "more", "1"), 0);
    EXPECT_EQ(store::loaded("/etc/config/p"), "a x(o=new,more=1)");
}

} // namespace

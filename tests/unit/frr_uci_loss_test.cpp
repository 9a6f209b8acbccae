// SPDX-License-Identifier: Apache-2.0
// What may fail while the store is changed: room at every fill level of a small file system, each
// call that writes, and the process itself at each of these calls. Whatever happens, the file is
// the old one or the whole new one, pending changes are there, and what is not stored answers 4.

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <dlfcn.h>
#include <functional>
#include <sys/mount.h>
#include <sys/wait.h>
#include <vector>

#include "common/frr_uci.h"
#include "tests/support/no_memory.h"
#include "tests/unit/store_world.h"

namespace {

/// Which call from now on fails, or ends the process; 0: none.
struct Fault {
    int call = 0;
    int error = 0; ///< 0: the process ends
    int seen = 0;
};
Fault fault;

/// True when this call is the one.
bool failsHere() {
    ++fault.seen;
    if (fault.call == 0 || fault.seen != fault.call) {
        return false;
    }
    if (fault.error == 0) {
        (void)raise(SIGKILL);
    }
    errno = fault.error;
    return true;
}

template <class Function> Function *next(const char *name, Function * /*type*/) {
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

} // namespace

// Defined in the program, so that the libraries find these first.
#pragma GCC visibility push(default)
extern "C" {

ssize_t write(int descriptor, const void *bytes, size_t count) {
    return failsHere() ? -1 : next("write", &write)(descriptor, bytes, count);
}
int fsync(int descriptor) {
    return failsHere() ? -1 : next("fsync", &fsync)(descriptor);
}
int fchmod(int descriptor, mode_t mode) noexcept(noexcept(::fchmod(0, 0))) {
    return failsHere() ? -1 : next("fchmod", &fchmod)(descriptor, mode);
}
int ftruncate(int descriptor, off_t size) noexcept(noexcept(::ftruncate(0, 0))) {
    return failsHere() ? -1 : next("ftruncate", &ftruncate)(descriptor, size);
}
int rename(const char *from, const char *to) noexcept(noexcept(::rename("", ""))) {
    return failsHere() ? -1 : next("rename", &rename)(from, to);
}
int mkostemp(char *path, int flags) {
    return failsHere() ? -1 : next("mkostemp", &mkostemp)(path, flags);
}
}
#pragma GCC visibility pop

namespace {

using store::config;
using store::pending;

constexpr int kInputOutput = 4;
constexpr const char *kByName = "p";
constexpr const char *kByPath = "/etc/config/p";
constexpr const char *kSaved = "p.x.saved='1'\n"; // pending before, by somebody else
constexpr std::size_t kPage = 4096;
constexpr std::size_t kDisk = 16 * kPage;

/// A file of about that size; the option that changes stands in its middle.
std::string fileOf(std::size_t size, const std::string &value, bool saved) {
    const std::string filler(size / 2, 'f');
    return "\nconfig a 'x'\n\toption before '" + filler + "'\n\toption o '" + value +
           "'\n\toption after '" + filler + "'\n" + (saved ? "\toption saved '1'\n" : "") +
           "\nconfig b\n\tlist l 'it'\\''s'\n\n";
}

void mountSmall(const char *folder) {
    ASSERT_EQ(mount("none", folder, "tmpfs", 0, "mode=0755,size=64k"), 0);
}

/// Takes room until only that many pages are left.
void leavePages(const std::string &folder, std::size_t pages) {
    const std::string path = folder + "/filler";
    std::ofstream file(path, std::ios::binary);
    const std::string page(kPage, 'r');
    while (file.write(page.data(), kPage).flush()) {
    }
    file.close();
    const auto size = std::filesystem::file_size(path) / kPage * kPage;
    std::filesystem::resize_file(path, size > pages * kPage ? size - pages * kPage : 0);
}

struct Store {
    std::string text;
    std::string lines;
};

Store now() {
    return {store::read(config("p")), store::read(pending("p"))};
}

/// How often a change was stored and how often it was not.
struct Tally {
    int stored = 0;
    int refused = 0;
};

class FrrUciLoss : public store::World {
protected:
    ~FrrUciLoss() override { fault = {}; }

    void begin(std::size_t size, bool saved) {
        size_ = size;
        store::write(config("p"), fileOf(size, "old", false));
        if (saved) {
            store::write(pending("p"), kSaved);
        }
        saved_ = saved;
    }

    /// One change, and what must hold after it.
    void change(const char *package, const std::string &value, Tally &tally) {
        const int32_t code = frr_uci_set(package, "x", "o", value.c_str());
        check(package, value, code);
        (code == 0 ? tally.stored : tally.refused) += 1;
    }

    void check(const char *package, const std::string &value, int32_t code) {
        const bool byName = package == kByName;
        const Store found = now();
        const std::string changed = fileOf(size_, value, byName && saved_);
        EXPECT_TRUE(code == 0 || code == kInputOutput) << code;
        if (code == 0) {
            EXPECT_TRUE(found.text == changed) << found.text.size() << " bytes, answered 0";
        } else {
            // By name the text may be in place all the same, and the change pending still.
            EXPECT_TRUE(found.text == fileOf(size_, "old", false) || found.text == changed)
                << found.text.size() << " bytes, answered 4";
        }
        if (saved_ && found.text != changed) {
            EXPECT_EQ(found.lines.find(kSaved), 0U) << "a pending change is lost";
        }
        if (saved_ && !byName) {
            EXPECT_TRUE(found.lines == kSaved) << "by path they are left alone";
        }
    }

    /// With room again nothing is in the way, and nothing is left over.
    void recover() {
        std::filesystem::remove("/etc/config/filler");
        std::filesystem::remove("/tmp/filler");
        EXPECT_EQ(frr_uci_set(kByName, "x", "o", "last"), 0);
        EXPECT_TRUE(now().text == fileOf(size_, "last", saved_)) << now().text.size() << " bytes";
        EXPECT_TRUE(now().lines.empty());
        EXPECT_EQ(entries(store::kConfigFolder), "p ");
    }

    static std::string entries(const char *folder) {
        std::string names;
        for (const auto &entry : std::filesystem::directory_iterator(folder)) {
            names += entry.path().filename().string() + " ";
        }
        return names;
    }

private:
    std::size_t size_ = 0;
    bool saved_ = false;
};

// ---- Room ----

constexpr std::size_t kSizes[] = {100, 5000, 10000, 20000}; // old and new file fit in together

TEST_F(FrrUciLoss, everyFillLevelOfTheStoresFolder) {
    Tally tally;
    for (const char *package : {kByName, kByPath}) {
        for (const std::size_t size : kSizes) {
            for (std::size_t pages = 0; pages <= kDisk / kPage; ++pages) {
                std::filesystem::remove_all(store::kPendingFolder);
                ASSERT_NO_FATAL_FAILURE(mountSmall(store::kConfigFolder));
                begin(size, pages % 2 == 0);
                leavePages(store::kConfigFolder, pages);
                SCOPED_TRACE(std::string(package) + ", " + std::to_string(size) + " bytes, " +
                             std::to_string(pages) + " pages left");
                change(package, std::string(3000, 'n'), tally);
                recover();
                ASSERT_EQ(umount(store::kConfigFolder), 0);
            }
        }
    }
    EXPECT_GT(tally.stored, 50);
    EXPECT_GT(tally.refused, 20);
}

TEST_F(FrrUciLoss, everyFillLevelOfMemory) {
    Tally tally;
    for (const char *package : {kByName, kByPath}) {
        for (const std::size_t size : kSizes) {
            for (std::size_t pages = 0; pages <= kDisk / kPage; ++pages) {
                ASSERT_NO_FATAL_FAILURE(mountSmall("/tmp"));
                begin(size, true);
                leavePages("/tmp", pages);
                SCOPED_TRACE(std::string(package) + ", " + std::to_string(size) + " bytes, " +
                             std::to_string(pages) + " pages left");
                change(package, std::string(3000, 'n'), tally);
                std::filesystem::remove("/tmp/filler");
                EXPECT_EQ(entries("/tmp"), ".uci ");
                recover();
                ASSERT_EQ(umount("/tmp"), 0);
            }
        }
    }
    EXPECT_GT(tally.stored, 50);
    EXPECT_GT(tally.refused, 20);
}

TEST_F(FrrUciLoss, aPendingLineThatIsCutAnywhere) {
    // The line begins so far before the end of the last page that there is room for.
    const std::string line = "p.x.o='it'\\''s\n'\n";
    for (std::size_t room = 0; room <= line.size() + 1; ++room) {
        ASSERT_NO_FATAL_FAILURE(mountSmall("/tmp"));
        begin(100, false);
        const std::string comment = "#" + std::string(kPage - room - 2, 'c') + "\n";
        store::write(pending("p"), comment);
        leavePages("/tmp", 0);
        SCOPED_TRACE(std::to_string(room) + " bytes of room");
        const int32_t code = frr_uci_set(kByName, "x", "o", "it's\n");
        EXPECT_EQ(code, kInputOutput) << "the text has no room either";
        EXPECT_EQ(now().lines, comment + (room >= line.size() ? line : ""));
        recover();
        ASSERT_EQ(umount("/tmp"), 0);
    }
}

TEST_F(FrrUciLoss, anAddedSectionOnAFullDisk) {
    for (const char *folder : {store::kConfigFolder, "/tmp"}) {
        for (std::size_t pages = 0; pages <= kDisk / kPage; ++pages) {
            ASSERT_NO_FATAL_FAILURE(mountSmall(folder));
            begin(20000, true);
            leavePages(folder, pages);
            EXPECT_EQ(frr_uci_add_section(kByName, "cfg", "added"), 0) << "not reported";
            const Store found = now();
            const std::string before = fileOf(20000, "old", false);
            std::string after = fileOf(20000, "old", true);
            after.insert(after.size() - 1, "\nconfig added\n");
            EXPECT_TRUE(found.text == before || found.text == after) << found.text.size();
            EXPECT_TRUE(found.text == after || found.lines.find(kSaved) == 0);
            ASSERT_EQ(umount(folder), 0);
            std::filesystem::remove_all(store::kPendingFolder);
        }
    }
}

// ---- Calls that fail, processes that are killed ----

/// How many calls that can fail one change makes.
int callsOf(const char *package) {
    fault = {};
    EXPECT_EQ(frr_uci_set(package, "x", "o", "new"), 0);
    return fault.seen;
}

TEST_F(FrrUciLoss, eachCallThatFails) {
    for (const char *package : {kByName, kByPath}) {
        begin(9000, true);
        const int calls = callsOf(package);
        ASSERT_GT(calls, 8);
        Tally tally;
        for (const int error : {EIO, ENOSPC}) {
            for (int call = 1; call <= calls; ++call) {
                begin(9000, true);
                SCOPED_TRACE(std::string(package) + ", call " + std::to_string(call));
                fault = {call, error, 0};
                change(package, "new", tally);
                fault = {};
                recover();
            }
        }
        EXPECT_GT(tally.refused, calls) << "more than half of all";
    }
}

TEST_F(FrrUciLoss, aWriterKilledAtEachCall) {
    for (const char *package : {kByName, kByPath}) {
        begin(9000, true);
        const int calls = callsOf(package);
        for (int call = 1; call <= calls; ++call) {
            begin(9000, true);
            SCOPED_TRACE(std::string(package) + ", call " + std::to_string(call));
            const pid_t child = fork();
            if (child == 0) {
                fault = {call, 0, 0};
                _exit(frr_uci_set(package, "x", "o", "new"));
            }
            int status = 0;
            ASSERT_EQ(waitpid(child, &status, 0), child);
            ASSERT_TRUE(WIFSIGNALED(status));
            check(package, "new", kInputOutput);
            recover();
        }
    }
}

#ifndef FRRUCI_CARELESS // the double does not go on without memory
// ---- Memory ----

TEST_F(FrrUciLoss, aLackOfMemoryLeavesNoLockBehind) {
    constexpr int kAllocations = 150; // more than one change makes
    for (const char *package : {kByName, kByPath}) {
        for (int number = 1; number <= kAllocations; ++number) {
            begin(100, true);
            SCOPED_TRACE(std::string(package) + ", allocation " + std::to_string(number));
            const pid_t child = fork();
            if (child == 0) {
                alarm(20); // the only way out of a wait for this process
                {
                    const stage::NoMemory none(number);
                    (void)frr_uci_set(package, "x", "o", "new");
                }
                _exit(frr_uci_set(package, "x", "o", "newer"));
            }
            int status = 0;
            ASSERT_EQ(waitpid(child, &status, 0), child);
            ASSERT_TRUE(WIFEXITED(status)) << "waited for itself";
            EXPECT_EQ(WEXITSTATUS(status), 0);
            EXPECT_TRUE(now().text.find("option o 'newer'") != std::string::npos);
        }
    }
}
#endif

} // namespace

// SPDX-License-Identifier: Apache-2.0
// The exact libuci calls of each store operation. The nine functions are defined here, in the
// program, so that the library finds these first; they record, fail when told to, and go on to the
// libuci that would have been called.

#include <dlfcn.h>
#include <fcntl.h>
#include <map>
#include <string>
#include <sys/file.h>
#include <unistd.h>

#include "common/frr_uci.h"
#include "tests/unit/store_world.h"

namespace {

struct Calls {
    std::string trace;
    std::map<std::string, int> failures; // function to code; alloc: any code gives no context
    bool allocLosesFolder = false;       // as when memory runs out in the middle
    bool setKeepsLock = false;           // as when memory runs out in it
    std::map<uci_context *, int> contexts;
    int made = 0;
    bool watching = false;
    int depth = 0; // libuci calls some of its functions itself; those calls are its own matter
    uci_list lostFolders = {};
    int keptLock = -1;
    bool commitLosesPackage = false; // as when the file cannot be read anew
    std::string savedName;           // of the last section, when it is saved
};
Calls *calls;

template <class Function> Function *next(const char *name, Function * /*type*/) {
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

std::string text(const char *text) {
    return text == nullptr ? "null" : text;
}

/// One line of the trace: the function, its context by number, and its arguments.
void record(const std::string &function, uci_context *context, const std::string &arguments) {
    if (!calls->watching || calls->depth > 0) {
        return;
    }
    const auto known = calls->contexts.find(context);
    calls->trace += calls->trace.empty() ? "" : "; ";
    calls->trace += function + "#" +
                    (known == calls->contexts.end() ? "?" : std::to_string(known->second)) +
                    (arguments.empty() ? "" : " " + arguments);
}

int failure(const char *function) {
    const auto found = calls->failures.find(function);
    const bool ours = calls->watching && calls->depth == 0;
    return !ours || found == calls->failures.end() ? 0 : found->second;
}

/// Calls the libuci that would have been called. Inside, libuci may jump over calls of its own.
template <class Function, class... Arguments>
auto forward(const char *name, Function *type, Arguments... arguments) {
    const int depth = calls->depth++;
    if constexpr (std::is_void_v<decltype(next(name, type)(arguments...))>) {
        next(name, type)(arguments...);
        calls->depth = depth;
    } else {
        const auto result = next(name, type)(arguments...);
        calls->depth = depth;
        return result;
    }
}

} // namespace

#pragma GCC visibility push(default)
extern "C" {

uci_context *uci_alloc_context(void) {
    if (failure("alloc") != 0) {
        record("alloc", nullptr, "");
        return nullptr;
    }
    uci_context *context = forward("uci_alloc_context", &uci_alloc_context);
    if (calls->watching && calls->depth == 0) {
        calls->contexts[context] = ++calls->made;
    }
    record("alloc", context, "");
    if (calls->allocLosesFolder) {
        calls->lostFolders = context->delta_path;
        context->delta_path.next = &context->delta_path;
        context->delta_path.prev = &context->delta_path;
    }
    return context;
}

void uci_free_context(uci_context *ctx) {
    record("free", ctx, "");
    if (calls->allocLosesFolder) {
        ctx->delta_path = calls->lostFolders;
    }
    calls->contexts.erase(ctx);
    forward("uci_free_context", &uci_free_context, ctx);
}

int uci_load(uci_context *ctx, const char *name, uci_package **package) {
    record("load", ctx, text(name) + (*package == nullptr ? "" : " (not null)"));
    const int code = failure("load");
    return code != 0 ? code : forward("uci_load", &uci_load, ctx, name, package);
}

int uci_unload(uci_context *ctx, uci_package *package) {
    record("unload", ctx, package == nullptr ? "null" : package->e.name);
    return forward("uci_unload", &uci_unload, ctx, package);
}

int uci_lookup_next(uci_context *ctx, uci_element **e, uci_list *list, const char *name) {
    record("lookup", ctx, text(name));
    return forward("uci_lookup_next", &uci_lookup_next, ctx, e, list, name);
}

int uci_set(uci_context *ctx, uci_ptr *ptr) {
    const bool namesOnly = ptr->target == 0 && ptr->flags == 0 && ptr->p == nullptr &&
                           ptr->s == nullptr && ptr->o == nullptr && ptr->last == nullptr;
    record("set", ctx,
           text(ptr->package) + "." + text(ptr->section) + "." + text(ptr->option) + "=" +
               text(ptr->value) + (namesOnly ? "" : " (not only names)"));
    const int code = failure("set");
    if (code != 0 && calls->setKeepsLock) {
        calls->keptLock = open("/etc/config/ospf", O_RDWR | O_CLOEXEC);
        EXPECT_EQ(flock(calls->keptLock, LOCK_SH), 0); // the reader has one too
    }
    return code != 0 ? code : forward("uci_set", &uci_set, ctx, ptr);
}

int uci_add_section(uci_context *ctx, uci_package *package, const char *type,
                    uci_section **section) {
    record("add", ctx, text(package->e.name) + " " + text(type));
    const int code = failure("add");
    return code != 0 ? code
                     : forward("uci_add_section", &uci_add_section, ctx, package, type, section);
}

int uci_save(uci_context *ctx, uci_package *package) {
    record("save", ctx, package->e.name);
    if (calls->watching && calls->depth == 0 && package->sections.prev != &package->sections) {
        calls->savedName = reinterpret_cast<uci_section *>(package->sections.prev)->e.name;
    }
    const int code = failure("save");
    return code != 0 ? code : forward("uci_save", &uci_save, ctx, package);
}

int uci_commit(uci_context *ctx, uci_package **package, bool overwrite) {
    record("commit", ctx, std::string((*package)->e.name) + (overwrite ? " overwrite" : ""));
    if (calls->watching && calls->commitLosesPackage) {
        (void)forward("uci_unload", &uci_unload, ctx, *package);
        return UCI_ERR_PARSE; // the caller's pointer stays, to what is gone
    }
    const int code = failure("commit");
    return code != 0 ? code : forward("uci_commit", &uci_commit, ctx, package, overwrite);
}
}
#pragma GCC visibility pop

namespace {

class FrrUciCalls : public store::World {
protected:
    FrrUciCalls() {
        calls = &calls_;
        store::write(store::config("ospf"), kFile);
        calls_.watching = true;
    }
    ~FrrUciCalls() override {
        EXPECT_TRUE(calls_.contexts.empty()) << "a context was not released";
        calls_.watching = false;
    }

    void losePackageInCommit() { calls_.commitLosesPackage = true; }
    void loseFolderInAlloc() { calls_.allocLosesFolder = true; }
    void keepLockInSet() { calls_.setKeepsLock = true; }
    int keptLock() const { return calls_.keptLock; }
    std::string savedName() const { return calls_.savedName; }
    void fail(const char *function, int code) { calls_.failures[function] = code; }
    std::string trace() { return std::exchange(calls_.trace, ""); }
    static std::string log() { return store::read(store::kLog); }

    static constexpr const char *kFile =
        "config global 'global'\n\toption enable 'dis'\n\tlist l 'a'\nconfig network\n";
    char out_[64] = "old";

private:
    Calls calls_;
};

TEST_F(FrrUciCalls, setLooksUpSetsSavesAndCommitsInOneContext) {
    EXPECT_EQ(frr_uci_set("ospf", "global", "enable", "en"), 0);
    EXPECT_EQ(trace(), "alloc#1; set#1 ospf.global.enable=en; save#1 ospf; commit#1 ospf; free#1");
}

TEST_F(FrrUciCalls, everyOperationHasAContextOfItsOwn) {
    EXPECT_EQ(frr_uci_set("ospf", "global", "enable", "en"), 0);
    EXPECT_EQ(frr_uci_get("ospf", "global", "enable", out_, sizeof out_), 0);
    EXPECT_EQ(trace(), "alloc#1; set#1 ospf.global.enable=en; save#1 ospf; commit#1 ospf; free#1; "
                       "alloc#2; load#2 ospf; lookup#2 global; lookup#2 enable; unload#2 ospf; "
                       "free#2");
}

TEST_F(FrrUciCalls, refusedSetIsNeitherSavedNorCommitted) {
    EXPECT_EQ(frr_uci_set("ospf", "nosuch", "enable", "en"), 2);
    EXPECT_EQ(trace(), "alloc#1; set#1 ospf.nosuch.enable=en; free#1");
    EXPECT_EQ(store::read(store::config("ospf")), kFile);
    EXPECT_EQ(store::read(store::pending("ospf")), "(none)");
}

TEST_F(FrrUciCalls, everyCodeOfSetComesThrough) {
    for (int code = 1; code <= 7; ++code) {
        fail("set", code);
        EXPECT_EQ(frr_uci_set("ospf", "global", "enable", "en"), code);
    }
}

TEST_F(FrrUciCalls, failedSaveIsNotCommitted) {
    fail("save", 4);
    EXPECT_EQ(frr_uci_set("ospf", "global", "enable", "en"), 4);
    EXPECT_EQ(trace(), "alloc#1; set#1 ospf.global.enable=en; save#1 ospf; free#1");
}

TEST_F(FrrUciCalls, failedCommitIsReported) {
    fail("commit", 5);
    EXPECT_EQ(frr_uci_set("ospf", "global", "enable", "en"), 5);
    EXPECT_EQ(trace(), "alloc#1; set#1 ospf.global.enable=en; save#1 ospf; commit#1 ospf; free#1");
}

TEST_F(FrrUciCalls, setHandsNullsOn) {
    EXPECT_EQ(frr_uci_set("ospf", "global", nullptr, nullptr), 2);
    EXPECT_EQ(frr_uci_set("ospf", nullptr, "enable", "en"), 2);
    EXPECT_EQ(frr_uci_set(nullptr, "global", "enable", "en"), 2);
    EXPECT_EQ(trace(), "alloc#1; set#1 ospf.global.null=null; free#1; "
                       "alloc#2; set#2 ospf.null.enable=en; free#2; "
                       "alloc#3; set#3 .global.enable=en; free#3");
}

TEST_F(FrrUciCalls, withoutAContextNothingIsCalled) {
    fail("alloc", 1);
    EXPECT_EQ(frr_uci_set("ospf", "global", "enable", "en"), 1);
    EXPECT_EQ(frr_uci_get("ospf", "global", "enable", out_, sizeof out_), 1);
    EXPECT_EQ(out_[0], '\0') << "cleared before the context is asked for";
    EXPECT_EQ(frr_uci_add_section("ospf", "cfg", "abc"), 1);
    EXPECT_EQ(trace(), "alloc#?; alloc#?; alloc#?");
    EXPECT_EQ(log(), "(none)");
}

TEST_F(FrrUciCalls, aContextThatWouldIgnorePendingChangesIsNotUsed) {
    loseFolderInAlloc();
    EXPECT_EQ(frr_uci_set("ospf", "global", "enable", "en"), 1);
    EXPECT_EQ(frr_uci_get("ospf", "global", "enable", out_, sizeof out_), 1);
    EXPECT_EQ(trace(), "alloc#1; free#1; alloc#2; free#2");
}

TEST_F(FrrUciCalls, aSetWithoutMemoryKeepsNoLock) {
    keepLockInSet();
    fail("set", UCI_ERR_MEM);
    EXPECT_EQ(frr_uci_set("ospf", "global", "enable", "en"), UCI_ERR_MEM);
    const int other = open("/etc/config/ospf", O_RDWR | O_CLOEXEC);
    EXPECT_EQ(flock(other, LOCK_EX | LOCK_NB), 0);
    close(other);
    close(keptLock());
}

TEST_F(FrrUciCalls, getStopsAtWhatIsMissing) {
    EXPECT_EQ(frr_uci_get("ospf", "nosuch", "enable", out_, sizeof out_), 3);
    EXPECT_EQ(trace(), "alloc#1; load#1 ospf; lookup#1 nosuch; unload#1 ospf; free#1");
    EXPECT_EQ(frr_uci_get("ospf", "global", "nosuch", out_, sizeof out_), 3);
    EXPECT_EQ(trace(),
              "alloc#2; load#2 ospf; lookup#2 global; lookup#2 nosuch; unload#2 ospf; free#2");
    EXPECT_EQ(frr_uci_get("ospf", "global", "l", out_, sizeof out_), 3);
    EXPECT_EQ(trace(), "alloc#3; load#3 ospf; lookup#3 global; lookup#3 l; unload#3 ospf; free#3");
    EXPECT_EQ(frr_uci_get("nosuch", "global", "l", out_, sizeof out_), 3);
    EXPECT_EQ(trace(), "alloc#4; load#4 nosuch; free#4");
}

TEST_F(FrrUciCalls, everyCodeOfTheLoadComesThroughGet) {
    for (int code = 1; code <= 7; ++code) {
        fail("load", code);
        EXPECT_EQ(frr_uci_get("ospf", "global", "enable", out_, sizeof out_), code);
    }
}

TEST_F(FrrUciCalls, addSavesCommitsAndUnloads) {
    EXPECT_EQ(frr_uci_add_section("ospf", "cfg", "abc"), 0);
    EXPECT_EQ(trace(), "alloc#1; load#1 ospf; add#1 ospf abc; save#1 ospf; commit#1 ospf; "
                       "unload#1 ospf; free#1");
    EXPECT_EQ(log(), "(none)");
}

TEST_F(FrrUciCalls, nameCoversTheBeginningOfTheMadeUpOne) {
    EXPECT_EQ(frr_uci_add_section("ospf", "", "abc"), 0);
    const std::string first = savedName();
    ASSERT_EQ(first.size(), 9U);
    EXPECT_EQ(frr_uci_add_section("ospf", "XYZ1", "abc"), 0);
    EXPECT_EQ(savedName().substr(0, 4), "XYZ1");
    EXPECT_EQ(savedName().size(), 9U);
    EXPECT_EQ(savedName().substr(5), first.substr(5)) << "the hash of the type";
    EXPECT_EQ(frr_uci_add_section("ospf", "a_name_too_long", "abc"), 0);
    EXPECT_EQ(savedName(), "a_name_to");
}

TEST_F(FrrUciCalls, packageThatACommitLostIsNotUnloaded) {
    losePackageInCommit();
    EXPECT_EQ(frr_uci_add_section("ospf", "cfg", "abc"), 0);
    EXPECT_EQ(trace(), "alloc#1; load#1 ospf; add#1 ospf abc; save#1 ospf; commit#1 ospf; free#1");
}

TEST_F(FrrUciCalls, failedAddIsLoggedAndStillCommitted) {
    fail("add", 6);
    EXPECT_EQ(frr_uci_add_section("ospf", "cfg", "abc"), 6);
    EXPECT_EQ(trace(), "alloc#1; load#1 ospf; add#1 ospf abc; save#1 ospf; commit#1 ospf; "
                       "unload#1 ospf; free#1");
    EXPECT_EQ(log(), "frr_uci:108:  ret=6, uci_add_section 6\n");
}

TEST_F(FrrUciCalls, addDoesNotReportSaveAndCommit) {
    fail("save", 4);
    fail("commit", 4);
    EXPECT_EQ(frr_uci_add_section("ospf", "cfg", "abc"), 0);
    EXPECT_EQ(trace(), "alloc#1; load#1 ospf; add#1 ospf abc; save#1 ospf; commit#1 ospf; "
                       "unload#1 ospf; free#1");
    EXPECT_EQ(log(), "(none)");
}

TEST_F(FrrUciCalls, addWithoutAPackageIsNotFoundWhateverTheReason) {
    for (int code = 1; code <= 7; ++code) {
        fail("load", code);
        EXPECT_EQ(frr_uci_add_section("ospf", "cfg", "abc"), 3);
        EXPECT_EQ(log(), "frr_uci:102:  ret=1, uci_load ospf\n");
        store::write(store::kLog, "");
        const std::string number = std::to_string(code);
        EXPECT_EQ(trace(), "alloc#" + number + "; load#" + number + " ospf; free#" + number);
        (void)remove(store::kLog);
    }
}

int visits;
int32_t countVisit(uci_context *, uci_section *) {
    return ++visits;
}

TEST_F(FrrUciCalls, foreachLoadsAndUnloadsOnce) {
    visits = 0;
    frr_uci_foreach_section("ospf", "network", countVisit);
    EXPECT_EQ(trace(), "alloc#1; load#1 ospf; unload#1 ospf; free#1");
    EXPECT_EQ(visits, 1);
}

TEST_F(FrrUciCalls, foreachWithoutAPackageVisitsNothing) {
    visits = 0;
    frr_uci_foreach_section("nosuch", "network", countVisit);
    EXPECT_EQ(trace(), "alloc#1; load#1 nosuch; free#1");
    fail("alloc", 1);
    frr_uci_foreach_section("ospf", "network", countVisit);
    EXPECT_EQ(trace(), "alloc#?; load#? ospf");
    EXPECT_EQ(visits, 0);
}

TEST_F(FrrUciCalls, initRunsItsStepsInOrder) {
    store::write(store::config("iptv"), "config x 'iptv'\n");
    store::write(store::config("ospf"), "config x 'global'\nconfig x 'global2'\n");
    EXPECT_EQ(frr_uci_init(), 0);
    std::string steps;
    for (std::size_t at = 0; std::string call : {"set#", "add#"}) {
        const std::string all = calls->trace;
        for (at = all.find(call); at != std::string::npos; at = all.find(call, at + 1)) {
            steps += all.substr(at, all.find(';', at) - at) + "\n";
        }
    }
    EXPECT_EQ(steps, "set#1 iptv.iptv.handle_time=20\n"
                     "set#2 ospf.global.enable=en\n"
                     "set#3 ospf.global2.enable=en\n"
                     "add#4 ospf abc\n"
                     "add#5 iptv abc\n"
                     "add#6 ospf abc\n"
                     "add#7 ospf abc2\n");
    EXPECT_EQ(log(), "(none)");
}

TEST_F(FrrUciCalls, initLogsEachFailureAndGoesOn) {
    fail("set", 4);
    fail("load", 5);
    EXPECT_EQ(frr_uci_init(), 3);
    EXPECT_EQ(log(), "frr_uci:12:  ret=4, frr_uci_set 4\n"
                     "frr_uci:14:  ret=4, frr_uci_set 4\n"
                     "frr_uci:16:  ret=4, frr_uci_set 4\n"
                     "frr_uci:102:  ret=1, uci_load ospf\n"
                     "frr_uci:19:  ret=3, frr_uci_add_section 3\n"
                     "frr_uci:102:  ret=1, uci_load iptv\n"
                     "frr_uci:22:  ret=3, frr_uci_add_section 3\n"
                     "frr_uci:102:  ret=1, uci_load ospf\n"
                     "frr_uci:25:  ret=3, frr_uci_add_section 3\n"
                     "frr_uci:102:  ret=1, uci_load ospf\n"
                     "frr_uci:28:  ret=3, frr_uci_add_section 3\n");
}

TEST_F(FrrUciCalls, initGivesTheCodeOfItsLastStep) {
    // The packages are there, the sections to set are not.
    store::write(store::config("iptv"), "");
    store::write(store::config("ospf"), "");
    EXPECT_EQ(frr_uci_init(), 0);
    EXPECT_EQ(log(), "frr_uci:12:  ret=2, frr_uci_set 2\n"
                     "frr_uci:14:  ret=2, frr_uci_set 2\n"
                     "frr_uci:16:  ret=2, frr_uci_set 2\n");
}

} // namespace

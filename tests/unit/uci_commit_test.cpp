// SPDX-License-Identifier: Apache-2.0
// Pending changes as readers see them and as a commit merges them; the text of what is written.

#include <cstdio>
#include <dlfcn.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/unit/store_world.h"

namespace {

/// What was synced and renamed, in order.
std::string *diskSteps = nullptr;

void noteDiskStep(const std::string &step) {
    if (diskSteps != nullptr) {
        *diskSteps += step + "\n";
    }
}

/// The name of an open file, the made-up letters of a temporary one left out.
std::string nameOf(int descriptor) {
    char path[4096] = {};
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    (void)readlink(link.c_str(), path, sizeof path - 1); // an empty name fails the test
    const std::string name = path;
    const std::size_t madeUp = name.find(".uci-");
    return madeUp == std::string::npos ? name : name.substr(0, madeUp + 5);
}

} // namespace

// Defined in the program, so that libuci finds these first.
#pragma GCC visibility push(default)
extern "C" {

int fsync(int descriptor) {
    noteDiskStep("sync " + nameOf(descriptor));
    return reinterpret_cast<int (*)(int)>(dlsym(RTLD_NEXT, "fsync"))(descriptor);
}

int rename(const char *from, const char *to) noexcept(noexcept(::rename("", ""))) {
    noteDiskStep(std::string("rename to ") + to);
    return reinterpret_cast<int (*)(const char *, const char *)>(dlsym(RTLD_NEXT, "rename"))(from,
                                                                                             to);
}
}
#pragma GCC visibility pop

namespace {

using store::config;
using store::Context;
using store::pending;

constexpr const char *kFile = "config a 'x'\n\toption o 'v'\n\tlist l '1'\n\tlist l '2'\n"
                              "config b 'y'\n";
constexpr const char *kUnchanged = "a x(o=v,l=[1|2]) b y()";

class UciCommit : public store::World {
protected:
    UciCommit() { store::write(config("p"), kFile); }

    static int commit(const char *name, bool overwrite = false) {
        Context context;
        uci_package *package = nullptr;
        const int code = context.load(name, package);
        return code != UCI_OK ? code : uci_commit(context.get(), &package, overwrite);
    }
    /// What a reader sees with these lines pending; a commit must come to the same.
    static std::string pend(const std::string &lines) {
        store::write(config("p"), kFile);
        store::write(pending("p"), lines);
        const std::string described = store::loaded("p");
        EXPECT_EQ(store::loaded("/etc/config/p"), kUnchanged);
        EXPECT_EQ(store::read(pending("p")), lines) << "reading must not write";
        EXPECT_EQ(commit("p"), UCI_OK);
        if (store::read(config("p")) == kFile) {
            EXPECT_EQ(store::read(pending("p")), lines) << "nothing was applied";
        } else {
            EXPECT_EQ(store::read(pending("p")), "");
        }
        EXPECT_EQ(store::loaded("/etc/config/p"), described) << lines;
        return described;
    }
};

struct Case {
    const char *lines;
    const char *expected;
};

TEST_F(UciCommit, appliesEachKindOfChange) {
    constexpr Case kCases[] = {
        {"p.x.o='new'\n",                         "a x(o=new,l=[1|2]) b y()"              },
        {"p.x.n='new'\n",                         "a x(o=v,l=[1|2],n=new) b y()"          },
        {"p.y.n='it'\\''s'\n",                    "a x(o=v,l=[1|2]) b y(n=it's)"          },
        {"p.y.n='two\nlines\t\r'\n",              "a x(o=v,l=[1|2]) b y(n=two\nlines\t\r)"},
        {"p.x.l='one'\n",                         "a x(o=v,l=one) b y()"                  },
        {"p.x.o=''\n",                            "a x(l=[1|2]) b y()"                    },
        {"p.x='t'\n",                             "t x(o=v,l=[1|2]) b y()"                },
        {"p.z='t'\np.z.o='v'\n",                  "a x(o=v,l=[1|2]) b y() t z(o=v)"       },
        {"-p.x.o\n",                              "a x(l=[1|2]) b y()"                    },
        {"-p.x\n",                                "b y()"                                 },
        {"+p.cfg03abcd='t'\n",                    "a x(o=v,l=[1|2]) b y() t *()"          },
        {"+p.cfg03abcd='t'\np.cfg03abcd.o='v'\n", "a x(o=v,l=[1|2]) b y() t *(o=v)"       },
        {"@p.x='z'\n",                            "a z(o=v,l=[1|2]) b y()"                },
        {"@p.x.o='n'\n",                          "a x(n=v,l=[1|2]) b y()"                },
        {"^p.y='0'\n",                            "b y() a x(o=v,l=[1|2])"                },
        {"^p.x='9'\n",                            "b y() a x(o=v,l=[1|2])"                },
        {"|p.x.l='3'\n",                          "a x(o=v,l=[1|2|3]) b y()"              },
        {"|p.x.o='w'\n",                          "a x(o=[v|w],l=[1|2]) b y()"            },
        {"|p.y.n='1'\n",                          "a x(o=v,l=[1|2]) b y(n=[1])"           },
        {"~p.x.l='1'\n",                          "a x(o=v,l=[2]) b y()"                  },
        {"~p.x.o='v'\np.y.n='1'\n",               "a x(o=v,l=[1|2]) b y(n=1)"             },
        {"-p.x.l='1'\n",                          "a x(o=v,l=[1]) b y()"                  },
        {"+p.x.o='t'\n",                          "a x(o=t,l=[1|2]) b y()"                },
        {"p.x.o=bare\n",                          "a x(o=bare,l=[1|2]) b y()"             },
        {"p.x.o='1'\np.x.o='2'\n-p.x.l\n",        "a x(o=2) b y()"                        },
        {"\n  \n# comment\np.x.o='1'",            "a x(o=1,l=[1|2]) b y()"                },
    };
    for (const Case &c : kCases) {
        EXPECT_EQ(pend(c.lines), c.expected) << c.lines;
    }
}

TEST_F(UciCommit, skipsBadLines) {
    constexpr const char *kBad[] = {
        "q.x.o='1'\n",
        "pp.x.o='1'\n",
        "p\n",
        "p.x\n",
        "p.x.o\n",
        "p..o='1'\n",
        "p.x.='1'\n",
        "p.x-y='t'\n",
        "p.x.o-p='1'\n",
        "p.x.o='a\x01'\n",
        "p.x.o='\x1b'\n",
        "p.nosuch.o='1'\n",
        "p.z='a b'\n",
        "p.x='\xc3\xa4'\n",
        "-p.nosuch\n",
        "-p.x.nosuch\n",
        "-q.x\n",
        "+p.z\n",
        "+p.z='a b'\n",
        "@p.x='a-b'\n",
        "@p.nosuch='z'\n",
        "@p.x.nosuch='z'\n",
        "^p.nosuch='0'\n",
        "^p.x.o='0'\n",
        "|p.nosuch.l='1'\n",
        "|p.x='1'\n",
        "~p.x='v'\n",
        "~p.nosuch.o='v'\n",
        "-p.x.l='first'\n",
        "p.x.o.p='1'\n",
        "p.x.o='1' more\n",
        "garbage\n",
        "; p.x.o='1'\n",
        "p.@a[0].o='1'\n",
        "p.x.l='\x02'\n",
        "|p.x.l='\x02'\n",
    };
    for (const char *line : kBad) {
        EXPECT_EQ(pend(line), kUnchanged) << line;
        EXPECT_EQ(pend(std::string(line) + "p.y.n='good'\n"), "a x(o=v,l=[1|2]) b y(n=good)")
            << line;
        EXPECT_EQ(pend(std::string("p.y.n='good'\n") + line), "a x(o=v,l=[1|2]) b y(n=good)")
            << line;
    }
}

TEST_F(UciCommit, anUnclosedQuoteTakesTheNextLines) {
    EXPECT_EQ(pend("p.x.o='open\np.y.n='good'\n"), kUnchanged);
    EXPECT_EQ(pend("p.y.n='good'\np.x.o='open\n"), "a x(o=v,l=[1|2]) b y(n=good)");
    EXPECT_EQ(pend("p.x.o='open\np.y.n='a b'\np.y.m='c'\n"), "a x(o=v,l=[1|2]) b y(m=c)");
}

TEST_F(UciCommit, withoutAnApplicableLineTheFileKeepsItsBytes) {
    struct stat before;
    struct stat after;
    ASSERT_EQ(stat(config("p").c_str(), &before), 0);
    EXPECT_EQ(commit("p"), UCI_OK);
    store::write(pending("p"), "q.x.o='1'\n");
    EXPECT_EQ(commit("p"), UCI_OK);
    ASSERT_EQ(stat(config("p").c_str(), &after), 0);
    EXPECT_EQ(before.st_ino, after.st_ino);
    EXPECT_EQ(store::read(config("p")), kFile);
}

TEST_F(UciCommit, aPackageByPathIsAlwaysWritten) {
    EXPECT_EQ(commit("/etc/config/p"), UCI_OK);
    EXPECT_EQ(store::read(config("p")),
              "\nconfig a 'x'\n\toption o 'v'\n\tlist l '1'\n\tlist l '2'\n\nconfig b 'y'\n\n");
    Context context;
    uci_package *package = nullptr;
    ASSERT_EQ(context.load("/etc/config/p", package), UCI_OK);
    ASSERT_EQ(context.set("p", "y", nullptr, ""), UCI_OK);
    ASSERT_EQ(uci_save(context.get(), package), UCI_OK); // without deltas, to save is to commit
    EXPECT_EQ(store::read(config("p")),
              "\nconfig a 'x'\n\toption o 'v'\n\tlist l '1'\n\tlist l '2'\n\n");
}

TEST_F(UciCommit, textOfEverythingThatCanBeWritten) {
    store::write(config("p"), "package p # gone\n# gone too\nconfig a x ; option o \"it's\\\"\"\n"
                              "config b\nlist l ''\nlist l a\\'b\n\toption e 'two\nlines'\n"
                              "config c ''\n\toption gone ''\n");
    EXPECT_EQ(commit("/etc/config/p"), UCI_OK);
    EXPECT_EQ(store::read(config("p")), "\nconfig a 'x'\n\toption o 'it'\\''s\"'\n"
                                        "\nconfig b\n\tlist l ''\n\tlist l 'a'\\''b'\n"
                                        "\toption e 'two\nlines'\n"
                                        "\nconfig c\n\n");
    store::write(config("p"), "# only a comment\n");
    EXPECT_EQ(commit("/etc/config/p"), UCI_OK);
    EXPECT_EQ(store::read(config("p")), "\n");
}

TEST_F(UciCommit, replacesThePackage) {
    Context context;
    ASSERT_EQ(context.set("p", "x", "o", "new"), UCI_OK);
    auto *package = reinterpret_cast<uci_package *>(context.get()->root.next);
    store::write(config("p"), "config a 'x'\n\toption from 'elsewhere'\n");
    ASSERT_EQ(uci_commit(context.get(), &package, false), UCI_OK);
    EXPECT_EQ(store::describe(package), "a x(from=elsewhere,o=new)");
    EXPECT_EQ(&package->e.list, context.get()->root.next);
    EXPECT_TRUE(package->has_delta);
    EXPECT_EQ(store::loaded("/etc/config/p"), "a x(from=elsewhere,o=new)");
}

TEST_F(UciCommit, aFileThatBecameMalformedIsLeft) {
    Context context;
    ASSERT_EQ(context.set("p", "x", "o", "new"), UCI_OK);
    auto *package = reinterpret_cast<uci_package *>(context.get()->root.next);
    store::write(config("p"), "config a 'x'\ngarbage\n");
    EXPECT_EQ(uci_commit(context.get(), &package, false), UCI_ERR_PARSE);
    EXPECT_EQ(store::read(config("p")), "config a 'x'\ngarbage\n");
    EXPECT_EQ(store::read(pending("p")), "p.x.o='new'\n") << "the change stays pending";
    store::write(config("p"), kFile);
    EXPECT_EQ(commit("p"), UCI_OK);
    EXPECT_EQ(store::loaded("/etc/config/p"), "a x(o=new,l=[1|2]) b y()");
}

TEST_F(UciCommit, keepsTheModeAndLeavesNoOtherFile) {
    ASSERT_EQ(chmod(config("p").c_str(), 0604), 0);
    store::write(pending("p"), "p.x.o='1'\n");
    EXPECT_EQ(commit("p"), UCI_OK);
    struct stat status;
    ASSERT_EQ(stat(config("p").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0604U);
    int entries = 0;
    for (const auto &entry : std::filesystem::directory_iterator(store::kConfigFolder)) {
        EXPECT_EQ(entry.path(), config("p"));
        ++entries;
    }
    EXPECT_EQ(entries, 1);
}

TEST_F(UciCommit, madeUpNamesAreWrittenWhenAskedFor) {
    store::write(config("p"), "config bb\n");
    Context context;
    context.get()->flags = static_cast<uci_flags>(9 | UCI_FLAG_EXPORT_NAME);
    uci_package *package = nullptr;
    ASSERT_EQ(context.load("/etc/config/p", package), UCI_OK);
    ASSERT_EQ(uci_commit(context.get(), &package, false), UCI_OK);
    EXPECT_EQ(store::read(config("p")), "\nconfig bb 'cfg017749'\n\n");
}

#ifdef FRRUCI_STAND_IN
// What the stand-in promises beyond libuci.

TEST_F(UciCommit, theNewTextIsOnTheDiskBeforeItTakesTheOldOnesPlace) {
    store::write(pending("p"), "p.x.o='new'\n");
    std::string steps;
    diskSteps = &steps;
    EXPECT_EQ(commit("p"), UCI_OK);
    diskSteps = nullptr;
    EXPECT_EQ(steps, "sync /etc/config/.p.uci-\n"
                     "rename to /etc/config/p\n"
                     "sync /etc/config\n");
}

TEST_F(UciCommit, aChangeIsSavedBehindHalfALine) {
    store::write(pending("p"), "p.x.cut_of"); // as a killed writer may leave it
    Context context;
    ASSERT_EQ(context.set("p", "y", "n", "good"), UCI_OK);
    auto *package = reinterpret_cast<uci_package *>(context.get()->root.next);
    ASSERT_EQ(uci_commit(context.get(), &package, false), UCI_OK);
    EXPECT_EQ(store::loaded("/etc/config/p"), "a x(o=v,l=[1|2]) b y(n=good)");
}

TEST_F(UciCommit, everyAddMakesASection) {
    EXPECT_EQ(pend("+p.cfg03abcd='t'\np.cfg03abcd.o='1'\n+p.cfg03abcd='t'\np.cfg03abcd.o='2'\n"),
              "a x(o=v,l=[1|2]) b y() t *(o=1) t *(o=2)")
        << "two writers made up the same name";
}

TEST_F(UciCommit, aTypeThatWouldSpoilTheFileIsQuoted) {
    store::write(config("p"), "config 'it'\\''s' x\nconfig \"#b;\" y\nconfig 'a\\b\"'\n");
    EXPECT_EQ(commit("/etc/config/p"), UCI_OK);
    EXPECT_EQ(store::loaded("p"), "it's x() #b; y() a\\b\" *()");
}

TEST_F(UciCommit, overwriteKeepsWhatIsInMemory) {
    Context context;
    ASSERT_EQ(context.set("p", "x", "o", "new"), UCI_OK);
    auto *package = reinterpret_cast<uci_package *>(context.get()->root.next);
    store::write(config("p"), "config a 'x'\n\toption from 'elsewhere'\n");
    ASSERT_EQ(uci_commit(context.get(), &package, true), UCI_OK);
    EXPECT_EQ(store::loaded("p"), "a x(o=new,l=[1|2]) b y()");
}

TEST_F(UciCommit, removesWhatKilledWritersLeft) {
    store::write(config(".p.uci-abc123"), "cut of");
    store::write(config(".p.uci-abc12"), "not one of these");
    store::write(config(".pp.uci-abc123"), "another package's");
    store::write(pending("p"), "p.x.o='new'\n");
    EXPECT_EQ(commit("p"), UCI_OK);
    EXPECT_EQ(store::read(config(".p.uci-abc123")), "(none)");
    EXPECT_EQ(store::read(config(".p.uci-abc12")), "not one of these");
    EXPECT_EQ(store::read(config(".pp.uci-abc123")), "another package's");
}
#endif

} // namespace

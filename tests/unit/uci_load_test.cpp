// SPDX-License-Identifier: Apache-2.0
// Reading packages: the syntax of their files, their names and folders, and the codes of failures.

#include <array>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include "tests/unit/store_world.h"

namespace {

using store::config;
using store::Context;

class UciLoad : public store::World {
protected:
    static std::string parse(const std::string &text) {
        store::write(config("p"), text);
        const std::string described = store::loaded("p");
        EXPECT_EQ(store::read(config("p")), text) << "reading must not write";
        return described;
    }
};

struct Case {
    const char *text;
    const char *expected;
};

void checkAll(const Case *cases, std::size_t count, std::string (*parse)(const std::string &)) {
    for (std::size_t i = 0; i < count; ++i) {
        EXPECT_EQ(parse(cases[i].text), cases[i].expected) << cases[i].text;
    }
}

TEST_F(UciLoad, acceptsLinesAndCommands) {
    constexpr Case kCases[] = {
        {"",                                                     ""                       },
        {"\n",                                                   ""                       },
        {"\n\n  \n\t\n",                                         ""                       },
        {"# comment",                                            ""                       },
        {"  # comment\n#\n",                                     ""                       },
        {"config a 'x'\n\toption o 'v'\n",                       "a x(o=v)"               },
        {"config a x\noption o v",                               "a x(o=v)"               },
        {"config a\n",                                           "a *()"                  },
        {"config a ''\n",                                        "a *()"                  },
        {"config a \"\"\n",                                      "a *()"                  },
        {"config a x\r\n\toption o v\r\n\tlist l w\r\n",         "a x(o=v,l=[w])"         },
        {"config a x\r\n\toption o 'v'\r\n",                     "a x(o=v)"               },
        {"\r\nconfig a x\r\n\r\n",                               "a x()"                  },
        {" \t config \t a \t x \t \n \t option \t o \t v \t ",   "a x(o=v)"               },
        {"c a x\no o v\nl l w\n",                                "a x(o=v,l=[w])"         },
        {"package p\nconfig a x\n",                              "a x()"                  },
        {"p other\nconfig a x\npackage 'a-b_c'\noption o v\n",   "a x(o=v)"               },
        {"config a-b.c/d x_1\n",                                 "a-b.c/d x_1()"          },
        {"config 'a' \"x\"\noption 'o' \"v\"\nlist \"l\" 'w'\n", "a x(o=v,l=[w])"         },
        {"config a x\nconfig b y\nconfig a\nconfig a\n",         "a x() b y() a *() a *()"},
    };
    checkAll(kCases, std::size(kCases), parse);
}

TEST_F(UciLoad, joinsThePiecesOfAWord) {
    constexpr Case kCases[] = {
        {"config a x\noption o 'a b'\n",              "a x(o=a b)"             },
        {"config a x\noption o \"a b\"\n",            "a x(o=a b)"             },
        {"config a x\noption o a'b c'd\"e f\"g\n",    "a x(o=ab cde fg)"       },
        {"config a x\noption o 'it'\\''s'\n",         "a x(o=it's)"            },
        {"config a x\noption o 'a\\nb\"'\n",          "a x(o=a\\nb\")"         },
        {"config a x\noption o \"a\\nb\\\"\\\\\"\n",  "a x(o=anb\"\\)"         },
        {"config a x\noption o a\\ b\\'\\\"\\#\\;\n", "a x(o=a b'\"#;)"        },
        {"config a x\noption o 'a\nb'\n",             "a x(o=a\nb)"            },
        {"config a x\noption o \"a\nb\"\n",           "a x(o=a\nb)"            },
        {"config a x\noption o 'a\r\nb'\n",           "a x(o=a\r\nb)"          },
        {"config a x\noption o 'a\\\nb'\n",           "a x(o=a\\\nb)"          },
        {"config a x\noption o a\\\nb\n",             "a x(o=ab)"              },
        {"config a x\noption o \"a\\\nb\"\n",         "a x(o=ab)"              },
        {"config a x\noption o \\\n v\n",             "code 5"                 },
        {"config a \\\n  x\noption \\\n o \\\n v\n",  "code 5"                 },
        {"config a x\noption o '#;'\n",               "a x(o=#;)"              },
        {"config a x\noption o \"#;\"\n",             "a x(o=#;)"              },
        {"config a x\noption o '\xc3\xa4\xff\x01'\n", "a x(o=\xc3\xa4\xff\x01)"},
        {"config a x\noption o ''v''\n",              "a x(o=v)"               },
    };
    checkAll(kCases, std::size(kCases), parse);
}

TEST_F(UciLoad, commentsAndSeparators) {
    constexpr Case kCases[] = {
        {"config a x # comment\noption o v # 'comment\n",    "a x(o=v)"      },
        {"config a x#comment\noption o v#w\n",               "a x(o=v)"      },
        {"config a x\noption o 'v'#w\n",                     "a x(o=v)"      },
        {"config a # x\n",                                   "a *()"         },
        {"config a x\noption o #v\n",                        "a x()"         },
        {"config a x ; option o v ; list l w\n",             "a x(o=v,l=[w])"},
        {"config a ; option o v\n",                          "code 5"        },
        {"config a x\noption o ; option p v ; \noption q w", "code 5"        },
        {"config a x ;\toption o v ;\n\toption p w\n",       "code 5"        },
        {"config a x; option o v\noption p w\n",             "a x(p=w)"      },
        {"config a x\noption o v;option p w\noption q u\n",  "a x(o=v,q=u)"  },
    };
    checkAll(kCases, std::size(kCases), parse);
}

TEST_F(UciLoad, repeatedSectionsAndOptions) {
    constexpr Case kCases[] = {
        {"config a x\noption o v\nconfig b y\nconfig a x\noption p w\n", "a x(o=v,p=w) b y()"},
        {"config a x\noption o 1\noption p 2\noption o 3\n",             "a x(o=3,p=2)"      },
        {"config a x\nlist l 1\nlist l 2\noption o v\nlist l 1\n",       "a x(l=[1|2|1],o=v)"},
        {"config a x\noption l 1\noption o v\nlist l 2\n",               "a x(l=[1|2],o=v)"  },
        {"config a x\nlist l 1\nlist l 2\noption l 3\n",                 "a x(l=3)"          },
        {"config a x\noption o ''\n",                                    "a x()"             },
        {"config a x\noption o\t\n",                                     "a x()"             },
        {"config a x\noption o v\noption o ''\noption o\t\n",            "a x(o=v)"          },
        {"config a x\nlist l ''\nlist l\t\nlist l 1\n",                  "a x(l=[||1])"      },
        {"config a x\noption O v\noption o w\nconfig a X\n",             "a x(O=v,o=w) a X()"},
    };
    checkAll(kCases, std::size(kCases), parse);
}

TEST_F(UciLoad, oneErrorFailsTheWholeLoad) {
    constexpr const char *kMalformed[] = {
        "config\n",
        "config",
        "config \n",
        "config ''\n",
        "config 'a b'\n",
        "config \xc3\xa4\n",
        "config a x y\n",
        "config a x-y\n",
        "config a 'x y'\n",
        "config a x.y\n",
        "config a x\nconfig b x\n",
        "option o v\n",
        "list l v\n",
        "config a x\noption\n",
        "config a x\noption \n",
        "config a x\noption '' v\n",
        "config a x\noption o-p v\n",
        "config a x\noption o v w\n",
        "config a x\noption o v ; config a y z\n",
        "config a x\nlist\n",
        "config a x\nlist '' v\n",
        "config a x\nlist l.m v\n",
        "config a x\nlist l v w\n",
        "config a x\noption o 'v\n",
        "config a x\noption o \"v\n",
        "config a x\noption o \"v\\\"\n",
        "package\n",
        "package ''\n",
        "package 'a b'\n",
        "package a.b\n",
        "package p q\n",
        "configuration a\n",
        "Config a x\n",
        "conf a x\n",
        "'config' a x\n",
        "x\n",
        "x y\n",
        "; config a x\n",
        "config a x ; ; option o v\n",
        "config#a\n",
        "config;a\n",
        "config a x\ngarbage follows\n",
    };
    for (const char *text : kMalformed) {
        EXPECT_EQ(parse(text), "code 5") << text;
        EXPECT_EQ(parse(std::string("config good 'good'\n\toption o 'v'\n") +
                        (strncmp(text, "option", 6) == 0 || strncmp(text, "list", 4) == 0 ? "x\n"
                                                                                          : text)),
                  "code 5")
            << text;
    }
}

TEST_F(UciLoad, linesOfAnyLength) {
    const std::string value(300000, 'v');
    EXPECT_EQ(parse("config a x\n\toption o '" + value + "'\n"), "a x(o=" + value + ")");
    EXPECT_EQ(parse("config a x\n" + std::string(100000, ' ') + "option o v\n"), "a x(o=v)");
    const std::string name(5000, 'n');
    EXPECT_EQ(parse("config " + name + " " + name + "\n"), name + " " + name + "()");
}

TEST_F(UciLoad, makesUpNamesFromPositionAndType) {
    store::write(config("p"), "config a 'x'\nconfig bb\n\toption o v\nconfig bb\nconfig c\n");
    Context context;
    uci_package *package = nullptr;
    ASSERT_EQ(context.load("p", package), UCI_OK);
    ASSERT_NE(context.section(package, "cfg027749"), nullptr);
    EXPECT_TRUE(context.section(package, "cfg027749")->anonymous);
    EXPECT_NE(context.option(context.section(package, "cfg027749"), "o"), nullptr);
    EXPECT_NE(context.section(package, "cfg037749"), nullptr);
    EXPECT_FALSE(context.section(package, "x")->anonymous);
}

TEST_F(UciLoad, namesAfterThe255thSectionGrow) {
    std::string text;
    for (int i = 0; i < 256; ++i) {
        text += "config bb\n";
    }
    store::write(config("p"), text);
    Context context;
    uci_package *package = nullptr;
    ASSERT_EQ(context.load("p", package), UCI_OK);
    EXPECT_NE(context.section(package, "cfgff7749"), nullptr);
    EXPECT_NE(context.section(package, "cfg1007749"), nullptr);
}

TEST_F(UciLoad, fillsThePackagesRecord) {
    store::write(config("p"), "config a 'x'\n\toption o 'v'\n\tlist l 'w'\n");
    Context context;
    uci_package *package = nullptr;
    ASSERT_EQ(context.load("p", package), UCI_OK);
    EXPECT_STREQ(package->e.name, "p");
    EXPECT_EQ(package->e.type, UCI_TYPE_PACKAGE);
    EXPECT_EQ(package->ctx, context.get());
    EXPECT_TRUE(package->has_delta);
    EXPECT_STREQ(package->path, "/etc/config/p");
    uci_section *section = context.section(package, "x");
    EXPECT_EQ(section->e.type, UCI_TYPE_SECTION);
    EXPECT_EQ(section->package, package);
    EXPECT_EQ(context.option(section, "o")->e.type, UCI_TYPE_OPTION);
    EXPECT_EQ(context.option(section, "o")->section, section);
    EXPECT_EQ(reinterpret_cast<uci_element *>(context.option(section, "l")->v.list.next)->type,
              UCI_TYPE_ITEM);
    uci_element *found = nullptr;
    EXPECT_EQ(uci_lookup_next(context.get(), &found, &context.get()->root, "p"), UCI_OK);
    EXPECT_EQ(found, &package->e);
}

TEST_F(UciLoad, pathsNameTheirFilesWithoutDeltas) {
    store::write("/tmp/tmp/folder/p", "config a 'x'\n\toption o 'v'\n");
    store::write(store::pending("p"), "p.x.o='changed'\n");
    Context context;
    uci_package *package = nullptr;
    ASSERT_EQ(context.load("/tmp/tmp/folder/p", package), UCI_OK);
    EXPECT_STREQ(package->e.name, "p");
    EXPECT_STREQ(package->path, "/tmp/tmp/folder/p");
    EXPECT_FALSE(package->has_delta);
    EXPECT_EQ(store::describe(package), "a x(o=v)");
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path("/tmp/tmp/folder");
    EXPECT_EQ(store::loaded("./p"), "a x(o=v)");
    std::filesystem::current_path(before);
}

TEST_F(UciLoad, theVolatileFolderHidesTheOther) {
    store::write(config("p"), "config a 'x'\n");
    store::write(store::volatileConfig("p"), "config a 'hidden'\n");
    EXPECT_EQ(store::loaded("p"), "a hidden()");
    EXPECT_EQ(store::loaded("/etc/config/p"), "a x()");
    Context context;
    EXPECT_EQ(context.set("p", "hidden", "o", "v"), UCI_OK);
    uci_package *package = nullptr;
    ASSERT_EQ(uci_lookup_next(context.get(), reinterpret_cast<uci_element **>(&package),
                              &context.get()->root, "p"),
              UCI_OK);
    EXPECT_TRUE(package->uses_conf2);
    EXPECT_EQ(uci_commit(context.get(), &package, false), UCI_OK);
    EXPECT_EQ(store::read(store::volatileConfig("p")), "\nconfig a 'hidden'\n\toption o 'v'\n\n");
    EXPECT_EQ(store::read(config("p")), "config a 'x'\n");
}

TEST_F(UciLoad, codesOfNamesThatAreNotLegal) {
    for (const char *name : {"", " ", "a b", "a\tb", "a\n", "\x7f", "\xc3\xa4"}) {
        EXPECT_EQ(store::loaded(name), "code 2") << name;
    }
    for (const char *name : {".", "..", ".p", "nosuch", "/etc/config/nosuch", "./nosuch", "/"}) {
        EXPECT_EQ(store::loaded(name), "code 3") << name;
    }
}

TEST_F(UciLoad, whatIsNotARegularFileIsNotFound) {
    std::filesystem::create_directories(config("folder"));
    ASSERT_EQ(mkfifo(config("fifo").c_str(), 0600), 0);
    ASSERT_EQ(symlink("/etc/config/nosuch", config("dangling").c_str()), 0);
    for (const char *name : {"folder", "fifo", "dangling", "/etc/config", "/etc/config/"}) {
        EXPECT_EQ(store::loaded(name), "code 3") << name;
    }
}

TEST_F(UciLoad, fileThatCannotBeOpened) {
    store::write(config("p"), "config a 'x'\n");
    Context context;
    rlimit before;
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit none = {0, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    uci_package *package = nullptr;
    const int code = context.load("p", package);
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
    EXPECT_EQ(code, UCI_ERR_IO);
    EXPECT_EQ(package, nullptr);
}

TEST_F(UciLoad, aPackageIsLoadedOncePerContext) {
    store::write(config("p"), "config a 'x'\n");
    Context context;
    uci_package *package = nullptr;
    ASSERT_EQ(context.load("p", package), UCI_OK);
    uci_package *again = nullptr;
    EXPECT_EQ(context.load("p", again), UCI_ERR_DUPLICATE);
    EXPECT_EQ(context.load("/etc/config/p", again), UCI_ERR_DUPLICATE);
    EXPECT_EQ(again, nullptr);
    EXPECT_EQ(uci_unload(context.get(), package), UCI_OK);
    EXPECT_EQ(context.load("/etc/config/p", again), UCI_OK);
}

TEST_F(UciLoad, failureLeavesTheCallersPointerAndTheCode) {
    store::write(config("bad"), "x\n");
    Context context;
    uci_package marker = {};
    uci_package *package = &marker;
    EXPECT_EQ(context.load("bad", package), UCI_ERR_PARSE);
    EXPECT_EQ(package, &marker);
    EXPECT_EQ(context.get()->err, UCI_ERR_PARSE);
    EXPECT_EQ(context.load("nosuch", package), UCI_ERR_NOTFOUND);
    EXPECT_EQ(context.get()->err, UCI_ERR_NOTFOUND);
    EXPECT_EQ(uci_load(context.get(), "nosuch", nullptr), UCI_ERR_NOTFOUND);
}

TEST_F(UciLoad, nullArguments) {
    Context context;
    uci_package *package = nullptr;
    uci_element *element = nullptr;
    uci_ptr pointer = {};
    uci_section *section = nullptr;
    EXPECT_EQ(uci_load(nullptr, "p", &package), UCI_ERR_INVAL);
    EXPECT_EQ(uci_unload(nullptr, nullptr), UCI_ERR_INVAL);
    EXPECT_EQ(uci_unload(context.get(), nullptr), UCI_ERR_INVAL);
    EXPECT_EQ(uci_lookup_next(nullptr, &element, nullptr, "p"), UCI_ERR_INVAL);
    EXPECT_EQ(uci_set(nullptr, &pointer), UCI_ERR_INVAL);
    EXPECT_EQ(uci_add_section(nullptr, nullptr, "t", &section), UCI_ERR_INVAL);
    EXPECT_EQ(uci_add_section(context.get(), nullptr, "t", &section), UCI_ERR_INVAL);
    EXPECT_EQ(uci_save(nullptr, nullptr), UCI_ERR_INVAL);
    EXPECT_EQ(uci_save(context.get(), nullptr), UCI_ERR_INVAL);
    EXPECT_EQ(uci_commit(nullptr, &package, false), UCI_ERR_INVAL);
    EXPECT_EQ(uci_commit(context.get(), nullptr, false), UCI_ERR_INVAL);
    EXPECT_EQ(uci_commit(context.get(), &package, false), UCI_ERR_INVAL);
}

TEST_F(UciLoad, lookUpStoresNullWhenThereIsNone) {
    store::write(config("p"), "config a 'x'\nconfig a 'xy'\n");
    Context context;
    uci_package *package = nullptr;
    ASSERT_EQ(context.load("p", package), UCI_OK);
    uci_element *found = &package->e;
    EXPECT_EQ(uci_lookup_next(context.get(), &found, &package->sections, "z"), UCI_ERR_NOTFOUND);
    EXPECT_EQ(found, nullptr);
    EXPECT_EQ(uci_lookup_next(context.get(), &found, &package->sections, "xy"), UCI_OK);
    EXPECT_STREQ(found->name, "xy");
    EXPECT_EQ(uci_lookup_next(context.get(), &found, &package->sections, ""), UCI_ERR_NOTFOUND);
}

TEST_F(UciLoad, freshContextHasTheDefaults) {
    Context context;
    EXPECT_EQ(context.get()->flags, 9);
    EXPECT_STREQ(context.get()->confdir, "/etc/config");
    EXPECT_STREQ(context.get()->savedir, "/tmp/.uci");
    EXPECT_EQ(context.get()->root.next, &context.get()->root);
    EXPECT_EQ(context.get()->err, 0);
}

} // namespace

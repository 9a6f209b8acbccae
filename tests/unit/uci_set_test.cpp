// SPDX-License-Identifier: Apache-2.0
// Changes in memory: uci_set, uci_add_section, and the deltas that they record and save.

#include <sys/stat.h>

#include "tests/unit/store_world.h"

namespace {

using store::config;
using store::Context;
using store::pending;

class UciSet : public store::World {
protected:
    UciSet() {
        store::write(config("p"), "config a 'x'\n\toption o 'v'\n\tlist l '1'\n\tlist l '2'\n"
                                  "\toption q 'w'\nconfig b\n");
    }

    /// Sets once in a fresh context and describes the package, or gives "code N".
    std::string set(const char *section, const char *option, const char *value,
                    const char *package = "p") {
        Context context;
        uci_ptr pointer = {};
        pointer.package = package;
        pointer.section = section;
        pointer.option = option;
        pointer.value = value;
        const int code = uci_set(context.get(), &pointer);
        EXPECT_EQ(context.get()->err, code);
        if (code != UCI_OK) {
            return "code " + std::to_string(code);
        }
        deltas_ = "(none)";
        if (pointer.p->has_delta) {
            EXPECT_EQ(uci_save(context.get(), pointer.p), UCI_OK);
            deltas_ = store::read(pending("p"));
            std::filesystem::remove_all(store::kPendingFolder);
        }
        return store::describe(pointer.p);
    }
    /// What the last set left in the delta file.
    const std::string &deltas() const { return deltas_; }

private:
    std::string deltas_;
};

TEST_F(UciSet, options) {
    EXPECT_EQ(set("x", "o", "new"), "a x(o=new,l=[1|2],q=w) b *()");
    EXPECT_EQ(deltas(), "p.x.o='new'\n");
    EXPECT_EQ(set("x", "r", "new"), "a x(o=v,l=[1|2],q=w,r=new) b *()");
    EXPECT_EQ(deltas(), "p.x.r='new'\n");
    EXPECT_EQ(set("x", "o", "v"), "a x(o=v,l=[1|2],q=w) b *()");
    EXPECT_EQ(deltas(), "(none)");
    EXPECT_EQ(set("x", "l", "one"), "a x(o=v,l=one,q=w) b *()");
    EXPECT_EQ(deltas(), "p.x.l='one'\n");
    EXPECT_EQ(set("x", "o", "it's \n\t\"#;\\"), "a x(o=it's \n\t\"#;\\,l=[1|2],q=w) b *()");
    EXPECT_EQ(deltas(), "p.x.o='it'\\''s \n\t\"#;\\'\n");
}

TEST_F(UciSet, sections) {
    EXPECT_EQ(set("y", nullptr, "t"), "a x(o=v,l=[1|2],q=w) b *() t y()");
    EXPECT_EQ(deltas(), "p.y='t'\n");
    EXPECT_EQ(set("x", nullptr, "t"), "t x(o=v,l=[1|2],q=w) b *()");
    EXPECT_EQ(deltas(), "p.x='t'\n");
}

TEST_F(UciSet, removals) {
    EXPECT_EQ(set("x", "o", ""), "a x(l=[1|2],q=w) b *()");
    EXPECT_EQ(deltas(), "-p.x.o\n");
    EXPECT_EQ(set("x", "l", ""), "a x(o=v,q=w) b *()");
    EXPECT_EQ(set("x", nullptr, ""), "b *()");
    EXPECT_EQ(deltas(), "-p.x\n");
    EXPECT_EQ(set("x", "nosuch", ""), "a x(o=v,l=[1|2],q=w) b *()");
    EXPECT_EQ(deltas(), "(none)");
    EXPECT_EQ(set("nosuch", nullptr, ""), "a x(o=v,l=[1|2],q=w) b *()");
    EXPECT_EQ(deltas(), "(none)");
}

TEST_F(UciSet, anonymousSectionsGoByTheirMadeUpNames) {
    EXPECT_EQ(set("cfg020ec7", "o", "v"), "code 2");
    Context context;
    uci_package *package = nullptr;
    ASSERT_EQ(context.load("p", package), UCI_OK);
    const std::string name = reinterpret_cast<uci_element *>(package->sections.prev)->name;
    EXPECT_EQ(set(name.c_str(), "o", "v"), "a x(o=v,l=[1|2],q=w) b *(o=v)");
    EXPECT_EQ(deltas(), "p." + name + ".o='v'\n");
}

TEST_F(UciSet, refusals) {
    EXPECT_EQ(set("x", "o", nullptr), "code 2");
    EXPECT_EQ(set("nosuch", "o", "v"), "code 2");
    EXPECT_EQ(set("nosuch", "o", ""), "code 2");
    EXPECT_EQ(set("@a[0]", "o", "v"), "code 2");
    EXPECT_EQ(set(nullptr, "o", "v"), "code 2");
    EXPECT_EQ(set(nullptr, nullptr, "v"), "code 2");
    EXPECT_EQ(set("x", nullptr, "a b"), "code 2");
    EXPECT_EQ(set("y", nullptr, "\xc3\xa4"), "code 2");
    EXPECT_EQ(set("x", "o", "v", "nosuch"), "code 3");
    EXPECT_EQ(set("x", "o", "v", "a b"), "code 2");
    store::write(config("p"), "garbage");
    EXPECT_EQ(set("x", "o", "v"), "code 5");
}

TEST_F(UciSet, fillsThePointer) {
    Context context;
    uci_ptr pointer = {};
    pointer.package = "p";
    pointer.section = "x";
    pointer.option = "o";
    pointer.value = "new";
    ASSERT_EQ(uci_set(context.get(), &pointer), UCI_OK);
    EXPECT_STREQ(pointer.p->e.name, "p");
    EXPECT_EQ(pointer.s, context.section(pointer.p, "x"));
    EXPECT_EQ(pointer.o, context.option(pointer.s, "o"));
    EXPECT_EQ(pointer.flags, 3);
    uci_ptr made = {};
    made.package = "p"; // found in the context now
    made.section = "y";
    made.value = "t";
    ASSERT_EQ(uci_set(context.get(), &made), UCI_OK);
    EXPECT_EQ(made.p, pointer.p);
    EXPECT_EQ(made.s, context.section(pointer.p, "y"));
    EXPECT_EQ(made.flags, 1);
}

TEST_F(UciSet, aPackageByPathRecordsNothing) {
    EXPECT_EQ(set("x", "o", "new", "/etc/config/p"), "a x(o=new,l=[1|2],q=w) b *()");
    EXPECT_EQ(store::read(pending("p")), "(none)");
}

TEST_F(UciSet, addedSectionGetsAMadeUpName) {
    store::write(config("p"), "config a 'x'\n");
    Context context;
    uci_package *package = nullptr;
    ASSERT_EQ(context.load("p", package), UCI_OK);
    uci_section *section = nullptr;
    ASSERT_EQ(uci_add_section(context.get(), package, "bb", &section), UCI_OK);
    EXPECT_STREQ(section->e.name, "cfg027749");
    EXPECT_STREQ(section->type, "bb");
    EXPECT_TRUE(section->anonymous);
    EXPECT_EQ(section->package, package);
    memcpy(section->e.name, "xyz", 3); // the delta has a name of its own
    ASSERT_EQ(uci_add_section(context.get(), package, "it's odd", &section), UCI_OK);
    ASSERT_EQ(uci_save(context.get(), package), UCI_OK);
    const std::string second = section->e.name;
    EXPECT_EQ(second.substr(0, 5), "cfg03");
    EXPECT_EQ(store::read(pending("p")), "+p.cfg027749='bb'\n+p." + second + "='it'\\''s odd'\n");
}

TEST_F(UciSet, saveAppendsAndForgets) {
    Context context;
    ASSERT_EQ(context.set("p", "x", "o", "1"), UCI_OK);
    uci_package *package =
        reinterpret_cast<uci_package *>(context.get()->root.next); // its list record comes first
    ASSERT_EQ(uci_save(context.get(), package), UCI_OK);
    ASSERT_EQ(uci_save(context.get(), package), UCI_OK);
    EXPECT_EQ(store::read(pending("p")), "p.x.o='1'\n");
    ASSERT_EQ(context.set("p", "x", "o", "2"), UCI_OK);
    ASSERT_EQ(uci_save(context.get(), package), UCI_OK);
    EXPECT_EQ(store::read(pending("p")), "p.x.o='1'\np.x.o='2'\n");
    EXPECT_EQ(store::loaded("p"), "a x(o=2,l=[1|2],q=w) b *()");
    EXPECT_EQ(store::loaded("/etc/config/p"), "a x(o=v,l=[1|2],q=w) b *()");
}

TEST_F(UciSet, saveWithoutChangesTouchesNothing) {
    Context context;
    uci_package *package = nullptr;
    ASSERT_EQ(context.load("p", package), UCI_OK);
    ASSERT_EQ(uci_save(context.get(), package), UCI_OK);
    EXPECT_FALSE(std::filesystem::exists(store::kPendingFolder));
}

TEST_F(UciSet, modesOfTheDeltaFolderAndFile) {
    ASSERT_EQ(chmod("/etc/config", 0750), 0);
    ASSERT_EQ(chmod(config("p").c_str(), 0640), 0);
    Context context;
    ASSERT_EQ(context.set("p", "x", "o", "1"), UCI_OK);
    ASSERT_EQ(uci_save(context.get(), reinterpret_cast<uci_package *>(context.get()->root.next)),
              UCI_OK);
    struct stat status;
    ASSERT_EQ(stat(store::kPendingFolder, &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0750U);
    ASSERT_EQ(stat(pending("p").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);
    ASSERT_EQ(chmod("/etc/config", 0755), 0);
}

TEST_F(UciSet, saveWhereTheFolderIsAFile) {
    store::write(store::kPendingFolder, "not a folder");
    Context context;
    ASSERT_EQ(context.set("p", "x", "o", "1"), UCI_OK);
    auto *package = reinterpret_cast<uci_package *>(context.get()->root.next);
    EXPECT_EQ(uci_save(context.get(), package), UCI_ERR_IO);
    EXPECT_EQ(uci_commit(context.get(), &package, false), UCI_ERR_IO);
    EXPECT_EQ(store::read(store::kPendingFolder), "not a folder");
    EXPECT_EQ(store::loaded("p"), "a x(o=v,l=[1|2],q=w) b *()");
}

} // namespace

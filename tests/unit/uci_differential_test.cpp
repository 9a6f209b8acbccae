// SPDX-License-Identifier: Apache-2.0
// The stand-in and libuci beside each other: the same random files, pending changes and calls on
// both. Neither is linked; both are loaded here, each for itself.

#include <cstdlib>
#include <dlfcn.h>
#include <random>

#include "tests/unit/store_world.h"

namespace {

using store::config;
using store::pending;

/// One of the two, by its functions.
struct Library {
    explicit Library(const char *path) : handle(dlopen(path, RTLD_NOW | RTLD_LOCAL)) {
        EXPECT_NE(handle, nullptr) << dlerror();
    }
    template <class Function> void find(const char *name, Function *&function) const {
        function = reinterpret_cast<Function *>(dlsym(handle, name));
    }
    void *handle;
    decltype(uci_alloc_context) *allocContext = nullptr;
    decltype(uci_free_context) *freeContext = nullptr;
    decltype(uci_load) *load = nullptr;
    decltype(uci_set) *set = nullptr;
    decltype(uci_add_section) *addSection = nullptr;
    decltype(uci_save) *save = nullptr;
    decltype(uci_commit) *commit = nullptr;
};

Library open(const char *path) {
    Library library(path);
    library.find("uci_alloc_context", library.allocContext);
    library.find("uci_free_context", library.freeContext);
    library.find("uci_load", library.load);
    library.find("uci_set", library.set);
    library.find("uci_add_section", library.addSection);
    library.find("uci_save", library.save);
    library.find("uci_commit", library.commit);
    return library;
}

/// What both are given.
struct Case {
    std::string file;
    std::string lines;
    bool byPath;
    bool adds;
    const char *section;
    const char *option;
    const char *value;
};

/// Takes texts at random out of what the syntax is made of, and now and then a byte of any kind.
class Generator {
public:
    explicit Generator(unsigned seed) : random_(seed) {}

    Case make() {
        Case made = {};
        for (auto count = random_() % 7; count > 0; --count) {
            made.file += line();
        }
        spoil(made.file);
        for (auto count = random_() % 4; count > 0; --count) {
            made.lines += delta();
        }
        if (random_() % 4 == 0) {
            spoil(made.lines);
        }
        made.byPath = random_() % 3 == 0;
        made.adds = random_() % 4 == 0;
        made.section = pick(kSections);
        made.option = random_() % 5 == 0 ? nullptr : pick(kNames);
        made.value = pick(kSetValues);
        return made;
    }

private:
    template <std::size_t N> const char *pick(const char *const (&texts)[N]) {
        return texts[random_() % N];
    }

    std::string line() {
        std::string text = pick(kLeads);
        text += pick(kCommands);
        text += pick(kBlanks);
        text += pick(kWords);
        if (random_() % 4 != 0) {
            text += std::string(pick(kBlanks)) + pick(kWords);
        }
        if (random_() % 12 == 0) {
            text += std::string(pick(kBlanks)) + pick(kWords);
        }
        return text + pick(kEnds);
    }

    std::string delta() {
        std::string text = pick(kMarks);
        text += random_() % 10 == 0 ? pick(kWords) : "p";
        text += std::string(".") + (random_() % 6 == 0 ? pick(kWords) : pick(kSections));
        if (random_() % 4 != 0) {
            text += std::string(".") + (random_() % 6 == 0 ? pick(kWords) : pick(kNames));
        }
        if (random_() % 5 != 0) {
            text += std::string("=") + pick(kWords);
        }
        return text + pick(kDeltaEnds);
    }

    /// Half of the texts stay as they are.
    void spoil(std::string &text) {
        static const std::string kBytes("\0\\'\"#;\n\r \t\v=.a\x01\xff", 16);
        for (auto count = random_() % 2 == 0 ? 0 : random_() % 3; count > 0; --count) {
            const auto at = random_() % (text.size() + 1);
            if (random_() % 2 == 0) {
                text.insert(at, 1, kBytes[random_() % kBytes.size()]);
            } else if (at < text.size()) {
                text.erase(at, 1);
            }
        }
    }

    static constexpr const char *kLeads[] = {"", "", "", "\t", " ", "\\\n", "\r"};
    static constexpr const char *kCommands[] = {
        "config", "config", "config", "option", "option",  "option", "list",    "list",
        "c",      "o",      "l",      "p",      "package", "#",      "garbage", ""};
    static constexpr const char *kBlanks[] = {" ", " ", " ", " ", "\t", "  ", "", " \\\n", "\\\n"};
    static constexpr const char *kWords[] = {
        "x",          "y",          "'x'",       "o",   "'o'",   "l",       "'l'",    "''",
        "\"\"",       "'a b'",      "v",         "'v'", "a'b'c", "a\\ b",   "a\\\nb", "'a\nb'",
        "\"a\\\nb\"", "'it'\\''s'", "\"q\\\"\"", "a;b", ";",     "; o p v", "#c",     "a#c",
        "p",          "a-b",        "a.b",       "'",   "\"",    "\\",      "t",      "u"};
    static constexpr const char *kEnds[] = {"\n", "\n", "\n", "\n", "\r\n", "", "\\\n", " ;\n"};
    static constexpr const char *kMarks[] = {"", "", "", "-", "+", "@", "^", "|", "~", "#"};
    static constexpr const char *kDeltaEnds[] = {"\n", "\n", "\n", "\n", "\r\n", " \n", " x\n", ""};
    static constexpr const char *kSections[] = {"x", "y", "new", "a-b", "", "cfg01b5ff"};
    static constexpr const char *kNames[] = {"o", "l", "n", "a-b", ""};
    static constexpr const char *kSetValues[] = {"v",          "w",  "it's", "", "a\x01",
                                                 "two\nlines", "\\", "a b",  "t"};

    std::mt19937 random_;
};

std::string describeLoaded(const Library &library, const char *name) {
    uci_context *context = library.allocContext();
    uci_package *package = nullptr;
    const int code = library.load(context, name, &package);
    const std::string text =
        code == UCI_OK ? store::describe(package) : "code " + std::to_string(code);
    library.freeContext(context);
    return text;
}

/// The calls of one change, as frr_uci makes them; their codes.
std::string change(const Library &library, const Case &c) {
    uci_context *context = library.allocContext();
    const char *name = c.byPath ? "/etc/config/p" : "p";
    uci_package *package = nullptr;
    int code = 0;
    if (c.adds) {
        code = library.load(context, name, &package);
        uci_section *section = nullptr;
        code = code != 0 ? code : library.addSection(context, package, "t", &section);
    } else {
        uci_ptr pointer = {};
        pointer.package = name;
        pointer.section = c.section;
        pointer.option = c.option;
        pointer.value = c.value;
        code = library.set(context, &pointer);
        package = pointer.p;
    }
    std::string codes = std::to_string(code);
    if (code == 0) {
        code = library.save(context, package);
        codes += " " + std::to_string(code);
    }
    if (code == 0) {
        codes += " " + std::to_string(library.commit(context, &package, false));
    }
    library.freeContext(context);
    return codes;
}

/// Everything that can be seen of one case.
std::string outcome(const Library &library, const Case &c) {
    store::write(config("p"), c.file);
    store::write(pending("p"), c.lines);
    std::string seen = "by name " + describeLoaded(library, "p");
    seen += "\nby path " + describeLoaded(library, "/etc/config/p");
    seen += "\ncodes " + change(library, c);
    seen += "\nfile\n" + store::read(config("p"));
    return seen + "\npending\n" + store::read(pending("p"));
}

std::string visible(const std::string &text) {
    std::string out;
    for (const char c : text) {
        out += c == '\0' ? "<NUL>" : c == '\r' ? "<CR>" : c == '\v' ? "<VT>" : std::string(1, c);
    }
    return out;
}

/// Differences that are meant: the stand-in is stricter where libuci loses what it was given. A
/// type that would spoil the file is quoted, a line is saved after half a line, and an added
/// section is always a new one.
bool isMeant(const Case &c, const std::string &ours) {
    return ours.find("\nconfig '") != std::string::npos ||
           (!c.lines.empty() && c.lines.back() != '\n') || c.lines.find('+') != std::string::npos;
}

class UciDifferential : public store::World {};

TEST_F(UciDifferential, randomFilesAndCalls) {
    const Library real = open(FRRUCI_REAL_UCI);
    const Library standIn = open(FRRUCI_STAND_IN_UCI);
    ASSERT_FALSE(HasFailure());
    const char *wanted = getenv("FRRUCI_DIFFERENTIAL_CASES");
    const int cases = wanted == nullptr ? 20000 : atoi(wanted);
    Generator generator(1);
    int different = 0;
    int meant = 0;
    for (int number = 0; number < cases; ++number) {
        const Case c = generator.make();
        const std::string theirs = outcome(real, c);
        const std::string ours = outcome(standIn, c);
        if (theirs == ours) {
            continue;
        }
        if (isMeant(c, ours)) {
            ++meant;
            continue;
        }
        if (++different <= 10) {
            ADD_FAILURE() << "case " << number << (c.byPath ? " by path" : " by name")
                          << (c.adds ? " add" : " set ") << c.section << "."
                          << (c.option == nullptr ? "(none)" : c.option) << "=" << c.value
                          << "\n---- file\n"
                          << visible(c.file) << "\n---- pending\n"
                          << visible(c.lines) << "\n---- libuci\n"
                          << visible(theirs) << "\n---- stand-in\n"
                          << visible(ours);
        }
    }
    std::printf("%d cases, %d different, %d as meant\n", cases, different, meant);
    EXPECT_EQ(different, 0);
}

} // namespace

/* SPDX-License-Identifier: Apache-2.0 */
/* The store's folders for one test, and what a package looks like when libuci has read it. */
#ifndef FRRUCI_TESTS_UNIT_STORE_WORLD_H
#define FRRUCI_TESTS_UNIT_STORE_WORLD_H

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include <uci.h>

namespace store {

inline constexpr const char *kConfigFolder = "/etc/config";
inline constexpr const char *kVolatileFolder = "/var/run/uci";
inline constexpr const char *kPendingFolder = "/tmp/.uci";
inline constexpr const char *kLog = "/tmp/tmp/data";

/// A package's file, the one that hides it, and the file of its pending changes.
inline std::string config(const char *package) {
    return std::string(kConfigFolder) + "/" + package;
}
inline std::string volatileConfig(const char *package) {
    return std::string(kVolatileFolder) + "/" + package;
}
inline std::string pending(const char *package) {
    return std::string(kPendingFolder) + "/" + package;
}

inline void write(const std::string &path, const std::string &text) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
}

/// The file's bytes; "(none)" without a file.
inline std::string read(const std::string &path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        return "(none)";
    }
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

inline void removeEntries(const std::string &folder) {
    std::filesystem::create_directories(folder);
    for (const auto &entry : std::filesystem::directory_iterator(folder)) {
        std::filesystem::remove_all(entry.path());
    }
}

/// Empty folders for every test.
class World : public testing::Test {
protected:
    World() {
        removeEntries(kConfigFolder);
        std::filesystem::remove_all(kVolatileFolder);
        std::filesystem::remove_all(kPendingFolder);
        removeEntries("/tmp/tmp");
    }
};

inline std::string describe(const uci_option *option) {
    std::string text = option->e.name;
    if (option->type == UCI_TYPE_STRING) {
        return text + "=" + option->v.string;
    }
    text += "=[";
    for (const uci_list *item = option->v.list.next; item != &option->v.list; item = item->next) {
        text += (item == option->v.list.next ? "" : "|");
        text += reinterpret_cast<const uci_element *>(item)->name;
    }
    return text + "]";
}

/// "type name(opt=value,list=[a|b]) ..."; an anonymous section has a star for its name.
inline std::string describe(const uci_package *package) {
    std::string text;
    for (const uci_list *s = package->sections.next; s != &package->sections; s = s->next) {
        const auto *section = reinterpret_cast<const uci_section *>(s);
        text += text.empty() ? "" : " ";
        text += std::string(section->type) + " " + (section->anonymous ? "*" : section->e.name);
        text += "(";
        for (const uci_list *o = section->options.next; o != &section->options; o = o->next) {
            text += (o == section->options.next ? "" : ",");
            text += describe(reinterpret_cast<const uci_option *>(o));
        }
        text += ")";
    }
    return text;
}

/// A context for the length of a test, and short forms of the calls on it.
class Context {
public:
    Context() : context_(uci_alloc_context()) {}
    ~Context() { uci_free_context(context_); }
    Context(const Context &) = delete;
    Context &operator=(const Context &) = delete;

    uci_context *get() { return context_; }

    int load(const char *name, uci_package *&package) { return uci_load(context_, name, &package); }
    int set(const char *package, const char *section, const char *option, const char *value) {
        uci_ptr pointer = {};
        pointer.package = package;
        pointer.section = section;
        pointer.option = option;
        pointer.value = value;
        return uci_set(context_, &pointer);
    }
    uci_section *section(uci_package *package, const char *name) {
        return reinterpret_cast<uci_section *>(element(&package->sections, name));
    }
    uci_option *option(uci_section *section, const char *name) {
        return reinterpret_cast<uci_option *>(element(&section->options, name));
    }

private:
    uci_element *element(uci_list *list, const char *name) {
        uci_element *found = nullptr;
        (void)uci_lookup_next(context_, &found, list, name); // null when it is not there
        return found;
    }

    uci_context *context_;
};

/// The package as libuci reads it, or "code N".
inline std::string loaded(const char *name) {
    Context context;
    uci_package *package = nullptr;
    const int code = context.load(name, package);
    return code == UCI_OK ? describe(package) : "code " + std::to_string(code);
}

} // namespace store

#endif

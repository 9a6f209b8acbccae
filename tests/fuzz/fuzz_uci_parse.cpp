// SPDX-License-Identifier: Apache-2.0
// The store's syntax: any bytes as a configuration file and as a delta file. What is accepted must
// come out in a form that reads back as itself.

#include <cstdlib>
#include <cstring>

#include "delta.h"
#include "parse.h"
#include "records.h"
#include "text.h"
#include "uci.h"
#include "write.h"

namespace {

using frruci::uci::Text;

constexpr char kBase[] =
    "config global 'global'\n\toption enable 'en'\n\tlist l 'a'\n\tlist l 'b'\n"
    "config network\n\toption area '0'\n";

void insist(bool truth) {
    if (!truth) {
        abort();
    }
}

class Package {
public:
    Package()
        : context_(uci_alloc_context()),
          package_(frruci::uci::newPackage(context_, "ospf", "/etc/config/ospf")) {}
    ~Package() {
        frruci::uci::freePackage(package_);
        uci_free_context(context_);
    }
    Package(const Package &) = delete;
    Package &operator=(const Package &) = delete;

    int parse(const char *text, size_t size) {
        return frruci::uci::parsePackage(package_, text, size);
    }
    int apply(const char *text, size_t size) {
        int applied = 0;
        return frruci::uci::applyDeltas(package_, text, size, applied);
    }
    void write(Text &out) { frruci::uci::writePackage(out, package_, false); }

    /// A pending change may give a section or an option the name of another one, as libuci's does.
    bool hasTwoOfAName() const {
        bool found = hasTwoOfAName(package_->sections);
        for (const uci_list *node = package_->sections.next; node != &package_->sections;
             node = node->next) {
            found = found || hasTwoOfAName(reinterpret_cast<const uci_section *>(node)->options);
        }
        return found;
    }

private:
    static const char *nameOf(const uci_list *node) {
        return reinterpret_cast<const uci_element *>(node)->name; // begins with its list record
    }
    static bool hasTwoOfAName(const uci_list &list) {
        for (const uci_list *node = list.next; node != &list; node = node->next) {
            for (const uci_list *other = node->next; other != &list; other = other->next) {
                if (strcmp(nameOf(node), nameOf(other)) == 0) {
                    return true;
                }
            }
        }
        return false;
    }

    uci_context *context_;
    uci_package *package_;
};

/// What a package writes must be a whole file that gives the same text again.
void insistOnReadable(Package &package) {
    Text first;
    package.write(first);
    Package again;
    insist(again.parse(first.data(), first.size()) == UCI_OK);
    Text second;
    again.write(second);
    insist(first.size() == second.size() && strcmp(first.data(), second.data()) == 0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size) {
    const auto *text = reinterpret_cast<const char *>(data);
    Package file;
    const int code = file.parse(text, size);
    insist(code == UCI_OK || code == UCI_ERR_PARSE);
    if (code == UCI_OK) {
        insistOnReadable(file);
    }
    Package changed;
    insist(changed.parse(kBase, sizeof kBase - 1) == UCI_OK);
    insist(changed.apply(text, size) == UCI_OK);
    if (!changed.hasTwoOfAName()) {
        insistOnReadable(changed);
    }
    return 0;
}

// SPDX-License-Identifier: Apache-2.0
// The records of a package in memory: making, changing and freeing them.
#ifndef FRRUCI_COMPAT_UCI_RECORDS_H
#define FRRUCI_COMPAT_UCI_RECORDS_H

#include "uci.h"

namespace frruci::uci {

void initList(uci_list &head);
void insertBefore(uci_list &place, uci_list &entry);
void unlinkEntry(uci_list &entry);
inline bool isEmpty(const uci_list &head) {
    return head.next == &head;
}

/// Hands every entry to release, which may free it, and leaves the list empty.
template <class Release> void drain(uci_list &head, Release release) {
    for (uci_list *entry = head.next; entry != &head;) {
        uci_list *next = entry->next;
        release(entry);
        entry = next;
    }
    initList(head);
}

/// An element is the first member of what it belongs to.
inline uci_element *elementOf(uci_list *entry) {
    return reinterpret_cast<uci_element *>(entry);
}
inline uci_section *sectionOf(uci_element *element) {
    return reinterpret_cast<uci_section *>(element);
}
inline uci_option *optionOf(uci_element *element) {
    return reinterpret_cast<uci_option *>(element);
}
inline uci_package *packageOf(uci_element *element) {
    return reinterpret_cast<uci_package *>(element);
}

/// The first element of that name, or null.
uci_element *findFirst(uci_list &head, const char *name);
/// The last element of that name, or null.
uci_element *findLast(uci_list &head, const char *name);

/// A letter, a digit or an underscore.
bool isNameCharacter(char c);
/// Name characters, at least one.
bool isName(const char *text);
/// Printable characters without spaces, at least one: section types and package names.
bool isWord(const char *text);

// Functions that return a record give null without memory; those that return int a UCI_ERR code.

/// An element of its own: an item of a list, or a folder.
uci_element *newElement(uci_type type, const char *name);
void freeElement(uci_element *element);

/// A package that is not yet in its context's list.
uci_package *newPackage(uci_context *context, const char *name, const char *path);
/// Takes it out of its context's list and frees it with all that is in it.
void freePackage(uci_package *package);

/// Appends a section; anonymous with a made-up name when name is null.
uci_section *appendSection(uci_package *package, const char *type, const char *name);
void freeSection(uci_section *section);
int setType(uci_section *section, const char *type);

uci_option *appendOption(uci_section *section, const char *name, const char *value);
void freeOption(uci_option *option);
/// Makes the option that one text; a list loses its items.
int setString(uci_option *option, const char *value);
/// An empty list option at the end of the section.
uci_option *appendListOption(uci_section *section, const char *name);
/// Appends to the option; a single text becomes the list's first item.
int appendItem(uci_option *option, const char *value);
/// Removes every item of that text.
void removeItems(uci_option *option, const char *value);
/// Removes the item of that number, counted from 0, if there is one.
void removeItemAt(uci_option *option, int index);
int renameElement(uci_element &element, const char *name);

} // namespace frruci::uci

#endif

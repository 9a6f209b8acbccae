// SPDX-License-Identifier: Apache-2.0
// The records of a package in memory.

#include "records.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "delta.h"

namespace frruci::uci {

namespace {

template <class Record> Record *newRecord(uci_type type, const char *name) {
    auto *record = static_cast<Record *>(calloc(1, sizeof(Record)));
    if (record == nullptr) {
        return nullptr;
    }
    record->e.type = type;
    record->e.name = strdup(name);
    initList(record->e.list);
    if (record->e.name == nullptr) {
        free(record);
        return nullptr;
    }
    return record;
}

/// The name that libuci gives to a section without one.
void makeUpName(char (&name)[32], int count, const char *type) {
    uint32_t hash = 5381;
    for (; *type != '\0'; ++type) {
        hash = hash * 33 + static_cast<unsigned char>(*type);
    }
    (void)snprintf(name, sizeof name, "cfg%02x%04x", static_cast<unsigned>(count), hash & 0xffffU);
}

void freeValue(uci_option *option) {
    if (option->type == UCI_TYPE_LIST) {
        drain(option->v.list, [](uci_list *item) { freeElement(elementOf(item)); });
    } else {
        free(option->v.string);
    }
}

// The release functions free what is no longer, or soon not, in a list.

void releaseOption(uci_option *option) {
    freeValue(option);
    free(option->e.name);
    free(option);
}

void releaseSection(uci_section *section) {
    drain(section->options, [](uci_list *entry) { releaseOption(optionOf(elementOf(entry))); });
    free(section->type);
    free(section->e.name);
    free(section);
}

int toList(uci_option *option) {
    uci_element *first = newElement(UCI_TYPE_ITEM, option->v.string);
    if (first == nullptr) {
        return UCI_ERR_MEM;
    }
    free(option->v.string);
    option->type = UCI_TYPE_LIST;
    initList(option->v.list);
    insertBefore(option->v.list, first->list);
    return UCI_OK;
}

} // namespace

void initList(uci_list &head) {
    head.next = &head;
    head.prev = &head;
}

void insertBefore(uci_list &place, uci_list &entry) {
    entry.next = &place;
    entry.prev = place.prev;
    place.prev->next = &entry;
    place.prev = &entry;
}

void unlinkEntry(uci_list &entry) {
    entry.prev->next = entry.next;
    entry.next->prev = entry.prev;
    initList(entry);
}

uci_element *findFirst(uci_list &head, const char *name) {
    for (uci_list *entry = head.next; entry != &head; entry = entry->next) {
        if (strcmp(elementOf(entry)->name, name) == 0) {
            return elementOf(entry);
        }
    }
    return nullptr;
}

uci_element *findLast(uci_list &head, const char *name) {
    for (uci_list *entry = head.prev; entry != &head; entry = entry->prev) {
        if (strcmp(elementOf(entry)->name, name) == 0) {
            return elementOf(entry);
        }
    }
    return nullptr;
}

bool isNameCharacter(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

bool isName(const char *text) {
    const char *at = text;
    while (isNameCharacter(*at)) {
        ++at;
    }
    return at != text && *at == '\0';
}

bool isWord(const char *text) {
    const char *at = text;
    while (*at >= '!' && *at <= '~') {
        ++at;
    }
    return at != text && *at == '\0';
}

uci_element *newElement(uci_type type, const char *name) {
    auto *element = static_cast<uci_element *>(calloc(1, sizeof(uci_element)));
    if (element == nullptr) {
        return nullptr;
    }
    element->type = type;
    element->name = strdup(name);
    if (element->name == nullptr) {
        free(element);
        return nullptr;
    }
    return element;
}

void freeElement(uci_element *element) {
    free(element->name);
    free(element);
}

uci_package *newPackage(uci_context *context, const char *name, const char *path) {
    auto *package = newRecord<uci_package>(UCI_TYPE_PACKAGE, name);
    if (package == nullptr) {
        return nullptr;
    }
    initList(package->sections);
    initList(package->delta);
    initList(package->saved_delta);
    package->ctx = context;
    package->path = strdup(path);
    if (package->path == nullptr) {
        freePackage(package);
        return nullptr;
    }
    return package;
}

void freePackage(uci_package *package) {
    unlinkEntry(package->e.list);
    drain(package->sections, [](uci_list *entry) { releaseSection(sectionOf(elementOf(entry))); });
    forgetDeltas(package);
    free(package->path);
    free(package->e.name);
    free(package);
}

uci_section *appendSection(uci_package *package, const char *type, const char *name) {
    char madeUp[32];
    if (name != nullptr && *name == '\0') {
        name = nullptr;
    }
    if (name == nullptr) {
        makeUpName(madeUp, package->n_section + 1, type);
    }
    auto *section = newRecord<uci_section>(UCI_TYPE_SECTION, name == nullptr ? madeUp : name);
    if (section == nullptr) {
        return nullptr;
    }
    section->type = strdup(type);
    if (section->type == nullptr) {
        free(section->e.name);
        free(section);
        return nullptr;
    }
    initList(section->options);
    section->anonymous = name == nullptr;
    section->package = package;
    ++package->n_section;
    insertBefore(package->sections, section->e.list);
    return section;
}

void freeSection(uci_section *section) {
    unlinkEntry(section->e.list);
    releaseSection(section);
}

int setType(uci_section *section, const char *type) {
    char *copy = strdup(type);
    if (copy == nullptr) {
        return UCI_ERR_MEM;
    }
    // A type of another length makes a new section in libuci, which then has the old one's name.
    section->anonymous = section->anonymous && strlen(copy) == strlen(section->type);
    free(section->type);
    section->type = copy;
    return UCI_OK;
}

uci_option *appendOption(uci_section *section, const char *name, const char *value) {
    auto *option = newRecord<uci_option>(UCI_TYPE_OPTION, name);
    if (option == nullptr) {
        return nullptr;
    }
    option->type = UCI_TYPE_STRING;
    option->v.string = strdup(value);
    if (option->v.string == nullptr) {
        free(option->e.name);
        free(option);
        return nullptr;
    }
    option->section = section;
    insertBefore(section->options, option->e.list);
    return option;
}

void freeOption(uci_option *option) {
    unlinkEntry(option->e.list);
    releaseOption(option);
}

int setString(uci_option *option, const char *value) {
    char *copy = strdup(value);
    if (copy == nullptr) {
        return UCI_ERR_MEM;
    }
    freeValue(option);
    option->type = UCI_TYPE_STRING;
    option->v.string = copy;
    return UCI_OK;
}

uci_option *appendListOption(uci_section *section, const char *name) {
    auto *option = newRecord<uci_option>(UCI_TYPE_OPTION, name);
    if (option != nullptr) {
        option->type = UCI_TYPE_LIST;
        initList(option->v.list);
        option->section = section;
        insertBefore(section->options, option->e.list);
    }
    return option;
}

int appendItem(uci_option *option, const char *value) {
    if (option->type == UCI_TYPE_STRING && toList(option) != UCI_OK) {
        return UCI_ERR_MEM;
    }
    uci_element *item = newElement(UCI_TYPE_ITEM, value);
    if (item == nullptr) {
        return UCI_ERR_MEM;
    }
    insertBefore(option->v.list, item->list);
    return UCI_OK;
}

void removeItems(uci_option *option, const char *value) {
    uci_list *entry = option->v.list.next;
    while (entry != &option->v.list) {
        uci_element *item = elementOf(entry);
        entry = entry->next;
        if (strcmp(item->name, value) == 0) {
            unlinkEntry(item->list);
            freeElement(item);
        }
    }
}

void removeItemAt(uci_option *option, int index) {
    uci_list *entry = option->v.list.next;
    while (entry != &option->v.list && index != 0) {
        entry = entry->next;
        --index;
    }
    if (entry != &option->v.list) {
        unlinkEntry(*entry);
        freeElement(elementOf(entry));
    }
}

int renameElement(uci_element &element, const char *name) {
    char *copy = strdup(name);
    if (copy == nullptr) {
        return UCI_ERR_MEM;
    }
    free(element.name);
    element.name = copy;
    return UCI_OK;
}

} // namespace frruci::uci

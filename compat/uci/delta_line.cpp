// SPDX-License-Identifier: Apache-2.0
// One line of a delta file: its text and what it does to a package.

#include "delta_line.h"

#include <cstdlib>

#include "change.h"
#include "records.h"
#include "words.h"

namespace frruci::uci {

namespace {

/// The characters that stand before a line, in the order of Change; a space stands for none.
constexpr char kMarks[] = "+- @^|~";

/// Control characters cannot be kept, except those that white space has.
bool isStorable(const char *value) {
    for (; *value != '\0'; ++value) {
        const auto c = static_cast<unsigned char>(*value);
        if (c < ' ' && c != '\t' && c != '\n' && c != '\r') {
            return false;
        }
    }
    return true;
}

/// A line and the records that it names.
struct Work {
    DeltaLine line;
    Target target;
};

constexpr int kBadLine = UCI_ERR_INVAL;

// The appliers give UCI_OK, UCI_ERR_MEM, or another code for a line that cannot be applied.

int applySet(Work &work) {
    bool changed = false;
    return setValue(work.target, work.line.value, changed);
}

int applyAdd(Work &work) {
    if (work.line.option != nullptr || *work.line.value == '\0') {
        return applySet(work);
    }
    if (!isWord(work.line.value)) {
        return kBadLine;
    }
    // Always a new one: two writers that add at the same time make up the same name.
    uci_section *section = appendSection(work.target.package, work.line.value, work.line.section);
    if (section == nullptr) {
        return UCI_ERR_MEM;
    }
    section->anonymous = true;
    return UCI_OK;
}

bool isFound(const Target &target) {
    return target.section != nullptr && (target.optionName == nullptr || target.option != nullptr);
}

int applyRemove(Work &work) {
    if (!isFound(work.target)) {
        return kBadLine;
    }
    uci_option *option = work.target.option;
    const char *value = work.line.value;
    if (option == nullptr || option->type != UCI_TYPE_LIST || value == nullptr || *value == '\0') {
        removeTarget(work.target);
        return UCI_OK;
    }
    char *end = nullptr;
    const long index = strtol(value, &end, 10); // a value says which item of a list
    if (end == value) {
        return kBadLine;
    }
    removeItemAt(option, static_cast<int>(index));
    return UCI_OK;
}

int applyRename(Work &work) {
    if (!isName(work.line.value) || !isFound(work.target)) {
        return kBadLine;
    }
    uci_section *section = work.target.section;
    uci_option *option = work.target.option;
    section->anonymous = section->anonymous && option != nullptr;
    return renameElement(option != nullptr ? option->e : section->e, work.line.value);
}

int applyReorder(Work &work) {
    uci_section *section = work.target.section;
    if (section == nullptr || work.line.option != nullptr) {
        return kBadLine;
    }
    unlinkEntry(section->e.list);
    uci_list &sections = work.target.package->sections;
    uci_list *place = sections.next;
    auto left = static_cast<int>(strtoul(work.line.value, nullptr, 10));
    for (; left > 0 && place != &sections; --left) {
        place = place->next;
    }
    insertBefore(*place, section->e.list);
    return UCI_OK;
}

int applyListAdd(Work &work) {
    if (work.target.section == nullptr || work.line.option == nullptr) {
        return kBadLine;
    }
    uci_option *option = work.target.option;
    if (option == nullptr) {
        option = appendListOption(work.target.section, work.line.option);
    }
    return option != nullptr ? appendItem(option, work.line.value) : UCI_ERR_MEM;
}

int applyListRemove(Work &work) {
    if (work.target.section == nullptr || work.line.option == nullptr) {
        return kBadLine;
    }
    uci_option *option = work.target.option;
    if (option != nullptr && option->type == UCI_TYPE_LIST) {
        removeItems(option, work.line.value);
    }
    return UCI_OK;
}

/// In the order of Change.
constexpr int (*kAppliers[])(Work &work) = {
    applyAdd, applyRemove, applySet, applyRename, applyReorder, applyListAdd, applyListRemove,
};
static_assert(sizeof kMarks - 1 == sizeof kAppliers / sizeof kAppliers[0]);

Change takeMark(char *&text) {
    const char *mark = *text == ' ' || *text == '\0' ? nullptr : strchr(kMarks, *text);
    if (mark == nullptr) {
        return Change::Set;
    }
    ++text;
    return static_cast<Change>(mark - kMarks);
}

/// Cuts text at the first separator and returns what comes after it; null without one.
char *cutAt(char *text, char separator) {
    char *found = text == nullptr ? nullptr : strchr(text, separator);
    if (found != nullptr) {
        *found++ = '\0';
    }
    return found;
}

/// Splits a line in place; false when it does not concern package or has no legal parts.
bool splitLine(char *text, const char *package, DeltaLine &line) {
    line.change = takeMark(text);
    line.value = cutAt(text, '=');
    char *section = cutAt(text, '.');
    char *option = cutAt(section, '.');
    if (strcmp(text, package) != 0 || section == nullptr || cutAt(option, '.') != nullptr) {
        return false;
    }
    line.section = section;
    line.option = option;
    line.package = package;
    const bool hasValue = line.value != nullptr;
    return isName(section) && (option == nullptr || isName(option)) &&
           (hasValue ? isStorable(line.value) : line.change == Change::Remove);
}

/// The records that the line names. The last of equal names: changes of a new section follow it.
void findRecords(Work &work, uci_package *package) {
    work.target = {package, nullptr, nullptr, work.line.section, work.line.option};
    uci_element *section = findLast(package->sections, work.line.section);
    if (section == nullptr) {
        return;
    }
    work.target.section = sectionOf(section);
    if (work.line.option == nullptr) {
        return;
    }
    uci_element *option = findFirst(work.target.section->options, work.line.option);
    work.target.option = option == nullptr ? nullptr : optionOf(option);
}

int applyLine(uci_package *package, char *text) {
    Work work = {};
    if (!splitLine(text, package->e.name, work.line)) {
        return kBadLine;
    }
    findRecords(work, package);
    return kAppliers[static_cast<int>(work.line.change)](work);
}

} // namespace

void appendDeltaLine(Text &out, const DeltaLine &line) {
    const char mark = kMarks[static_cast<int>(line.change)];
    if (mark != ' ') {
        out.append(mark);
    }
    out.append(line.package);
    out.append('.');
    out.append(line.section);
    if (line.option != nullptr) {
        out.append('.');
        out.append(line.option);
    }
    if (line.value != nullptr) {
        out.append('=');
        appendQuoted(out, line.value);
    }
    out.append('\n');
}

int applyDeltas(uci_package *package, const char *text, std::size_t length, int &applied) {
    Words words(text, length);
    while (words.nextLine()) {
        std::size_t word = 0;
        const bool whole = words.next(word) && *words.rest() == '\0';
        const int code = whole ? applyLine(package, words.at(word)) : kBadLine;
        if (code == UCI_ERR_MEM) {
            return code;
        }
        applied += code == UCI_OK ? 1 : 0;
    }
    return words.noMemory() ? UCI_ERR_MEM : UCI_OK;
}

} // namespace frruci::uci

// SPDX-License-Identifier: Apache-2.0
// One line of a delta file: its text and what it does to a package.

#include "delta_line.h"

#include <cstdlib>

#include "change.h"
#include "records.h"
#include "words.h"

namespace frruci::uci {

namespace {

/// The characters that stand before a line, in the order of Change; a blank stands for none.
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

int applyAdd(Work &work) {
    if (work.line.option != nullptr || work.line.value == nullptr || !isWord(work.line.value)) {
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
    if (work.line.value != nullptr || !isFound(work.target)) {
        return kBadLine;
    }
    removeTarget(work.target);
    return UCI_OK;
}

int applySet(Work &work) {
    if (work.line.value == nullptr || !isStorable(work.line.value)) {
        return kBadLine;
    }
    bool changed = false;
    return setValue(work.target, work.line.value, changed);
}

int applyRename(Work &work) {
    const char *name = work.line.value;
    if (name == nullptr || !isName(name) || !isFound(work.target)) {
        return kBadLine;
    }
    uci_section *section = work.target.section;
    uci_option *option = work.target.option;
    // A second element of that name could not be read back.
    if (findFirst(option != nullptr ? section->options : work.target.package->sections, name)) {
        return kBadLine;
    }
    section->anonymous = section->anonymous && option != nullptr;
    return renameElement(option != nullptr ? option->e : section->e, name);
}

int applyReorder(Work &work) {
    uci_section *section = work.target.section;
    if (work.line.value == nullptr || section == nullptr || work.line.option != nullptr) {
        return kBadLine;
    }
    unlinkEntry(section->e.list);
    uci_list &sections = work.target.package->sections;
    uci_list *place = sections.next;
    for (long left = strtol(work.line.value, nullptr, 10); left > 0 && place != &sections; --left) {
        place = place->next;
    }
    insertBefore(*place, section->e.list);
    return UCI_OK;
}

int applyListAdd(Work &work) {
    if (work.line.value == nullptr || !isStorable(work.line.value) ||
        work.target.section == nullptr || work.line.option == nullptr) {
        return kBadLine;
    }
    uci_option *option = work.target.option;
    if (option == nullptr) {
        option = appendListOption(work.target.section, work.line.option);
    }
    return option != nullptr ? appendItem(option, work.line.value) : UCI_ERR_MEM;
}

int applyListRemove(Work &work) {
    uci_option *option = work.target.option;
    if (work.line.value == nullptr || option == nullptr || option->type != UCI_TYPE_LIST) {
        return kBadLine;
    }
    removeItems(option, work.line.value);
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

/// Cuts text at the first separator and returns what is behind it; null without one.
char *cutAt(char *text, char separator) {
    char *found = text == nullptr ? nullptr : strchr(text, separator);
    if (found != nullptr) {
        *found++ = '\0';
    }
    return found;
}

/// Splits a line in place; false when it does not concern package or has no legal names.
bool splitLine(char *text, const char *package, DeltaLine &line) {
    line.change = takeMark(text);
    const std::size_t length = strlen(package);
    if (strncmp(text, package, length) != 0 || text[length] != '.') {
        return false;
    }
    char *section = text + length + 1;
    line.value = cutAt(section, '=');
    line.option = cutAt(section, '.');
    line.section = section;
    line.package = package;
    return isName(section) && (line.option == nullptr || isName(line.option));
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
    if (text == nullptr || !splitLine(text, package->e.name, work.line)) {
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
    Text line;
    Text extra;
    while (words.skipToCommand()) {
        const char *start = words.position();
        const bool whole = words.next(line) == Token::Word && words.next(extra) == Token::LineEnd;
        const int code = whole ? applyLine(package, line.characters()) : kBadLine;
        if (code == UCI_ERR_MEM || line.failed()) {
            return UCI_ERR_MEM;
        }
        applied += code == UCI_OK ? 1 : 0;
        if (!whole) {
            // Each line stands alone: a bad one must not take the next with it.
            words.seek(start);
            words.skipLine();
        }
    }
    return UCI_OK;
}

} // namespace frruci::uci

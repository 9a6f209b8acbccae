// SPDX-License-Identifier: Apache-2.0
// Writes a package as the text of a configuration file.

#include "write.h"

#include "records.h"

namespace frruci::uci {

namespace {

void writeValue(Text &out, const char *command, const char *name, const char *value) {
    out.append('\t');
    out.append(command);
    out.append(' ');
    out.append(name);
    out.append(' ');
    appendQuoted(out, value);
    out.append('\n');
}

void writeOption(Text &out, uci_option *option) {
    if (option->type == UCI_TYPE_STRING) {
        writeValue(out, "option", option->e.name, option->v.string);
        return;
    }
    const uci_list *const items = &option->v.list;
    for (uci_list *item = items->next; item != items; item = item->next) {
        writeValue(out, "list", option->e.name, elementOf(item)->name);
    }
}

/// Types stand bare, unless that would make another text of them or spoil the rest of the file.
void writeType(Text &out, const char *type) {
    if (type[strcspn(type, "'\"\\#;")] == '\0') {
        out.append(type);
    } else {
        appendQuoted(out, type);
    }
}

void writeSection(Text &out, uci_section *section, bool madeUpNames) {
    out.append("\nconfig ");
    writeType(out, section->type);
    if (!section->anonymous || madeUpNames) {
        out.append(' ');
        appendQuoted(out, section->e.name);
    }
    out.append('\n');
    const uci_list *const options = &section->options;
    for (uci_list *option = options->next; option != options; option = option->next) {
        writeOption(out, optionOf(elementOf(option)));
    }
}

} // namespace

void writePackage(Text &out, uci_package *package, bool madeUpNames) {
    const uci_list *const sections = &package->sections;
    for (uci_list *section = sections->next; section != sections; section = section->next) {
        writeSection(out, sectionOf(elementOf(section)), madeUpNames);
    }
    out.append('\n');
}

} // namespace frruci::uci

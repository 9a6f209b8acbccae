// SPDX-License-Identifier: Apache-2.0
// Reads the text of a configuration file into a package.

#include "parse.h"

#include <cstring>

#include "name_index.h"
#include "records.h"
#include "words.h"

namespace frruci::uci {

namespace {

/// One file on its way into a package.
struct Reading {
    uci_package *package;
    Words &words;
    uci_section *section; ///< where options go; null before the first config
    NameIndex names;
};

bool isPackageName(const char *text) {
    const char *at = text;
    while (*at == '-' || isNameCharacter(*at)) {
        ++at;
    }
    return at != text && *at == '\0';
}

/// True when nothing but a separator follows in the line.
bool atCommandEnd(Words &words) {
    std::size_t extra = 0;
    words.skipSpaces();
    return words.next(extra) && *words.at(extra) == '\0';
}

/// The two words after a command and nothing else; the second may be missing.
bool takeTwo(Words &words, std::size_t &first, std::size_t &second) {
    return words.next(first) && *words.at(first) != '\0' && words.next(second) &&
           atCommandEnd(words);
}

int readPackage(Reading &reading) {
    // As in libuci: the name is only checked. A package has its file's name.
    std::size_t name = 0;
    const bool whole = reading.words.next(name) && isPackageName(reading.words.at(name)) &&
                       atCommandEnd(reading.words);
    return whole ? UCI_OK : UCI_ERR_PARSE;
}

int readConfig(Reading &reading) {
    std::size_t first = 0;
    std::size_t second = 0;
    if (!takeTwo(reading.words, first, second)) {
        return UCI_ERR_PARSE;
    }
    const char *type = reading.words.at(first);
    const char *name = reading.words.at(second);
    if (!isWord(type) || (*name != '\0' && !isName(name))) {
        return UCI_ERR_PARSE;
    }
    const uci_list *sections = &reading.package->sections;
    uci_element *known = *name == '\0' ? nullptr : reading.names.find(sections, name);
    if (known != nullptr) {
        reading.section = sectionOf(known);
        return strcmp(reading.section->type, type) == 0 ? UCI_OK : UCI_ERR_PARSE;
    }
    reading.section = appendSection(reading.package, type, *name == '\0' ? nullptr : name);
    if (reading.section == nullptr || !reading.names.add(sections, &reading.section->e)) {
        return UCI_ERR_MEM;
    }
    return UCI_OK;
}

/// The section's option of that name; null if there is none.
uci_option *knownOption(const Reading &reading, const char *name) {
    uci_element *known = reading.names.find(&reading.section->options, name);
    return known == nullptr ? nullptr : optionOf(known);
}

/// Notes a new option; null, made without memory, is handed on.
uci_option *note(Reading &reading, uci_option *made) {
    const bool noted = made != nullptr && reading.names.add(&reading.section->options, &made->e);
    return noted ? made : nullptr;
}

/// The name and the value of an option in a section; valid until the next word is taken.
bool takeOption(Reading &reading, const char *&name, const char *&value) {
    std::size_t first = 0;
    std::size_t second = 0;
    if (reading.section == nullptr || !takeTwo(reading.words, first, second)) {
        return false;
    }
    name = reading.words.at(first);
    value = reading.words.at(second);
    return isName(name);
}

int readOption(Reading &reading) {
    const char *name = nullptr;
    const char *value = nullptr;
    if (!takeOption(reading, name, value)) {
        return UCI_ERR_PARSE;
    }
    if (*value == '\0') {
        return UCI_OK; // an empty value is no value
    }
    uci_option *option = knownOption(reading, name);
    if (option != nullptr) {
        return setString(option, value);
    }
    option = note(reading, appendOption(reading.section, name, value));
    return option != nullptr ? UCI_OK : UCI_ERR_MEM;
}

int readList(Reading &reading) {
    const char *name = nullptr;
    const char *value = nullptr;
    if (!takeOption(reading, name, value)) {
        return UCI_ERR_PARSE;
    }
    uci_option *option = knownOption(reading, name);
    if (option == nullptr) {
        option = note(reading, appendListOption(reading.section, name));
    }
    return option != nullptr ? appendItem(option, value) : UCI_ERR_MEM;
}

struct Command {
    const char *word;
    int (*read)(Reading &reading);
};

constexpr Command kCommands[] = {
    {"package", readPackage},
    {"config",  readConfig },
    {"option",  readOption },
    {"list",    readList   },
};

/// The command of that word or first letter; null if there is none.
const Command *findCommand(const char *word) {
    for (const Command &command : kCommands) {
        if (strcmp(command.word, word) == 0 || (word[0] == command.word[0] && word[1] == '\0')) {
            return &command;
        }
    }
    return nullptr;
}

/// The commands of one line, separated by semicolons.
int readLine(Reading &reading) {
    reading.words.skipSpaces();
    for (;;) {
        const char *word = reading.words.command();
        if (word == nullptr || *word == '#') {
            return UCI_OK;
        }
        const Command *command = findCommand(word);
        if (command == nullptr || !reading.words.skipCommand()) {
            return UCI_ERR_PARSE;
        }
        const int code = command->read(reading);
        if (code != UCI_OK) {
            return code;
        }
    }
}

} // namespace

int parsePackage(uci_package *package, const char *text, std::size_t length) {
    Words words(text, length);
    Reading reading = {package, words, nullptr, {}};
    while (words.nextLine()) {
        const int code = readLine(reading);
        if (code != UCI_OK) {
            return words.noMemory() ? UCI_ERR_MEM : code;
        }
    }
    return words.noMemory() ? UCI_ERR_MEM : UCI_OK;
}

} // namespace frruci::uci

// SPDX-License-Identifier: Apache-2.0
// Reads the text of a configuration file into a package.

#include "parse.h"

#include "name_index.h"
#include "records.h"
#include "words.h"

namespace frruci::uci {

namespace {

/// One file on its way into a package.
struct Reading {
    uci_package *package;
    uci_section *section; ///< where options go; null before the first config
    NameIndex names;
    Text words[2]; ///< arguments of the current command; missing ones are empty
};

int readPackage(Reading &reading) {
    // Intended: the name is checked only; a file is named after itself.
    return isWord(reading.words[0].data()) ? UCI_OK : UCI_ERR_PARSE;
}

int readConfig(Reading &reading) {
    const char *type = reading.words[0].data();
    const char *name = reading.words[1].data();
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

int readOption(Reading &reading) {
    const char *name = reading.words[0].data();
    const char *value = reading.words[1].data();
    if (reading.section == nullptr || !isName(name)) {
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
    const char *name = reading.words[0].data();
    if (reading.section == nullptr || !isName(name)) {
        return UCI_ERR_PARSE;
    }
    uci_option *option = knownOption(reading, name);
    if (option == nullptr) {
        option = note(reading, appendListOption(reading.section, name));
    }
    return option != nullptr ? appendItem(option, reading.words[1].data()) : UCI_ERR_MEM;
}

struct Command {
    const char *word;
    std::size_t arguments; ///< at most
    int (*read)(Reading &reading);
};

constexpr Command kCommands[] = {
    {"package", 1, readPackage},
    {"config",  2, readConfig },
    {"option",  2, readOption },
    {"list",    2, readList   },
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

/// Takes the words up to the command's end.
int takeArguments(Words &words, Reading &reading, std::size_t atMost) {
    for (Text &word : reading.words) {
        word.clear();
    }
    Text extra;
    std::size_t count = 0;
    for (;;) {
        switch (words.next(count < atMost ? reading.words[count] : extra)) {
        case Token::Word:
            if (++count > atMost) {
                return UCI_ERR_PARSE;
            }
            break;
        case Token::Separator:
        case Token::LineEnd:
            return UCI_OK;
        case Token::Malformed:
            return UCI_ERR_PARSE;
        case Token::NoMemory:
            return UCI_ERR_MEM;
        }
    }
}

} // namespace

int parsePackage(uci_package *package, const char *text, std::size_t length) {
    Words words(text, length);
    Reading reading = {package, nullptr, {}, {}};
    Text word;
    while (words.skipToCommand()) {
        const bool whole = words.command(word);
        const Command *command = whole ? findCommand(word.data()) : nullptr;
        if (command == nullptr) {
            return word.failed() ? UCI_ERR_MEM : UCI_ERR_PARSE;
        }
        int code = takeArguments(words, reading, command->arguments);
        if (code == UCI_OK) {
            code = command->read(reading);
        }
        if (code != UCI_OK) {
            return code;
        }
    }
    return UCI_OK;
}

} // namespace frruci::uci

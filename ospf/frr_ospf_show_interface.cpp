// SPDX-License-Identifier: Apache-2.0
// Mirrors what ospfd says about its interfaces into the store.

#include "common/front_end.h"
#include "common/frr_uci.h"
#include "common/text.h"
#include "ospf/frr_ospf.h"

namespace {

using frruci::common::format;

constexpr const char *kPackage = "ospf";
constexpr std::size_t kSectionBytes = 16;
constexpr std::size_t kMostWords = 16;

constexpr std::size_t kStateWords = 3;
constexpr std::size_t kTypeAndCostWords = 8;

// The store's codes. The interface commands and the model number the types differently.
struct StoredType {
    const char *word;
    const char *code;
};

constexpr StoredType kStoredTypes[] = {
    {"POINTOPOINT", "1"},
    {"BROADCAST",   "0"},
};

// The section of the interface whose lines are being read. Kept between lines and calls, also
// across interfaces that are down: their lines count for the last one that was up.
char currentSection[kSectionBytes];

struct LineWords {
    explicit LineWords(char *line) {
        char *rest = nullptr;
        for (char *word = strtok_r(line, " ", &rest); word != nullptr && count < kMostWords;
             word = strtok_r(nullptr, " ", &rest)) {
            words[count++] = word;
        }
    }

    bool startsWith(std::size_t index, const char *prefix) const {
        return frruci::common::startsWith(words[index], prefix);
    }

    char *words[kMostWords] = {};
    std::size_t count = 0;
};

void storeOption(const char *option, const char *value, int line = __builtin_LINE()) {
    const int32_t status = frr_uci_set(kPackage, currentSection, option, value);
    if (status != 0) {
        (void)record_log_act("frr_ospf:%d:  ret=%d, frr_uci_set failed, section name is %s\n", line,
                             status, currentSection);
    }
}

// Fixed by the interface: "working" is only ever set; an interface that goes down keeps it.
void beginInterface(const char *name) {
    if (strlen(name) >= kSectionBytes) {
        return;
    }
    format(currentSection, "%s", name);
    for (char &character : currentSection) {
        character = character == '.' ? '_' : character; // a section's name has no dots
    }
    storeOption("working", "on");
}

void storeTypeAndCost(const LineWords &line) {
    for (const StoredType &type : kStoredTypes) {
        if (line.startsWith(5, type.word)) {
            storeOption("network_type", type.code);
        }
    }
    if (line.startsWith(6, "Cost")) {
        // Fixed by the interface: the word is stored with its line end.
        storeOption("cost", line.words[7]);
    }
}

} // namespace

void handle_ospf_show_interface(char *line) {
    if (line == nullptr) {
        return;
    }
    const LineWords words(line);
    if (words.count < kStateWords) {
        return;
    }
    if (words.startsWith(1, "is") && words.startsWith(2, "up")) {
        return beginInterface(words.words[0]);
    }
    if (words.count >= kTypeAndCostWords && words.startsWith(3, "Network") &&
        words.startsWith(4, "Type")) {
        storeTypeAndCost(words);
    }
}

// SPDX-License-Identifier: Apache-2.0
// Changes one value of a package in memory.

#include "change.h"

#include <cstring>

#include "records.h"

namespace frruci::uci {

namespace {

int setOption(Target &target, const char *value, bool &changed) {
    uci_option *option = target.option;
    if (option == nullptr) {
        target.option = appendOption(target.section, target.optionName, value);
        changed = target.option != nullptr;
        return changed ? UCI_OK : UCI_ERR_MEM;
    }
    if (option->type == UCI_TYPE_STRING && strcmp(option->v.string, value) == 0) {
        return UCI_OK;
    }
    changed = true;
    return setString(option, value);
}

int setSection(Target &target, const char *type, bool &changed) {
    if (target.section == nullptr) {
        target.section = appendSection(target.package, type, target.sectionName);
        changed = target.section != nullptr;
        return changed ? UCI_OK : UCI_ERR_MEM;
    }
    if (strcmp(target.section->type, type) == 0) {
        return UCI_OK;
    }
    changed = true;
    return setType(target.section, type);
}

} // namespace

void removeTarget(Target &target) {
    if (target.optionName != nullptr) {
        freeOption(target.option);
    } else {
        freeSection(target.section);
        target.section = nullptr;
    }
    target.option = nullptr;
}

int setValue(Target &target, const char *value, bool &changed) {
    changed = false;
    const bool isOption = target.optionName != nullptr;
    if (isOption && target.section == nullptr) {
        return UCI_ERR_INVAL;
    }
    if (*value == '\0') {
        changed = isOption ? target.option != nullptr : target.section != nullptr;
        if (changed) {
            removeTarget(target);
        }
        return UCI_OK;
    }
    if (isOption) {
        return setOption(target, value, changed);
    }
    return isWord(value) ? setSection(target, value, changed) : UCI_ERR_INVAL;
}

} // namespace frruci::uci

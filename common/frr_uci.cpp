// SPDX-License-Identifier: Apache-2.0
// The UCI store: one option set or read, a section added, the sections of a type walked.
// The line numbers in messages: Fixed by the interface.

#include "common/frr_uci.h"

#include <algorithm>

#include <uci.h>

#include "common/front_end.h"
#include "common/outside.h"
#include "common/store_commit.h"
#include "common/store_reading.h"
#include "common/text.h"
#include "common/uci_option.h"
#include "frruci/observe.h"

namespace {

using frruci::common::checked;
using frruci::common::equals;
using frruci::common::load;
using frruci::common::newContext;
using frruci::common::PendingLine;
using frruci::common::Reading;
using frruci::common::ReadLock;
using frruci::common::saveAndCommit;
using frruci::outside::happened;
using frruci::outside::happens;
using frruci::outside::rehearsed;

/// One store operation of frr_uci_init.
struct InitStep {
    int line;
    const char *operation;
    const char *package;
    const char *name;   ///< section to set, or name of the section to add
    const char *option; ///< null: add a section
    const char *value;  ///< value of the option, or type of the section
};

constexpr InitStep kInitSteps[] = {
    {12, "frr_uci_set",         "iptv", "iptv",    "handle_time", "20"  },
    {14, "frr_uci_set",         "ospf", "global",  "enable",      "en"  },
    {16, "frr_uci_set",         "ospf", "global2", "enable",      "en"  },
    {19, "frr_uci_add_section", "ospf", "cfg",     nullptr,       "abc" },
    {22, "frr_uci_add_section", "iptv", "cfg",     nullptr,       "abc" },
    {25, "frr_uci_add_section", "ospf", "cfg1",    nullptr,       "abc" },
    {28, "frr_uci_add_section", "ospf", "cfg",     nullptr,       "abc2"},
};

/// A text that libuci can compare with; libuci does not expect null names.
const char *named(const char *text) {
    return text == nullptr ? "" : text;
}

uci_element *lookUp(uci_context *context, uci_list *list, const char *name) {
    uci_element *element = nullptr;
    return uci_lookup_next(context, &element, list, named(name)) == UCI_OK ? element : nullptr;
}

/// The option's text; null when it or its section is missing or it is a list.
const char *textOf(uci_context *context, uci_package *package, const char *section,
                   const char *option) {
    // An element is the first member of its section.
    auto *found = reinterpret_cast<uci_section *>(lookUp(context, &package->sections, section));
    return frruci::common::optionText(context, found, named(option));
}

int32_t setInMemory(uci_context *context, uci_ptr &target) {
    const ReadLock lock(target.package);
    return checked(uci_set(context, &target), target.package);
}

int32_t setAndCommit(uci_context *context, uci_ptr &target) {
    const int32_t result = setInMemory(context, target);
    if (result != UCI_OK) {
        return result;
    }
    const std::size_t mark = *target.value == '\0' ? 1 : 0; // a removal has one
    const PendingLine line = {mark, target.section, target.option, target.value};
    return checked(saveAndCommit(context, target.p, line, false), target.package);
}

/// A commit that cannot read the file anew has released the package and not said so.
bool isLoaded(const uci_context *context, const uci_package *package) {
    const uci_list *const end = &context->root;
    const uci_list *node = end->next;
    while (node != end && reinterpret_cast<const uci_package *>(node) != package) {
        node = node->next;
    }
    return node != end;
}

int32_t runStep(const InitStep &step) {
    return step.option != nullptr ? frr_uci_set(step.package, step.name, step.option, step.value)
                                  : frr_uci_add_section(step.package, step.name, step.value);
}

} // namespace

int32_t frr_uci_set(const char *package, const char *section, const char *option,
                    const char *value) {
    uci_context *context = newContext();
    if (context == nullptr) {
        return UCI_ERR_MEM;
    }
    uci_ptr target = {};
    target.package = named(package);
    target.section = section;
    target.option = option;
    target.value = value;
    const int32_t result = happens(FRRUCI_STORE, target.package, value, -1, 0, section, option)
                               ? happened(setAndCommit(context, target))
                               : rehearsed();
    uci_free_context(context);
    return result;
}

int32_t frr_uci_get(const char *package, const char *section, const char *option, char *out,
                    uint16_t out_size) {
    if (out != nullptr) {
        std::fill_n(out, out_size, '\0');
    }
    const Reading reading(named(package));
    if (reading.package == nullptr) {
        return reading.result;
    }
    const char *text = textOf(reading.context, reading.package, section, option);
    if (text == nullptr) {
        return UCI_ERR_NOTFOUND;
    }
    if (out != nullptr && out_size > 0) {
        std::copy_n(text, strnlen(text, out_size - 1U), out);
    }
    return UCI_OK;
}

int32_t frr_uci_add_section(const char *package, const char *name, const char *type) {
    if (type == nullptr) {
        return UCI_ERR_INVAL;
    }
    if (!happens(FRRUCI_STORE, named(package), type, -1, 0, name)) {
        return rehearsed();
    }
    uci_context *context = newContext();
    if (context == nullptr) {
        return happened(UCI_ERR_MEM);
    }
    uci_package *loaded = nullptr;
    (void)load(context, named(package), &loaded); // every reason counts as not found below
    if (loaded == nullptr) {
        (void)record_log_act("frr_uci:%d:  ret=%d, uci_load %s\n", 102, 1, named(package));
        uci_free_context(context);
        return happened(UCI_ERR_NOTFOUND);
    }
    uci_section *section = nullptr;
    const int32_t result = uci_add_section(context, loaded, type, &section);
    if (result != UCI_OK) {
        (void)record_log_act("frr_uci:%d:  ret=%d, uci_add_section %d\n", 108, result, result);
    } else {
        // Fixed by the interface: the section stays anonymous, so the name shows in memory only.
        std::copy_n(named(name), std::min(strlen(named(name)), strlen(section->e.name)),
                    section->e.name);
    }
    // Fixed by the interface: failures to store are not reported; the result tells whether a
    // section was made.
    const PendingLine line = {1, section == nullptr ? "" : section->e.name, nullptr, type};
    (void)checked(saveAndCommit(context, loaded, line, true), named(package));
    if (isLoaded(context, loaded)) {
        (void)uci_unload(context, loaded); // fails for a null package only
    }
    uci_free_context(context);
    return happened(result);
}

void frr_uci_foreach_section(const char *package, const char *type,
                             frr_uci_section_visitor visitor) {
    const Reading reading(named(package), true); // Fixed by the interface
    if (reading.package == nullptr) {
        return; // nothing to visit
    }
    const uci_list *const end = &reading.package->sections;
    for (uci_list *node = reading.package->sections.next; node != end; node = node->next) {
        auto *section = reinterpret_cast<uci_section *>(node);
        if (visitor != nullptr && equals(section->type, named(type))) {
            (void)visitor(reading.context, section); // no meaning here
        }
    }
}

int32_t frr_uci_init(void) {
    int32_t result = UCI_OK;
    for (const InitStep &step : kInitSteps) {
        result = runStep(step);
        if (result != UCI_OK) {
            (void)record_log_act("frr_uci:%d:  ret=%d, %s %d\n", step.line, result, step.operation,
                                 result);
        }
    }
    return result;
}

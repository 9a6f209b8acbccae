// SPDX-License-Identifier: Apache-2.0
// The OSPF model as text, field by field, for tests that ask what a call has changed and what not.
#ifndef FRRUCI_TESTS_UNIT_OSPF_MODEL_STATE_H
#define FRRUCI_TESTS_UNIT_OSPF_MODEL_STATE_H

#include <cstdint>
#include <map>
#include <set>
#include <string>

#include "ospf/uc_ospf.h"

namespace model {

/// "10.0.0.1" of a word in network order.
std::string dotted(uint32_t address);

/// A word in network order.
uint32_t address(const char *text);

/// A 64-bit key word: the first word in the low half.
uint64_t words(uint32_t first, uint32_t second);

/// Whether the fixed clear loses slot 14's list: only where addresses reach beyond their fifth
/// byte.
inline bool fixedClearLosesList() {
    return reinterpret_cast<uintptr_t>(pucOspf->process[14].networks) >> 40 != 0;
}

/// What Changes says of that list then.
inline std::string lostListLine() {
    return fixedClearLosesList() ? "slot 14 redistributions: (cut)\n" : "";
}

/// Every field of the block that pucOspf points at, by a name such as "slot 0 adminDistance" or
/// "entry 3 cost". A list is one text, its records from the head on.
std::map<std::string, std::string> fields();

/// The lines in the order in which Changes gives them, each ended.
std::string lines(std::set<std::string> unordered);

/// What differs from the fields of an earlier moment, a line "name: new value" each; remembers the
/// present ones.
class Changes {
public:
    Changes() : before_(fields()) {}
    std::string take();

private:
    std::map<std::string, std::string> before_;
};

} // namespace model

#endif

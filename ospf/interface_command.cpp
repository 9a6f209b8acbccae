// SPDX-License-Identifier: Apache-2.0
// One table of the settings' words, and the routine that writes a command from a row.

#include "ospf/interface_command.h"

#include <iterator>

#include "common/table.h"
#include "common/text.h"

namespace frruci::ospf {

namespace {

using common::format;

/// What follows the words of a setting.
enum class Value : uint8_t { kNone, kNumber, kText, kDigestKey };

struct Row {
    InterfaceSetting key;
    Value value;
    const char *words;
};

constexpr Row kRows[] = {
    {kHello,       Value::kNumber,    "hello-interval"               },
    {kDead,        Value::kNumber,    "dead-interval"                },
    {kRetransmit,  Value::kNumber,    "retransmit-interval"          },
    {kTransmit,    Value::kNumber,    "transmit-delay"               },
    {kCost,        Value::kNumber,    "cost"                         },
    {kPriority,    Value::kNumber,    "priority"                     },
    {kNetworkType, Value::kText,      "network"                      },
    {kMtuIgnore,   Value::kNone,      "mtu-ignore"                   },
    {kPassive,     Value::kNone,      "passive"                      },
    {kAuthNull,    Value::kNone,      "authentication null"          },
    {kAuthSimple,  Value::kNone,      "authentication"               },
    {kAuthDigest,  Value::kNone,      "authentication message-digest"},
    {kAuthKey,     Value::kText,      "authentication-key"           },
    {kAuthMd5Key,  Value::kDigestKey, "message-digest-key"           },
};
static_assert(std::size(kRows) == kInterfaceSettings && common::isInOrder<&Row::key>(kRows));

/// What follows the words of the "no" form: of a digest key its id.
constexpr Value unsetValue(Value value) {
    return value == Value::kDigestKey ? Value::kNumber : Value::kNone;
}

} // namespace

void composeInterface(CommandText &command, InterfaceSetting setting, uint32_t set, int32_t number,
                      const char *text) {
    const char *no = set != 0 ? "" : "no ";
    const char *words = kRows[setting].words;
    const Value value = kRows[setting].value;
    switch (set != 0 ? value : unsetValue(value)) {
    case Value::kNone:
        return format(command, "%sip ospf %s", no, words);
    case Value::kNumber:
        return format(command, "%sip ospf %s %d", no, words, number);
    case Value::kText:
        return format(command, "%sip ospf %s %s", no, words, orEmpty(text));
    case Value::kDigestKey:
        return format(command, "%sip ospf %s %d md5 %s", no, words, number, orEmpty(text));
    }
}

void composeAuthentication(CommandText &command, uint32_t type, uint32_t set) {
    constexpr InterfaceSetting kTypes[] = {kAuthNull, kAuthSimple, kAuthDigest};
    command[0] = '\0';
    if (type < std::size(kTypes)) {
        composeInterface(command, kTypes[type], set);
    }
}

} // namespace frruci::ospf

// SPDX-License-Identifier: Apache-2.0
// The RIP model: access to the options of its records, a field named by its member pointer.

#include "rip/uc_rip.h"

#include <cstddef>
#include <cstring>
#include <type_traits>

#include "common/lock.h"
#include "common/status.h"
#include "rip/uc_rip_values.h"

namespace {

using namespace frruci::rip;
using frruci::common::kFailed;
using frruci::common::kSuccess;
using frruci::common::Locked;

constexpr Range kVersionRange = {0, 3};
constexpr Range kAuthTypeRange = {0, 2};

template <auto kField, typename Record> uint32_t loadField(Record *record, void *value) {
    *static_cast<uint32_t *>(value) = record->*kField;
    return kSuccess;
}

template <auto kField, Range kRange, typename Record>
uint32_t storeField(Record *record, void *value) {
    const uint32_t wanted = *static_cast<const uint32_t *>(value);
    if (!kRange.holds(wanted)) {
        return kFailed;
    }
    record->*kField = static_cast<std::remove_reference_t<decltype(record->*kField)>>(wanted);
    return kSuccess;
}

constexpr std::size_t kAuthCharacters = sizeof RipInterfaceNode::auth_str - 1;

uint32_t loadAuthText(RipInterfaceNode *record, void *value) {
    memcpy(value, record->auth_str, strlen(record->auth_str) + 1);
    return kSuccess;
}

uint32_t storeAuthText(RipInterfaceNode *record, void *value) {
    const auto *text = static_cast<const char *>(value);
    const std::size_t length = strlen(text);
    if (length > kAuthCharacters) {
        return kFailed;
    }
    memset(record->auth_str, 0, sizeof record->auth_str);
    memcpy(record->auth_str, text, length);
    return kSuccess;
}

template <auto kField> uint32_t readInstance(const char *vrfName, uint32_t *out) {
    return ucRipGlobalOption(vrfName, loadField<kField>, out);
}

template <auto kField, Range kRange> uint32_t writeInstance(const char *vrfName, uint32_t value) {
    return ucRipGlobalOption(vrfName, storeField<kField, kRange>, &value);
}

template <auto kField> uint32_t readInterface(RipNetIf key, uint32_t *out) {
    return ucRipIfOption(key, loadField<kField>, out);
}

template <auto kField, Range kRange> uint32_t writeInterface(RipNetIf key, uint32_t value) {
    return ucRipIfOption(key, storeField<kField, kRange>, &value);
}

} // namespace

uint32_t ucRipGlobalOption(const char *vrfName, RipVrfAccessor accessor, void *value) {
    RipVrfNode *record = nullptr;
    if (vrfName == nullptr || accessor == nullptr || value == nullptr ||
        ucRipVrfFindByName(vrfName, &record) != kSuccess) {
        return kFailed;
    }
    const Locked locked(ucRipVrfListMu);
    return accessor(record, value);
}

uint32_t ucRipIfOption(RipNetIf key, RipIfAccessor accessor, void *value) {
    RipInterfaceNode *record = nullptr;
    if (accessor == nullptr || value == nullptr || ucRipIfFindByNetIf(key, &record) != kSuccess) {
        return kFailed;
    }
    const Locked locked(ucRipIfListMu);
    return accessor(record, value);
}

uint32_t ucRipDefaultVersionGet(const char *vrfName, uint32_t *out) {
    return readInstance<&RipVrfNode::version>(vrfName, out);
}

uint32_t ucRipDefaultVersionSet(const char *vrfName, uint32_t value) {
    return writeInstance<&RipVrfNode::version, kVersionRange>(vrfName, value);
}

uint32_t ucRipTimerUpdateGet(const char *vrfName, uint32_t *out) {
    return readInstance<&RipVrfNode::update_timer>(vrfName, out);
}

uint32_t ucRipTimerUpdateSet(const char *vrfName, uint32_t value) {
    return writeInstance<&RipVrfNode::update_timer, kUpdateRange>(vrfName, value);
}

uint32_t ucRipTimerTimeoutGet(const char *vrfName, uint32_t *out) {
    return readInstance<&RipVrfNode::timeout_timer>(vrfName, out);
}

uint32_t ucRipTimerTimeoutSet(const char *vrfName, uint32_t value) {
    return writeInstance<&RipVrfNode::timeout_timer, kTimeoutRange>(vrfName, value);
}

uint32_t ucRipTimerGarbageGet(const char *vrfName, uint32_t *out) {
    return readInstance<&RipVrfNode::garbage_timer>(vrfName, out);
}

uint32_t ucRipTimerGarbageSet(const char *vrfName, uint32_t value) {
    return writeInstance<&RipVrfNode::garbage_timer, kGarbageRange>(vrfName, value);
}

uint32_t ucRipDefaultMetricGet(const char *vrfName, uint32_t *out) {
    return readInstance<&RipVrfNode::default_metric>(vrfName, out);
}

uint32_t ucRipDefaultMetricSet(const char *vrfName, uint32_t value) {
    return writeInstance<&RipVrfNode::default_metric, kMetricRange>(vrfName, value);
}

uint32_t ucRipDistanceGet(const char *vrfName, uint32_t *out) {
    return readInstance<&RipVrfNode::distance>(vrfName, out);
}

uint32_t ucRipDistanceSet(const char *vrfName, uint32_t value) {
    return writeInstance<&RipVrfNode::distance, kDistanceRange>(vrfName, value);
}

uint32_t ucRipAutosummGet(const char *vrfName, uint32_t *out) {
    return readInstance<&RipVrfNode::auto_summary>(vrfName, out);
}

uint32_t ucRipAutosummSet(const char *vrfName, uint32_t value) {
    return writeInstance<&RipVrfNode::auto_summary, kSwitchRange>(vrfName, value);
}

uint32_t ucRipInterfaceSendVersionGet(RipNetIf key, uint32_t *out) {
    return readInterface<&RipInterfaceNode::send_version>(key, out);
}

uint32_t ucRipInterfaceSendVersionSet(RipNetIf key, uint32_t value) {
    return writeInterface<&RipInterfaceNode::send_version, kVersionRange>(key, value);
}

uint32_t ucRipInterfaceRecvVersionGet(RipNetIf key, uint32_t *out) {
    return readInterface<&RipInterfaceNode::recv_version>(key, out);
}

uint32_t ucRipInterfaceRecvVersionSet(RipNetIf key, uint32_t value) {
    return writeInterface<&RipInterfaceNode::recv_version, kVersionRange>(key, value);
}

uint32_t ucRipInterfaceV2broadcastGet(RipNetIf key, uint32_t *out) {
    return readInterface<&RipInterfaceNode::v2_broadcast>(key, out);
}

uint32_t ucRipInterfaceV2broadcastSet(RipNetIf key, uint32_t value) {
    return writeInterface<&RipInterfaceNode::v2_broadcast, kSwitchRange>(key, value);
}

uint32_t ucRipInterfaceAuth_typeGet(RipNetIf key, uint32_t *out) {
    return readInterface<&RipInterfaceNode::auth_type>(key, out);
}

uint32_t ucRipInterfaceAuth_typeSet(RipNetIf key, uint32_t value) {
    return writeInterface<&RipInterfaceNode::auth_type, kAuthTypeRange>(key, value);
}

uint32_t ucRipInterfaceAuth_keyidGet(RipNetIf key, uint32_t *out) {
    return readInterface<&RipInterfaceNode::auth_keyid>(key, out);
}

uint32_t ucRipInterfaceAuth_keyidSet(RipNetIf key, uint32_t value) {
    return writeInterface<&RipInterfaceNode::auth_keyid, kKeyIdRange>(key, value);
}

uint32_t ucRipInterfaceSplitHorizonEnableGet(RipNetIf key, uint32_t *out) {
    return readInterface<&RipInterfaceNode::split_horizon>(key, out);
}

uint32_t ucRipInterfaceSplitHorizonEnableSet(RipNetIf key, uint32_t value) {
    return writeInterface<&RipInterfaceNode::split_horizon, kSwitchRange>(key, value);
}

// The poisoned-reverse pair reads and writes split horizon. Fixed by the interface.
uint32_t ucRipInterfacePoisonedReverseEnableGet(RipNetIf key, uint32_t *out) {
    return readInterface<&RipInterfaceNode::split_horizon>(key, out);
}

uint32_t ucRipInterfacePoisonedReverseEnableSet(RipNetIf key, uint32_t value) {
    return writeInterface<&RipInterfaceNode::split_horizon, kSwitchRange>(key, value);
}

uint32_t ucRipInterfacePassiveEnableGet(RipNetIf key, uint32_t *out) {
    return readInterface<&RipInterfaceNode::passive>(key, out);
}

uint32_t ucRipInterfacePassiveEnableSet(RipNetIf key, uint32_t value) {
    return writeInterface<&RipInterfaceNode::passive, kSwitchRange>(key, value);
}

uint32_t ucRipInterfaceAuth_strGet(RipNetIf key, char *out) {
    return ucRipIfOption(key, loadAuthText, out);
}

uint32_t ucRipInterfaceAuth_strSet(RipNetIf key, const char *text) {
    return ucRipIfOption(key, storeAuthText, const_cast<char *>(text)); // only read from
}

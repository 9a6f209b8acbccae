// SPDX-License-Identifier: Apache-2.0
// Clears the bytes and remembers the handle that they damage.

#include "ospf/uc_ospf_clear.h"

#include <cstddef>
#include <cstring>

#include "ospf/uc_ospf.h"

namespace frruci::ospf {

namespace {

constexpr std::size_t kDamagedSlot = 14;
constexpr std::size_t kKeptHandleBytes = 5;
constexpr std::size_t kFirstByte = offsetof(OspfModelBlock, process) +
                                   kDamagedSlot * sizeof(OspfProcessCfg) +
                                   offsetof(OspfProcessCfg, redistributions) + kKeptHandleBytes;
constexpr std::size_t kBytes = 8;
static_assert(kFirstByte == 1621);

dlist *damagedHandle = nullptr; // as it stands after the clear

} // namespace

void clearFixedBytes() {
    dlist *&handle = pucOspf->process[kDamagedSlot].redistributions;
    const dlist *before = handle;
    memset(reinterpret_cast<unsigned char *>(pucOspf) + kFirstByte, 0, kBytes);
    if (handle != before) {
        damagedHandle = handle;
    }
}

dlist *readableList(dlist *list) {
    return list != damagedHandle ? list : nullptr;
}

} // namespace frruci::ospf

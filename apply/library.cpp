// SPDX-License-Identifier: Apache-2.0
// Finds what is needed of the library, once.

#include "apply/library.h"

#include "host/library.h"

namespace frruci::apply {

namespace {

Library found;

struct Function {
    const char *name;
    void **address;
};

template <typename Pointer> void **addressOf(Pointer &pointer) {
    return reinterpret_cast<void **>(&pointer);
}

bool findAll() {
    const Function functions[] = {
        {"frruciObserve",           addressOf(found.observe)       },
        {"frr_uci_get",             addressOf(found.get)           },
        {"frr_uci_foreach_section", addressOf(found.forEachSection)},
        {"rip_uci_option_string",   addressOf(found.optionText)    },
        {"ospf_cfg_recovery",       addressOf(found.replayOspf)    },
        {"rip_cfg_recovery",        addressOf(found.replayRip)     },
        {"frr_process_init",        addressOf(found.prepareFolders)},
        {"zebra_enable",            addressOf(found.startZebra)    },
        {"ospf_enable",             addressOf(found.startOspf)     },
        {"rip_enable",              addressOf(found.startRip)      },
        {"process_exist",           addressOf(found.processes)     },
        {"process_ospf_global",     addressOf(found.switchOspf)    },
        {"process_rip_global",      addressOf(found.switchRip)     },
        {"frrVtyInit",              addressOf(found.beginViews)    },
        {"swRipInit",               addressOf(found.beginRip)      },
        {"swOspfInit",              addressOf(found.beginOspf)     },
    };
    for (const Function &function : functions) {
        *function.address = host::find(function.name);
        if (*function.address == nullptr) {
            return false;
        }
    }
    return true;
}

} // namespace

bool Library::begin() const {
    return beginViews() == 0 && beginRip() == 0 && beginOspf() == 0;
}

const Library &library() {
    return found;
}

bool ready() {
    return found.beginOspf != nullptr || (host::loadLibrary() && findAll());
}

} // namespace frruci::apply

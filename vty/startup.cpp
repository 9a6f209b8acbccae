// SPDX-License-Identifier: Apache-2.0
// What the host runs once before any handler: run-time folders and the standard views.

#include "vty/startup.h"

#include <cstdio>
#include <cstdlib>

#include "common/outside.h"
#include "vty/views.h"

namespace {

constexpr unsigned kFolderPauseSeconds = 1;

constexpr const char *kMakeFolder = "[ ! -d /var/tmp/frr ] && mkdir -p /var/tmp/frr ";
constexpr const char *kOpenPermissions[] = {
    "chmod -R 755 /tmp/vtyv", "chmod 755 /tmp/zebra*", "chmod 755 /tmp/zserv*",
    "chmod 755 /tmp/ospfd*",  "chmod 755 /tmp/ripd*",
};

struct StandardView {
    const char *name;
    const char *entryText;
    bool textInMessage; ///< Fixed by the interface: one view's failure message shows its text.
};

constexpr StandardView kStandardViews[] = {
    {"enable_view",                "enable",                                               false},
    {"configure_view",             "enable\nconfigure",                                    false},
    {"interface_view",             "enable\nconfigure\ninterface eth1.<vid>",              false},
    {"interface_v_view",           "enable\nconfigure\ninterface eth0.<vid>",              true },
    {"keychain_keyid_keystr_view", "enable\nconfigure\nkey chain <keychain>\nkey <keyid>", false},
};

} // namespace

int32_t frr_process_init(void) {
    frruci::outside::runShell(kMakeFolder);
    frruci::outside::pauseFor(kFolderPauseSeconds);
    for (const char *command : kOpenPermissions) {
        frruci::outside::runShell(command);
    }
    return 0;
}

int32_t frrVtyInit(void) {
    // An older registry is dropped as it is, and keeps its memory. Fixed by the interface.
    gPreCmdEntryList = dlistCreate(free, nullptr);
    for (const StandardView &view : kStandardViews) {
        const int32_t result = frrVtyViewReg(view.name, view.entryText);
        if (result != 0) {
            (void)printf("view register fail : %s",
                         view.textInMessage ? view.entryText : view.name); // nobody to tell
            return result;
        }
    }
    return 0;
}

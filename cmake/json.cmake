# SPDX-License-Identifier: Apache-2.0
# --json and rpcd need json-c. The builds for the router's processor have none, unless their toolchain brings it.

find_path(FRRUCI_JSON_C_HEADERS json-c/json.h)
find_library(FRRUCI_JSON_C json-c)
if(FRRUCI_JSON_C_HEADERS AND FRRUCI_JSON_C)
    set(FRRUCI_JSON ON)
endif()

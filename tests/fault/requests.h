/* SPDX-License-Identifier: Apache-2.0 */
/* What is asked of the library while its calls fail. */
#ifndef FRRUCI_TESTS_FAULT_REQUESTS_H
#define FRRUCI_TESTS_FAULT_REQUESTS_H

#include <cstdint>
#include <span>

namespace fault {

struct Request {
    const char *name;
    void (*run)(int32_t argc, char **argv);
    const char *words = "";
    unsigned flags = 0;
};

enum : unsigned {
    kStopped = 1, ///< no daemon is found in the process listing
    kManaged = 2, ///< mgmtd runs
    kView = 4,    ///< walks into a view, whose session stays open when a step fails
    kCold = 8,    ///< the models are not initialised
};

std::span<const Request> requests();

} // namespace fault

#endif

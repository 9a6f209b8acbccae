/* SPDX-License-Identifier: Apache-2.0 */
/* Memory that runs out at a chosen allocation; linked into a test program it takes the place of the
 * C library's malloc, calloc and realloc, also for the library's own calls. */
#ifndef FRRUCI_TESTS_SUPPORT_NO_MEMORY_H
#define FRRUCI_TESTS_SUPPORT_NO_MEMORY_H

namespace stage {

/// While this lives, the allocation number failing (1 is the next one) of this thread fails; all
/// others succeed.
class NoMemory {
public:
    explicit NoMemory(int failing);
    ~NoMemory();
    NoMemory(const NoMemory &) = delete;
    NoMemory &operator=(const NoMemory &) = delete;
    /// How many allocations are still to succeed before the one that fails; 0 after it.
    static int left();
};

} // namespace stage

#endif

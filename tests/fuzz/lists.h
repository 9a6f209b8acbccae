/* SPDX-License-Identifier: Apache-2.0 */
/* Takes the place of the library's lists by ones that go when they are given up, so that sequences
 * can be played for hours. */
#ifndef FRRUCI_TESTS_FUZZ_LISTS_H
#define FRRUCI_TESTS_FUZZ_LISTS_H

namespace fuzz {

/// Ends the target when the links or the count of a list are wrong.
void checkLists();

/// Gives up every list that the input has left.
void releaseLists();

} // namespace fuzz

#endif

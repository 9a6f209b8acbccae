/* SPDX-License-Identifier: Apache-2.0 */
/* What the library finds around it while its calls fail: daemons that answer, reply pipes, store
 * files and answer files, the same for every try. */
#ifndef FRRUCI_TESTS_FAULT_WORLD_H
#define FRRUCI_TESTS_FAULT_WORLD_H

#include <map>
#include <set>
#include <string>

namespace fault {

/// The text of each store file by its package.
using Store = std::map<std::string, std::string>;

/// Starts the daemons, in a process that ends with this one, and makes the reply pipes.
void build();
/// Puts the files back, and mgmtd there or not.
void reset(bool managed);
/// Holds the reply pipes open, so that this process can write into them.
void holdPipes();

Store store();
/// The files in the folders of the store and of temporary files.
std::set<std::string> files();
/// How many descriptors this process has open, and how many of them are sockets.
struct Descriptors {
    int all = 0;
    int sockets = 0;
};
Descriptors descriptors();

/// What a process listing prints, and the addresses of this machine.
const char *listingWithDaemons(const char *command);
const char *listingWithoutDaemons(const char *command);

} // namespace fault

#endif

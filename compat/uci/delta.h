// SPDX-License-Identifier: Apache-2.0
// Deltas: single changes of a package, recorded in memory, saved in /tmp/.uci, applied on reading.
#ifndef FRRUCI_COMPAT_UCI_DELTA_H
#define FRRUCI_COMPAT_UCI_DELTA_H

#include "store_file.h"
#include "uci.h"

namespace frruci::uci {

enum class Change { Add, Remove, Set, Rename, Reorder, ListAdd, ListRemove };

/// Records a change in the package; option and value may be null.
int recordDelta(uci_package *package, Change change, const char *section, const char *option,
                const char *value);
void forgetDeltas(uci_package *package);

/// The recorded deltas as lines of a delta file.
void makeLines(Text &lines, uci_package *package);

/// Appends the recorded deltas to the package's delta file and forgets them.
int saveDeltas(uci_package *package);

/// Applies the lines of the package's delta files, one in each folder of the context, and counts
/// in applied how many could be. A missing file counts as empty. The file that saveDeltas appends
/// to is opened and locked in dropped, when that is not null, and stays so.
int applySavedDeltas(uci_package *package, LockedFile *dropped, int &applied);

/// Applies the lines of a delta file's text, skipping bad ones; adds to applied how many were not.
/// Only memory can fail it: UCI_ERR_MEM.
int applyDeltas(uci_package *package, const char *text, std::size_t length, int &applied);

} // namespace frruci::uci

#endif

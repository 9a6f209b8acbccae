/* SPDX-License-Identifier: Apache-2.0 */
/* Commits to the UCI store that lose nothing. libuci does not notice a write that fails, and drops
 * the pending changes first; so it writes its text into memory's file system, where the text is
 * looked at, and the store's own file is replaced from here, each step checked. */
#ifndef FRRUCI_COMMON_STORE_COMMIT_H
#define FRRUCI_COMMON_STORE_COMMIT_H

#include <cstddef>
#include <cstdint>

#include <uci.h>

namespace frruci::common {

/// A descriptor, or -1, closed at the end of its scope, which also releases its lock.
class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() { take(-1); }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    int number() const { return number_; }
    /// Closes what it has and goes on with another.
    void take(int number);

private:
    int number_;
};

/// Keeps writers away from the committed file of a package given by name while it is read: libuci
/// would read the file of before a commit together with the pending changes of after it.
class ReadLock {
public:
    explicit ReadLock(const char *package);

private:
    Descriptor file_;
};

/// Releases the locks of this process on the package's files. libuci forgets open files when memory
/// runs out, and the next change would wait for them without end.
void releaseLocks(const char *package);

/// What a change comes to as a line of the pending changes.
struct PendingLine {
    std::size_t mark; ///< characters before the package's name
    const char *section;
    const char *option; ///< may be null
    const char *value;  ///< empty: a removal
};

/// uci_save and uci_commit of a package in which this one change was made. Either the file is
/// replaced by the whole new text or it stays as it is, and pending changes are given up only when
/// they are in the file. With evenUnsaved a failed save is committed nevertheless.
/// Result: libuci's codes; UCI_ERR_IO also when something could not be written.
int32_t saveAndCommit(uci_context *context, uci_package *&package, const PendingLine &line,
                      bool evenUnsaved);

} // namespace frruci::common

#endif

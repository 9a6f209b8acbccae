/* SPDX-License-Identifier: Apache-2.0 */
/* The program's folder, its lock across processes, and the size of the log. */
#ifndef FRRUCI_HOST_LOCK_H
#define FRRUCI_HOST_LOCK_H

namespace frruci::host {

inline constexpr const char *kFolder = "/tmp/tmp";

/// Moves a log of more than 512 KiB to data.1.
void moveLongLog();

/// Makes /tmp/tmp root's, 0755. False when it cannot be used, which has been said.
bool readyFolder();

/// Held while one request at a time may go on; readies the folder and waits for others.
class Lock {
public:
    Lock();
    ~Lock();
    Lock(const Lock &) = delete;
    Lock &operator=(const Lock &) = delete;

    /// False when there is no lock to be had; it has been said why.
    bool isHeld() const { return fd_ >= 0; }

private:
    int fd_;
};

} // namespace frruci::host

#endif

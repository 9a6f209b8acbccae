/* SPDX-License-Identifier: Apache-2.0 */
/* The end of patience: seconds without progress, then the program ends and says who did not answer.
 */
#ifndef FRRUCI_HOST_TIMEOUT_H
#define FRRUCI_HOST_TIMEOUT_H

namespace frruci::host {

inline constexpr unsigned kDefaultTimeoutSeconds = 10;

/// Takes the text of --timeout; false when it is no number of seconds from 1 to 86400.
bool setTimeout(const char *text);
unsigned timeoutSeconds();

/// Starts the seconds anew, while a Waiting lives; a pause that is wanted comes on top.
void progress(unsigned pauseSeconds);

/// While it lives, the program ends with kNoAnswer once the seconds have gone by.
class Waiting {
public:
    enum For {
        kForDaemons,
        kForOthers, ///< other requests: without a limit unless the user gave one
    };
    explicit Waiting(For whom);
    ~Waiting();
    Waiting(const Waiting &) = delete;
    Waiting &operator=(const Waiting &) = delete;
};

} // namespace frruci::host

#endif

/* SPDX-License-Identifier: Apache-2.0 */
/* What the front-end's handlers and the replay of the stored configuration have in common. */
#ifndef FRRUCI_OSPF_FRR_OSPF_SETTINGS_H
#define FRRUCI_OSPF_FRR_OSPF_SETTINGS_H

#include <cstddef>
#include <cstdint>
#include <span>

namespace frruci::ospf {

inline constexpr const char *kWanWord = "wan";
inline constexpr const char *kEnableWord = "enable";

inline constexpr uint16_t kNoVrf = 0;

/// Selectors of the instances, in the order in which a network goes to them.
inline constexpr uint32_t kLanThenWan[] = {0, 1};

/// Fixed by the interface: the "no" form of passive is never replayed.
enum class Replay : uint8_t { kAlways, kWhenOne };

/// One interface setting with a single number; the word is both the handler's keyword and the
/// name of the stored option.
struct InterfaceKeyword {
    const char *word;
    uint32_t (*apply)(const char *name, int32_t wan, int32_t value);
    Replay replay;
    int line; ///< of the row, for the log
};

/// The setting of a keyword; null when there is none.
const InterfaceKeyword *findInterfaceKeyword(const char *word);

/// In the order in which the replay sends them.
std::span<const InterfaceKeyword> interfaceKeywords();

inline constexpr const char *kAuthenticationWord = "auto_type";

/// Texts of the process-wide options, in the order of the handler's words.
struct ProcessOptions {
    const char *distance;
    const char *rfcCompatible;
    const char *spfDelay;
    const char *spfInitialHold;
    const char *spfMaximumHold;
    const char *maximumPaths;
    const char *passiveDefault;
};

/// Logs a status other than 0; line is that of the call.
using FailureLog = void (*)(uint32_t status, const char *what, int line);

/// Sends every process-wide option, whatever became of those before it; failures go to log.
void applyProcessOptions(const ProcessOptions &options, FailureLog log);

} // namespace frruci::ospf

#endif

/* SPDX-License-Identifier: Apache-2.0 */
/* The kinds of lines that frruci owns: what the replays of the store can send. All other lines of a
 * daemon's configuration are foreign. */
#ifndef FRRUCI_APPLY_KINDS_H
#define FRRUCI_APPLY_KINDS_H

#include <cstddef>
#include <cstdint>
#include <span>

namespace frruci::apply {

/// Whose configuration a line belongs to. In FRRouting 10 mgmtd holds that of ripd and zebra.
enum class Target : std::uint8_t { Ospfd, Ripd, Nhrpd, Zebra };

/// Where a line stands, in the order in which places are gone through. Settings of interfaces come
/// before networks: a broadcast interface waits as long as its dead interval said when it was
/// enabled.
enum class Place : std::uint8_t { Chain, Key, Interface, Router, Top, Foreign };

/// What takes a line away.
enum class Removal : std::uint8_t {
    Name,     ///< "no" and its name
    Whole,    ///< "no" and the whole line
    Opposite, ///< the line without its "no", or with one
    Default,  ///< the line of the default
};

/// What is special about a kind.
enum Trait : std::uint8_t {
    kPlain = 0,
    kOpens = 1,       ///< the line opens a context
    kRemoveFirst = 2, ///< a new value is taken only after the old one was removed
    kOwnType = 4,     ///< the interface's own type is not shown by versions before 10
    kMaximum = 8,     ///< the greatest value is not shown; which it is depends on the build
};

/// One kind. A pattern is words: literal ones, `[ … ]` around optional ones, and
///   N  a number; 0 stands for an option that is not stored
///   Z  a number, 0 too          A  an address
///   P  a prefix, its host bits cleared
///   R  an area, as a number     C  a key chain of the replay
///   W  any word                 K  a key; K8 and K16 are cut to so many bytes
struct Kind {
    const char *pattern;
    const char *omitted; ///< a whole line, or the end of one, that the daemon does not show
    Target target;
    Place place;
    std::uint8_t words; ///< leading words, "no" not counted, that tell a line from others
    Removal removal;
    std::uint8_t traits;
};

std::span<const Kind> kinds();

enum class Found : std::uint8_t {
    No,      ///< not a line of this kind
    Yes,     ///<
    Absent,  ///< what a replay sends when there is nothing in the store
    Invalid, ///< begins like a line of this kind, and cannot be one
};

constexpr std::size_t kLineBytes = 512;

/// A line as its daemon shows it, and where its name is in it.
struct Line {
    const Kind *kind;
    char text[kLineBytes];
    std::size_t nameAt;
    std::size_t nameBytes;
};

/// Which kind of the place a line is, the line in the daemon's spelling. Invalid sets the kind too.
Found recognise(Target target, Place place, const char *text, Line &line);

/// What takes the line away.
void formatRemoval(const Kind &kind, const char *text, std::size_t nameAt, std::size_t nameBytes,
                   char (&command)[kLineBytes]);

/// True when a word of this kind's lines is a secret.
bool hasSecret(const Kind &kind);

} // namespace frruci::apply

#endif

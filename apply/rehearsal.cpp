// SPDX-License-Identifier: Apache-2.0
// Replays the store in a child process, because a replay changes the library's models. The child
// writes what it sees into a pipe: a letter and two texts, each ended by a NUL.

#include "apply/rehearsal.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "apply/library.h"
#include "apply/memory.h"
#include "frruci/observe.h"
#include "host/nhrp_options.h"
#include "host/streams.h"
#include "host/text.h"

struct uci_context;
struct uci_section;

namespace frruci::apply {

namespace {

constexpr std::size_t kValueBytes = 64;
constexpr const char *kEnabled = "enable";

using Visitor = int32_t(uci_context *, uci_section *);

/// What a replay sends for an option of an interface that is not stored, where the daemon takes it.
struct AbsentOption {
    const char *option;
    const char *line;
};

constexpr AbsentOption kAbsentOptions[] = {
    {"network_type", "ip ospf network broadcast"  },
    {"auto_type",    "ip ospf authentication null"},
    {"priority",     "ip ospf priority 0"         },
};

constexpr const char *kSpfOptions[] = {"spf_delay", "spf_hold_init", "spf_hold_max"};

// ---- in the child ----

/// Where the child tells, in pieces of this size.
int told = -1;
char pieces[16384];
std::size_t pieceBytes = 0;

void tellPieces() {
    for (const char *at = pieces; pieceBytes > 0;) {
        const ssize_t written = write(told, at, pieceBytes);
        if (written <= 0) {
            _exit(1); // nobody listens
        }
        at += written;
        pieceBytes -= static_cast<std::size_t>(written);
    }
}

void add(const char *bytes, std::size_t count) {
    while (count > 0) {
        const std::size_t room = sizeof pieces - pieceBytes;
        const std::size_t now = count < room ? count : room;
        memcpy(pieces + pieceBytes, bytes, now);
        pieceBytes += now;
        bytes += now;
        count -= now;
        if (pieceBytes == sizeof pieces) {
            tellPieces();
        }
    }
}

void tell(Told what, Target target, const char *where, const char *text) {
    const char head[] = {static_cast<char>(what),
                         static_cast<char>('0' + static_cast<int>(target))};
    add(head, sizeof head);
    add(where, strlen(where) + 1);
    add(text, strlen(text) + 1);
}

/// Every session opens, and every command is accepted, as by a router where nothing is configured
/// yet. Networks are refused, which a replay ignores: a model would look for each of them among all
/// before.
void see(FrruciEvent *event, void *) {
    static constexpr char kAccepted[] = {0, 0, 0, 0};
    static constexpr char kRefused[] = {0, 0, 0, 1};
    if (event->kind == FRRUCI_CONNECT) {
        event->fd = fcntl(told, F_DUPFD_CLOEXEC, 0);
        tell(Told::Session, Target::Ospfd, "", event->place);
    } else if (event->kind == FRRUCI_COMMAND) {
        event->answer = host::startsWith(event->text, "network ") ? kRefused : kAccepted;
        event->answer_size = sizeof kAccepted;
        tell(Told::Command, Target::Ospfd, "", event->text);
    }
}

bool isStored(const char *package, const char *section, const char *option,
              char (&value)[kValueBytes]) {
    return library().get(package, section, option, value, kValueBytes) == 0;
}

int32_t visitInterface(uci_context *context, uci_section *section) {
    const char *name = library().optionText(context, section, "interface");
    if (name == nullptr) {
        return 0;
    }
    char where[kLineBytes];
    (void)snprintf(where, sizeof where, "interface %s", name);
    for (const AbsentOption &absent : kAbsentOptions) {
        if (library().optionText(context, section, absent.option) == nullptr) {
            tell(Told::Absent, Target::Ospfd, where, absent.line);
        }
    }
    return 0;
}

/// Without its metric the default route has the daemon's, not 0.
void tellDefaultRoute() {
    char originate[kValueBytes];
    char value[kValueBytes];
    const auto read = [](const char *option, char(&into)[kValueBytes]) {
        return isStored("ospf", "advertise_cfg", option, into);
    };
    if (!read("originate", originate) || strcmp(originate, kEnabled) != 0 ||
        read("metric", value)) {
        return;
    }
    const bool always = read("always", value) && strcmp(value, kEnabled) == 0;
    const int type = read("metric_type", value) ? static_cast<int>(strtol(value, nullptr, 10)) : 0;
    char line[kLineBytes];
    (void)snprintf(line, sizeof line, "default-information originate%s metric-type %d",
                   always ? " always" : "", type);
    tell(Told::Added, Target::Ospfd, "router ospf", line);
}

void tellAbsentOspf() {
    library().forEachSection("ospf", "interface", visitInterface);
    char value[kValueBytes];
    for (const char *option : kSpfOptions) {
        if (!isStored("ospf", "ospf_cfg", option, value)) {
            tell(Told::Absent, Target::Ospfd, "router ospf", "timers throttle spf");
            break;
        }
    }
    tellDefaultRoute();
}

/// An option of NHRP that is stored.
bool isNhrpStored(const char *option, char (&value)[kValueBytes]) {
    return isStored(host::kNhrpPackage, host::kNhrpSection, option, value);
}

bool hasTunnel(char (&name)[kValueBytes]) {
    return isNhrpStored(host::kNhrpTunnel, name) && !host::equals(name, host::kNhrpOff);
}

void tellNhrpOption(const host::NhrpOption &option, const char *value, const char *tunnel) {
    const bool off = host::equals(value, host::kNhrpOff);
    host::Text line;
    host::addNhrpLine(line, option, off ? "" : value);
    tell(off ? Told::Off : Told::Added,
         option.context == host::NhrpContext::kZebra ? Target::Zebra : Target::Nhrpd,
         option.context == host::NhrpContext::kGlobal ? "" : tunnel, line.get());
}

void tellNhrp() {
    char name[kValueBytes];
    (void)hasTunnel(name); // the protocol is on
    host::Text tunnel;
    tunnel.addf("interface %s", name);
    for (const host::NhrpOption &option : host::nhrpOptions()) {
        char value[kValueBytes];
        if (isNhrpStored(option.name, value)) {
            tellNhrpOption(option, value, tunnel.get());
        }
    }
}

[[noreturn]] void replay(const Protocol &protocol, int pipe) {
    told = pipe;
    if (!library().begin()) {
        _exit(1);
    }
    if (strcmp(protocol.name, "ospf") == 0) {
        (void)library().replayOspf(); // its result has no meaning
        tellAbsentOspf();
    } else if (strcmp(protocol.name, "rip") == 0) {
        library().replayRip();
    } else {
        tellNhrp();
    }
    tell(Told::End, Target::Ospfd, "", "");
    tellPieces();
    _exit(0);
}

// ---- in the parent ----

/// Everything from the pipe, with a NUL behind it; released with free.
char *readAll(int pipe, std::size_t &size) {
    char *all = nullptr;
    std::size_t room = 0;
    size = 0;
    for (;;) {
        if (room < size + 4096 + 1) {
            room = (size + 4096) * 2;
            all = static_cast<char *>(host::grow(all, room));
        }
        const ssize_t count = read(pipe, all + size, room - size - 1);
        if (count <= 0) {
            all[size] = '\0';
            return all;
        }
        size += static_cast<std::size_t>(count);
    }
}

bool hearAll(const char *at, const char *end, void (*hear)(const Word &, void *), void *context) {
    while (at + 2 < end) {
        Word word = {static_cast<Told>(at[0]), static_cast<Target>(at[1] - '0'), at + 2, nullptr};
        word.text = word.where + strlen(word.where) + 1;
        if (word.told == Told::End) {
            return true;
        }
        hear(word, context);
        at = word.text + strlen(word.text) + 1;
    }
    return false;
}

} // namespace

Switch storedSwitch(const Protocol &protocol) {
    char value[kValueBytes];
    if (strcmp(protocol.name, "nhrp") == 0) {
        return hasTunnel(value) ? Switch::On : Switch::Unsaid;
    }
    if (!isStored(protocol.package, "global", "status", value)) {
        return Switch::Unsaid;
    }
    return strcmp(value, "on") == 0 ? Switch::On : Switch::Off;
}

namespace {

/// The store's packages stay loaded for as long as this lives, so that the child finds what its
/// parent has read.
class Observed {
public:
    Observed() {
        const FrruciObserver observer = {sizeof observer, 1, see, nullptr};
        isSet = library().observe(&observer) == 0;
    }
    ~Observed() { (void)library().observe(nullptr); } // cannot fail
    Observed(const Observed &) = delete;
    Observed &operator=(const Observed &) = delete;

    bool isSet;
};

/// Everything that a child tells; null when it did not come to its end. Released with free.
char *tellings(const Protocol &protocol, std::size_t &size) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        return nullptr;
    }
    (void)fflush(host::out);
    const pid_t child = fork();
    if (child == 0) {
        // So that it ends, with the lock that it was born with, when its parent is killed.
        (void)close(ends[0]);
        replay(protocol, ends[1]);
    }
    (void)close(ends[1]);
    char *all = readAll(ends[0], size);
    (void)close(ends[0]);
    int status = 1;
    if (child > 0 && waitpid(child, &status, 0) == child && status == 0) {
        return all;
    }
    free(all);
    return nullptr;
}

} // namespace

bool rehearse(const Protocol &protocol, Switch &stored,
              void (*hear)(const Word &word, void *context), void *context) {
    const Observed observed;
    stored = storedSwitch(protocol);
    if (stored != Switch::On) {
        return true;
    }
    std::size_t size = 0;
    char *all = observed.isSet ? tellings(protocol, size) : nullptr;
    const bool heard = all != nullptr && hearAll(all, all + size, hear, context);
    free(all);
    return heard;
}

} // namespace frruci::apply

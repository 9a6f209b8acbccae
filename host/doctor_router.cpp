// SPDX-License-Identifier: Apache-2.0
// The doctor's look at everything but the daemons.

#include <cerrno>
#include <cstdio>
#include <initializer_list>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include "host/daemons.h"
#include "host/doctor.h"
#include "host/handlers.h"
#include "host/interfaces.h"
#include "host/lock.h"

namespace frruci::host {

namespace {

constexpr const char *kConfigFolder = "/etc/config";
constexpr unsigned long long kLeastFree = 64ULL * 1024;
constexpr off_t kLongLog = 512L * 1024;

/// A program that the library runs, and what happens without it.
struct Tool {
    const char *name;
    const char *without;
};

constexpr Tool kTools[] = {
    {"iptables",  "RIP's UDP port 520 is not opened: install iptables"        },
    {"conntrack", "old OSPF entries stay when OSPF starts: install conntrack" },
    {"lua",       "VLAN questions are not answered: install lua"              },
    {"ps",        "no daemon is found or stopped: install ps"                 },
    {"killall",   "NHRP cannot be restarted: install killall"                 },
    {"ifconfig",  "the router's own addresses are not known: install ifconfig"},
    {"vnete",     "no second ospfd is started; most routers need none"        },
};

void examineTools(Findings &findings) {
    for (const Tool &tool : kTools) {
        const bool there = isInstalled(tool.name);
        add(findings, there ? Level::kOk : Level::kWarning, tool.name, "%s%s",
            there ? "is there" : "is missing: ", there ? "" : tool.without);
    }
    if (isInstalled("nft") && isInstalled("fw4")) {
        add(findings, Level::kWarning, "nftables",
            "is the firewall: a rule added by iptables may not count; open UDP port 520 there");
    }
}

void examineModules(Findings &findings) {
    for (const char *module :
         {"luci.controller.admin.lan", "luci.controller.admin.interface_wan"}) {
        Text command;
        command.addf("lua -e 'require \"%s\"' >/dev/null 2>&1", module);
        if (isInstalled("lua") && system(command.get()) == 0) {
            add(findings, Level::kOk, "VLAN questions", "%s is there", module);
        } else {
            add(findings, Level::kWarning, "VLAN questions",
                "%s is missing: every VLAN counts as WAN; install frruci-vlan", module);
        }
    }
}

void examineNames(const char *package, Findings &findings) {
    Text path;
    path.addf("%s/%s", kConfigFolder, package);
    FILE *file = fopen(path.get(), "re");
    char line[256];
    while (file != nullptr && fgets(line, sizeof line, file) != nullptr) {
        char name[64] = "";
        if (sscanf(line, " option interface %*['\"]%63[^'\"]", name) == 1 && !isVlanOfPort(name)) {
            add(findings, Level::kWarning, "interfaces",
                "%s has %s, which is no VLAN like eth1.2: its side cannot be told", path.get(),
                name);
        }
    }
    if (file != nullptr) {
        (void)fclose(file); // only read from
    }
}

void examineFolder(Findings &findings) {
    struct stat found = {};
    if (lstat(kFolder, &found) != 0) {
        add(findings, Level::kOk, kFolder, "is not there yet; the first request makes it");
    } else if (!S_ISDIR(found.st_mode)) {
        add(findings, Level::kFault, kFolder, "is no folder: remove it");
    } else if (found.st_uid != 0 || (found.st_mode & 0022) != 0) {
        add(findings, Level::kWarning, kFolder,
            "others may write there; the next request makes it root's");
    } else {
        add(findings, Level::kOk, kFolder, "is root's");
    }
}

void examinePipes(Findings &findings) {
    for (std::size_t i = 0; i < kHandlerCount; ++i) {
        const char *name = kHandlers[i].pipe;
        struct stat found = {};
        Text path;
        path.addf("%s/%s", kFolder, name);
        const bool toldBefore = i > 0 && equals(name, kHandlers[i - 1].pipe);
        if (!toldBefore && lstat(path.get(), &found) == 0 && !S_ISFIFO(found.st_mode)) {
            add(findings, Level::kFault, name, "%s is no pipe: remove it", path.get());
        }
    }
}

void examineStore(Findings &findings) {
    struct statvfs room = {};
    if (statvfs(kConfigFolder, &room) != 0 || access(kConfigFolder, W_OK) != 0) {
        add(findings, Level::kFault, kConfigFolder, "cannot be written: %s", strerror(errno));
        return;
    }
    const unsigned long long free = static_cast<unsigned long long>(room.f_bavail) * room.f_frsize;
    if (free < kLeastFree) {
        add(findings, Level::kFault, kConfigFolder, "has %llu bytes left: make room", free);
    } else {
        add(findings, Level::kOk, kConfigFolder, "has %llu KiB left", free / 1024);
    }
    for (const char *package : {"ospf", "rip", "nhrp"}) {
        Text path;
        path.addf("%s/%s", kConfigFolder, package);
        if (access(path.get(), R_OK | W_OK) != 0) {
            add(findings, Level::kFault, package, "%s: %s", path.get(), strerror(errno));
        }
    }
}

void examineLog(Findings &findings) {
    Text path;
    path.addf("%s/data", kFolder);
    struct stat found = {};
    if (lstat(path.get(), &found) != 0) {
        add(findings, Level::kOk, "log", "%s is not there yet", path.get());
    } else if (!S_ISREG(found.st_mode)) {
        add(findings, Level::kFault, "log", "%s is no file: remove it", path.get());
    } else if (found.st_size > kLongLog) {
        add(findings, Level::kWarning, "log", "%s has %lld KiB, and is not moved away", path.get(),
            static_cast<long long>(found.st_size / 1024));
    } else {
        add(findings, Level::kOk, "log", "%s has %lld KiB", path.get(),
            static_cast<long long>(found.st_size / 1024));
    }
}

/// A daemon's vty port, that anybody may reach who reaches the router.
struct Port {
    unsigned number;
    const char *daemon;
};

constexpr Port kVtyPorts[] = {
    {2601, "zebra"},
    {2602, "ripd" },
    {2604, "ospfd"},
    {2610, "nhrpd"},
};

constexpr unsigned long kListening = 0x0a;

/// The local port of a line "sl: ADDRESS:PORT ADDRESS:PORT STATE", all in hexadecimal digits; 0
/// when nobody listens there.
unsigned long listeningPort(char *line) {
    char *rest = nullptr;
    (void)strtok_r(line, " ", &rest);
    const char *local = strtok_r(nullptr, " ", &rest);
    (void)strtok_r(nullptr, " ", &rest);
    const char *state = strtok_r(nullptr, " ", &rest);
    const char *port = local == nullptr ? nullptr : strchr(local, ':');
    const bool listens = state != nullptr && strtoul(state, nullptr, 16) == kListening;
    return port == nullptr || !listens ? 0 : strtoul(port + 1, nullptr, 16);
}

void examinePorts(const char *table, Findings &findings) {
    FILE *file = fopen(table, "re");
    char line[256];
    while (file != nullptr && fgets(line, sizeof line, file) != nullptr) {
        const unsigned long port = listeningPort(line);
        for (const Port &row : kVtyPorts) {
            if (row.number == port) {
                add(findings, Level::kWarning, "vty ports",
                    "%s listens on TCP port %u: start it with -P 0", row.daemon, row.number);
            }
        }
    }
    if (file != nullptr) {
        (void)fclose(file); // only read from
    }
}

} // namespace

void examineRouter(Findings &findings) {
    examineTools(findings);
    examineModules(findings);
    examineNames("ospf", findings);
    examineNames("rip", findings);
    examineFolder(findings);
    examinePipes(findings);
    examineStore(findings);
    examineLog(findings);
    examinePorts("/proc/net/tcp", findings);
    examinePorts("/proc/net/tcp6", findings);
}

} // namespace frruci::host

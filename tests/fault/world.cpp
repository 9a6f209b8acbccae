// SPDX-License-Identifier: Apache-2.0
// Daemons, pipes and files for the calls that fail.

#include "tests/fault/world.h"

#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <poll.h>
#include <set>
#include <sstream>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <vector>

#include <csignal>

namespace fault {

namespace {

namespace fs = std::filesystem;

constexpr const char *kDaemons[] = {"zebra", "ospfd", "ripd", "nhrpd", "mgmtd"};
constexpr const char *kManager = "/var/mgmtd.vty";
constexpr const char *kManagerAway = "/var/mgmtd.away";
constexpr const char *kPipes[] = {"ospf_pipe_c2lua", "ospf_pipe_c2lua_neighbor",
                                  "ospf_pipe_c2lua_database", "nhrp_pipe_c2lua",
                                  "nhrp_pipe_c2lua_cache"};

struct File {
    const char *path;
    const char *text;
};

constexpr File kFiles[] = {
    {"/tmp/cli_vid",     "1\n"                                               },
    {"/tmp/cli_ipaddr",  "none\n"                                            },
    {"/etc/config/iptv", "\nconfig iptv 'iptv'\n\toption handle_time '5'\n\n"},
    {"/etc/config/nhrp", "\nconfig nhrp 'sdwan'\n\toption enable '1'\n\n"    },
    {"/etc/config/ospf", R"(
config global 'global'
	option status 'on'
	option router_id '1.1.1.1'

config advertise_cfg 'advertise_cfg'
	option originate 'enable'
	option always 'enable'
	option metric '20'
	option metric_type '1'

config ospf_cfg 'ospf_cfg'
	option distance '120'
	option rfc_compatible 'enable'
	option spf_delay '10'
	option spf_hold_init '100'
	option spf_hold_max '2000'
	option max_path '8'
	option passive_def 'enable'

config interface 'eth1_2'
	option ns 'wan'
	option interface 'eth1.2'
	option cost '20'
	option auto_type '1'
	option simple_key 'secret'

config network
	option ip '10.0.0.0'
	option wildcard_mask '0.255.255.255'
	option area_id '5'

)"                                                 },
    {"/etc/config/rip",  R"(
config global 'global'
	option status 'on'

config config 'config'
	option rip_version 'ripv2'
	option redistribute_static 'enable'
	option redistribute_static_metric '4'

config network
	option ipaddress '10.0.0.0'
	option mask '255.0.0.0'

config interface 'eth1_20'
	option interface 'eth1.20'
	option split_horizon_mode 'poison_reverse'
	option send_version 'ripv2'
	option receive_version 'both'
	option authen_mode 'md5'
	option key_id '9'
	option key 'secret'

)"                                                 },
};

/// What a daemon shows; all other commands have no text.
constexpr File kShown[] = {
    {"show ip ospf neighbor",  "10.0.0.1 1 Full/DR 38s 10.1.2.2 eth1.2:10.1.2.1\n"
                              "10.0.0.2 1 Full/DR 38s 10.1.2.3 eth1.2:10.1.2.1\n"},
    {"show ip ospf database",  "       OSPF Router with ID (1.1.1.1)\n"
                              "                Router Link States (Area 0.0.0.0)\n"
                              "1.1.1.1 1.1.1.1 55 0x80000003 0x1234 1\n"         },
    {"show ip ospf interface", "eth1.2 is up\n  Internet Address 10.1.2.1/24\n"                               },
    {"show ip rip status",     "eth1.20 2 1 2\n"                                                              },
    {"show ip nhrp cache",     "{\n  \"peer\": \"10.0.0.1\"\n}\n"                                             },
};

void write(const std::string &path, const std::string &text) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
}

std::string textOf(const fs::path &path) {
    std::ostringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    return bytes.str();
}

// ---- The daemons ----

int listenAt(const std::string &path) {
    const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    (void)unlink(path.c_str());
    if (bind(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0 ||
        listen(descriptor, 128) != 0) {
        abort();
    }
    return descriptor;
}

void answer(int session, const std::string &command) {
    std::string text;
    for (const File &shown : kShown) {
        if (command.rfind(shown.path, 0) == 0) {
            text = shown.text;
        }
    }
    text.append(4, '\0');                                        // the marker and completion code 0
    (void)send(session, text.data(), text.size(), MSG_NOSIGNAL); // who asked may be gone
}

struct Session {
    int descriptor;
    std::string received;
};

/// False at its end.
bool serve(Session &session) {
    char bytes[1024];
    const ssize_t count = recv(session.descriptor, bytes, sizeof bytes, MSG_DONTWAIT);
    if (count <= 0) {
        return false;
    }
    session.received.append(bytes, static_cast<std::size_t>(count));
    for (std::size_t end = 0; (end = session.received.find('\0')) != std::string::npos;) {
        answer(session.descriptor, session.received.substr(0, end));
        session.received.erase(0, end + 1);
    }
    return true;
}

[[noreturn]] void serveAll(const std::vector<int> &listeners) {
    std::vector<Session> sessions;
    for (;;) {
        std::vector<pollfd> polled;
        for (const int listener : listeners) {
            polled.push_back({listener, POLLIN, 0});
        }
        for (const Session &session : sessions) {
            polled.push_back({session.descriptor, POLLIN, 0});
        }
        (void)poll(polled.data(), polled.size(), -1);
        std::vector<Session> kept;
        for (std::size_t i = 0; i < sessions.size(); ++i) {
            if (polled[listeners.size() + i].revents == 0 || serve(sessions[i])) {
                kept.push_back(sessions[i]);
            } else {
                (void)close(sessions[i].descriptor);
            }
        }
        sessions.swap(kept);
        for (std::size_t i = 0; i < listeners.size(); ++i) {
            if (polled[i].revents != 0) {
                sessions.push_back({accept(listeners[i], nullptr, nullptr), ""});
            }
        }
    }
}

void addNames(const char *folder, std::set<std::string> &names) {
    for (const auto &entry : fs::directory_iterator(folder)) {
        names.insert(entry.path());
    }
    names.erase("/tmp/.uci"); // pending changes may stay
}

} // namespace

void build() {
    std::vector<int> listeners;
    for (const char *daemon : kDaemons) {
        listeners.push_back(listenAt(std::string("/var/") + daemon + ".vty"));
    }
    (void)rename(kManager, kManagerAway);
    const pid_t parent = getpid();
    if (fork() == 0) {
        (void)prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != parent) {
            _exit(1);
        }
        serveAll(listeners);
    }
    for (const int listener : listeners) {
        (void)close(listener);
    }
    fs::create_directories("/tmp/tmp");
    fs::create_directories("/etc/config");
    for (const char *pipe : kPipes) {
        (void)mkfifo((std::string("/tmp/tmp/") + pipe).c_str(), 0600);
    }
}

void reset(bool managed) {
    fs::remove_all("/tmp/.uci");
    write("/tmp/tmp/data", "");
    for (const char *folder : {"/etc/config", "/tmp"}) {
        for (const auto &entry : fs::directory_iterator(folder)) {
            if (entry.is_regular_file()) {
                fs::remove(entry.path());
            }
        }
    }
    for (const File &file : kFiles) {
        write(file.path, file.text);
    }
    if (managed == fs::exists(kManagerAway)) {
        (void)rename(managed ? kManagerAway : kManager, managed ? kManager : kManagerAway);
    }
}

void holdPipes() {
    for (const char *pipe : kPipes) {
        if (open((std::string("/tmp/tmp/") + pipe).c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC) < 0) {
            abort();
        }
    }
}

Store store() {
    Store texts;
    for (const auto &entry : fs::directory_iterator("/etc/config")) {
        texts[entry.path().filename()] = textOf(entry.path());
    }
    return texts;
}

std::set<std::string> files() {
    std::set<std::string> names;
    addNames("/tmp", names);
    addNames("/etc/config", names);
    return names;
}

Descriptors descriptors() {
    Descriptors found;
    DIR *folder = opendir("/proc/self/fd");
    while (const dirent *entry = readdir(folder)) {
        const int number = atoi(entry->d_name);
        struct stat status;
        if (entry->d_name[0] != '.' && number != dirfd(folder) && fstat(number, &status) == 0) {
            ++found.all;
            found.sockets += S_ISSOCK(status.st_mode) ? 1 : 0;
        }
    }
    (void)closedir(folder);
    return found;
}

const char *listingWithDaemons(const char *command) {
    return strstr(command, "ifconfig") != nullptr ? "127.0.0.1\n" : "41 root 50 S d -d\n";
}

const char *listingWithoutDaemons(const char *command) {
    return strstr(command, "ifconfig") != nullptr ? "127.0.0.1\n" : "";
}

} // namespace fault

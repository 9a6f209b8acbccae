// SPDX-License-Identifier: Apache-2.0
// Runs the host program and takes what it says.
#ifndef FRRUCI_TESTS_HOST_PROGRAM_H
#define FRRUCI_TESTS_HOST_PROGRAM_H

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace program {

struct Outcome {
    int status;
    std::string output;
    std::string errors;
};

inline std::string readAll(int descriptor) {
    std::string text;
    char bytes[4096];
    for (ssize_t count = 0; (count = read(descriptor, bytes, sizeof bytes)) > 0;) {
        text.append(bytes, static_cast<std::size_t>(count));
    }
    return text;
}

inline std::string readFile(const char *path) {
    const int file = open(path, O_RDONLY | O_CLOEXEC);
    std::string text = file < 0 ? "" : readAll(file);
    close(file);
    return text;
}

/// By hand: in some test programs system and popen are stand-ins.
inline pid_t start(std::vector<std::string> words, int input, int output, int errors) {
    words.insert(words.begin(), HOST_PROGRAM);
    std::vector<char *> vector;
    for (std::string &word : words) {
        vector.push_back(word.data());
    }
    vector.push_back(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        dup2(input, STDIN_FILENO);
        dup2(output, STDOUT_FILENO);
        dup2(errors, STDERR_FILENO);
        execv(vector[0], vector.data());
        _exit(126);
    }
    return child;
}

/// As system, where that is a stand-in.
inline int shell(const char *command) {
    const pid_t child = fork();
    if (child == 0) {
        execl("/bin/sh", "sh", "-c", command, nullptr);
        _exit(126);
    }
    int status = -1;
    return waitpid(child, &status, 0) == child ? status : -1;
}

inline int wait(pid_t child) {
    int status = 0;
    const bool exited = waitpid(child, &status, 0) == child && WIFEXITED(status);
    return exited ? WEXITSTATUS(status) : -1;
}

/// Runs the program to its end, its outputs into pipes that somebody reads to their end: a process
/// that keeps them open keeps this from returning.
inline Outcome frruci(const std::vector<std::string> &words, const std::string &input = "") {
    int in[2];
    int out[2];
    if (pipe2(in, O_CLOEXEC) != 0 || pipe2(out, O_CLOEXEC) != 0) {
        return {-1, "", ""};
    }
    const int errors = open("/tmp", O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    const bool fed = write(in[1], input.data(), input.size()) >= 0;
    close(in[1]);
    const pid_t child = start(words, in[0], out[1], errors);
    close(in[0]);
    close(out[1]);
    Outcome outcome = {-1, readAll(out[0]), ""};
    outcome.status = fed ? wait(child) : -1;
    lseek(errors, 0, SEEK_SET);
    outcome.errors = readAll(errors);
    close(out[0]);
    close(errors);
    return outcome;
}

/// Processes of these names that do nothing: who looks for a daemon finds it running.
class Daemons {
public:
    explicit Daemons(const std::vector<std::string> &names) {
        for (const std::string &name : names) {
            const pid_t child = fork();
            if (child == 0) {
                execl("/bin/sleep", name.c_str(), "1000", nullptr);
                _exit(126);
            }
            children_.push_back(child);
        }
    }
    ~Daemons() {
        for (const pid_t child : children_) {
            ::syscall(SYS_kill, child, SIGKILL); // in some test programs kill is a stand-in
            wait(child);
        }
    }
    Daemons(const Daemons &) = delete;
    Daemons &operator=(const Daemons &) = delete;

private:
    std::vector<pid_t> children_;
};

/// A process whose program has this name: a copy of one that only waits.
class Running {
public:
    explicit Running(const std::string &name) : path_("/tmp/" + name) {
        const std::string copy = "cp /bin/sleep " + path_;
        if (shell(copy.c_str()) != 0) {
            abort();
        }
        child_ = fork();
        if (child_ == 0) {
            execl(path_.c_str(), name.c_str(), "1000", nullptr);
            _exit(126);
        }
        const std::string comm = "/proc/" + std::to_string(child_) + "/comm";
        while (readFile(comm.c_str()) != name + "\n") {
        }
    }
    ~Running() {
        ::syscall(SYS_kill, child_, SIGKILL);
        wait(child_);
        unlink(path_.c_str());
    }
    Running(const Running &) = delete;
    Running &operator=(const Running &) = delete;

private:
    std::string path_;
    pid_t child_ = -1;
};

/// A socket on which a daemon seems to listen.
class Listener {
public:
    explicit Listener(const std::string &path)
        : path_(path), fd_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        path.copy(address.sun_path, sizeof address.sun_path - 1);
        unlink(path.c_str());
        if (bind(fd_, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0 ||
            listen(fd_, 100) != 0) {
            abort();
        }
    }
    ~Listener() {
        close(fd_);
        unlink(path_.c_str());
    }
    Listener(const Listener &) = delete;
    Listener &operator=(const Listener &) = delete;

private:
    std::string path_;
    int fd_;
};

inline bool has(const std::string &text, const std::string &part) {
    return text.find(part) != std::string::npos;
}

} // namespace program

#endif

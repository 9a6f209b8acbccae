// SPDX-License-Identifier: Apache-2.0
// RIP as ripd tells it, which is in text only. "show ip rip status" has headings two spaces deep,
// and below them tables and lists four spaces deep.

#include <cstdlib>

#include "host/text.h"
#include "rpcd/asking.h"
#include "rpcd/methods.h"

namespace frruci::rpcd {

namespace {

/// The lists and tables of the answer.
struct Lists {
    Json answer;
    Json redistribute;
    Json networks;
    Json interfaces;
    Json sources;
    Json routes;
};

constexpr int kMostWords = 16;

/// A line split into its words, which are taken out of the line.
struct Words {
    char *words[kMostWords];
    int count;
};

Words split(char *line) {
    Words result = {};
    char *rest = line;
    for (char *word = strtok_r(line, " ", &rest); word != nullptr && result.count < kMostWords;
         word = strtok_r(nullptr, " ", &rest)) {
        result.words[result.count++] = word;
    }
    return result;
}

int64_t numberFrom(const char *text) {
    return strtoll(text, nullptr, 10);
}

// ---- headings ----

/// The number after a text of a line.
struct Number {
    const char *before;
    const char *name;
};

constexpr Number kNumbers[] = {
    {"Sending updates every ",            "update"        },
    {"Timeout after ",                    "timeout"       },
    {"garbage collect after ",            "garbage"       },
    {"Default redistribution metric is ", "default_metric"},
    {"Distance: (default is ",            "distance"      },
};

void readNumbers(const char *line, Lists &lists) {
    for (const Number &row : kNumbers) {
        const char *found = strstr(line, row.before);
        if (found != nullptr) {
            host::put(lists.answer, row.name, numberFrom(found + strlen(row.before)));
        }
    }
}

/// Without a version of its own the process sends one and receives any.
void readVersion(const char *line, Lists &lists) {
    static constexpr const char *kSent = "send version ";
    static constexpr const char *kReceived = ", receive version ";
    const char *sent = strstr(line, kSent);
    const char *received = strstr(line, kReceived);
    if (sent == nullptr || received == nullptr) {
        return;
    }
    sent += strlen(kSent);
    received += strlen(kReceived);
    if (*sent == *received) {
        const char version[] = {*sent, '\0'};
        host::put(lists.answer, "version", version);
    }
}

void readRedistributed(const char *line, Lists &lists) {
    static constexpr const char *kHead = "Redistributing:";
    const char *found = strstr(line, kHead);
    if (found == nullptr) {
        return;
    }
    char *copy = host::copyOf(found + strlen(kHead));
    const Words words = split(copy);
    for (int i = 0; i < words.count; ++i) {
        host::append(lists.redistribute, host::jsonText(words.words[i]));
    }
    free(copy);
}

void readHeading(char *line, Lists &lists) {
    readNumbers(line, lists);
    readVersion(line, lists);
    readRedistributed(line, lists);
}

// ---- tables ----

/// The next column: they are two spaces or more apart, and may hold one each.
const char *nextColumn(const char *&at, host::Text &column) {
    at += strspn(at, " ");
    const char *end = strstr(at, "  ");
    const std::size_t size = end == nullptr ? strlen(at) : static_cast<std::size_t>(end - at);
    column.clear();
    column.add(at, size);
    at += size;
    return column.get();
}

void readInterface(char *line, Lists &lists) {
    static constexpr const char *kColumns[] = {"name", "send", "receive", "key_chain"};
    Json interface = host::jsonObject();
    const char *at = line;
    for (const char *name : kColumns) {
        host::Text column;
        if (*nextColumn(at, column) != '\0') {
            host::put(interface, name, column.get());
        }
    }
    host::append(lists.interfaces, interface);
}

void readNetwork(char *line, Lists &lists) {
    host::append(lists.networks, host::jsonText(line + strspn(line, " ")));
}

/// "00:01:15", or from a day on "1d02h03m" and "1w02d03h".
int64_t secondsFrom(const char *text) {
    int64_t sum = 0;
    while (*text != '\0') {
        char *end = nullptr;
        const int64_t number = strtoll(text, &end, 10);
        if (end == text) {
            return sum;
        }
        switch (*end) {
        case 'w':
            sum += number * 7 * 24 * 3600;
            break;
        case 'd':
            sum += number * 24 * 3600;
            break;
        case 'h':
            sum += number * 3600;
            break;
        case 'm':
            sum += number * 60;
            break;
        default: // parts of a clock
            sum = sum * 60 + number;
        }
        text = end + (*end == '\0' ? 0 : 1);
    }
    return sum;
}

void readSource(char *line, Lists &lists) {
    const Words words = split(line);
    if (words.count < 5) {
        return;
    }
    Json source = host::jsonObject();
    host::put(source, "gateway", words.words[0]);
    host::put(source, "bad_packets", numberFrom(words.words[1]));
    host::put(source, "bad_routes", numberFrom(words.words[2]));
    host::put(source, "distance", numberFrom(words.words[3]));
    if (*words.words[4] >= '0' && *words.words[4] <= '9') { // else a word for never
        host::put(source, "last_update", secondsFrom(words.words[4]));
    }
    host::append(lists.sources, source);
}

/// What the lines below a heading are. The heading of a table's columns ends like its first name.
struct Section {
    const char *heading;
    const char *columns; ///< of a table; null for a list
    void (*read)(char *line, Lists &lists);
};

constexpr Section kSections[] = {
    {"  Default version control",     "    Interface ", readInterface},
    {"  Routing for Networks",        nullptr,          readNetwork  },
    {"  Routing Information Sources", "    Gateway ",   readSource   },
};

const Section *sectionOf(const char *line) {
    for (const Section &section : kSections) {
        if (host::startsWith(line, section.heading)) {
            return &section;
        }
    }
    return nullptr;
}

void readStatus(char *line, const Section *&section, Lists &lists) {
    if (!host::startsWith(line, "    ")) {
        section = sectionOf(line);
        return readHeading(line, lists);
    }
    const bool isColumns = section != nullptr && section->columns != nullptr &&
                           host::startsWith(line, section->columns);
    if (section != nullptr && !isColumns) {
        section->read(line, lists);
    }
}

/// "R(n) 10.9.0.0/24        10.1.2.2              2 10.1.2.2          0 00:14"
void readRoute(char *line, Lists &lists) {
    const Words words = split(line);
    if (words.count < 5 || strchr(words.words[0], '(') == nullptr ||
        strchr(words.words[1], '/') == nullptr) {
        return;
    }
    Json route = host::jsonObject();
    host::put(route, "network", words.words[1]);
    host::put(route, "next_hop", words.words[2]);
    host::put(route, "metric", numberFrom(words.words[3]));
    host::put(route, "from", words.words[4]);
    host::append(lists.routes, route);
}

/// The lines of an answer, without spaces at their ends.
template <typename Hear> void forEachLine(const host::Text &answer, Hear hear) {
    char *copy = host::copyOf(answer.get());
    char *rest = copy;
    for (char *line = nullptr; (line = strsep(&rest, "\r\n")) != nullptr;) {
        std::size_t size = strlen(line);
        while (size > 0 && line[size - 1] == ' ') {
            line[--size] = '\0';
        }
        if (size > 0) {
            hear(line);
        }
    }
    free(copy);
}

} // namespace

Json rip(Json /*arguments*/) {
    Asking daemon("ripd");
    Lists lists = {host::jsonObject(), host::jsonArray(), host::jsonArray(),
                   host::jsonArray(),  host::jsonArray(), host::jsonArray()};
    host::Text status;
    host::Text table;
    daemon.text("show ip rip status", status);
    daemon.text("show ip rip", table);
    host::putFlag(lists.answer, "running", daemon.runs());
    const Section *section = nullptr;
    forEachLine(status, [&](char *line) { readStatus(line, section, lists); });
    forEachLine(table, [&](char *line) { readRoute(line, lists); });
    host::put(lists.answer, "redistribute", lists.redistribute);
    host::put(lists.answer, "networks", lists.networks);
    host::put(lists.answer, "interfaces", lists.interfaces);
    host::put(lists.answer, "sources", lists.sources);
    host::put(lists.answer, "routes", lists.routes);
    return lists.answer;
}

} // namespace frruci::rpcd

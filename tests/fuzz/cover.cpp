// SPDX-License-Identifier: Apache-2.0
// Runs a fuzz target once with each file of its corpus, and notes which edges of the library were
// reached.
//
// usage: cover_NAME EDGES FILE...
// EDGES has a line for each edge: its place in the library, and 1 or 0. Those that an earlier
// target has reached stay reached, so a file that all targets are given in turn holds what they
// reach together.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size);

namespace {

/// What the compiler notes of an edge.
struct Place {
    uintptr_t address;
    uintptr_t flags;
};

/// The library's part of what it counts; this program and its libraries have parts of their own.
struct Edges {
    uint8_t *counters = nullptr;
    const Place *places = nullptr;
    std::size_t count = 0;
    uintptr_t base = 0;
};

Edges edges;

/// Where the library is loaded that this address lies in; 0 when it lies elsewhere.
uintptr_t libraryBase(const void *address) {
    Dl_info found = {};
    const bool isLibrary =
        dladdr(address, &found) != 0 && strstr(found.dli_fname, "libfrruci") != nullptr;
    return isLibrary ? reinterpret_cast<uintptr_t>(found.dli_fbase) : 0;
}

std::vector<char> bytesOf(const char *path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void runFile(const char *path, std::vector<bool> &reached) {
    const std::vector<char> bytes = bytesOf(path);
    (void)LLVMFuzzerTestOneInput(reinterpret_cast<const unsigned char *>(bytes.data()),
                                 bytes.size());
    bool isNew = false;
    for (std::size_t i = 0; i < edges.count; ++i) {
        isNew = isNew || (!reached[i] && edges.counters[i] != 0);
        reached[i] = reached[i] || edges.counters[i] != 0;
    }
    if (isNew) {
        (void)fprintf(stderr, "%s\n", path);
    }
    memset(edges.counters, 0, edges.count); // a counter of eight bits may come round to 0
}

void readReached(const char *path, std::vector<bool> &reached) {
    std::ifstream file(path);
    uintptr_t place = 0;
    int flag = 0;
    for (std::size_t i = 0; i < reached.size() && file >> std::hex >> place >> flag; ++i) {
        reached[i] = flag != 0;
    }
}

void writeReached(const char *path, const std::vector<bool> &reached) {
    std::ofstream file(path);
    for (std::size_t i = 0; i < reached.size(); ++i) {
        file << std::hex << edges.places[i].address - edges.base << ' ' << (reached[i] ? 1 : 0)
             << '\n';
    }
}

} // namespace

// The compiler's calls when a part is loaded.
extern "C" void __sanitizer_cov_8bit_counters_init(uint8_t *start, uint8_t *stop) {
    const uintptr_t base = libraryBase(start);
    if (base != 0) {
        edges.counters = start;
        edges.count = static_cast<std::size_t>(stop - start);
        edges.base = base;
    }
}

extern "C" void __sanitizer_cov_pcs_init(const uintptr_t *start, const uintptr_t * /*stop*/) {
    if (libraryBase(start) != 0) {
        edges.places = reinterpret_cast<const Place *>(start);
    }
}

int main(int argc, char **argv) {
    if (argc < 3 || edges.count == 0 || edges.places == nullptr) {
        (void)fprintf(stderr, "usage: cover_NAME EDGES FILE...\n");
        return 2;
    }
    std::vector<bool> reached(edges.count);
    readReached(argv[1], reached);
    for (int i = 2; i < argc; ++i) {
        runFile(argv[i], reached);
    }
    writeReached(argv[1], reached);
    return 0;
}

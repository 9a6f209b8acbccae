/* SPDX-License-Identifier: Apache-2.0 */
/* Times of interleaved runs, their medians, and the table that they end in. */
#ifndef FRRUCI_BENCH_MEASURE_H
#define FRRUCI_BENCH_MEASURE_H

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace bench {

template <typename Work> double microseconds(Work work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    const std::chrono::duration<double, std::micro> took = std::chrono::steady_clock::now() - begin;
    return took.count();
}

inline double median(std::vector<double> times) {
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

/// The time of a shell command; ends the process when it fails.
inline double shell(const std::string &command) {
    return microseconds([&] {
        if (system((command + " >/dev/null 2>&1").c_str()) != 0) {
            (void)fprintf(stderr, "failed: %s\n", command.c_str());
            exit(1);
        }
    });
}

/// The times of one way to do the work.
struct Way {
    std::string name;
    std::vector<double> times;
};

/// Prints medians as a Markdown table. The first way is frruci; the last column is its share of
/// each other way's time. items: how many settings one time stands for.
inline void printTable(const std::string &title, const std::vector<Way> &ways, std::size_t items) {
    std::printf("## %s\n\n| way | runs | median, us | a setting, us | frruci / this |\n"
                "|---|--:|--:|--:|--:|\n",
                title.c_str());
    const double ours = median(ways.front().times);
    for (const Way &way : ways) {
        const double time = median(way.times);
        std::printf("| %s | %zu | %.1f | %.1f | %.3f |\n", way.name.c_str(), way.times.size(), time,
                    time / static_cast<double>(items), ours / time);
    }
    std::printf("\n");
}

} // namespace bench

#endif

/* SPDX-License-Identifier: Apache-2.0 */
/* Times of interleaved runs, and their medians. */
#ifndef FRRUCI_BENCH_MEASURE_H
#define FRRUCI_BENCH_MEASURE_H

#include <algorithm>
#include <chrono>
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

} // namespace bench

#endif

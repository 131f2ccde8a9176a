#pragma once

// Timing helpers shared by the benchmark programs.

#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <vector>

namespace bench {

// Wall time of a call, in seconds.
inline double seconds(const std::function<void()>& fn) {
    const auto t0 = std::chrono::steady_clock::now();
    fn();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
}

// CPU time of the process (all threads), which a loaded machine does not inflate.
inline double cpuSeconds() {
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return static_cast<double>(u.ru_utime.tv_sec + u.ru_stime.tv_sec) +
           static_cast<double>(u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1e6;
}

// Peak resident memory of the process so far, in MiB.
inline double peakMiB() {
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return static_cast<double>(u.ru_maxrss) / 1024.0;  // kB on Linux
}

// The median of some timings; 0 for none.
inline double median(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    const size_t n = v.size();
    return n == 0 ? 0 : n % 2 ? v[n / 2] : (v[n / 2 - 1] + v[n / 2]) / 2;
}

// The one-minute load average, printed beside the figures: a loaded machine explains them.
inline double loadAverage() {
    double load = -1;
    if (std::FILE* f = std::fopen("/proc/loadavg", "r")) {
        if (std::fscanf(f, "%lf", &load) != 1) load = -1;
        std::fclose(f);
    }
    return load;
}

}  // namespace bench

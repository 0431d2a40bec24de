#ifndef BENCH_USAGE_H
#define BENCH_USAGE_H

#include <sys/resource.h>

namespace Bench {

//! Processor time of this process so far, user and system.
inline double cpuSeconds()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval &time) {
        return double(time.tv_sec) + double(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

//! Largest resident size of this process so far.
inline double peakMemoryMb()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_maxrss) / 1024;
}

} // namespace Bench

#endif

#ifndef BENCH_USAGE_H
#define BENCH_USAGE_H

#include <sys/resource.h>

namespace Bench {

//! Processor time so far, user and system: of this process, or of those that it started and ended.
inline double cpuSeconds(int who = RUSAGE_SELF)
{
    rusage usage {};
    getrusage(who, &usage);
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

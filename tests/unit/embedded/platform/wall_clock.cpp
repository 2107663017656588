#include "tests/unit/embedded/platform/wall_clock.h"

#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

#include <atomic>
#include <ctime>

namespace embedded_test {
namespace {

constinit std::atomic<int64_t> secondsAhead{0};

}  // namespace

void SetWallClockAhead(int64_t seconds) {
    secondsAhead = seconds;
}

}  // namespace embedded_test

// These take the place of the C library's own in this process and in the libraries that it loads.
extern "C" int clock_gettime(clockid_t clock, timespec* time) noexcept {
    const auto result = static_cast<int>(syscall(SYS_clock_gettime, clock, time));
    if (result == 0 && clock == CLOCK_REALTIME) time->tv_sec += embedded_test::secondsAhead;
    return result;
}

extern "C" int gettimeofday(timeval* time, void*) noexcept {
    timespec precise{};
    const int result = clock_gettime(CLOCK_REALTIME, &precise);
    time->tv_sec = precise.tv_sec;
    time->tv_usec = precise.tv_nsec / 1000;
    return result;
}

#include "support/sleep_recorder.h"

#include <algorithm>

// Replaces usleep at link time (-Wl,--wrap=usleep).
extern "C" {
decltype(usleep) __real_usleep;
decltype(usleep) __wrap_usleep;
int __wrap_usleep(useconds_t microseconds) {
    constexpr useconds_t longest_real_sleep_microseconds = 5'000;
    if (SleepRecorder::current == nullptr)
        return __real_usleep(microseconds);
    SleepRecorder::current->record(microseconds);
    return __real_usleep(std::min(microseconds, longest_real_sleep_microseconds));
}
}

#pragma once

#include <functional>
#include <unistd.h>
#include <vector>

/** Called instead of `usleep`, unless empty. */
inline std::function<void(useconds_t)> usleep_replacement;

// Replaces usleep at link time (-Wl,--wrap=usleep); used by the linker only.
extern "C" {
decltype(usleep) __real_usleep;
[[gnu::used]] inline int __wrap_usleep(useconds_t microseconds) {
    if (!usleep_replacement)
        return __real_usleep(microseconds);
    usleep_replacement(microseconds);
    return 0;
}
}

/** Records the times passed to `usleep`, in microseconds, instead of sleeping. */
struct SleepRecorder {
    SleepRecorder() {
        usleep_replacement = [this](useconds_t time) { sleeps.push_back(time); };
    }
    ~SleepRecorder() { usleep_replacement = nullptr; }
    std::vector<useconds_t> sleeps;
};

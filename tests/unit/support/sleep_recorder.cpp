#include "support/sleep_recorder.h"

#include <algorithm>
#include <utility>

namespace {

constexpr useconds_t longest_real_sleep_microseconds = 5'000;
SleepRecorder* recorder = nullptr;

} // namespace

// The linker puts these in place of usleep (-Wl,--wrap=usleep).
extern "C" {
int __real_usleep(useconds_t microseconds);
int __wrap_usleep(useconds_t microseconds);
int __wrap_usleep(useconds_t microseconds) {
    if (recorder == nullptr)
        return __real_usleep(microseconds);
    recorder->record(microseconds);
    return __real_usleep(std::min(microseconds, longest_real_sleep_microseconds));
}
}

SleepRecorder::SleepRecorder(std::function<void(std::size_t)> action) : during_sleep(std::move(action)) {
    recorder = this;
}

SleepRecorder::~SleepRecorder() { recorder = nullptr; }

void SleepRecorder::record(useconds_t microseconds) {
    recorded.push_back(microseconds);
    if (during_sleep)
        during_sleep(recorded.size());
}

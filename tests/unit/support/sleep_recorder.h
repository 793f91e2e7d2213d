#pragma once

#include <functional>
#include <unistd.h>
#include <vector>

/** Records every `usleep` of the program under test, which then takes a few milliseconds at most. */
class SleepRecorder {
public:
    /** @param action called in every sleep with the number of sleeps so far. */
    explicit SleepRecorder(std::function<void(std::size_t)> action = {});
    SleepRecorder(const SleepRecorder&) = delete;
    SleepRecorder& operator=(const SleepRecorder&) = delete;
    ~SleepRecorder();

    /** The sleeps so far, in microseconds. */
    [[nodiscard]] const std::vector<useconds_t>& sleeps() const { return recorded; }

    void record(useconds_t microseconds);

private:
    std::function<void(std::size_t)> during_sleep;
    std::vector<useconds_t> recorded;
};

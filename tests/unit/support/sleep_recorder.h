#pragma once

#include <functional>
#include <unistd.h>
#include <utility>
#include <vector>

/** Records every `usleep` of the code under test and shortens it to a few milliseconds. */
class SleepRecorder {
public:
    /** @param during_sleep called during every sleep with the number of sleeps so far. */
    explicit SleepRecorder(std::function<void(std::size_t)> during_sleep = {})
        : during_sleep_(std::move(during_sleep)) {
        current = this;
    }
    SleepRecorder(const SleepRecorder&) = delete;
    SleepRecorder& operator=(const SleepRecorder&) = delete;
    ~SleepRecorder() { current = nullptr; }

    /** The sleeps so far, in microseconds. */
    [[nodiscard]] const std::vector<useconds_t>& sleeps() const { return recorded_; }

    void record(useconds_t microseconds) {
        recorded_.push_back(microseconds);
        if (during_sleep_)
            during_sleep_(recorded_.size());
    }

    static inline SleepRecorder* current = nullptr;

private:
    std::function<void(std::size_t)> during_sleep_;
    std::vector<useconds_t> recorded_;
};

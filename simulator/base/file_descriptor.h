/** An owned file descriptor. */
#pragma once

#include <unistd.h>

#include <utility>

namespace simulator {

class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int number) : number_(number) {}
    FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        if (this != &other)
            reset(std::exchange(other.number_, -1));
        return *this;
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() { reset(); }

    /** Closes what it holds and takes over `number`. */
    void reset(int number = -1) {
        if (number_ >= 0)
            close(number_);
        number_ = number;
    }
    /** Hands the descriptor over; it is the caller's to close. */
    [[nodiscard]] int release() { return std::exchange(number_, -1); }
    [[nodiscard]] int get() const { return number_; }
    explicit operator bool() const { return number_ >= 0; }

private:
    int number_ = -1;
};

} // namespace simulator

/** Ownership of file descriptors, and complete writes. */
#pragma once

#include <span>
#include <unistd.h>
#include <utility>

namespace platform {

/** Owns a file descriptor and closes it; holds -1 when there is none. */
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
    Descriptor(Descriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (descriptor_ >= 0)
            close(descriptor_);
    }

    [[nodiscard]] int get() const { return descriptor_; }
    explicit operator bool() const { return descriptor_ >= 0; }

private:
    int descriptor_ = -1;
};

/**
 * Writes all of `bytes`, in one write(2) when the system takes them in one.
 *
 * An interrupted or partial write is continued. A descriptor that does not block is waited for, at most a
 * second without any progress.
 *
 * @return 0, or a negative errno value (-EAGAIN after that second); part of the bytes may then have been written.
 */
int write_all(int descriptor, std::span<const char> bytes);

} // namespace platform

/** Ownership of file descriptors, and complete writes. */
#pragma once

#include <span>
#include <unistd.h>
#include <utility>

namespace platform {

/** Owns a file descriptor, or -1 for none, and closes it. */
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
 * Writes all of `bytes`, if possible with one write(2).
 *
 * Continues after an interrupted or partial write. Waits for a non-blocking descriptor, for at most one second without
 * progress.
 *
 * @return 0, or a negative errno value (-EAGAIN after that second), possibly after a partial write.
 */
int write_all(int descriptor, std::span<const char> bytes);

} // namespace platform

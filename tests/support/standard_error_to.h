#pragma once

#include "base/owned.h"

namespace simulator {

/** Redirects the standard error of this process to another file during its lifetime. */
class StandardErrorTo {
public:
    explicit StandardErrorTo(const FileDescriptor& file) : former_(dup(STDERR_FILENO)) {
        dup2(file.get(), STDERR_FILENO);
    }
    StandardErrorTo(const StandardErrorTo&) = delete;
    StandardErrorTo& operator=(const StandardErrorTo&) = delete;
    ~StandardErrorTo() { dup2(former_.get(), STDERR_FILENO); }

private:
    FileDescriptor former_;
};

} // namespace simulator

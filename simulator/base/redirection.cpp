#include "redirection.h"

#include <fcntl.h>
#include <stdexcept>

namespace simulator {

std::array<FileDescriptor, 2> make_pipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe can be made");
    return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

} // namespace simulator

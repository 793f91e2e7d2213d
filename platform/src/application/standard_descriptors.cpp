#include "standard_descriptors.h"

#include <fcntl.h>
#include <pthread.h>
#include <unistd.h>

namespace platform {

// The system gives the lowest free number, so those that are missing are filled first.
void open_missing_standard_descriptors() {
    int descriptor = STDIN_FILENO;
    while (descriptor >= STDIN_FILENO && descriptor <= STDERR_FILENO)
        descriptor = open("/dev/null", O_RDWR);
    close(descriptor);
}

void keep_descriptors_from_children() {
    [[maybe_unused]] static const int registered =
        pthread_atfork([] { close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC); }, nullptr, nullptr);
}

} // namespace platform

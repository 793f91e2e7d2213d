#include "standard_descriptors.h"

#include <fcntl.h>
#include <unistd.h>

namespace platform {

// The system gives the lowest free number, so those that are missing are filled first.
void open_missing_standard_descriptors() {
    int descriptor = STDIN_FILENO;
    while (descriptor >= STDIN_FILENO && descriptor <= STDERR_FILENO)
        descriptor = open("/dev/null", O_RDWR);
    close(descriptor);
}

} // namespace platform

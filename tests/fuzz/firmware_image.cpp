#include "input.h"
#include "model/fw_version_reader.h"
#include "model/process_lifecycle.h"

#include <sys/mman.h>
#include <unistd.h>

// An image gives a version of three numbers or none, and any version a configuration.
int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static const int image = memfd_create("image", 0);
    expect(ftruncate(image, 0) == 0 && pwrite(image, bytes, size, 0) == static_cast<ssize_t>(size));
    const std::string version = FwVersionReader::GetVersion("/proc/self/fd/" + std::to_string(image));
    expect(version.empty() == (size < 8));
    expect(!get_cpcd_conf_name(version).empty());
    return 0;
}

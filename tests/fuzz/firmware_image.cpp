#include "input.h"
#include "model/fw_version_reader.h"
#include "model/process_lifecycle.h"
#include "support/files.h"

#include <sys/mman.h>

// An image of at least eight bytes contains a version; every version, even an empty one, selects a configuration.
void fuzz(const std::string& input) {
    static const std::string file = "/proc/self/fd/" + std::to_string(memfd_create("image", 0));
    put_file(file, input);
    const std::string version = FwVersionReader().GetVersion(file);
    expect(version.empty() == (input.size() < 8));
    expect(!get_cpcd_conf_name(version).empty());
}

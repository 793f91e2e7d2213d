#include "input.h"
#include "model/fw_version_reader.h"
#include "model/process_lifecycle.h"
#include "support/files.h"

#include <sys/mman.h>

// An image contains a version of three numbers or none; every version selects a configuration.
void fuzz(const std::string& input) {
    static const std::string file = "/proc/self/fd/" + std::to_string(memfd_create("image", 0));
    put_file(file, input);
    const std::string version = FwVersionReader().GetVersion(file);
    expect(version.empty() == (input.size() < 8));
    expect(!get_cpcd_conf_name(version).empty());
}

#include "input.h"
#include "model/fw_version_reader.h"
#include "model/process_lifecycle.h"

// An image contains a version of three numbers or none; every version selects a configuration.
int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string version = FwVersionReader().GetVersion(file_of(bytes, size));
    expect(version.empty() == (size < 8));
    expect(!get_cpcd_conf_name(version).empty());
    return 0;
}

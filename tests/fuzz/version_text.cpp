#include "input.h"
#include "model/process_lifecycle.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string name = get_cpcd_conf_name(text_of(bytes, size));
    expect(name == "cpcd_115200.conf" || name == "cpcd_921600.conf");
    return 0;
}

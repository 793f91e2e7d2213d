#include "input.h"
#include "model/process_lifecycle.h"

void fuzz(const std::string& input) {
    const std::string name = get_cpcd_conf_name(input);
    expect(name == "cpcd_115200.conf" || name == "cpcd_921600.conf");
}

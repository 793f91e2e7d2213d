#include "options.h"

#include <cerrno>
#include <cstdio>
#include <string_view>

namespace platform {

bool answer_option(const char* argument) {
    const std::string_view option = argument;
    const char* const program = program_invocation_short_name;
    if (option == "--help")
        std::printf("usage: %s\n\n"
                    "Runs full-screen until it is ended, and takes no options but --help and --version.\n"
                    "'man %s' says more.\n",
                    program, program);
    else if (option == "--version")
        std::printf("%s " VELMORA_VERSION "\n", program);
    else
        return false;
    return true;
}

} // namespace platform

#include "client/failure.h"
#include "command_line.h"

#include <iostream>

namespace {

/** In one piece: others may write to the same terminal. */
int tell(const std::exception& error, int status) {
    std::cerr << std::string("tvctl: ") + error.what() + '\n';
    return status;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return simulator::CommandLine().run(argc, argv);
    } catch (const simulator::WrongUse& error) {
        return tell(error, 2);
    } catch (const std::exception& error) {
        return tell(error, 1);
    }
}

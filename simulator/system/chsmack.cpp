/** The platform's tool for access labels: keeps a file's label in its extended attribute. */
#include <sys/xattr.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string_view>

int main(int argc, char** argv) {
    if (argc != 4 || std::string_view(argv[1]) != "-a") {
        std::cerr << "usage: chsmack -a LABEL FILE\n";
        return EXIT_FAILURE;
    }
    const std::string_view label = argv[2];
    if (setxattr(argv[3], "security.SMACK64", label.data(), label.size(), 0) != 0) {
        std::cerr << "chsmack: " << argv[3] << ": " << std::strerror(errno) << "\n";
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}

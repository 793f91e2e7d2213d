#include "model/fw_version_reader.h"

#include "Log.h"
#include "model/file.h"

#include <array>
#include <cstddef>

namespace {

// The image's last bytes: the version's three numbers, then five unused bytes.
using Trailer = std::array<char, 8>;

std::string version_of(const Trailer& trailer) {
    const auto number = [&](std::size_t position) {
        return std::to_string(static_cast<unsigned char>(trailer.at(position)));
    };
    return number(0) + "." + number(1) + "." + number(2);
}

// Reads only the trailer, however large the image is.
std::string read_version(const std::string& image_path) {
    const File image = open_file(image_path, O_RDONLY, "r");
    if (!image) {
        LOG_ERROR_AT(LOG_ORIGIN("GetVersion"), "%s can't opent file", image_path.c_str());
        return {};
    }
    Trailer trailer{};
    if (std::fseek(image.get(), -static_cast<long>(trailer.size()), SEEK_END) < 0)
        return {};
    if (std::fread(trailer.data(), 1, trailer.size(), image.get()) != trailer.size()) {
        LOG_ERROR_AT(LOG_ORIGIN("GetVersion"), "%s can't be read", image_path.c_str());
        return {};
    }
    return version_of(trailer);
}

} // namespace

// Kept as a member function: callers use an instance.
// NOLINTNEXTLINE(readability-convert-member-functions-to-static)
std::string FwVersionReader::GetVersion(const std::string& image_path) const {
    std::string version = read_version(image_path);
    LOG_ERROR("fw_ver : %s", version.c_str());
    return version;
}

/** Reads the version of a radio firmware image. */
#pragma once

#include <string>

/** Reads the version in the last eight bytes of a firmware image. */
class FwVersionReader {
public:
    /**
     * Reads an image's version.
     *
     * @param image_path the image file.
     * @return three numbers from 0 to 255 joined by ".", or empty if the file cannot be opened or read (logged) or
     *         is too short.
     */
    [[nodiscard]] std::string GetVersion(const std::string& image_path) const;
};

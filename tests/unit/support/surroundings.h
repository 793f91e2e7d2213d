/** Files and environment variables of the television that a test sets up. */
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>

/** Writes a file and the folders above it. */
inline void put_file(const std::filesystem::path& path, const std::string& content) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
}

/** Writes an executable shell script and the folders above it. */
inline void put_script(const std::filesystem::path& path, const std::string& commands) {
    std::filesystem::remove(path);
    put_file(path, "#!/bin/sh\n" + commands + "\n");
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
}

/** A file's whole content, or nothing when it cannot be opened. */
inline std::optional<std::string> content_of(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return std::nullopt;
    return std::string(std::istreambuf_iterator<char>(file), {});
}

/** Sets an environment variable for as long as it lives. */
class ScopedEnvironment {
public:
    ScopedEnvironment(const char* variable, const std::string& value) : name(variable) {
        if (const char* const present = getenv(variable))
            before = present;
        setenv(variable, value.c_str(), 1);
    }
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;
    ~ScopedEnvironment() { restore(); }

    /** Gives the variable its earlier value. */
    void restore() const {
        if (before)
            setenv(name, before->c_str(), 1);
        else
            unsetenv(name);
    }

private:
    const char* name;
    std::optional<std::string> before;
};

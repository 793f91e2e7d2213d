/** Sets up files, environment variables and processes for a test. */
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

/** Writes a file and creates its parent folders. */
inline void put_file(const std::filesystem::path& path, const std::string& content) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
}

/** Returns a file's content; nothing if it cannot be opened. */
inline std::optional<std::string> content_of(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return std::nullopt;
    return std::string(std::istreambuf_iterator<char>(file), {});
}

/** Sets an environment variable during its lifetime. */
class ScopedEnvironment {
public:
    ScopedEnvironment(const char* variable, const std::string& value) : name_(variable) {
        if (const char* const present = getenv(variable))
            before_ = present;
        setenv(variable, value.c_str(), 1);
    }
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;
    ~ScopedEnvironment() {
        if (before_)
            setenv(name_, before_->c_str(), 1);
        else
            unsetenv(name_);
    }

private:
    const char* name_;
    std::optional<std::string> before_;
};

/** Runs an action in a child process and returns its process ID. */
inline pid_t start_process(const std::function<bool()>& action) {
    const pid_t process = fork();
    if (process == 0)
        _exit(action() ? 0 : 1);
    return process;
}

/** Waits for a child process; returns whether it exited and its action succeeded. */
inline bool succeeds(pid_t process) {
    int status = 0;
    return waitpid(process, &status, 0) == process && status == 0;
}

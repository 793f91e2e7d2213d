#include "model/util.h"

#include "Log.h"
#include "model/file.h"
#include "model/process_lifecycle.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int count_attempts = 5;
constexpr useconds_t count_interval_microseconds = 300'000;
constexpr int wait_attempts = 30;
constexpr useconds_t wait_interval_microseconds = 100'000;

pid_t fork_shell(const char* command_line) {
    const pid_t child = fork();
    if (child == 0) {
        execl("/bin/sh", "/bin/sh", "-c", command_line, nullptr);
        exit(0);
    }
    return child;
}

struct PipeClose {
    void operator()(FILE* pipe) const { pclose(pipe); }
};

// Returns the command's output; empty if it cannot run.
std::string read_command(const std::string& command_line) {
    const std::unique_ptr<FILE, PipeClose> pipe(popen(command_line.c_str(), "r"));
    std::string output;
    std::array<char, 128> piece{};
    while (pipe && feof(pipe.get()) == 0 && ferror(pipe.get()) == 0)
        output.append(piece.data(), fread(piece.data(), 1, piece.size(), pipe.get()));
    return output;
}

// Reaps terminated children without blocking. pgrep counts a killed radio program until its parent reaps it. This
// process is the parent if the shell replaced itself by the program (exec). The main loop normally reaps children, but
// is blocked meanwhile. Reaping all children is safe: this file's commands run one after another on the same thread.
void collect_ended_children() {
    while (waitpid(-1, nullptr, WNOHANG) > 0) {
    }
}

} // namespace

int exec_app(const char* command_line) {
    LOG_ERROR("app name : %s", command_line);
    if (fork_shell(command_line) < 0) {
        LOG_ERROR("Error vfork");
        return -1;
    }
    LOG_ERROR("Success vfork");
    return 1;
}

int exec_shell(const char* command_line) {
    LOG_ERROR("Command : %s", command_line);
    const pid_t child = fork_shell(command_line);
    if (child < 0) {
        LOG_ERROR("Error vfork");
        return -1;
    }
    int status = 0;
    if (waitpid(child, &status, 0) != child) {
        LOG_ERROR("Error waitpid");
        return -1;
    }
    return status;
}

void get_command_result(const std::string& process_name) {
    const std::string command_line = "pgrep -c " + process_name;
    for (int attempt = 0; attempt < count_attempts; ++attempt) {
        collect_ended_children();
        std::string output = read_command(command_line);
        output.erase(output.find_last_not_of(" \n\r\t") + 1);
        LOG_ERROR("Command [%s] result : %s", command_line.c_str(), output.c_str());
        if (output == "0")
            return;
        usleep(count_interval_microseconds);
    }
}

void write_file(const std::string& path, const std::string& content) {
    LOG_ERROR("path[%s], data[%s]", path.c_str(), content.c_str());
    replace_content(path, content);
}

int wait_condition(const std::string& path, bool make_report) {
    for (int attempt = 0; attempt < wait_attempts; ++attempt) {
        if (access(path.c_str(), F_OK) == 0) {
            LOG_ERROR("%s is ok", path.c_str());
            return 1;
        }
        LOG_ERROR("waiting %s", path.c_str());
        usleep(wait_interval_microseconds);
    }
    const std::string message = "Fail to connect " + path;
    LOG_ERROR("Wait Timeout. %s", message.c_str());
    if (!make_report)
        return 0;
    make_failure_report(message);
    req_terminate_main_loop();
    throw std::runtime_error("wait condition error");
}

void make_failure_report(const std::string& message) {
    constexpr const char* factory_data_file = "/tmp/iot_factory_data";
    write_file("/opt/data/BM/EW/result/iot_test_bin_result", message);
    write_file("/tmp/iot_test_result", "FAIL");
    write_file(factory_data_file, "FAIL");
    if (!give_to_device_owner(factory_data_file))
        LOG_ERROR("chown fail!!!");
    exec_shell("chsmack -a User::App::Shared /tmp/iot_factory_data");
}

void kill_background_app() {
    for (const char* const program : {"zigbeed", "socat", "cpcd"}) {
        exec_shell(("killall " + std::string(program)).c_str());
        get_command_result(program);
    }
}

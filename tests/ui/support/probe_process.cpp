#include "support/probe_process.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <gio/gio.h>
#include <poll.h>
#include <stdexcept>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace test {
namespace {

using Clock = std::chrono::steady_clock;

int as_exit_status(int status) { return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status); }

} // namespace

ProbeProcess::ProbeProcess(std::vector<std::string> arguments, std::string program) {
    if (program.empty())
        program = FRAMEWORK_PROBE;
    std::vector<char*> words{program.data()};
    for (auto& argument : arguments)
        words.push_back(argument.data());
    words.push_back(nullptr);
    g_autoptr(GError) error = nullptr;
    if (!g_spawn_async_with_pipes(nullptr, words.data(), nullptr, G_SPAWN_DO_NOT_REAP_CHILD, nullptr, nullptr,
                                  &id_, &input_, &output_, nullptr, &error))
        throw std::runtime_error(error->message);
}

ProbeProcess::~ProbeProcess() {
    if (id_ > 0) {
        kill(id_, SIGKILL);
        waitpid(id_, nullptr, 0);
    }
    close(input_);
    close(output_);
}

void ProbeProcess::send(const std::string& command) const {
    const std::string line = command + "\n";
    if (write(input_, line.data(), line.size()) != static_cast<ssize_t>(line.size()))
        throw std::runtime_error("the probe takes no command");
}

std::string ProbeProcess::next_line(Clock::time_point end) {
    for (auto feed = pending_.find('\n');; feed = pending_.find('\n')) {
        if (feed != std::string::npos) {
            std::string line = pending_.substr(0, feed);
            pending_.erase(0, feed + 1);
            return line;
        }
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        pollfd output{.fd = output_, .events = POLLIN, .revents = 0};
        if (poll(&output, 1, static_cast<int>(std::max<std::int64_t>(left, 0))) <= 0)
            return {};
        std::array<char, 512> buffer{};
        const ssize_t count = read(output_, buffer.data(), buffer.size());
        if (count <= 0)
            return {};
        pending_.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

std::string ProbeProcess::await(const std::string& begin, std::chrono::milliseconds limit) {
    const auto end = Clock::now() + limit;
    for (auto line = next_line(end); !line.empty(); line = next_line(end))
        if (line.starts_with(begin))
            return line;
    return {};
}

std::vector<std::string> ProbeProcess::lines_for(std::chrono::milliseconds time) {
    std::vector<std::string> lines;
    const auto end = Clock::now() + time;
    for (auto line = next_line(end); !line.empty(); line = next_line(end))
        lines.push_back(line);
    return lines;
}

int ProbeProcess::wait() {
    int status = 0;
    const auto end = Clock::now() + std::chrono::seconds(10);
    while (waitpid(id_, &status, WNOHANG) == 0) {
        if (Clock::now() > end)
            throw std::runtime_error("the probe does not end");
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    id_ = -1;
    return as_exit_status(status);
}

long ProbeProcess::context_switches() const {
    long total = 0;
    for (const auto& thread : std::filesystem::directory_iterator("/proc/" + std::to_string(id_) + "/task")) {
        std::ifstream status(thread.path() / "status");
        for (std::string line; std::getline(status, line);)
            if (line.starts_with("voluntary_ctxt_switches:"))
                total += std::stol(line.substr(line.find(':') + 1));
    }
    return total;
}

} // namespace test

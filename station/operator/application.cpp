#include "application.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <gio/gio.h>
#include <stdexcept>
#include <thread>

namespace station {
namespace {

using namespace std::chrono_literals;

constexpr auto look_interval = 20ms;

} // namespace

void Application::Unref::operator()(_GSubprocess* process) const { g_object_unref(process); }

Application::Application(const std::vector<std::string>& command, const std::string& log) {
    std::vector<const char*> arguments;
    std::ranges::transform(command, std::back_inserter(arguments),
                           [](const std::string& text) { return text.c_str(); });
    arguments.push_back(nullptr);
    g_autoptr(GError) error = nullptr;
    g_autoptr(GSubprocessLauncher) launcher =
        g_subprocess_launcher_new(log.empty() ? G_SUBPROCESS_FLAGS_NONE : G_SUBPROCESS_FLAGS_STDERR_MERGE);
    if (!log.empty()) {
        std::filesystem::remove(log); // an older one is not shortened when it is opened
        g_subprocess_launcher_set_stdout_file_path(launcher, log.c_str());
    }
    process_.reset(g_subprocess_launcher_spawnv(launcher, arguments.data(), &error));
    if (!process_)
        throw std::runtime_error(error->message);
}

Application::~Application() {
    if (process())
        g_subprocess_force_exit(process_.get());
}

std::optional<int> Application::process() const {
    const char* const identifier = g_subprocess_get_identifier(process_.get());
    return identifier != nullptr ? std::optional(std::stoi(identifier)) : std::nullopt;
}

void Application::terminate() { g_subprocess_send_signal(process_.get(), SIGTERM); }

std::optional<int> Application::wait_for_end(std::chrono::milliseconds patience) {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (process()) {
        if (std::chrono::steady_clock::now() >= deadline)
            return std::nullopt;
        std::this_thread::sleep_for(look_interval);
    }
    if (g_subprocess_get_if_signaled(process_.get()) != FALSE)
        return 128 + g_subprocess_get_term_sig(process_.get());
    return g_subprocess_get_exit_status(process_.get());
}

} // namespace station

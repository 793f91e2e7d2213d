#include "process.h"

#include "event_source.h"

#include <csignal>
#include <fcntl.h>
#include <stdexcept>
#include <sys/ioctl.h>

namespace simulator {
namespace {

constexpr int signal_base = 128;

/** Runs between fork and exec, so that the program does not inherit ignored or blocked signals. */
void reset_signals(gpointer /*data*/) {
    for (const int signal : {SIGINT, SIGQUIT, SIGTERM, SIGHUP, SIGPIPE})
        std::signal(signal, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

void begin_session(gpointer data) {
    setsid();
    ioctl(STDIN_FILENO, TIOCSCTTY, 0); // gives a shell job control
    reset_signals(data);
}

} // namespace

Descriptors written_to(const std::string& path) {
    constexpr mode_t readable = 0644;
    Descriptors descriptors;
    descriptors.output.reset(open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, readable));
    if (!descriptors.output)
        throw std::runtime_error("cannot open " + path);
    descriptors.error.reset(fcntl(descriptors.output.get(), F_DUPFD_CLOEXEC, 0));
    return descriptors;
}

std::array<FileDescriptor, 2> make_pipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("cannot create a pipe");
    return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

Process::Process(const std::vector<std::string>& command, Descriptors descriptors, Ended ended,
                 const std::vector<std::string>& environment, bool leads)
    : watch_(g_cancellable_new()), ended_(std::move(ended)), leads_(leads) {
    const Object<GSubprocessLauncher> launcher(g_subprocess_launcher_new(
        descriptors.input ? G_SUBPROCESS_FLAGS_NONE : G_SUBPROCESS_FLAGS_STDIN_INHERIT));
    g_subprocess_launcher_set_child_setup(launcher.get(), leads ? begin_session : reset_signals, nullptr,
                                          nullptr);
    if (descriptors.input)
        g_subprocess_launcher_take_stdin_fd(launcher.get(), descriptors.input.release());
    if (descriptors.output)
        g_subprocess_launcher_take_stdout_fd(launcher.get(), descriptors.output.release());
    if (descriptors.error)
        g_subprocess_launcher_take_stderr_fd(launcher.get(), descriptors.error.release());
    for (const std::string& variable : environment) {
        const auto middle = variable.find('=');
        g_subprocess_launcher_setenv(launcher.get(), variable.substr(0, middle).c_str(),
                                     variable.substr(middle + 1).c_str(), TRUE);
    }
    std::vector<const char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const std::string& word : command)
        arguments.push_back(word.c_str());
    arguments.push_back(nullptr);
    g_autoptr(GError) error = nullptr;
    process_.reset(g_subprocess_launcher_spawnv(launcher.get(), arguments.data(), &error));
    if (!process_)
        throw std::runtime_error(error->message);
    g_subprocess_wait_async(process_.get(), watch_.get(), on_ended, this);
}

Process::~Process() {
    g_cancellable_cancel(watch_.get());
    kill();
}

void Process::on_ended(GObject* process, GAsyncResult* result, gpointer self) {
    auto* const subprocess = G_SUBPROCESS(process);
    if (g_subprocess_wait_finish(subprocess, result, nullptr) == FALSE)
        return; // cancelled: `self` no longer exists
    auto& ended = *static_cast<Process*>(self);
    ended.status_ = g_subprocess_get_if_signaled(subprocess) != FALSE
                        ? signal_base + g_subprocess_get_term_sig(subprocess)
                        : g_subprocess_get_exit_status(subprocess);
    if (ended.ended_)
        ended.ended_();
}

int Process::id() const {
    const char* const identifier = runs() ? g_subprocess_get_identifier(process_.get()) : nullptr;
    return identifier != nullptr ? std::stoi(identifier) : 0;
}

std::string Process::state() const {
    if (!status_)
        return "runs";
    if (*status_ >= signal_base)
        return "was killed by signal " + std::to_string(*status_ - signal_base);
    return "ended with status " + std::to_string(*status_);
}

void Process::send_signal(int signal) {
    if (runs())
        g_subprocess_send_signal(process_.get(), signal);
}

void Process::kill() {
    if (const int leader = id(); leader > 0 && leads_)
        ::kill(-leader, SIGKILL);
    send_signal(SIGKILL);
}

std::optional<int> Process::wait_for_end(std::chrono::milliseconds limit) {
    bool timed_out = false;
    const EventSource clock =
        call_every(static_cast<guint>(limit.count()), [&timed_out] { timed_out = true; });
    while (runs() && !timed_out)
        g_main_context_iteration(nullptr, TRUE);
    return status_;
}

} // namespace simulator

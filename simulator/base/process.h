/** Starts, watches and kills a process of the television or of a test. */
#pragma once

#include "owned.h"

#include <array>
#include <chrono>
#include <csignal>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace simulator {

/** The standard descriptors of a process; an empty one is inherited. */
struct Descriptors {
    FileDescriptor input;
    FileDescriptor output;
    FileDescriptor error;
};

/** Descriptors that append output and errors to a file. @throws std::runtime_error if it cannot be opened. */
Descriptors written_to(const std::string& path);

/** Returns the read end and the write end of a pipe. @throws std::runtime_error. */
std::array<FileDescriptor, 2> make_pipe();

class Process {
public:
    /** Called from the main loop when the process has exited. */
    using Ended = std::function<void()>;

    /**
     * Starts a program with default signal dispositions.
     *
     * @param command     the program, looked up in PATH, and its arguments.
     * @param environment variables in addition to the caller's, each "NAME=VALUE".
     * @param leads       whether it leads a new session.
     * @throws std::runtime_error if it cannot be started.
     */
    explicit Process(const std::vector<std::string>& command, Descriptors descriptors = {},
                     Ended ended = nullptr, const std::vector<std::string>& environment = {},
                     bool leads = false);
    /** Kills the process if it is still running. */
    ~Process();

    /** True until the main loop has noticed its exit. */
    [[nodiscard]] bool runs() const { return !status_; }
    /** Its process ID; 0 once it has exited, even before the main loop has noticed. */
    [[nodiscard]] int id() const;
    /** The status as in a shell: the exit status, or 128 + the signal number; nothing while it runs. */
    [[nodiscard]] std::optional<int> status() const { return status_; }
    /** "runs", "ended with status 1" or "was killed by signal 9". */
    [[nodiscard]] std::string state() const;

    void send_signal(int signal);
    void terminate() { send_signal(SIGTERM); }
    /** Kills it, with its process group if it leads a session. */
    void kill();
    /** Runs the main loop until the process has exited. @return `status`; nothing on time-out. */
    std::optional<int> wait_for_end(std::chrono::milliseconds limit);

private:
    static void on_ended(GObject* process, GAsyncResult* result, gpointer self);

    Object<GSubprocess> process_;
    Object<GCancellable> watch_;
    Ended ended_;
    std::optional<int> status_;
    bool leads_;
};

} // namespace simulator

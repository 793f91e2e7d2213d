/** A process of the television, or of a test: started, watched and ended. */
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

/** Standard output and standard error appended to a file. @throws std::runtime_error if it cannot be opened. */
Descriptors written_to(const std::string& path);

/** A pipe's reading and its writing end. @throws std::runtime_error. */
std::array<FileDescriptor, 2> make_pipe();

class Process {
public:
    /** Called from the main loop when the process has ended. */
    using Ended = std::function<void()>;

    /**
     * Starts a program with default signal dispositions.
     *
     * @param command     the program, looked up in PATH, and its arguments.
     * @param environment variables in addition to the caller's own, each "NAME=VALUE".
     * @param leads       it leads a session of its own.
     * @throws std::runtime_error if it cannot be started.
     */
    explicit Process(const std::vector<std::string>& command, Descriptors descriptors = {},
                     Ended ended = nullptr, const std::vector<std::string>& environment = {},
                     bool leads = false);
    /** Kills a process that still runs. */
    ~Process();

    /** True until the main loop has noticed its end. */
    [[nodiscard]] bool runs() const { return !status_; }
    /** Its number; 0 once it has ended, even before the main loop has noticed. */
    [[nodiscard]] int number() const;
    /** The status as in a shell: the exit status, or 128 and the signal's number; nothing while it runs. */
    [[nodiscard]] std::optional<int> status() const { return status_; }
    /** "runs", "ended with status 1" or "was killed by signal 9". */
    [[nodiscard]] std::string state() const;

    void send_signal(int signal);
    void terminate() { send_signal(SIGTERM); }
    /** Kills it, and all processes of a session that it leads. */
    void kill();
    /** Runs the main loop until the process has ended. @return `status`; nothing if it still runs. */
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

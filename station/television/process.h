/** One process of the television: started, watched and ended. */
#pragma once

#include "common/file_descriptor.h"

#include <gio/gio.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace station {

/** The standard descriptors of a process; one that is not there is the null device, or shared with the
 * television. */
struct Descriptors {
    FileDescriptor input;
    FileDescriptor output;
    FileDescriptor error;
};

class Process {
public:
    /** Called from the main loop when the process has ended. */
    using Ended = std::function<void()>;

    /**
     * Starts a program with default signal dispositions.
     *
     * @param command     the program, looked up in PATH, and its arguments.
     * @param environment variables in addition to the television's own, each "NAME=VALUE".
     * @param leads       it leads a session of its own, and what it started is killed with it.
     * @throws std::runtime_error when it cannot be started.
     */
    Process(const std::vector<std::string>& command, Descriptors descriptors, Ended ended,
            const std::vector<std::string>& environment = {}, bool leads = false);
    /** A process that still runs is killed. */
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    [[nodiscard]] bool runs() const { return !status_; }
    /** Its number inside the television; 0 once it has ended. */
    [[nodiscard]] int number() const;
    /** How it ended, as a shell says it: the exit status, or 128 and the signal's number; nothing while it
     * runs. */
    [[nodiscard]] std::optional<int> status() const { return status_; }
    /** "runs", "ended with status 1" or "was killed by signal 9". */
    [[nodiscard]] std::string state() const;

    void send_signal(int signal);
    /** Kills it, and with a session of its own all that it started there. */
    void kill();
    /** Turns the main loop until the process has ended; false when it does not in this time. */
    bool wait_for_end(std::chrono::milliseconds limit);

private:
    struct Release {
        void operator()(gpointer object) const { g_object_unref(object); }
    };
    static void on_ended(GObject* process, GAsyncResult* result, gpointer self);

    std::unique_ptr<GSubprocess, Release> process_;
    std::unique_ptr<GCancellable, Release> watch_;
    Ended ended_;
    std::optional<int> status_;
    bool leads_;
};

} // namespace station

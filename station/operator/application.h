/** The application under the operator's hands, as a process. */
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

struct _GSubprocess;

namespace station {

/** A started program; killed when it is still running at the end of its life here. */
class Application {
public:
    /**
     * @param command the program and its arguments.
     * @param log     the file that gets what it writes on standard output and standard error; empty: the
     * operator's own.
     * @throws std::runtime_error when it cannot be started.
     */
    explicit Application(const std::vector<std::string>& command, const std::string& log = "");
    ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;
    Application(Application&&) = delete;
    Application& operator=(Application&&) = delete;

    /** Its process id; nothing once it has ended. */
    [[nodiscard]] std::optional<int> process() const;

    /** Asks it to end in order (SIGTERM). */
    void terminate();

    /**
     * Waits for its end.
     *
     * @return the exit status, or 128 and the number of the signal that ended it; nothing when it still runs.
     */
    std::optional<int> wait_for_end(std::chrono::milliseconds patience);

private:
    struct Unref {
        void operator()(_GSubprocess* process) const;
    };
    std::unique_ptr<_GSubprocess, Unref> process_;
};

} // namespace station

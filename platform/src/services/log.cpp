#include "platform/log.h"

#include "descriptor.h"
#include "log_journal.h"
#include "log_line.h"

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unistd.h>

namespace platform {
namespace {

/** Keeps a reader that went away (SIGPIPE) from ending the process while one line is written. */
class BrokenPipeGuard {
public:
    BrokenPipeGuard() {
        sigset_t pending;
        sigpending(&pending);
        was_pending_ = sigismember(&pending, SIGPIPE) == 1;
        sigemptyset(&broken_pipe_);
        sigaddset(&broken_pipe_, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &broken_pipe_, &former_);
    }
    ~BrokenPipeGuard() {
        const timespec now{};
        if (!was_pending_)
            (void)sigtimedwait(&broken_pipe_, nullptr, &now);
        pthread_sigmask(SIG_SETMASK, &former_, nullptr);
    }
    BrokenPipeGuard(const BrokenPipeGuard&) = delete;
    BrokenPipeGuard& operator=(const BrokenPipeGuard&) = delete;
    BrokenPipeGuard(BrokenPipeGuard&&) = delete;
    BrokenPipeGuard& operator=(BrokenPipeGuard&&) = delete;

private:
    sigset_t broken_pipe_{};
    sigset_t former_{};
    bool was_pending_ = false;
};

/**
 * Holds a pipe for one line. The system parts lines of more than PIPE_BUF bytes when several processes write
 * to one pipe; terminals and files take a line as a whole.
 */
class PipeTurn {
public:
    explicit PipeTurn(int descriptor) : descriptor_(descriptor) { lock(F_WRLCK); }
    ~PipeTurn() { lock(F_UNLCK); }
    PipeTurn(const PipeTurn&) = delete;
    PipeTurn& operator=(const PipeTurn&) = delete;
    PipeTurn(PipeTurn&&) = delete;
    PipeTurn& operator=(PipeTurn&&) = delete;

private:
    void lock(short type) const {
        struct flock turn {};
        turn.l_type = type;
        turn.l_whence = SEEK_SET;
        while (fcntl(descriptor_, F_SETLKW, &turn) < 0 && errno == EINTR) {
        }
    }

    int descriptor_;
};

struct Free {
    void operator()(char* text) const { std::free(text); } // NOLINT(cppcoreguidelines-owning-memory)
};

/** The threads' turn; the pipe's lock parts processes only. */
std::mutex& thread_turn() {
    static std::mutex turn;
    return turn;
}

int write_line(const struct stat& status, const std::string& line) {
    const std::scoped_lock thread(thread_turn());
    const BrokenPipeGuard guard;
    std::optional<PipeTurn> turn;
    if (S_ISFIFO(status.st_mode))
        turn.emplace(STDERR_FILENO);
    const int result = write_all(STDERR_FILENO, line);
    return result < 0 ? result : static_cast<int>(line.size());
}

int print(LogPriority priority, std::string_view tag, std::string_view message) {
    struct stat status {};
    if (fstat(STDERR_FILENO, &status) < 0)
        return -errno;
    if (is_journal_stream(status) && send_to_journal(priority, tag, message) >= 0)
        return static_cast<int>(message.size());
    return write_line(status, log_line(priority, tag, message, isatty(STDERR_FILENO) == 1));
}

} // namespace
} // namespace platform

int __dlog_print(platform::LogBuffer /*buffer*/, platform::LogPriority priority, const char* tag,
                 const char* format, ...) {
    if (tag == nullptr || format == nullptr)
        return -EINVAL;
    const int callers_errno = errno;
    va_list arguments;
    va_start(arguments, format);
    char* text = nullptr;
    const int length = vasprintf(&text, format, arguments);
    va_end(arguments);
    if (length < 0) {
        const int failure = -errno;
        errno = callers_errno;
        return failure;
    }
    const std::unique_ptr<char, platform::Free> message(text);
    const int result = platform::print(priority, tag, {text, static_cast<std::size_t>(length)});
    errno = callers_errno;
    return result;
}

#include "screen_terminal.h"

#include "base/terminal.h"
#include "client/failure.h"

#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>

namespace simulator {
namespace {

void write_all(int to, const char* bytes, std::size_t count) {
    while (count > 0) {
        const auto written = write(to, bytes, count);
        if (written <= 0)
            return;
        bytes += written;
        count -= static_cast<std::size_t>(written);
    }
}

/** Passes on what there is; false at its end. */
bool pass(int from, int to) {
    std::array<char, 4096> bytes{};
    const auto count = read(from, bytes.data(), bytes.size());
    if (count <= 0)
        return false;
    write_all(to, bytes.data(), static_cast<std::size_t>(count));
    return true;
}

} // namespace

ScreenTerminal::ScreenTerminal(std::function<void()> interrupted) : interrupted_(std::move(interrupted)) {
    int outer = -1;
    int inner = -1;
    if (tcgetattr(STDIN_FILENO, &before_) != 0 || openpty(&outer, &inner, nullptr, &before_, nullptr) != 0)
        throw Failure("no terminal can be made");
    outer_.reset(outer);
    inner_.reset(inner);
    fcntl(outer, F_SETFD, FD_CLOEXEC);
    take_size();
    make_raw(STDIN_FILENO);
    keys_ = EventSource::when_readable(STDIN_FILENO, [this] {
        if (!pass(STDIN_FILENO, outer_.get()))
            interrupted_();
    });
    output_ = EventSource::when_readable(outer_.get(), [this] {
        if (!pass(outer_.get(), STDOUT_FILENO))
            output_.reset();
    });
    const auto resized = +[](gpointer self) -> gboolean {
        static_cast<ScreenTerminal*>(self)->take_size();
        return G_SOURCE_CONTINUE;
    };
    const auto asked_to_end = +[](gpointer self) -> gboolean {
        static_cast<ScreenTerminal*>(self)->interrupted_();
        return G_SOURCE_CONTINUE;
    };
    signals_ = {g_unix_signal_add(SIGWINCH, resized, this), g_unix_signal_add(SIGTERM, asked_to_end, this),
                g_unix_signal_add(SIGINT, asked_to_end, this), g_unix_signal_add(SIGHUP, asked_to_end, this)};
}

ScreenTerminal::~ScreenTerminal() {
    for (const guint signal : signals_)
        g_source_remove(signal);
    tcsetattr(STDIN_FILENO, TCSADRAIN, &before_);
}

void ScreenTerminal::take_size() const {
    winsize size{};
    if (ioctl(STDIN_FILENO, TIOCGWINSZ, &size) == 0)
        ioctl(outer_.get(), TIOCSWINSZ, &size);
}

void ScreenTerminal::show_the_rest() {
    output_.reset();
    pollfd waiting{.fd = outer_.get(), .events = POLLIN, .revents = 0};
    while (poll(&waiting, 1, 0) > 0 && (waiting.revents & POLLIN) != 0 && pass(outer_.get(), STDOUT_FILENO)) {
    }
}

} // namespace simulator

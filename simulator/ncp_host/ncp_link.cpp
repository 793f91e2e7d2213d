#include "ncp_link.h"

#include "base/descriptors.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <stdexcept>

namespace simulator {
namespace {

constexpr guint first_probe_interval = 50;
constexpr guint longest_probe_interval = 1000;

} // namespace

NcpLink::NcpLink(const std::string& path, guint limit, std::function<void()> on_ready,
                 const ComponentLog& log)
    : path_(path), limit_(limit), on_ready_(std::move(on_ready)), log_(log) {
    g_autoptr(GError) error = nullptr;
    g_autoptr(GFile) file = g_file_new_for_path(path.c_str());
    monitor_.reset(g_file_monitor_file(file, G_FILE_MONITOR_NONE, nullptr, &error));
    if (!monitor_)
        throw std::runtime_error(error->message);
    g_signal_connect(monitor_.get(), "changed", G_CALLBACK(changed), this);
    open_link();
}

void NcpLink::changed(GFileMonitor* /*monitor*/, GFile* /*file*/, GFile* /*other*/, GFileMonitorEvent event,
                      gpointer self) {
    auto* const link = static_cast<NcpLink*>(self);
    // Where the user has no inotify instance left, GIO looks every five seconds, and a link that went and came
    // in between has only changed.
    if (event == G_FILE_MONITOR_EVENT_CREATED || (event == G_FILE_MONITOR_EVENT_CHANGED && !link->terminal_))
        link->open_link();
}

void NcpLink::open_link() {
    close_link();
    terminal_ = open_terminal(path_);
    if (!terminal_) {
        if (errno != ENOENT)
            log_.note(path_, ": ", std::strerror(errno));
        return;
    }
    log_.note(path_, " is there");
    lines_.clear();
    reader_ = call_when_readable(terminal_.get(), [this] { read_answers(); });
    ready_ = false;
    probe_interval_ = first_probe_interval;
    probe();
}

void NcpLink::close_link() {
    if (!terminal_)
        return;
    log_.note(path_, " is gone");
    prober_.reset();
    reader_.reset();
    terminal_.reset();
    while (!waiting_.empty())
        settle(waiting_.begin()->first, static_cast<int>(RadioCode::link_down), {});
}

/** The reset that every new link begins with; a module that cannot hear it yet is asked again, less and less often. */
void NcpLink::probe() {
    prober_ = call_every(probe_interval_, [this] { probe(); });
    probe_interval_ = std::min(2 * probe_interval_, longest_probe_interval);
    request("reset", std::nullopt, [this](int code, const std::string& /*text*/) {
        if (ready_ || code != static_cast<int>(RadioCode::ok))
            return;
        ready_ = true;
        prober_.reset();
        on_ready_();
    });
}

void NcpLink::request(const std::string& command, std::optional<int> argument, AnswerHandler handler) {
    if (!terminal_) {
        handler(static_cast<int>(RadioCode::link_down), {});
        return;
    }
    const auto number = ++last_number_;
    const auto line = to_line(RadioRequest{number, command, argument});
    waiting_[number] = {std::move(handler), call_every(limit_, [this, number] {
                            settle(number, static_cast<int>(RadioCode::no_answer), {});
                        })};
    // A full terminal means that nobody reads at the other end; the time limit tells.
    [[maybe_unused]] const auto written = write(terminal_.get(), line.data(), line.size());
}

void NcpLink::read_answers() {
    const auto count = lines_.read_from(terminal_.get());
    if (count == 0 || (count < 0 && errno != EAGAIN && errno != EINTR))
        return close_link();
    while (const auto line = lines_.next()) {
        if (const auto answer = parse_answer(*line))
            settle(answer->number, answer->code, answer->text);
    }
}

void NcpLink::settle(unsigned number, int code, const std::string& text) {
    const auto found = waiting_.find(number);
    if (found == waiting_.end())
        return;
    const auto settled = std::move(found->second);
    waiting_.erase(found);
    settled.handler(code, text);
}

} // namespace simulator

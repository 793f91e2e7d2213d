/** The NCP host's link to the radio module, over the terminal that the relay (socat) creates. */
#pragma once

#include "base/descriptors.h"
#include "base/event_source.h"
#include "base/log.h"
#include "radio/protocol.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <map>
#include <stdexcept>

namespace simulator {

class NcpLink {
public:
    using AnswerHandler = std::function<void(int code, const std::string& text)>;

    /**
     * Waits for the terminal, and again whenever the relay has exited.
     *
     * @param path     the terminal's path.
     * @param limit    time-out for the module's answer, in milliseconds.
     * @param on_ready called once per link, when the module has answered over it.
     * @param log      must outlive the link.
     */
    NcpLink(const std::string& path, guint limit, std::function<void()> on_ready, const ComponentLog& log)
        : path_(path), limit_(limit), on_ready_(std::move(on_ready)), log_(log) {
        g_autoptr(GError) error = nullptr;
        g_autoptr(GFile) file = g_file_new_for_path(path.c_str());
        monitor_.reset(g_file_monitor_file(file, G_FILE_MONITOR_NONE, nullptr, &error));
        if (!monitor_)
            throw std::runtime_error(error->message);
        g_signal_connect(monitor_.get(), "changed", G_CALLBACK(changed), this);
        open_link();
    }

    /**
     * Sends a request and calls the handler once, with the answer's code and text, or with `RadioCode::link_down` or
     * `RadioCode::no_answer`.
     */
    void request(const std::string& command, std::optional<int> argument, AnswerHandler handler) {
        if (!terminal_) {
            handler(static_cast<int>(RadioCode::link_down), {});
            return;
        }
        const auto number = ++last_number_;
        const auto line = to_line(RadioRequest{number, command, argument});
        waiting_[number] = {std::move(handler), call_every(limit_, [this, number] {
                                settle(number, static_cast<int>(RadioCode::no_answer), {});
                            })};
        // If the terminal is full because nothing reads it, the request times out.
        [[maybe_unused]] const auto written = write(terminal_.get(), line.data(), line.size());
    }

private:
    static constexpr guint first_probe_interval = 50; // milliseconds
    static constexpr guint longest_probe_interval = 1000;

    struct Waiting {
        AnswerHandler handler;
        EventSource limit;
    };

    static void changed(GFileMonitor* /*monitor*/, GFile* /*file*/, GFile* /*other*/, GFileMonitorEvent event,
                        gpointer self) {
        auto* const link = static_cast<NcpLink*>(self);
        // Without a free inotify instance GIO polls every five seconds, and reports a symbolic link that was replaced
        // between two polls as changed.
        if (event == G_FILE_MONITOR_EVENT_CREATED ||
            (event == G_FILE_MONITOR_EVENT_CHANGED && !link->terminal_))
            link->open_link();
    }
    void open_link() {
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
    void close_link() {
        if (!terminal_)
            return;
        log_.note(path_, " is gone");
        prober_.reset();
        reader_.reset();
        terminal_.reset();
        while (!waiting_.empty())
            settle(waiting_.begin()->first, static_cast<int>(RadioCode::link_down), {});
    }
    /** Resets the module over a new link, and retries at growing intervals until the module answers. */
    void probe() {
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
    void read_answers() {
        const auto count = lines_.read_from(terminal_.get());
        if (count == 0 || (count < 0 && errno != EAGAIN && errno != EINTR))
            return close_link();
        while (const auto line = lines_.next()) {
            if (const auto answer = parse_answer(*line))
                settle(answer->number, answer->code, answer->text);
        }
    }
    void settle(unsigned number, int code, const std::string& text) {
        const auto found = waiting_.find(number);
        if (found == waiting_.end())
            return;
        const auto settled = std::move(found->second);
        waiting_.erase(found);
        settled.handler(code, text);
    }

    std::string path_;
    guint limit_;
    std::function<void()> on_ready_;
    const ComponentLog& log_;
    Object<GFileMonitor> monitor_;
    FileDescriptor terminal_;
    LineBuffer lines_;
    EventSource reader_;
    EventSource prober_;
    guint probe_interval_ = 0;
    bool ready_ = false;
    unsigned last_number_ = 0;
    std::map<unsigned, Waiting> waiting_;
};

} // namespace simulator

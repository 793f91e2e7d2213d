/** The NCP host's link to the radio module: the terminal that the relay makes, and the exchange over it. */
#pragma once

#include "base/event_source.h"
#include "base/log.h"
#include "base/owned.h"
#include "radio/protocol.h"

#include <map>

namespace simulator {

class NcpLink {
public:
    using AnswerHandler = std::function<void(int code, const std::string& text)>;

    /**
     * Waits for the terminal, again each time the relay has gone away.
     *
     * @param path     the terminal's path.
     * @param limit    milliseconds the module has for an answer.
     * @param on_ready called once for each link, when the module has answered over it.
     * @param log      outlives the link.
     */
    NcpLink(const std::string& path, guint limit, std::function<void()> on_ready, const ComponentLog& log);

    /**
     * Sends a request; the handler is called once with the answer's code and text, or with `RadioCode::link_down` or
     * `RadioCode::no_answer`.
     */
    void request(const std::string& command, std::optional<int> argument, AnswerHandler handler);

private:
    struct Waiting {
        AnswerHandler handler;
        EventSource limit;
    };

    static void changed(GFileMonitor* monitor, GFile* file, GFile* other, GFileMonitorEvent event,
                        gpointer self);
    void open_link();
    void close_link();
    void probe();
    void read_answers();
    void settle(unsigned number, int code, const std::string& text);

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

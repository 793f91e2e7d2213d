#include "command_runner.h"

namespace simulator {

/** One running command, and the caller that waits for it. */
class CommandRunner::Running {
public:
    Running(CommandRunner& runner, const Call& call)
        : runner_(runner), call_(call),
          process_(
              call.texts(0),
              {FileDescriptor(call.take_descriptor(0)), FileDescriptor(call.take_descriptor(1)),
               FileDescriptor(call.take_descriptor(2))},
              [this] { answer(); }, call.texts(1), true) {
        const auto gone = +[](GDBusConnection* /*connection*/, const char* /*caller*/, gpointer self) {
            static_cast<Running*>(self)->process_.kill();
        };
        caller_watch_ =
            g_bus_watch_name_on_connection(runner.connection_, call.sender().c_str(),
                                           G_BUS_NAME_WATCHER_FLAGS_NONE, nullptr, gone, this, nullptr);
    }
    ~Running() { g_bus_unwatch_name(caller_watch_); }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

private:
    void answer() {
        call_.answer({g_variant_new_int32(*process_.status())});
        runner_.remove(*this);
    }

    CommandRunner& runner_;
    Call call_;
    Process process_;
    guint caller_watch_ = 0;
};

CommandRunner::CommandRunner(GDBusConnection* connection) : connection_(connection) {}

CommandRunner::~CommandRunner() = default;

void CommandRunner::run(const Call& call) {
    if (call.texts(0).empty() || !FileDescriptor(call.take_descriptor(2)))
        throw Refusal("BadCommand", "a command and its three descriptors are needed");
    try {
        running_.push_back(std::make_unique<Running>(*this, call));
    } catch (const std::runtime_error& error) {
        throw Refusal("BadCommand", error.what());
    }
}

void CommandRunner::remove(const Running& command) {
    std::erase_if(running_, [&command](const auto& held) { return held.get() == &command; });
}

} // namespace simulator

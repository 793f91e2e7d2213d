#include "command_runner.h"

namespace simulator {

/** One running command, and the caller that waits for it. */
class CommandRunner::Running {
public:
    Running(CommandRunner& runner, const std::vector<std::string>& command,
            const std::vector<std::string>& environment, Descriptors descriptors,
            GDBusMethodInvocation* invocation)
        : runner_(runner), invocation_(invocation),
          process_(
              command, std::move(descriptors), [this] { answer(); }, environment, true) {
        const auto gone = +[](GDBusConnection* /*connection*/, const char* /*caller*/, gpointer self) {
            static_cast<Running*>(self)->process_.kill();
        };
        caller_watch_ = g_bus_watch_name_on_connection(
            runner.connection_, g_dbus_method_invocation_get_sender(invocation),
            G_BUS_NAME_WATCHER_FLAGS_NONE, nullptr, gone, this, nullptr);
    }
    ~Running() { g_bus_unwatch_name(caller_watch_); }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

private:
    void answer() {
        g_dbus_method_invocation_return_value(invocation_, g_variant_new("(i)", *process_.status()));
        runner_.remove(*this);
    }

    CommandRunner& runner_;
    GDBusMethodInvocation* invocation_;
    Process process_;
    guint caller_watch_ = 0;
};

CommandRunner::CommandRunner(GDBusConnection* connection) : connection_(connection) {}

CommandRunner::~CommandRunner() = default;

void CommandRunner::run(const std::vector<std::string>& command, const std::vector<std::string>& environment,
                        Descriptors descriptors, GDBusMethodInvocation* invocation) {
    running_.push_back(
        std::make_unique<Running>(*this, command, environment, std::move(descriptors), invocation));
}

void CommandRunner::remove(const Running& command) {
    std::erase_if(running_, [&command](const auto& held) { return held.get() == &command; });
}

} // namespace simulator

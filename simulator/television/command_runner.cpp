#include "command_runner.h"

#include "base/process.h"

namespace simulator {

struct CommandRunner::Running {
    std::unique_ptr<Process> process;
    NameWatch caller;
};

CommandRunner::CommandRunner(GDBusConnection* connection) : connection_(connection) {}

CommandRunner::~CommandRunner() = default;

void CommandRunner::run(const Call& call) {
    Descriptors descriptors{FileDescriptor(call.take_descriptor(0)), FileDescriptor(call.take_descriptor(1)),
                            FileDescriptor(call.take_descriptor(2))};
    if (call.texts(0).empty() || !descriptors.error)
        throw Refusal("BadCommand", "a command and its three descriptors are needed");
    const auto running = running_.emplace(running_.end());
    const auto answer = [this, running, asked = call.later()] {
        asked.answer({g_variant_new_int32(*running->process->status())});
        running_.erase(running);
    };
    try {
        running->process =
            std::make_unique<Process>(call.texts(0), std::move(descriptors), answer, call.texts(1), true);
    } catch (const std::runtime_error& error) {
        running_.erase(running);
        throw Refusal("BadCommand", error.what());
    }
    const auto gone = +[](GDBusConnection* /*connection*/, const char* /*caller*/, gpointer process) {
        static_cast<Process*>(process)->kill();
    };
    running->caller.reset(g_bus_watch_name_on_connection(connection_, call.sender().c_str(),
                                                         G_BUS_NAME_WATCHER_FLAGS_NONE, nullptr, gone,
                                                         running->process.get(), nullptr));
}

} // namespace simulator

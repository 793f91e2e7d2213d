#include "inside.h"

#include "client/failure.h"
#include "screen_terminal.h"

#include "base/file_descriptor.h"
#include "base/strings.h"

#include <fcntl.h>
#include <initializer_list>

namespace simulator {
namespace {

FileDescriptor nothing() { return FileDescriptor(open("/dev/null", O_RDWR | O_CLOEXEC)); }

DescriptorList handed_over(std::initializer_list<int> numbers) {
    DescriptorList list(g_unix_fd_list_new());
    for (const int number : numbers)
        if (g_unix_fd_list_append(list.get(), number, nullptr) < 0) // closed
            g_unix_fd_list_append(list.get(), nothing().get(), nullptr);
    return list;
}

GVariant* arguments(const std::vector<std::string>& command) {
    GVariantBuilder handles;
    g_variant_builder_init(&handles, G_VARIANT_TYPE("ah"));
    for (const gint32 index : {0, 1, 2})
        g_variant_builder_add(&handles, "h", index);
    const char* const terminal = g_getenv("TERM");
    const std::vector<std::string> environment{std::string("TERM=") +
                                               (terminal != nullptr ? terminal : "dumb")};
    return g_variant_new("(@as@asah)", to_variant(command), to_variant(environment), &handles);
}

int status_of(const Value& answer) {
    int status = 0;
    g_variant_get(answer.get(), "(i)", &status);
    return status;
}

struct Waiting {
    GMainLoop* loop;
    Value answer;
    GError* error = nullptr;
};

void on_answer(GObject* bus, GAsyncResult* result, gpointer data) {
    auto& waiting = *static_cast<Waiting*>(data);
    waiting.answer.reset(g_dbus_connection_call_with_unix_fd_list_finish(G_DBUS_CONNECTION(bus), nullptr,
                                                                         result, &waiting.error));
    g_main_loop_quit(waiting.loop);
}

} // namespace

int run_inside(Client& client, const std::vector<std::string>& command) {
    return run_inside(client, command, STDIN_FILENO);
}

int run_inside(Client& client, const std::vector<std::string>& command, int input) {
    return status_of(client.call(television, "Run", arguments(command),
                                 handed_over({input, STDOUT_FILENO, STDERR_FILENO}).get()));
}

int run_on_terminal(Client& client, const std::vector<std::string>& command) {
    std::vector<std::string> in_session{"setsid", "--ctty", "--wait"};
    in_session.insert(in_session.end(), command.begin(), command.end());
    client.call(television, "Logs"); // it may still be starting

    g_autoptr(GMainLoop) loop = g_main_loop_new(nullptr, FALSE);
    Waiting waiting{.loop = loop, .answer = nullptr};
    ScreenTerminal terminal([loop] { g_main_loop_quit(loop); });
    const int inner = terminal.inner();
    g_dbus_connection_call_with_unix_fd_list(
        client.bus(), television.name, television.path, television.interface, "Run", arguments(in_session),
        nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START, G_MAXINT, handed_over({inner, inner, inner}).get(), nullptr,
        on_answer, &waiting);
    g_main_loop_run(loop);
    terminal.show_the_rest();
    if (waiting.error != nullptr) {
        g_autoptr(GError) error = waiting.error;
        Client::refuse(*error, television);
    }
    if (!waiting.answer)
        throw Failure("interrupted");
    return status_of(waiting.answer);
}

} // namespace simulator

#include "session_bus.h"

#include "platform/log.h"

#include <cstdlib>
#include <memory>
#include <utility>

namespace platform {
namespace {

/** How long a connection that was cancelled may take to stop; then it is left behind. */
constexpr std::chrono::milliseconds stop_limit{100};

bool has_session_bus() {
    if (const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS"); address && *address)
        return true;
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    if (!runtime || !*runtime)
        return false;
    g_autofree char* socket = g_build_filename(runtime, "bus", nullptr);
    return g_file_test(socket, G_FILE_TEST_EXISTS);
}

/** GLib sources and callbacks of its own, which nobody else dispatches. */
class PrivateContext {
public:
    PrivateContext() { g_main_context_push_thread_default(context_.get()); }
    ~PrivateContext() { g_main_context_pop_thread_default(context_.get()); }
    PrivateContext(const PrivateContext&) = delete;
    PrivateContext& operator=(const PrivateContext&) = delete;

    void iterate() { g_main_context_iteration(context_.get(), TRUE); }

    void call_after(std::chrono::milliseconds time, GSourceFunc function, gpointer data) {
        g_autoptr(GSource) source = g_timeout_source_new(static_cast<guint>(time.count()));
        g_source_set_callback(source, function, data, nullptr);
        g_source_attach(source, context_.get());
    }

private:
    struct Unref {
        void operator()(GMainContext* context) const { g_main_context_unref(context); }
    };
    std::unique_ptr<GMainContext, Unref> context_{g_main_context_new()};
};

/**
 * One connection in the making.
 *
 * GIO makes it on a thread, for up to 50 seconds: neither the greeting of a bus ("Hello") nor its answer can
 * be cancelled (measured with GLib 2.74: 25 s, with a bus that lets no reply through). So it is left behind
 * when it takes too long; its callback then never runs, since nobody iterates the context any more.
 */
class Attempt {
public:
    explicit Attempt(const char* address) {
        context_.call_after(bus_connection_limit, cancel, this);
        context_.call_after(bus_connection_limit + stop_limit, leave, this);
        constexpr auto flags = static_cast<GDBusConnectionFlags>(
            G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT | G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
        g_dbus_connection_new_for_address(address, flags, nullptr, cancellable_.get(), finish, this);
        while (!over_)
            context_.iterate();
    }

    ObjectPointer<GDBusConnection> connection;
    std::string reason;

private:
    static gboolean cancel(gpointer self) {
        auto* const attempt = static_cast<Attempt*>(self);
        g_cancellable_cancel(attempt->cancellable_.get());
        attempt->reason = "it does not answer";
        return G_SOURCE_REMOVE;
    }
    static gboolean leave(gpointer self) {
        static_cast<Attempt*>(self)->over_ = true;
        return G_SOURCE_REMOVE;
    }
    static void finish(GObject* /*source*/, GAsyncResult* result, gpointer self) {
        auto* const attempt = static_cast<Attempt*>(self);
        g_autoptr(GError) error = nullptr;
        attempt->connection.reset(g_dbus_connection_new_for_address_finish(result, &error));
        if (error && attempt->reason.empty())
            attempt->reason = error->message;
        attempt->over_ = true;
    }

    PrivateContext context_;
    ObjectPointer<GCancellable> cancellable_{g_cancellable_new()};
    bool over_ = false;
};

} // namespace

ObjectPointer<GDBusConnection> connect_in_time(const char* address, std::string& reason) {
    Attempt attempt(address);
    reason = std::move(attempt.reason);
    return std::move(attempt.connection);
}

ObjectPointer<GDBusConnection> connect_to_session_bus() {
    if (!has_session_bus())
        return nullptr;
    g_autoptr(GError) error = nullptr;
    g_autofree char* address = g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, &error);
    if (!address) {
        give_up_session_bus(error->message);
        return nullptr;
    }
    std::string reason;
    auto connection = connect_in_time(address, reason);
    if (!connection)
        give_up_session_bus(reason.c_str());
    return connection;
}

void give_up_session_bus(const char* reason) {
    __dlog_print(LogBuffer::main, LogPriority::warning, "PLATFORM", "the session bus is not used: %s",
                 reason);
    g_setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", TRUE);
}

} // namespace platform

#include "guests.h"

namespace station {

/** One running command, and the caller that waits for it. */
class Guests::Guest {
public:
    Guest(Guests& guests, const std::vector<std::string>& command,
          const std::vector<std::string>& environment, Descriptors descriptors,
          GDBusMethodInvocation* invocation)
        : guests_(guests), invocation_(invocation),
          process_(
              command, std::move(descriptors), [this] { answer(); }, environment, true) {
        const auto gone = +[](GDBusConnection* /*connection*/, const char* /*caller*/, gpointer self) {
            static_cast<Guest*>(self)->process_.kill();
        };
        caller_watch_ = g_bus_watch_name_on_connection(
            guests.connection_, g_dbus_method_invocation_get_sender(invocation),
            G_BUS_NAME_WATCHER_FLAGS_NONE, nullptr, gone, this, nullptr);
    }
    ~Guest() { g_bus_unwatch_name(caller_watch_); }
    Guest(const Guest&) = delete;
    Guest& operator=(const Guest&) = delete;

private:
    void answer() {
        g_dbus_method_invocation_return_value(invocation_, g_variant_new("(i)", *process_.status()));
        guests_.remove(*this);
    }

    Guests& guests_;
    GDBusMethodInvocation* invocation_;
    Process process_;
    guint caller_watch_ = 0;
};

Guests::Guests(GDBusConnection* connection) : connection_(connection) {}

Guests::~Guests() = default;

void Guests::run(const std::vector<std::string>& command, const std::vector<std::string>& environment,
                 Descriptors descriptors, GDBusMethodInvocation* invocation) {
    guests_.push_back(
        std::make_unique<Guest>(*this, command, environment, std::move(descriptors), invocation));
}

void Guests::remove(const Guest& guest) {
    std::erase_if(guests_, [&guest](const auto& held) { return held.get() == &guest; });
}

} // namespace station

#include "ui_driver.h"

#include "base/strings.h"
#include "keys.h"
#include "widgets.h"

#include <future>
#include <gio/gunixfdlist.h>

namespace simulator {
namespace {

using namespace std::chrono_literals;

constexpr auto reading_patience = 5s;
constexpr auto interface = "org.velmora.Simulator.Ui";

const Condition readable{"something that can be read",
                         [](const Screen& screen) { return !screen.widgets().empty(); }};

GVariant* described(const Screen& screen) { return g_variant_new("(s)", screen.description().c_str()); }

GVariant* focus_of(const Screen& screen) {
    const Widget* const focused = screen.focused();
    return g_variant_new("(s)", focused != nullptr ? focused->name.c_str() : "");
}

GVariant* widgets_of(const Screen& screen) { return g_variant_new("(@aa{sv})", to_variant(screen)); }

void refuse(GDBusMethodInvocation* invocation, const Refusal& refusal) {
    g_dbus_method_invocation_return_dbus_error(invocation, refusal.name().c_str(), refusal.what());
}

/** Does it, and answers nothing, or the refusal. */
void answer_after(GDBusMethodInvocation* invocation, const char* error, const std::function<void()>& action) {
    try {
        action();
        g_dbus_method_invocation_return_value(invocation, nullptr);
    } catch (const std::exception& reason) {
        refuse(invocation, Refusal(error, reason.what()));
    }
}

} // namespace

UiDriver::UiDriver(GDBusConnection* connection) : connection_(connection), display_(open_display()) {
    std::promise<void> ready;
    call_in(thread_.context(), [this, &ready] { // whose calls and signals come where they were registered
        std::map<std::string, Method> methods;
        for (auto** method = contract_of(interface).interfaces[0]->methods; *method != nullptr; ++method)
            methods[(*method)->name] = [this](const Call& call) {
                auto* const invocation = call.later().invocation();
                handle_call(call.method(), g_dbus_method_invocation_get_parameters(invocation),
                            static_cast<GDBusMethodInvocation*>(g_object_ref(invocation)));
            };
        object_ = std::make_unique<BusObject>(connection_, interface, methods);
        follow_leavers();
        ready.set_value();
    });
    ready.get_future().wait();
}

void UiDriver::follow_leavers() {
    const auto changed =
        +[](GDBusConnection* /*bus*/, const char* /*sender*/, const char* /*path*/, const char* /*interface*/,
            const char* /*signal*/, GVariant* change, gpointer self) {
            const char* name = nullptr;
            const char* owner = nullptr;
            g_variant_get(change, "(&s&s&s)", &name, nullptr, &owner);
            if (*owner == '\0')
                static_cast<UiDriver*>(self)->watch_.drop(name);
        };
    leavers_ = g_dbus_connection_signal_subscribe(connection_, "org.freedesktop.DBus", "org.freedesktop.DBus",
                                                  "NameOwnerChanged", "/org/freedesktop/DBus", nullptr,
                                                  G_DBUS_SIGNAL_FLAGS_NONE, changed, this, nullptr);
}

UiDriver::~UiDriver() { g_dbus_connection_signal_unsubscribe(connection_, leavers_); }

void UiDriver::handle_call(const std::string& method, GVariant* arguments,
                           GDBusMethodInvocation* invocation) {
    if (method == "Press")
        press(arguments, invocation);
    else if (method == "Hold")
        hold(arguments, invocation);
    else if (method == "Picture")
        take_picture(invocation);
    else if (method == "See")
        answer_when(readable, reading_patience, described, invocation);
    else if (method == "Screen")
        answer_when(readable, reading_patience, widgets_of, invocation);
    else if (method == "Focus")
        answer_when(readable, reading_patience, focus_of, invocation);
    else
        wait(method, arguments, invocation);
}

void UiDriver::check_key(const std::string& key) const {
    if (!has_key(display_, key))
        throw Refusal("NoSuchKey", "this keyboard has no key '" + key + "'");
}

void UiDriver::press(GVariant* arguments, GDBusMethodInvocation* invocation) {
    g_autoptr(GVariant) list = g_variant_get_child_value(arguments, 0);
    const auto keys = written_out(to_strings(list));
    for (const std::string& key : keys)
        check_key(key);
    for (const std::string& key : keys)
        press_key(display_, key);
    g_dbus_method_invocation_return_value(invocation, nullptr);
}

void UiDriver::hold(GVariant* arguments, GDBusMethodInvocation* invocation) {
    const char* key = nullptr;
    guint milliseconds = 0;
    g_variant_get(arguments, "(&su)", &key, &milliseconds);
    check_key(key);
    jobs_.start([key = std::string(key), time = std::chrono::milliseconds(milliseconds), invocation] {
        answer_after(invocation, "NoSuchKey", [&] { press_key(open_display(), key, time); });
    });
}

void UiDriver::take_picture(GDBusMethodInvocation* invocation) {
    GUnixFDList* const list =
        g_dbus_message_get_unix_fd_list(g_dbus_method_invocation_get_message(invocation));
    if (list == nullptr || g_unix_fd_list_get_length(list) != 1)
        throw Refusal("NotWritten", "the descriptor of an open file is needed");
    jobs_.start([list, invocation] {
        answer_after(invocation, "NotWritten", [list] {
            simulator::take_picture(open_display(), FileDescriptor(g_unix_fd_list_get(list, 0, nullptr)));
        });
    });
}

void UiDriver::answer_when(const Condition& condition, std::chrono::milliseconds patience,
                           const Answer& answer, GDBusMethodInvocation* invocation) {
    watch_.add(g_dbus_method_invocation_get_sender(invocation),
               [answer, invocation, wait = Wait(condition, patience)](const Screen& screen) {
                   try {
                       if (!wait.is_over(screen))
                           return false;
                       g_dbus_method_invocation_return_value(invocation, answer(screen));
                   } catch (const NotSeen& not_seen) {
                       refuse(invocation, Refusal("NotSeen", not_seen.what()));
                   } catch (const Refusal& refusal) {
                       refuse(invocation, refusal);
                   }
                   return true;
               });
}

void UiDriver::wait(const std::string& method, GVariant* arguments, GDBusMethodInvocation* invocation) {
    if (method == "WaitNumber") {
        gint number = 0;
        guint milliseconds = 0;
        g_variant_get(arguments, "(iu)", &number, &milliseconds);
        answer_when(focused_number(number), std::chrono::milliseconds(milliseconds), described, invocation);
        return;
    }
    const char* words = nullptr;
    g_variant_get_child(arguments, 0, "&s", &words);
    const std::string text = words;
    if (method == "Activate") {
        answer_when(
            text_shown(text), reading_patience,
            [this, text](const Screen& screen) -> GVariant* {
                try {
                    watch_.reader().activate(*screen.find(text));
                } catch (const std::runtime_error& error) {
                    throw Refusal("NoAction", error.what());
                }
                return nullptr;
            },
            invocation);
        return;
    }
    guint milliseconds = 0;
    g_variant_get_child(arguments, 1, "u", &milliseconds);
    const Condition condition = method == "Wait"       ? text_shown(text)
                                : method == "WaitGone" ? text_gone(text)
                                                       : focus_on(text);
    answer_when(condition, std::chrono::milliseconds(milliseconds), described, invocation);
}

} // namespace simulator

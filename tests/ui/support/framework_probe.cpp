/*
 * An application under the framework that prints what happens to it, one line each, and does what standard
 * input says:
 *
 *   key NAME NAME  presses and releases one or two keys of the keyboard
 *   down NAME      presses a key and holds it                      up NAME        lets it go
 *   block MS NAME  keeps Ecore busy, with a key pressed meanwhile   idle MS NAME   keeps GLib busy likewise
 *   cover          covers the whole screen                         uncover      takes the cover away
 *   hide, show     the window                                      timeout MS   waits with a GLib time-out
 *   quit           asks the framework to end                       exit         elm_exit
 *   bridge         tells whether the accessibility bridge is on
 *
 * Arguments: `window` opens one, `quit` and `throw` happen in create, `refuse` makes create answer false,
 * `linger` makes terminate take two seconds. What F9 does takes 400 ms, with Return pressed meanwhile.
 */
#include "platform/application.h"

#include <Ecore_X.h>
#include <Elementary.h>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <gio/gio.h>
#include <iostream>
#include <ranges>
#include <span>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;

struct Probe {
    std::span<char*> arguments;
    Evas_Object* window = nullptr;
    Ecore_X_Window cover = 0;

    [[nodiscard]] bool has(std::string_view argument) const {
        return std::ranges::find(arguments, argument) != arguments.end();
    }
};

void say(const std::string& line) { std::cout << line << std::endl; }

Probe& probe_of(void* data) { return *static_cast<Probe*>(data); }

void press(const std::string& name) {
    if (name.empty())
        return;
    ecore_x_test_fake_key_press(name.c_str());
    ecore_x_sync();
}

void block(int milliseconds, const std::string& pressed = "") {
    say("blocking");
    press(pressed);
    for (const auto end = Clock::now() + std::chrono::milliseconds(milliseconds); Clock::now() < end;)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    say("blocked");
}

void block_glib(int milliseconds, const std::string& pressed) {
    using Arguments = std::pair<int, std::string>;
    const auto idle = +[](gpointer data) -> gboolean {
        const std::unique_ptr<Arguments> arguments(static_cast<Arguments*>(data));
        block(arguments->first, arguments->second);
        return G_SOURCE_REMOVE;
    };
    g_idle_add(idle, std::make_unique<Arguments>(milliseconds, pressed).release());
}

void start_timeout(int milliseconds) {
    const auto over = +[](gpointer data) -> gboolean {
        const auto waited = Clock::now() - *static_cast<Clock::time_point*>(data);
        say("timeout after " + std::to_string(waited / std::chrono::milliseconds(1)) + ", Ecore's clock " +
            std::to_string(std::lround((ecore_time_get() - ecore_loop_time_get()) * 1000)) + " behind");
        return G_SOURCE_REMOVE;
    };
    const auto destroy = +[](gpointer data) {
        std::default_delete<Clock::time_point>()(static_cast<Clock::time_point*>(data));
    };
    g_timeout_add_full(G_PRIORITY_DEFAULT, static_cast<guint>(milliseconds), over,
                       std::make_unique<Clock::time_point>(Clock::now()).release(), destroy);
}

void cover_screen(Probe& probe) {
    int width = 0;
    int height = 0;
    ecore_x_screen_size_get(ecore_x_default_screen_get(), &width, &height);
    probe.cover = ecore_x_window_override_new(ecore_x_window_root_first_get(), 0, 0, width, height);
    ecore_x_window_show(probe.cover);
    ecore_x_window_raise(probe.cover);
}

void obey(Probe& probe, const std::string& line) {
    std::istringstream words(line);
    std::string command;
    std::string name;
    std::string key;
    words >> command >> name >> key;
    if (command == "key")
        for (const auto& pressed : {name, key})
            press(pressed);
    else if (command == "down")
        ecore_x_test_fake_key_down(name.c_str());
    else if (command == "up")
        ecore_x_test_fake_key_up(name.c_str());
    else if (command == "block")
        block(std::stoi(name), key);
    else if (command == "idle")
        block_glib(std::stoi(name), key);
    else if (command == "timeout")
        start_timeout(std::stoi(name));
    else if (command == "cover")
        cover_screen(probe);
    else if (command == "uncover")
        ecore_x_window_free(probe.cover);
    else if (command == "hide")
        evas_object_hide(probe.window);
    else if (command == "show")
        evas_object_show(probe.window);
    else if (command == "bridge")
        say(elm_config_atspi_mode_get() ? "bridge on" : "bridge off");
    else if (command == "quit")
        ui_app_quit("told to");
    else if (command == "exit")
        elm_exit();
}

Eina_Bool read_commands(void* data, Ecore_Fd_Handler* /*handler*/) {
    std::string line;
    std::getline(std::cin, line); // the tests send one line at a time and wait for its effect
    if (!std::cin)
        return ECORE_CALLBACK_CANCEL;
    obey(probe_of(data), line);
    return ECORE_CALLBACK_RENEW;
}

Eina_Bool key_down(void* /*data*/, int /*type*/, void* event) {
    const auto* const key = static_cast<const Ecore_Event_Key*>(event);
    say(std::string("key ") + key->key + " " + key->keyname);
    if (key->key == std::string_view("F9"))
        block(400, "Return");
    return ECORE_CALLBACK_PASS_ON;
}

void evas_key_down(void* /*data*/, Evas* /*canvas*/, Evas_Object* /*object*/, void* event) {
    say(std::string("evas key ") + static_cast<const Evas_Event_Key_Down*>(event)->key);
}

void open_window(Probe& probe) {
    probe.window = elm_win_util_standard_add("probe", "Probe");
    if (!probe.window) {
        say("no window");
        return;
    }
    elm_win_alpha_set(probe.window, EINA_TRUE);
    evas_object_event_callback_add(probe.window, EVAS_CALLBACK_KEY_DOWN, evas_key_down, nullptr);
    ecore_event_handler_add(ECORE_EVENT_KEY_DOWN, key_down, nullptr);
    evas_object_resize(probe.window, 400, 300);
    evas_object_show(probe.window);
    ecore_x_window_focus(elm_win_xwindow_get(probe.window));
}

void listen_for_signals() {
    static GDBusConnection* const bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
    const auto received = +[](GDBusConnection* /*bus*/, const char* /*sender*/, const char* /*path*/,
                              const char* /*interface*/, const char* name, GVariant* /*parameters*/,
                              gpointer /*data*/) { say(std::string("signal ") + name); };
    if (!bus)
        return;
    g_dbus_connection_set_exit_on_close(bus, FALSE);
    g_dbus_connection_signal_subscribe(bus, nullptr, "test.Probe", nullptr, nullptr, nullptr,
                                       G_DBUS_SIGNAL_FLAGS_NONE, received, nullptr, nullptr);
}

bool create(void* data) {
    auto& probe = probe_of(data);
    say("create");
    ecore_main_fd_handler_add(STDIN_FILENO, ECORE_FD_READ, read_commands, data, nullptr, nullptr);
    if (probe.has("window"))
        open_window(probe);
    listen_for_signals();
    if (probe.has("quit"))
        ui_app_quit("told to");
    if (probe.has("throw"))
        throw std::runtime_error("thrown in create");
    return !probe.has("refuse");
}

void terminate(void* data) {
    // Elementary is still up: its objects can be used and deleted.
    if (auto* const window = probe_of(data).window) {
        say(std::string("title ") + elm_win_title_get(window));
        evas_object_del(window);
    }
    say("terminate");
    if (probe_of(data).has("linger"))
        block(2000);
}

} // namespace

int main(int argc, char** argv) {
    Probe probe{.arguments = std::span(argv, static_cast<std::size_t>(argc))};
    ui_app_add_event_handler(
        nullptr, platform::EventType::language_changed,
        [](platform::EventInformation*, void*) { say("language changed"); }, nullptr);
    const platform::LifecycleCallbacks callbacks{
        .create = create,
        .terminate = terminate,
        .pause = [](void*) { say("pause"); },
        .resume = [](void*) { say("resume"); },
        .app_control = [](platform::LaunchRequest*, void*) { say("app_control"); },
    };
    return ui_app_main(argc, argv, &callbacks, &probe);
}

#include "base/program.h"
#include "television_object.h"

#include <array>
#include <csignal>
#include <cstdio>
#include <glib-unix.h>
#include <iostream>
#include <stdexcept>
#include <unistd.h>

namespace {

constexpr int cannot_start = 125;

std::vector<std::string> taken(gchar** texts) {
    std::vector<std::string> all;
    for (gchar** text = texts; text != nullptr && *text != nullptr; ++text)
        all.emplace_back(*text);
    g_strfreev(texts);
    return all;
}

std::string taken(gchar* text) {
    const std::unique_ptr<gchar, decltype(&g_free)> owned(text, g_free);
    return text != nullptr ? text : "";
}

/** What came down from outside belongs to nobody in the television. */
void keep_descriptors_from_children() { close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC); }

/** Tells simulator/tv, which waits outside, that the television has ended in order. */
void say_last_word(int descriptor, int status) {
    if (descriptor >= 0)
        dprintf(descriptor, "%d\n", status);
}

simulator::Plan read_plan(int argc, char** argv) {
    gchar* programs = nullptr;
    gchar* bus = nullptr;
    gchar* screen = nullptr;
    gchar** radio = nullptr;
    gchar** host = nullptr;
    gchar** command = nullptr;
    gboolean no_window_manager = FALSE;
    gboolean logs = FALSE;
    int status_descriptor = -1;
    const auto entries = std::to_array<GOptionEntry>(
        {{"programs", 0, 0, G_OPTION_ARG_FILENAME, &programs, "the simulator's programs", "DIR"},
         {"system-bus", 0, 0, G_OPTION_ARG_FILENAME, &bus, "configuration of the system bus", "FILE"},
         {"screen", 0, 0, G_OPTION_ARG_STRING, &screen, "an own screen, user or none", "WxH"},
         {"radio-option", 0, 0, G_OPTION_ARG_STRING_ARRAY, &radio, "an option of the radio module", "OPTION"},
         {"host-option", 0, 0, G_OPTION_ARG_STRING_ARRAY, &host, "an option of the NCP host", "OPTION"},
         {"no-window-manager", 0, 0, G_OPTION_ARG_NONE, &no_window_manager, "on an own screen", nullptr},
         {"log-application", 0, 0, G_OPTION_ARG_NONE, &logs, "keep what the command writes off the terminal",
          nullptr},
         {"status-descriptor", 0, 0, G_OPTION_ARG_INT, &status_descriptor, "gets the status at the end", "N"},
         {G_OPTION_REMAINING, 0, 0, G_OPTION_ARG_FILENAME_ARRAY, &command, nullptr, "-- COMMAND..."},
         {}});
    simulator::read_options(argc, argv, entries.data(), "The simulated television; started by simulator/tv.");
    return {.programs = taken(programs),
            .system_bus_configuration = taken(bus),
            .screen = taken(screen),
            .radio_options = taken(radio),
            .host_options = taken(host),
            .has_window_manager = no_window_manager == FALSE,
            .logs_application = logs != FALSE,
            .status_descriptor = status_descriptor,
            .command = taken(command)};
}

int run(int argc, char** argv) {
    keep_descriptors_from_children();
    const simulator::Plan plan = read_plan(argc, argv);
    simulator::Television television(plan);
    const auto end = +[](gpointer data) -> gboolean {
        static_cast<simulator::Television*>(data)->end();
        return G_SOURCE_CONTINUE;
    };
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        g_unix_signal_add(signal, end, &television);
    television.start();
    const auto connection = simulator::connect_to_system_bus();
    g_dbus_connection_set_exit_on_close(connection.get(), FALSE);
    const simulator::TelevisionObject service(connection.get(), television);
    simulator::own_name(connection.get(), "org.velmora.Simulator.Television");
    const int status = television.run();
    say_last_word(plan.status_descriptor, status);
    return status;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::cerr << "television: " << error.what() << '\n';
        return cannot_start;
    }
}

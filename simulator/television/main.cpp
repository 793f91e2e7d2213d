#include "base/options.h"
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
    gchar* bus = nullptr;
    gchar* screen = nullptr;
    gchar* firmware = nullptr;
    gchar* air = nullptr;
    gchar* host = nullptr;
    gchar** traffic = nullptr;
    gchar** answers = nullptr;
    gchar** command = nullptr;
    gboolean no_serial = FALSE;
    gboolean no_window_manager = FALSE;
    gboolean logs = FALSE;
    simulator::Plan plan;
    const auto entries = std::to_array<GOptionEntry>(
        {{"system-bus", 0, 0, G_OPTION_ARG_FILENAME, &bus, "configuration of the system bus", "FILE"},
         {"screen", 0, 0, G_OPTION_ARG_STRING, &screen, "an own screen, user or none", "WxH"},
         {"no-window-manager", 0, 0, G_OPTION_ARG_NONE, &no_window_manager, "on an own screen", nullptr},
         {"firmware", 0, 0, G_OPTION_ARG_STRING, &firmware, "of the radio module", "A.B.C"},
         {"module-speed", 0, 0, G_OPTION_ARG_INT, &plan.radio.speed, "speak at 115200 or 921600", "N"},
         {"traffic", 0, 0, G_OPTION_ARG_STRING_ARRAY, &traffic, "packets a second", "CHANNEL=N"},
         {"air", 0, 0, G_OPTION_ARG_FILENAME, &air, "the folder of the shared air", "DIR"},
         {"no-serial", 0, 0, G_OPTION_ARG_NONE, &no_serial, "the serial device does not appear", nullptr},
         {"serial-after", 0, 0, G_OPTION_ARG_DOUBLE, &plan.radio.serial_after, "it appears late", "SECONDS"},
         {"host-answers", 0, 0, G_OPTION_ARG_STRING_ARRAY, &answers, "of the NCP host", "METHOD=BEHAVIOUR"},
         {"host", 0, 0, G_OPTION_ARG_FILENAME, &host, "in the place of the simulated NCP host", "PROGRAM"},
         {"log-application", 0, 0, G_OPTION_ARG_NONE, &logs, "keep the command's output off the terminal",
          nullptr},
         {"status-descriptor", 0, 0, G_OPTION_ARG_INT, &plan.status_descriptor, "gets the status", "N"},
         {G_OPTION_REMAINING, 0, 0, G_OPTION_ARG_FILENAME_ARRAY, &command, nullptr, "-- COMMAND..."},
         {}});
    simulator::read_options(argc, argv, entries.data(), "The simulated television; started by simulator/tv.");
    const std::string program = argv[0];
    plan.programs = program.substr(0, program.rfind('/'));
    plan.system_bus_configuration = taken(bus);
    plan.screen = taken(screen);
    plan.radio.firmware = taken(firmware);
    plan.radio.traffic = taken(traffic);
    plan.radio.air = taken(air);
    plan.radio.has_serial = no_serial == FALSE;
    plan.host_answers = taken(answers);
    plan.host = taken(host);
    plan.has_window_manager = no_window_manager == FALSE;
    plan.logs_application = logs != FALSE;
    plan.command = taken(command);
    return plan;
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
    const simulator::TelevisionObject object(television);
    simulator::own_name(television.bus(), "org.velmora.Simulator");
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

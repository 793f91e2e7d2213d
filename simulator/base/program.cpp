#include "program.h"

#include <glib-unix.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace simulator {

int run_program(const char* name, const std::function<void(const ComponentLog& log)>& run) {
    const ComponentLog log(name);
    try {
        run(log);
    } catch (const std::exception& error) {
        log.error(error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}

void read_options(int argc, char** argv, const GOptionEntry* options, const char* summary) {
    g_autoptr(GOptionContext) context = g_option_context_new(nullptr);
    g_autoptr(GError) error = nullptr;
    g_option_context_set_summary(context, summary);
    g_option_context_add_main_entries(context, options, nullptr);
    if (g_option_context_parse(context, &argc, &argv, &error) == FALSE)
        throw std::runtime_error(error->message);
    if (argc > 1)
        throw std::runtime_error(std::string("unexpected argument ") + argv[1]);
}

void run_until_terminated() {
    g_autoptr(GMainLoop) loop = g_main_loop_new(nullptr, FALSE);
    const auto quit = [](gpointer data) -> gboolean {
        g_main_loop_quit(static_cast<GMainLoop*>(data));
        return G_SOURCE_CONTINUE;
    };
    g_unix_signal_add(SIGTERM, quit, loop);
    g_unix_signal_add(SIGINT, quit, loop);
    std::puts("ready");
    std::fflush(stdout);
    g_main_loop_run(loop);
}

} // namespace simulator

#pragma once

#include <glib.h>
#include <stdexcept>

namespace simulator {

/**
 * Reads the command line of a test's program.
 *
 * @param options the program's options, ended by an entry of zeroes.
 * @param summary one line of help.
 * @throws std::runtime_error for a wrong option.
 */
inline void read_options(int argc, char** argv, const GOptionEntry* options, const char* summary) {
    g_autoptr(GOptionContext) context = g_option_context_new(nullptr);
    g_autoptr(GError) error = nullptr;
    g_option_context_set_summary(context, summary);
    g_option_context_add_main_entries(context, options, nullptr);
    if (g_option_context_parse(context, &argc, &argv, &error) == FALSE)
        throw std::runtime_error(error->message);
}

} // namespace simulator

#include "options.h"

#include <stdexcept>
#include <string>

namespace simulator {

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

} // namespace simulator

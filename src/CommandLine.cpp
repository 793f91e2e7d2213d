#include "CommandLine.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <gio/gio.h>

namespace {

constexpr int wrong_use = 2;

constexpr const char* summary =
    "The full-screen engineering and factory test of a television's Zigbee radio.\n"
    "Started outside a television it stops every cpcd, socat and zigbeed of its user;\n"
    "velmora-tv runs it on a simulated television.";

} // namespace

std::optional<int> answerCommandLine(char** argv) {
    gboolean help = FALSE;
    gboolean version = FALSE;
    const std::array<GOptionEntry, 3> options{
        {{"help", 'h', G_OPTION_FLAG_NONE, G_OPTION_ARG_NONE, &help, "Tell the options and end", nullptr},
         {"version", 0, G_OPTION_FLAG_NONE, G_OPTION_ARG_NONE, &version, "Tell the version and end", nullptr},
         {}}};
    g_autoptr(GOptionContext) context = g_option_context_new(nullptr);
    g_option_context_set_help_enabled(context, FALSE);
    g_option_context_set_summary(context, summary);
    g_option_context_add_main_entries(context, options.data(), nullptr);

    g_auto(GStrv) arguments = g_strdupv(argv);
    g_autoptr(GError) problem = nullptr;
    if (!g_option_context_parse_strv(context, &arguments, &problem)) {
        std::fprintf(stderr, "velmora: %s (see velmora --help)\n", problem->message);
        return wrong_use;
    }
    if (help) {
        g_autofree char* text = g_option_context_get_help(context, TRUE, nullptr);
        std::fputs(text, stdout);
        return EXIT_SUCCESS;
    }
    if (version) {
        std::puts("velmora " VELMORA_VERSION);
        return EXIT_SUCCESS;
    }
    return std::nullopt;
}

#include "platform/application.h"

#include "common/installed_files.h"
#include "display_connection.h"
#include "efl_1_26/application/default_theme.h"
#include "efl_1_26/application/held_keys.h"
#include "efl_1_26/application/stale_input_filter.h"
#include "ending_signals.h"
#include "glib_loop.h"
#include "guarded_call.h"
#include "keys.h"
#include "language.h"
#include "main_loop.h"
#include "session/accessibility.h"
#include "session/single_instance.h"
#include "visibility.h"

#include <Efreet.h>
#include <Elementary.h>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <pthread.h>
#include <string_view>
#include <sys/select.h>
#include <unistd.h>

namespace platform {

class LaunchRequest {};

namespace {

/** EFL frees deleted objects when the loop is idle, or once they exceed this limit (its default is 32 MB). */
constexpr std::size_t max_unfreed_bytes = 1U << 20U;

/** Answers "--help" or "--version" on standard output; returns false for any other argument. */
bool answer_option(std::string_view option) {
    const char* const program = program_invocation_short_name;
    if (option == "--help")
        std::printf("usage: %s\n\n"
                    "Runs in full-screen mode. Takes no options except --help and --version.\n"
                    "For more, see 'man %s'.\n",
                    program, program);
    else if (option == "--version")
        std::printf("%s " VELMORA_VERSION "\n", program);
    else
        return false;
    return true;
}

/** Ensures that no file opened later gets the number of a standard descriptor and receives log messages. */
void open_missing_standard_descriptors() {
    int descriptor = STDIN_FILENO;
    while (descriptor >= STDIN_FILENO && descriptor <= STDERR_FILENO)
        descriptor = open("/dev/null", O_RDWR);
    close(descriptor);
}

/** Makes programs started with fork(2) and exec inherit only the standard descriptors. */
void keep_descriptors_from_children() {
    pthread_atfork([] { close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC); }, nullptr, nullptr);
}

/** Initialises Elementary in the constructor and shuts it down in the destructor. */
class Toolkit {
public:
    Toolkit(int argc, char** argv) {
        // Efreet's cache daemon, which is not needed, would keep running.
        efreet_cache_disable();
        // Ecore's modules for batteries and time zones wait for the system bus without a time-out.
        ecore_app_no_system_modules();
        replace_default_theme();
        unsetenv("ELM_ATSPI_MODE"); // otherwise Elementary itself enables its accessibility bridge
        is_initialised_ = init_ecore_without_signals() && elm_init(argc, argv) > 0;
        eina_freeq_mem_max_set(eina_freeq_main_get(), max_unfreed_bytes);
    }
    ~Toolkit() {
        ecore_main_loop_select_func_set(select); // elm_shutdown iterates the loop: keep GLib out
        if (is_initialised_) {
            elm_shutdown();
            ecore_shutdown();
        }
    }
    Toolkit(const Toolkit&) = delete;
    Toolkit& operator=(const Toolkit&) = delete;
    explicit operator bool() const { return is_initialised_; }

private:
    bool is_initialised_ = false;
};

/** Loads the toolkit's theme, including the window's frame; logs a missing or invalid theme. */
bool load_theme() {
    const std::string file = theme_file();
    if (edje_file_group_exists(file.c_str(), "elm/vell/layout/default") != EINA_FALSE) {
        elm_theme_overlay_add(nullptr, file.c_str());
        return true;
    }
    __dlog_print(LogBuffer::main, LogPriority::error, "PLATFORM", "no theme: %s: %s", file.c_str(),
                 access(file.c_str(), R_OK) == 0 ? "it is damaged or not a theme" : std::strerror(errno));
    return false;
}

/** Runs the application from create to the end of the main loop. @return false if create failed. */
bool run(const LifecycleCallbacks& callbacks, void* user_data, const std::function<void()>& launch) {
    dispatch_glib_in_ecore();
    drop_stale_input();
    follow_screen_reader();
    watch_language();
    const Visibility visibility(
        [&](bool visible) {
            guarded_call(visible ? "resume" : "pause", visible ? callbacks.resume : callbacks.pause,
                         user_data);
        },
        [] { quit_main_loop("the window was destroyed"); });
    drop_repeated_keys();
    add_remote_control_keys();
    if (!guarded_call("create", callbacks.create, user_data))
        return false;
    launch();
    end_main_loop_on_signals();
    run_main_loop();
    return true;
}

} // namespace
} // namespace platform

int ui_app_main(int argc, char** argv, const platform::LifecycleCallbacks* callbacks, void* user_data) {
    using namespace platform;
    if (argc == 2 && argv && answer_option(argv[1]))
        return application_ok;
    open_missing_standard_descriptors();
    keep_descriptors_from_children();
    if (!callbacks || !callbacks->create || !callbacks->terminate || argc < 1 || !argv)
        return application_invalid_argument;
    const auto launch = [callbacks, user_data] {
        LaunchRequest request;
        guarded_call("app_control", callbacks->app_control, &request, user_data);
    };
    SingleInstance instance(argv[0], launch);
    if (const auto outcome = instance.settle(); outcome != LaunchOutcome::runs)
        return outcome == LaunchOutcome::reached ? application_ok : application_held_up;
    const Toolkit toolkit(argc, argv);
    if (!toolkit)
        return application_toolkit_failed;
    if (!load_theme())
        return application_theme_missing;
    const DisplayConnection display;
    if (!display)
        return application_display_missing;
    if (!run(*callbacks, user_data, launch))
        return application_create_failed;
    instance.refuse_launches();
    guarded_call("terminate", callbacks->terminate, user_data);
    return application_ok;
}

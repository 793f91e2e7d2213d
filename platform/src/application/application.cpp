#include "platform/application.h"

#include "display_loss.h"
#include "efl_1_26/application/held_keys.h"
#include "efl_1_26/application/stale_input_filter.h"
#include "ending_signals.h"
#include "event_handlers.h"
#include "glib_loop.h"
#include "guarded_call.h"
#include "keys.h"
#include "language.h"
#include "main_loop.h"
#include "options.h"
#include "requirements.h"
#include "session/accessibility.h"
#include "session/single_instance.h"
#include "standard_descriptors.h"
#include "visibility.h"
#include "x_server.h"

#include "common/installed_files.h"

#include <Efreet.h>
#include <Elementary.h>
#include <optional>

namespace platform {

class LaunchRequest {};

namespace {

/** EFL frees what was deleted once the loop has nothing else to do, or when it is more than this; else than 32 MB. */
constexpr std::size_t most_unfreed_bytes = 1U << 20U;

/** Elementary, up while it lives. */
class Toolkit {
public:
    Toolkit(int argc, char** argv) {
        // No desktop files are looked up here, and the daemon that caches them would be left running.
        efreet_cache_disable();
        // They tell of batteries and time zones, and wait for the system bus for as long as it takes to answer.
        ecore_app_no_system_modules();
        leave_bridge_off();
        ecore_is_up_ = init_ecore_without_signals();
        up_ = elm_init(argc, argv) > 0;
        eina_freeq_mem_max_set(eina_freeq_main_get(), most_unfreed_bytes);
    }
    ~Toolkit() {
        if (up_)
            elm_shutdown();
        if (ecore_is_up_)
            ecore_shutdown();
    }
    Toolkit(const Toolkit&) = delete;
    Toolkit& operator=(const Toolkit&) = delete;
    explicit operator bool() const { return up_; }

private:
    bool ecore_is_up_ = false;
    bool up_ = false;
};

/** The application's callbacks, each kept from throwing into the code that calls it. */
class Application {
public:
    Application(const LifecycleCallbacks& callbacks, void* user_data)
        : callbacks_(callbacks), user_data_(user_data) {}

    [[nodiscard]] bool create() const { return guarded_call("create", callbacks_.create, user_data_); }
    void terminate() const { guarded_call("terminate", callbacks_.terminate, user_data_); }
    void launch() const {
        LaunchRequest request;
        guarded_call("app_control", callbacks_.app_control, &request, user_data_);
    }
    void set_visible(bool visible) const {
        if (visible)
            guarded_call("resume", callbacks_.resume, user_data_);
        else
            guarded_call("pause", callbacks_.pause, user_data_);
    }

private:
    LifecycleCallbacks callbacks_;
    void* user_data_;
};

/** The life of the application while Elementary is up: what listens to the system goes before terminate is
 * called. */
int run(const Application& application) {
    const GlibLoop glib_loop;
    const RemoteControlKeys keys;
    const StaleInputFilter stale_input_filter;
    const Accessibility accessibility;
    std::optional<EndingSignals> signals;
    MainLoop::instance().reset();
    {
        const LanguageWatch language([] { language_changed_handler().deliver(); });
        const Visibility visibility([&application](bool visible) { application.set_visible(visible); },
                                    [] { MainLoop::instance().quit("the window has gone"); });
        const HeldKeys held_keys;
        survive_display_loss();
        if (!application.create())
            return application_create_failed;
        application.launch();
        signals.emplace();
        MainLoop::instance().run();
        SingleInstance::refuse_launches();
    }
    application.terminate();
    return application_ok;
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
    const Application application(*callbacks, user_data);
    SingleInstance instance(argv[0], [&application] { application.launch(); });
    if (const auto outcome = instance.settle(); outcome != LaunchOutcome::runs)
        return outcome == LaunchOutcome::reached ? application_ok : application_held_up;
    const Toolkit toolkit(argc, argv);
    if (!toolkit)
        return application_toolkit_failed;
    const XConnection display;
    if (const auto result = check_requirements(display); result != application_ok)
        return result;
    elm_theme_overlay_add(nullptr, theme_file().c_str()); // which has the frame of the window, too
    return run(application);
}

/**
 * The application framework: lifecycle callbacks around one main loop.
 *
 * On a Linux PC the framework initialises Elementary, runs its main loop together with GLib's default context, and
 * keeps one process per application. It shuts down cleanly on SIGTERM, SIGINT, SIGQUIT and SIGHUP and when the display
 * server or the last window goes away, and logs the shutdown reason. Before the main loop these signals keep their
 * inherited dispositions (by default, they kill the process); after the loop they have no effect. A signal that the
 * parent process ignored stays ignored.
 *
 * The framework opens missing standard descriptors on the null device, and marks all others close-on-exec in children
 * created by fork(2). It answers a lone argument "--help" or "--version" without launching.
 */
#pragma once

namespace platform {

/** A request to launch the application: the first one, or a later one that reaches the running process. */
class LaunchRequest;
/** The data of a platform event. */
class EventInformation;
/** A registered event handler. */
class EventHandler;

/** The application's lifecycle callbacks, called on the main thread with the user data of `ui_app_main`. */
struct LifecycleCallbacks {
    bool (*create)(void* user_data) =
        nullptr; /**< once, before the main loop; if it returns false, no other callback is called */
    void (*terminate)(void* user_data) = nullptr; /**< once, after the main loop */
    void (*pause)(void* user_data) = nullptr;     /**< the window is no longer visible */
    void (*resume)(void* user_data) = nullptr;    /**< the window is visible again */
    void (*app_control)(LaunchRequest* request, void* user_data) = nullptr; /**< on every launch request */
};

/** Types of platform events, in the platform's numbering. The other types do not occur on a Linux PC. */
enum class EventType : int { language_changed = 2 };

/** Called on the main thread when an event of the registered type occurs. */
using EventCallback = void (*)(EventInformation* information, void* user_data);

/** Results of the framework. */
enum ApplicationResult : int {
    application_ok = 0,
    application_invalid_argument = 1, /**< a required callback is null, or the event type is unknown */
    application_toolkit_failed = 2,   /**< Elementary could not be initialised */
    application_create_failed = 3,    /**< the create callback returned false */
    application_display_missing = 4,  /**< there is no display */
    application_theme_missing = 5,    /**< the toolkit's theme is missing or invalid */
    application_held_up = 6,          /**< an earlier process of the application does not exit */
};

} // namespace platform

/**
 * Runs the application until its main loop ends.
 *
 * Order: create, app_control (the first launch), main loop, terminate. If the application is already running, the
 * running process gets another app_control, and this call returns `application_ok` at once. If the earlier process is
 * shutting down, this call waits up to 30 s for its exit and then runs the application. Without a display or a theme
 * no callback runs. Exceptions from callbacks are logged and discarded; if create throws, that counts as false.
 *
 * @param argc,argv the process's arguments.
 * @param callbacks the lifecycle callbacks; create and terminate are not null.
 * @param user_data passed to every callback.
 * @return `application_ok` after a clean shutdown, otherwise another `ApplicationResult`.
 */
int ui_app_main(int argc, char** argv, const platform::LifecycleCallbacks* callbacks, void* user_data);

/**
 * Sets the handler of an event type, replacing any earlier one. May be called before `ui_app_main`.
 *
 * @param handler   receives the registration, owned by the framework; may be null.
 * @param type      the event type.
 * @param callback  called when the event occurs; not null.
 * @param user_data passed to the callback.
 * @return `application_ok` or `application_invalid_argument`.
 */
int ui_app_add_event_handler(platform::EventHandler** handler, platform::EventType type,
                             platform::EventCallback callback, void* user_data);

/**
 * Ends the main loop once control returns to it; terminate follows. A call in create prevents the loop from starting
 * (unlike `elm_exit`, which has no effect there). Call on the main thread.
 */
void ui_app_quit();

/**
 * The application framework: lifecycle callbacks around one main loop.
 *
 * On an ordinary Linux machine the framework brings up Elementary, runs its main loop with GLib's default
 * context in it, keeps one process an application, ends in order on SIGTERM, SIGINT, SIGQUIT and SIGHUP and when
 * the display server or its last window has gone, and logs why the main loop ends. Before the main loop these signals
 * do what the launcher set, by default end the process at once; those that it ignored stay ignored; after the loop
 * further ones do nothing. A standard descriptor that the process was started without is opened on the null device; no
 * other descriptor reaches a program that it starts with fork(2). The argument "--help" or "--version", alone, is answered
 * without a launch.
 */
#pragma once

namespace platform {

/** A request to launch the application: its first start, or a later one that reached the running process. */
class LaunchRequest;
/** What a platform event carries. */
class EventInformation;
/** A registered event handler. */
class EventHandler;

/** The application's lifecycle callbacks, each called on the main thread with the user data of `ui_app_main`. */
struct LifecycleCallbacks {
    bool (*create)(void* user_data) =
        nullptr; /**< once, before the main loop; false ends the application, without terminate */
    void (*terminate)(void* user_data) = nullptr; /**< once, after the main loop */
    void (*pause)(void* user_data) = nullptr;     /**< the window went wholly out of sight */
    void (*resume)(void* user_data) = nullptr;    /**< the window came back in sight */
    void (*app_control)(LaunchRequest* request, void* user_data) = nullptr; /**< on every launch request */
};

/** Kinds of platform events, in the platform's numbering; of the others none occurs on an ordinary Linux machine. */
enum class EventType : int { language_changed = 2 };

/** Called on the main thread when an event of the registered type occurs. */
using EventCallback = void (*)(EventInformation* information, void* user_data);

/** Failures of the framework; 0 is success. */
enum ApplicationResult : int {
    application_ok = 0,
    application_invalid_argument = 1, /**< a callback that must be there is null, or another event type */
    application_toolkit_failed = 2,   /**< Elementary could not be initialised */
    application_create_failed = 3,    /**< the create callback answered false */
    application_display_missing = 4,  /**< there is no display to draw on */
    application_theme_missing = 5,    /**< the toolkit's theme is missing or is none */
    application_held_up = 6,          /**< an earlier process of the application is ending, without an end */
};

} // namespace platform

/**
 * Runs the application until its main loop ends.
 *
 * Order: create, app_control (the first launch), main loop, terminate. A launch while the application already
 * runs reaches the running process as a further app_control, and this call returns `application_ok` at once.
 * One while the earlier process is ending waits for its end, 30 s at most, and then runs itself. Without a
 * display or a theme nothing is called.
 * An exception that leaves a callback is logged and goes no further; one out of create counts as false.
 *
 * @param argc,argv the process's arguments.
 * @param callbacks the lifecycle callbacks; create and terminate are not null.
 * @param user_data handed to every callback.
 * @return `application_ok` after an orderly end, else another `ApplicationResult`.
 */
int ui_app_main(int argc, char** argv, const platform::LifecycleCallbacks* callbacks, void* user_data);

/**
 * Registers the handler of an event type, replacing an earlier one; may be called before `ui_app_main`.
 *
 * @param handler   receives the registration, which the framework owns; may be null.
 * @param type      the event type.
 * @param callback  called when the event occurs; not null.
 * @param user_data handed to the callback.
 * @return `application_ok` or `application_invalid_argument`.
 */
int ui_app_add_event_handler(platform::EventHandler** handler, platform::EventType type,
                             platform::EventCallback callback, void* user_data);

/**
 * Asks the main loop to end; terminate follows once control returns to it. In create the request is
 * remembered, and the loop does not start (Ecore forgets such a request: measured, an `elm_exit` in create
 * has no effect). Main thread.
 */
void ui_app_quit();

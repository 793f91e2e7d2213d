/** Tests the framework with an application in a child process that records its callbacks. */
#include "base/wait_until.h"
#include "common/dropped_press.h"
#include "efl_1_26/application/accessibility_bridge.h"
#include "platform/application.h"
#include "platform/log.h"
#include "support/log_capture.h"
#include "support/settings_folder.h"
#include "support/television.h"
#include "ui_driver/keyboard.h"

#include <Elementary.h>
#include <csignal>
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <sstream>
#include <thread>

namespace {

using namespace std::chrono_literals;

/**
 * One run of the framework; ", " separates steps and lines. A step is a shell command, or an entry of
 * `operations` with its argument.
 */
struct Case {
    const char* name;
    std::string steps;        /**< performed in another thread after the launch */
    std::string lines;        /**< expected messages of the application and of the framework */
    std::string create = {};  /**< steps of the create callback */
    std::string prepare = {}; /**< steps before the framework starts */
    int status = 0;           /**< exit status of the process, as in a shell */
};

Evas_Object* window = nullptr;
std::jthread user;
bool lose_next_request = false;

/** Logs a line as the framework does. */
void say(const std::string& line) {
    __dlog_print(platform::LogBuffer::main, platform::LogPriority::info, "PLATFORM", "%s", line.c_str());
}

/** Calls a function while the main loop waits. */
void in_loop(const std::function<void()>& action) {
    ecore_thread_main_loop_begin();
    action();
    ecore_thread_main_loop_end();
}

void press(const std::string& keys) {
    std::istringstream stream(keys);
    for (std::string key; stream >> key;)
        simulator::press_key(simulator::open_display(), key);
}

/** Blocks the main loop for 400 ms, and presses keys in the middle. */
void work(const std::string& keys) {
    std::this_thread::sleep_for(200ms);
    press(keys);
    std::this_thread::sleep_for(200ms);
    say("worked");
}

/** Waits until a text has been logged; for example, "2worked" waits for two messages that contain "worked". */
void await(const std::string& times_and_text) {
    const auto is_logged = [&] {
        return simulator::ApplicationLog().count(times_and_text.substr(1)) >= times_and_text.front() - '0';
    };
    (void)simulator::wait_until(is_logged, 60s);
}

/** Waits for a state of the accessibility bridge, "connected" or "not connected", and logs the result. */
void await_bridge(const std::string& state) {
    const auto is_reached = [&] {
        std::this_thread::sleep_for(500ms);
        bool is_connected = false;
        in_loop([&] { is_connected = platform::bridge_is_connected(); });
        return is_connected == (state == "connected");
    };
    say(simulator::wait_until(is_reached, 60s) ? state : "not " + state);
}

/** Logs whether the toolkit's clock is up to date in a GLib timer's callback. */
void start_timer(const std::string& /*argument*/) {
    const auto on_timer = [](gpointer) {
        say(ecore_time_get() - ecore_loop_time_get() < 0.2 ? "in time" : "the clock is old");
    };
    g_timeout_add_once(300, on_timer, nullptr);
}

void start_program(const std::string& script) {
    EXPECT_GT(dup(STDERR_FILENO), STDERR_FILENO);
    const pid_t child = fork();
    if (child == 0)
        execl("/bin/sh", "sh", "-c", script.c_str(), nullptr);
    waitpid(child, nullptr, 0); // unless the main loop has reaped it
}

void announce_reader(const std::string& is_there) {
    std::system(("gdbus call --session --dest org.a11y.Bus --object-path /org/a11y/bus --method "
                 "org.freedesktop.DBus.Properties.Set org.a11y.Status ScreenReaderEnabled '<" +
                 is_there + ">'")
                    .c_str());
}

const std::map<std::string, void (*)(const std::string&)> operations{
    {"await", await},
    {"await_bridge", await_bridge},
    {"close", [](const auto& descriptor) { close(std::stoi(descriptor)); }},
    {"hide", [](const auto&) { in_loop([] { evas_object_hide(window); }); }},
    {"hold", [](const auto& key) { simulator::move_key(simulator::open_display(), key, true); }},
    {"ignore_hangup", [](const auto&) { std::signal(SIGHUP, SIG_IGN); }},
    {"loop", [](const auto&) { in_loop([] {}); }}, // waits until the loop runs
    {"lose_request", [](const auto&) { lose_next_request = true; }},
    {"press", press},
    {"press_at_once", [](const auto& keys) { in_loop([&] { press(keys); }); }},
    {"quit", [](const auto&) { in_loop(ui_app_quit); }},
    {"reader", announce_reader},
    {"release", [](const auto& key) { simulator::move_key(simulator::open_display(), key, false); }},
    {"say", say},
    {"set_display", [](const auto& display) { setenv("DISPLAY", display.c_str(), 1); }},
    {"set_mode", [](const auto& mode) { setenv("ELM_ATSPI_MODE", mode.c_str(), 1); }},
    {"show", [](const auto&) { in_loop([] { evas_object_show(window); }); }},
    {"signal", [](const auto& number) { kill(getpid(), std::stoi(number)); }},
    {"start", start_program},
    {"start_timer", start_timer},
    {"throw", [](const auto& text) { throw std::runtime_error(text); }},
    {"use_settings", [](const auto&) { static const test::SettingsFolder settings(""); }},
    {"work_in_glib",
     [](const auto&) { g_idle_add_once([](gpointer) { work("Return F1 Return"); }, nullptr); }},
};

/** Performs steps. @return whether all shell commands succeeded. */
bool take(const std::string& steps) {
    bool succeeds = true;
    g_auto(GStrv) all = g_strsplit(steps.c_str(), ", ", -1);
    for (char** step = all; *step != nullptr; ++step) {
        g_auto(GStrv) words = g_strsplit(*step, " ", 2); // the operation and its argument
        if (const auto found = operations.find(words[0] == nullptr ? "" : words[0]);
            found != operations.end())
            found->second(words[1] == nullptr ? "" : words[1]);
        else
            succeeds = std::system(*step) == 0 && succeeds;
    }
    return succeeds;
}

bool create(void* test_case) {
    say("create");
    window = elm_win_util_standard_add("probe", "Probe");
    const auto on_key = [](void*, Evas*, Evas_Object*, void* event) {
        const std::string key = static_cast<const Evas_Event_Key_Down*>(event)->key;
        say("key " + key);
        if (key == "F9")
            work("");
    };
    evas_object_event_callback_add(window, EVAS_CALLBACK_KEY_DOWN, on_key, nullptr);
    evas_object_resize(window, 400, 300);
    evas_object_show(window);
    elm_win_activate(window);
    const auto on_drop = [](void*, int, void*) -> Eina_Bool {
        say("dropped");
        return ECORE_CALLBACK_PASS_ON;
    };
    ecore_event_handler_add(platform::dropped_press_event(), on_drop, nullptr);
    return take(static_cast<const Case*>(test_case)->create);
}

void terminate(void* /*test_case*/) {
    say(std::string("terminate ") + elm_win_title_get(window)); // Elementary is still initialised
    user.join();                                                // wait for the last steps
    evas_object_del(window);
}

void launch(platform::LaunchRequest* /*request*/, void* test_case) {
    say("app_control");
    user = std::jthread(take, static_cast<const Case*>(test_case)->steps);
}

int run(Case test_case) {
    std::string name = "probe";
    char* arguments = name.data();
    take(test_case.prepare);
    ui_app_add_event_handler(
        nullptr, platform::EventType::language_changed,
        [](platform::EventInformation*, void*) { say("language changed"); }, nullptr);
    const platform::LifecycleCallbacks callbacks{.create = create,
                                                 .terminate = terminate,
                                                 .pause = [](void*) { say("pause"); },
                                                 .resume = [](void*) { say("resume"); },
                                                 .app_control = launch};
    return ui_app_main(1, &arguments, &callbacks, &test_case);
}

/** The lines of a run that shuts down cleanly, with `lines` between launch and shutdown. */
std::string normal_run(const std::string& lines = "",
                       const std::string& reason = "the application asked to") {
    return "create, app_control, " + lines + (lines.empty() ? "" : ", ") + "the main loop ends: " + reason +
           ", terminate Probe";
}

const std::string buses = "'[s]ession.*--address|[d]bus-daemon.*system_bus.conf'";
const std::string write_arabic =
    "cd $XDG_CONFIG_HOME/tv-platform; echo '[db/menu_widget]\nlanguage=ar_AE.utf8\n";
const std::string dropped = "dropped a press while the screen was frozen: Return";

const std::vector<Case> cases{
    {"ApplicationQuitsInCreate", "", normal_run(), "quit"},
    {"CreateFails", "", "create", "false", "", 3},
    {"CreateThrows", "", "create, create ended with an exception: text", "throw text", "", 3},
    {"SignalArrivesInCreate", "", "create", "signal 15, sleep 5", "", 128 + SIGTERM},
    {"SigintArrives", "loop, signal 2", normal_run("", "SIGINT")},
    {"SigquitArrives", "loop, signal 3", normal_run("", "SIGQUIT")},
    {"SighupArrives", "loop, signal 1", normal_run("", "SIGHUP")},
    {"SeveralSignalsArrive", "sleep 0.5, press F9, await 1key F9, signal 15, signal 15, signal 1",
     normal_run("key F9, worked", "SIGTERM")},
    {"LauncherIgnoredHangup",
     "loop, signal 1, sleep 0.3, say lives, signal 15, await 1terminate Probe, signal 15",
     normal_run("lives", "SIGTERM"), "signal 1", "ignore_hangup"},
    {"DisplayDies", "pkill -KILL Xvfb", normal_run("", "the display connection was lost")},
    {"DisplayIsMissing", "", "no display: cannot connect to DISPLAY=:4095", "", "set_display :4095", 4},
    {"BusesDoNotAnswer", "quit", "the session bus does not answer: starting without it, " + normal_run(), "",
     "set_mode 1, pkill -STOP -f " + buses},
    {"DescriptorsAreMissingAndAProgramIsStarted",
     "start cd /proc/$$/fd; for n in $(seq 0 99); do [ -e $n ] && "
     "echo \"I/PLATFORM(0): $(readlink $n | grep /dev/null || echo $n)\" >&2; done, quit",
     normal_run("/dev/null, /dev/null, 2"), "", "close 0, close 1"},
    {"GlibTimerExpires", "sleep 1, start_timer, await 1in time, quit", normal_run("in time")},
    {"LanguageOrMirroringChanges",
     write_arabic + "' >next && mv next settings.ini, await 1language changed, sleep 1, say other, " +
         write_arabic + "other=1' >settings.ini, sleep 1, say mirrored, " + write_arabic +
         "mirrored=false' >settings.ini, await 2language changed, quit",
     normal_run("language changed, other, mirrored, language changed"), "", "use_settings"},
    {"KeysArePressedDuringFreezes",
     "sleep 0.5, work_in_glib, await 1worked, sleep 1, press Return, await 1key Return, "
     "press_at_once F9 Return, await 2worked, sleep 1, press Return, await 2key Return, quit",
     normal_run("worked, " + dropped + ", key XF86Red, dropped, key Return, key F9, worked, " + dropped +
                ", dropped, key Return")},
    {"KeysAreHeldDuringFocusChanges",
     "sleep 0.5, hold Return, await 1key Return, hide, await 1pause, sleep 1, show, await 1resume, sleep 1, "
     "release Return, press Return, await 2key Return, hold Return, await 3key Return, hide, await 2pause, "
     "release Return, show, await 2resume, sleep 1, press Return, await 4key Return, quit",
     normal_run("key Return, pause, resume, key Return, key Return, pause, resume, key Return")},
    {"ScreenReaderStartsAndStops",
     "reader false, await_bridge not connected, reader true, await_bridge connected, press Return, "
     "await 1key Return, reader false, await_bridge not connected, pkill -STOP -f [a]ccessibility.conf, "
     "reader true, await_bridge not connected, pkill -CONT -f [a]ccessibility.conf, await_bridge connected, "
     "quit",
     normal_run("not connected, lost, connected, key Return, not connected, not connected, connected"), "",
     "set_mode 1, lose_request"},
};

class Framework : public testing::TestWithParam<Case> {};

TEST_P(Framework, LogsExpectedLines) {
    const LogCapture log;
    const pid_t probe = fork();
    if (probe == 0)
        std::exit(run(GetParam()));
    int status = 0;
    waitpid(probe, &status, 0);
    std::system(("pkill -CONT -f " + buses).c_str());
    EXPECT_EQ(WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status), GetParam().status);
    std::string lines;
    for (const std::string& message : log.messages())
        lines += (lines.empty() ? "" : ", ") + message.substr(message.find(" > ") + 3);
    EXPECT_EQ(lines, GetParam().lines);
}

INSTANTIATE_TEST_SUITE_P(, Framework, testing::ValuesIn(cases),
                         [](const auto& test) { return test.param.name; });

} // namespace

// Replaces the EFL function with which the accessibility bridge requests the address of its bus.
extern "C" Eldbus_Pending* eldbus_object_send(Eldbus_Object* object, Eldbus_Message* message,
                                              Eldbus_Message_Cb answered, const void* data, double timeout) {
    if (std::exchange(lose_next_request, false)) {
        say("lost");
        eldbus_message_unref(message);
        return nullptr;
    }
    static const auto forward =
        reinterpret_cast<decltype(&eldbus_object_send)>(dlsym(RTLD_NEXT, "eldbus_object_send"));
    return forward(object, message, answered, data, timeout);
}

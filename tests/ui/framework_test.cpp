/** The framework, seen from an application in a process of its own that says what happens to it. */
#include "base/process.h"
#include "base/wait_until.h"
#include "efl_1_26/application/bridge_connection.h"
#include "support/settings_folder.h"
#include "support/television.h"
#include "support/windows.h"

#include "common/dropped_press.h"
#include "platform/application.h"

#include <Elementary.h>
#include <csignal>
#include <dlfcn.h>
#include <functional>
#include <gio/gio.h>
#include <gio/gunixsocketaddress.h>
#include <gmock/gmock.h>
#include <iostream>
#include <mutex>
#include <sstream>
#include <thread>

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Lines = std::vector<std::string>;
using Action = std::function<void()>;
using testing::ExitedWithCode;
using testing::HasSubstr;

/** The application: a window that tells its keys. */
struct Application {
    Action hand = [] {}; /**< what a person does to it, on a thread of its own */
    std::function<bool()> create = [] { return true; };
    std::jthread person = {};
};

Evas_Object* window = nullptr;
std::mutex said_mutex;
Lines said;

void say(const std::string& line) {
    const std::lock_guard lock(said_mutex);
    std::cerr << "> " + line + "\n";
    said.push_back(line);
}

/** Waits until a line was said so often. */
void await(const std::string& line, long times = 1) {
    const auto is_said = [&] {
        const std::lock_guard lock(said_mutex);
        return std::ranges::count(said, line) >= times;
    };
    (void)simulator::wait_until(is_said, 60s);
}

/** Has the main loop do it, and waits for it. */
void in_loop(Action action) {
    const auto act = [](void* data) -> void* {
        (*static_cast<Action*>(data))();
        return nullptr;
    };
    ecore_main_loop_thread_safe_call_sync(act, &action);
}

void quit() { in_loop(ui_app_quit); }

void rest(std::chrono::milliseconds time) { std::this_thread::sleep_for(time); }

void press(const std::string& key, std::chrono::milliseconds time = 0ms) {
    simulator::press_key(simulator::open_display(), key, time);
}

/** Is busy, while a person presses keys. */
void work(std::chrono::milliseconds time, const Lines& keys = {}) {
    rest(time / 2);
    for (const std::string& key : keys)
        press(key);
    rest(time / 2);
    say("worked");
}

void key_down(void*, Evas*, Evas_Object*, void* event) {
    const std::string key = static_cast<const Evas_Event_Key_Down*>(event)->key;
    say("key " + key);
    if (key == "F9")
        work(400ms);
}

bool create(void* application) {
    say("create");
    window = elm_win_util_standard_add("probe", "Probe");
    evas_object_event_callback_add(window, EVAS_CALLBACK_KEY_DOWN, key_down, nullptr);
    evas_object_resize(window, 400, 300);
    evas_object_show(window);
    elm_win_activate(window);
    const auto on_drop = [](void*, int, void*) -> Eina_Bool {
        say("dropped");
        return ECORE_CALLBACK_PASS_ON;
    };
    ecore_event_handler_add(platform::dropped_press_event(), on_drop, nullptr);
    return static_cast<const Application*>(application)->create();
}

/** @return the framework's result. */
int run(Application application) {
    std::string name = "probe";
    char* arguments = name.data();
    ui_app_add_event_handler(
        nullptr, platform::EventType::language_changed,
        [](platform::EventInformation*, void*) { say("language changed"); }, nullptr);
    const platform::LifecycleCallbacks callbacks{
        .create = create,
        // Elementary is still up: its objects can be used and deleted.
        .terminate =
            [](void*) {
                say(std::string("terminate ") + elm_win_title_get(window));
                rest(100ms);
                evas_object_del(window);
            },
        .pause = [](void*) { say("pause"); },
        .resume = [](void*) { say("resume"); },
        .app_control =
            [](platform::LaunchRequest*, void* data) {
                say("app_control");
                auto& launched = *static_cast<Application*>(data);
                launched.person = std::jthread(launched.hand);
            },
    };
    return ui_app_main(1, &arguments, &callbacks, &application);
}

/** What the application said, and after "log: " what the framework logged. */
Lines lines_in(const std::string& text) {
    Lines lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) // a library's words are left out
        if (line.starts_with("> "))
            lines.push_back(line.substr(2));
        else if (line.find("/PLATFORM(") == 1)
            lines.push_back("log: " + line.substr(line.find("): ") + 3));
    return lines;
}

auto says(const Lines& lines) { return testing::ResultOf(lines_in, lines); }

/** Between its start and its end, which is a success, the application says this. */
void expect_life(Lines lines, const Action& hand, const std::string& reason = "the application asked to") {
    lines.insert(lines.begin(), {"create", "app_control"});
    lines.insert(lines.end(), {"log: the main loop ends: " + reason, "terminate Probe"});
    EXPECT_EXIT(std::exit(run({.hand = hand})), ExitedWithCode(0), says(lines));
}

class Framework : public testing::Test {
protected:
    Framework() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST_F(Framework, EveryWayOutCallsTerminateOnceWhileTheToolkitIsUpAndSaysWhy) {
    expect_life({}, quit);
    expect_life({}, [] { in_loop(elm_exit); });
    for (const auto& [number, name] :
         {std::pair{SIGTERM, "SIGTERM"}, {SIGINT, "SIGINT"}, {SIGQUIT, "SIGQUIT"}, {SIGHUP, "SIGHUP"}})
        expect_life(
            {},
            [signal = number] {
                in_loop([] {}); // before the loop it would end the process
                kill(getpid(), signal);
            },
            name);
    const auto signals_while_busy = [] {
        for (const int number : {SIGTERM, SIGTERM, SIGHUP})
            kill(getpid(), number);
        work(100ms);
    };
    expect_life(
        {"worked"}, [&] { in_loop(signals_while_busy); }, "SIGTERM");
}

TEST_F(Framework, WhatTheLauncherIgnoredStaysIgnoredAndASecondSignalDoesNotBreakOffTheEnd) {
    const auto hang_up = [] {
        kill(getpid(), SIGHUP);
        return true;
    };
    const auto hang_up_and_end = [] {
        in_loop([] { kill(getpid(), SIGHUP); });
        rest(300ms);
        say("lives");
        kill(getpid(), SIGTERM);
        await("terminate Probe");
        kill(getpid(), SIGTERM);
    };
    std::signal(SIGHUP, SIG_IGN); // as nohup does; the processes below inherit it
    EXPECT_EXIT(
        std::exit(run({.hand = hang_up_and_end, .create = hang_up})), ExitedWithCode(0),
        says({"create", "app_control", "lives", "log: the main loop ends: SIGTERM", "terminate Probe"}));
    std::signal(SIGHUP, SIG_DFL);
}

class FrameworkOnADyingDisplay : public Framework {};

TEST_F(FrameworkOnADyingDisplay, EndsInOrder) {
    expect_life(
        {}, [] { std::system("pkill -KILL Xvfb"); }, "the display has gone");
}

TEST_F(Framework, MissingStandardDescriptorsAreTheNullDevice) {
    const auto run_without = [] {
        for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO})
            close(descriptor);
        return run({.hand = [] {
            for (const char* const number : {"0", "1"})
                say(std::filesystem::read_symlink(std::string("/proc/self/fd/") + number));
            quit();
        }});
    };
    const Lines lines{"create",
                      "app_control",
                      "/dev/null",
                      "/dev/null",
                      "log: the main loop ends: the application asked to",
                      "terminate Probe"};
    EXPECT_EXIT(std::exit(run_without()), ExitedWithCode(0), says(lines));
}

TEST_F(Framework, StartedProgramInheritsTheStandardDescriptorsAlone) {
    expect_life({"0", "1", "2"}, [] {
        EXPECT_GT(dup(STDERR_FILENO), STDERR_FILENO);
        constexpr const char* script =
            "for n in $(seq 0 99); do [ -e /proc/$$/fd/$n ] && echo \"> $n\" >&2; done";
        const pid_t child = fork();
        if (child == 0)
            execl("/bin/sh", "sh", "-c", script, nullptr);
        while (kill(child, 0) == 0) // until the main loop has collected it
            rest(20ms);
        quit();
    });
}

TEST_F(Framework, WhatHappensInCreateOrIsMissingBeforeItDecides) {
    const auto expect = [](int status, const Lines& lines, std::function<bool()> created) {
        EXPECT_EXIT(std::exit(run({.create = std::move(created)})), ExitedWithCode(status), says(lines));
    };
    const auto quit_at_once = [] {
        ui_app_quit();
        return true;
    };
    expect(0,
           {"create", "app_control", "log: the main loop ends: the application asked to", "terminate Probe"},
           quit_at_once);
    expect(3, {"create"}, [] { return false; });
    expect(3, {"create", "log: create ended with an exception: thrown"},
           []() -> bool { throw std::runtime_error("thrown"); });
    const auto wait_for_a_signal = [] {
        kill(getpid(), SIGTERM);
        rest(5s); // as a silent bus would keep it
        return true;
    };
    EXPECT_EXIT(run({.create = wait_for_a_signal}), testing::KilledBySignal(SIGTERM), says({"create"}));
    const ScopedEnvironment no_display("DISPLAY", ":4095");
    expect(4, {"log: no display: nothing answers at DISPLAY=:4095"}, [] { return true; });
}

TEST_F(Framework, BusesThatDoNotAnswerHoldUpNeitherTheStartNorTheEnd) {
    const auto run_on_it = [] {
        const std::string path = "/tmp/silent_bus";
        std::filesystem::remove(path);
        g_autoptr(GSocketListener) bus = g_socket_listener_new(); // lets clients in, and nobody hears them
        g_autoptr(GSocketAddress) address = g_unix_socket_address_new(path.c_str());
        EXPECT_TRUE(g_socket_listener_add_address(bus, address, G_SOCKET_TYPE_STREAM,
                                                  G_SOCKET_PROTOCOL_DEFAULT, nullptr, nullptr, nullptr));
        for (const char* const variable : {"DBUS_SESSION_BUS_ADDRESS", "DBUS_SYSTEM_BUS_ADDRESS"})
            setenv(variable, ("unix:path=" + path).c_str(), 1);
        setenv("ELM_ATSPI_MODE", "1", 1);
        return run({.hand = quit});
    };
    const auto begin = Clock::now();
    EXPECT_EXIT(std::exit(run_on_it()), ExitedWithCode(0), HasSubstr("the session bus does not answer"));
    EXPECT_LT(Clock::now() - begin, 20s); // GLib's own time-out is 25 s
}

TEST_F(Framework, GlibTimerComesInTimeAndFindsTheToolkitsClockRight) {
    expect_life({"in time"}, [] {
        rest(1s); // the main loop rests
        const auto over = [](gpointer) -> gboolean {
            const bool clock_is_right = ecore_time_get() - ecore_loop_time_get() < 0.5;
            say(clock_is_right ? "in time" : "the toolkit is behind");
            return G_SOURCE_REMOVE;
        };
        g_timeout_add(300, over, nullptr);
        await("in time"); // nothing else wakes the loop
        quit();
    });
}

TEST_F(Framework, ChangedLanguageOrMirroringIsToldOnce) {
    const test::SettingsFolder settings("");
    expect_life({"language changed", "same values", "language changed"}, [&settings] {
        const std::string arabic = "[db/menu_widget]\nlanguage=ar_AE.utf8\n";
        const std::string next = settings.file().string() + ".next"; // as a careful editor does it
        put_file(next, arabic);
        std::filesystem::rename(next, settings.file());
        rest(1s);
        say("same values");
        for (const char* const line : {"another=1\n", "mirrored=false\n"}) { // empty for a moment
            std::ofstream file(settings.file());
            rest(20ms);
            file << arabic << line << std::flush;
            rest(1s);
        }
        quit();
    });
}

TEST_F(Framework, KeysAreThoseOfTheRemoteControlAndOnlyRedIsKeptWhileTheScreenIsFrozen) {
    const std::string reached = "key Return";
    const std::string told = "dropped"; // the toolkit
    const std::string dropped = "log: dropped a press while the screen was frozen: Return";
    const Lines lines{"key XF86Back", "key XF86Exit", "key XF86Red",                   //
                      "worked",       reached,        reached,                         //
                      "worked",       dropped,        told,          reached,          //
                      "worked",       dropped,        "key XF86Red", told,    reached, //
                      "worked",       "key F9",       "worked",      dropped, told,    reached};
    expect_life(lines, [] {
        const auto press_after = [](const Action& action) {
            in_loop(action);
            rest(1s);
            press("Return");
            rest(500ms);
        };
        const auto work_in_glib = [](gpointer) -> gboolean {
            work(400ms, {"Return", "F1", "Return"});
            return G_SOURCE_REMOVE;
        };
        rest(500ms);
        for (const char* const key : {"Escape", "F12", "F1"})
            press(key);
        rest(500ms);
        press_after([] { work(150ms, {"Return"}); });
        press_after([] { work(400ms, {"Return"}); });
        press_after([work_in_glib] { g_idle_add(work_in_glib, nullptr); });
        press_after([] { work(150ms, {"F9", "Return"}); }); // both wait, and the first takes long
        quit();
    });
}

TEST_F(Framework, KeysHeldWhileTheFocusGoesAndComesAreNeitherPressedAgainNorDead) {
    const std::string pressed = "key Return";
    const Lines lines{"pause", "resume", pressed, "pause", "resume", pressed, "pause", "resume", pressed};
    expect_life(lines, [pressed] {
        rest(500ms); // no resume before a pause
        in_loop([] { evas_object_hide(window); });
        await("pause");
        in_loop([] { evas_object_show(window); });
        await("resume");
        rest(500ms);
        long times = 0;
        for (const auto held : {6000ms, 1000ms}) { // till long after the window is back, or till it is away
            const std::jthread finger([held] { press("Return", held); });
            await(pressed, ++times);
            {
                const simulator::OtherWindow other;
                await("pause", times + 1);
                rest(1s);
            }
            await("resume", times + 1);
            rest(1s); // a repetition is no press
        }
        press("Return");
        await(pressed, ++times);
        quit();
    });
}

bool next_question_is_lost = false;

TEST_F(Framework, BridgeFollowsAReaderThatComesLaterAndGoesAndTheAccessibilityBusWhenItAnswers) {
    const auto tell = [](bool expected) {
        bool is_connected = !expected;
        const auto look = [&] { is_connected = platform::bridge_is_connected(); };
        (void)simulator::wait_until(
            [&] {
                rest(500ms);
                in_loop(look);
                return is_connected == expected;
            },
            10s);
        say(is_connected ? "connected" : "not connected");
    };
    const auto set_reader = [tell](bool is_there) {
        simulator::announce_screen_reader(is_there);
        tell(is_there);
    };
    const ScopedEnvironment mode("ELM_ATSPI_MODE", "1"); // which nobody asks
    next_question_is_lost = true;
    expect_life({"not connected", "lost", "connected", "not connected", "connected", "key Return",
                 "not connected", "not connected", "connected"},
                [&] {
                    for (const bool is_there : {false, true, false, true})
                        set_reader(is_there);
                    press("Return");
                    await("key Return");
                    set_reader(false);
                    std::system("pkill -STOP -f [a]ccessibility.conf");
                    simulator::announce_screen_reader(true);
                    tell(false);
                    std::system("pkill -CONT -f [a]ccessibility.conf");
                    tell(true);
                    quit();
                });
}

} // namespace

// The accessibility bridge asks for the address of its bus through it.
extern "C" Eldbus_Pending* eldbus_object_send(Eldbus_Object* object, Eldbus_Message* message,
                                              Eldbus_Message_Cb answered, const void* data, double timeout) {
    if (std::exchange(next_question_is_lost, false)) {
        say("lost");
        eldbus_message_unref(message);
        return nullptr;
    }
    static const auto forward =
        reinterpret_cast<decltype(&eldbus_object_send)>(dlsym(RTLD_NEXT, "eldbus_object_send"));
    return forward(object, message, answered, data, timeout);
}

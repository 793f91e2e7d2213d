#include "support/log_capture.h"
#include "support/probe_process.h"

#include <array>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gio/gio.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <thread>

namespace {

using namespace std::chrono_literals;
using test::ProbeProcess;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

/** A settings folder of the test's own, which does not exist at first. */
class Framework : public testing::Test {
protected:
    Framework() {
        std::filesystem::remove_all(home_);
        g_setenv("XDG_CONFIG_HOME", home_.c_str(), TRUE);
    }
    ~Framework() override { std::filesystem::remove_all(home_); }

    /** Saves the settings as a careful editor does: a new file renamed over the old one. */
    void save_settings(const std::string& text) const {
        const auto file = home_ / "tv-platform" / "settings.ini";
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file.string() + ".new") << "[db/menu_widget]\n" << text;
        std::filesystem::rename(file.string() + ".new", file);
    }

    /** Truncates the settings, waits, and writes them. */
    void overwrite_settings(const std::string& text) const {
        std::ofstream file(home_ / "tv-platform" / "settings.ini");
        file << "[db/menu_widget]\n" << std::flush;
        g_usleep(20'000);
        file << text;
    }

private:
    std::filesystem::path home_ = std::filesystem::temp_directory_path() / "framework_test";
};

class Ending : public Framework {
protected:
    /** The probe has left its loop: what it still prints, its status, and the one line that says why. */
    void expect_orderly_end(ProbeProcess& probe, const std::string& reason) {
        EXPECT_EQ(probe.wait(), 0);
        EXPECT_THAT(probe.lines_for(0ms), ElementsAre("title Probe", "terminate"));
        expect_reason(reason);
    }

    void expect_reason(const std::string& reason) {
        const std::string text = log_.text();
        const auto first = text.find(ends);
        ASSERT_NE(first, std::string::npos) << "expected: " << reason;
        EXPECT_THAT(text.substr(first + ends.size()), StartsWith(reason + "\n"));
        EXPECT_EQ(text.find(ends, first + 1), std::string::npos) << "one line: " << text;
        log_.clear();
    }

    LogCapture log_;

private:
    const std::string ends = "the main loop ends: ";
};

TEST_F(Ending, EveryWayOutCallsTerminateOnceWhileElementaryIsUp) {
    for (const auto& [command, reason] :
         {std::pair{"quit", "told to"}, {"exit", "the toolkit was asked to"}}) {
        ProbeProcess probe({"window"});
        ASSERT_NE(probe.await("app_control"), "");
        probe.send(command);
        expect_orderly_end(probe, reason);
    }
    for (const auto& [signal, name] :
         {std::pair{SIGTERM, "SIGTERM"}, {SIGINT, "SIGINT"}, {SIGQUIT, "SIGQUIT"}, {SIGHUP, "SIGHUP"}}) {
        ProbeProcess probe({"window"});
        ASSERT_NE(probe.await("app_control"), "");
        kill(probe.id(), signal);
        expect_orderly_end(probe, name);
    }
}

TEST_F(Ending, SignalDuringALongCallbackTakesEffectAfterItAndTheFirstIsTheReason) {
    ProbeProcess probe({"window"});
    ASSERT_NE(probe.await("app_control"), "");
    probe.send("block 500");
    ASSERT_NE(probe.await("blocking"), "");
    kill(probe.id(), SIGTERM);
    kill(probe.id(), SIGTERM);
    kill(probe.id(), SIGHUP);
    EXPECT_EQ(probe.await("blocked"), "blocked");
    expect_orderly_end(probe, "SIGTERM");
}

TEST_F(Ending, TheDisplaysEndIsAnOrderlyOneToo) {
    const std::string display = g_getenv("DISPLAY");
    std::optional<ProbeProcess> server(std::in_place, std::vector<std::string>{"-displayfd", "1"},
                                       "/usr/bin/Xvfb");
    g_setenv("DISPLAY", (":" + server->await("")).c_str(), TRUE);
    ProbeProcess probe({"window"});
    g_setenv("DISPLAY", display.c_str(), TRUE);
    ASSERT_NE(probe.await("app_control"), "");
    server.reset();
    expect_orderly_end(probe, "the display has gone");
}

TEST_F(Ending, MissingStandardDescriptorsAreTheNullDevice) {
    namespace fs = std::filesystem;
    ProbeProcess probe({"-c", "exec " FRAMEWORK_PROBE " window <&- >&- 2>&-"}, "/bin/sh");
    const fs::path descriptors = "/proc/" + std::to_string(probe.id()) + "/fd";
    for (int look = 0; !fs::exists(descriptors / "20") && look < 1000; ++look)
        g_usleep(10'000);
    for (const char* const number : {"0", "1", "2"})
        EXPECT_EQ(fs::read_symlink(descriptors / number), "/dev/null") << number;
    kill(probe.id(), SIGTERM);
    EXPECT_EQ(probe.wait(), 0);
}

TEST_F(Ending, QuitInCreateIsRemembered) {
    ProbeProcess probe({"quit"});
    EXPECT_EQ(probe.wait(), 0);
    EXPECT_THAT(probe.lines_for(0ms), ElementsAre("create", "app_control", "terminate"));
    expect_reason("told to");
}

TEST_F(Ending, CreateThatFailsOrThrowsEndsWithItsCode) {
    for (const std::string fault : {"refuse", "throw"}) {
        ProbeProcess probe({fault});
        EXPECT_EQ(probe.wait(), 3);
        EXPECT_THAT(probe.lines_for(0ms), ElementsAre("create"));
    }
}

TEST_F(Ending, WithoutADisplayNothingIsCalledAndTheMissingDisplayIsNamed) {
    const std::string display = g_getenv("DISPLAY");
    g_setenv("DISPLAY", ":4095", TRUE);
    ProbeProcess probe({"window"});
    g_setenv("DISPLAY", display.c_str(), TRUE);
    EXPECT_EQ(probe.wait(), 4);
    EXPECT_TRUE(probe.lines_for(0ms).empty());
    EXPECT_THAT(log_.text(), HasSubstr("no display: nothing answers at DISPLAY=:4095\n"));
}

TEST_F(Ending, WithoutAThemeThatCanBeLoadedNothingIsCalledAndItsFileIsNamed) {
    namespace fs = std::filesystem;
    const fs::path program = fs::temp_directory_path() / "without_theme" / "bin" / "probe";
    const fs::path theme = fs::temp_directory_path() / "without_theme" / "share" / "tv-platform" / "vell.edj";
    fs::create_directories(program.parent_path());
    fs::create_directories(theme.parent_path());
    fs::copy_file(FRAMEWORK_PROBE, program, fs::copy_options::overwrite_existing);
    const fs::path good =
        fs::path(FRAMEWORK_PROBE).parent_path().parent_path() / "share/tv-platform/vell.edj";
    const std::string spoiled = "it is spoiled, or not the theme that this program was built with";
    const std::vector<std::pair<std::string, std::function<void()>>> faults{
        {"No such file or directory", [&] { fs::remove(theme); }},
        {spoiled, [&] { fs::copy_file("/usr/share/elementary/themes/default.edj", theme); }},
        {spoiled,
         [&] {
             fs::copy_file(good, theme, fs::copy_options::overwrite_existing);
             std::fstream file(theme, std::ios::in | std::ios::out | std::ios::binary);
             file.seekp(static_cast<std::streamoff>(fs::file_size(good) / 2));
             file << "??";
         }},
    };
    for (const auto& [problem, make] : faults) {
        make();
        ProbeProcess probe({"window"}, program);
        EXPECT_EQ(probe.wait(), 5);
        EXPECT_TRUE(probe.lines_for(0ms).empty());
        EXPECT_THAT(log_.text(), HasSubstr("no theme: " + theme.string() + ": " + problem + "\n"));
    }
}

/** A session bus that lets clients in and answers so many of their messages: none, or the greeting alone. */
class SilentBus {
public:
    explicit SilentBus(int answers) : answers_left_(answers) {
        g_main_context_push_thread_default(context_);
        g_autofree char* guid = g_dbus_generate_guid();
        server_ = g_dbus_server_new_sync("unix:tmpdir=/tmp", G_DBUS_SERVER_FLAGS_NONE, guid, nullptr, nullptr,
                                         nullptr);
        g_signal_connect(server_, "new-connection", G_CALLBACK(let_in), this);
        g_dbus_server_start(server_);
        g_main_context_pop_thread_default(context_);
        g_setenv("DBUS_SESSION_BUS_ADDRESS", g_dbus_server_get_client_address(server_), TRUE);
    }
    ~SilentBus() {
        g_setenv("DBUS_SESSION_BUS_ADDRESS", real_.c_str(), TRUE);
        thread_.request_stop();
        g_main_context_wakeup(context_);
        thread_.join();
        g_dbus_server_stop(server_);
        g_object_unref(server_);
        g_main_context_unref(context_);
    }
    SilentBus(const SilentBus&) = delete;
    SilentBus& operator=(const SilentBus&) = delete;

private:
    static gboolean let_in(GDBusServer* /*server*/, GDBusConnection* client, gpointer bus) {
        g_dbus_connection_add_filter(client, hear, bus, nullptr);
        g_object_set_data_full(G_OBJECT(static_cast<SilentBus*>(bus)->server_), "client",
                               g_object_ref(client), g_object_unref);
        return TRUE;
    }
    static GDBusMessage* hear(GDBusConnection* client, GDBusMessage* message, gboolean incoming,
                              gpointer bus) {
        if (!incoming)
            return message;
        if (static_cast<SilentBus*>(bus)->answers_left_-- > 0) {
            g_autoptr(GDBusMessage) answer = g_dbus_message_new_method_reply(message);
            g_dbus_message_set_body(answer, g_variant_new("(s)", ":1.1"));
            g_dbus_connection_send_message(client, answer, G_DBUS_SEND_MESSAGE_FLAGS_NONE, nullptr, nullptr);
        }
        g_object_unref(message);
        return nullptr;
    }

    const std::string real_ = g_getenv("DBUS_SESSION_BUS_ADDRESS");
    std::atomic<int> answers_left_;
    GMainContext* context_ = g_main_context_new();
    GDBusServer* server_ = nullptr;
    std::jthread thread_{[this](const std::stop_token& stop) {
        while (!stop.stop_requested())
            g_main_context_iteration(context_, TRUE);
    }};
};

TEST_F(Ending, ASessionBusThatDoesNotAnswerHoldsUpNeitherTheStartNorTheEnd) {
    for (const int answers : {0, 1}) {
        const SilentBus bus(answers);
        ProbeProcess probe({"window"});
        EXPECT_NE(probe.await("app_control", 2500ms), "") << answers;
        EXPECT_THAT(log_.text(), HasSubstr("the session bus is not used: ")) << answers;
        log_.clear();
        kill(probe.id(), SIGTERM);
        EXPECT_EQ(probe.await("title", 1s), "title Probe");
        EXPECT_EQ(probe.wait(), 0);
    }
}

TEST_F(Framework, GlibWaitsAndSignalsRunInTheMainLoop) {
    ProbeProcess probe;
    ASSERT_NE(probe.await("app_control"), "");
    probe.send("timeout 300");
    const auto line = probe.await("timeout");
    int waited = 0;
    int behind = 0;
    ASSERT_EQ(std::sscanf(line.c_str(), "timeout after %d, Ecore's clock %d behind", &waited, &behind), 2);
    EXPECT_NEAR(waited, 350, 50);
    EXPECT_LE(behind, 50);

    g_autoptr(GDBusConnection) bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
    ASSERT_NE(bus, nullptr);
    g_dbus_connection_emit_signal(bus, nullptr, "/test", "test.Probe", "Ping", nullptr, nullptr);
    EXPECT_EQ(probe.await("signal"), "signal Ping");
}

TEST_F(Framework, IdleProcessSleeps) {
    ProbeProcess probe({"window"});
    ASSERT_NE(probe.await("app_control"), "");
    probe.lines_for(3s); // the toolkit's start-up work
    const long before = probe.context_switches();
    probe.lines_for(5s);
    EXPECT_LE(probe.context_switches() - before, 2);
}

TEST_F(Framework, SecondLaunchReachesTheFirst) {
    ProbeProcess first;
    ASSERT_NE(first.await("app_control"), "");
    ProbeProcess second({"window"});
    EXPECT_EQ(second.wait(), 0);
    EXPECT_TRUE(second.lines_for(0ms).empty());
    EXPECT_THAT(first.lines_for(1s), ElementsAre("app_control"));
}

TEST_F(Framework, LaunchDoesNotWaitForABusyFirstProcess) {
    ProbeProcess first;
    ASSERT_NE(first.await("app_control"), "");
    first.send("block 3000");
    ASSERT_NE(first.await("blocking"), "");
    ProbeProcess second;
    EXPECT_EQ(second.wait(), 0);
    EXPECT_TRUE(first.lines_for(500ms).empty()) << "the second launch waited for the first process";
    EXPECT_THAT(first.lines_for(5s), ElementsAre("blocked", "app_control"));
}

TEST_F(Framework, LaunchesWhileTheFirstEndsWaitForItsEndAndOneOfThemRuns) {
    ProbeProcess first({"linger"});
    ASSERT_NE(first.await("app_control"), "");
    first.send("quit");
    ASSERT_NE(first.await("terminate"), "");
    ProbeProcess second;
    ProbeProcess third;
    EXPECT_TRUE(second.lines_for(500ms).empty()) << "started beside the first";
    EXPECT_TRUE(third.lines_for(500ms).empty()) << "started beside the first";
    EXPECT_EQ(first.wait(), 0);
    auto lines = second.lines_for(2s); // at once when it has ended
    const bool second_runs = !lines.empty();
    if (!second_runs)
        lines = third.lines_for(2s);
    EXPECT_THAT(lines, ElementsAre("create", "app_control", "app_control"));
    EXPECT_EQ((second_runs ? third : second).wait(), 0);
}

TEST_F(Framework, CoveredOrHiddenWindowPausesOnceAndResumesOnce) {
    ProbeProcess probe({"window"});
    ASSERT_NE(probe.await("app_control"), "");
    EXPECT_TRUE(probe.lines_for(1s).empty()) << "no resume before a pause";
    for (const auto& [away, back] : {std::pair{"cover", "uncover"}, {"hide", "show"}}) {
        probe.send(away);
        EXPECT_THAT(probe.lines_for(500ms), ElementsAre("pause")) << away;
        probe.send(back);
        EXPECT_THAT(probe.lines_for(500ms), ElementsAre("resume")) << back;
    }
}

TEST_F(Framework, ChangedLanguageOrMirroringIsToldOnce) {
    ProbeProcess probe;
    ASSERT_NE(probe.await("app_control"), "");
    save_settings("language=ar_AE.utf8\n");
    EXPECT_THAT(probe.lines_for(1s), ElementsAre("language changed"));
    overwrite_settings("language=ar_AE.utf8\nanother=1\n");
    EXPECT_TRUE(probe.lines_for(1s).empty()) << "neither value changed";
    overwrite_settings("language=ar_AE.utf8\nmirrored=false\n");
    EXPECT_THAT(probe.lines_for(1s), ElementsAre("language changed"));
}

/** Says on the session bus that a screen reader is there, or that it is not. */
void set_screen_reader(bool enabled) {
    g_autoptr(GDBusConnection) bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
    ASSERT_NE(bus, nullptr);
    g_autoptr(GError) error = nullptr;
    g_autoptr(GVariant) reply = g_dbus_connection_call_sync(
        bus, "org.a11y.Bus", "/org/a11y/bus", "org.freedesktop.DBus.Properties", "Set",
        g_variant_new("(ssv)", "org.a11y.Status", "ScreenReaderEnabled", g_variant_new_boolean(enabled)),
        nullptr, G_DBUS_CALL_FLAGS_NONE, 10'000, nullptr, &error);
    ASSERT_NE(reply, nullptr) << error->message;
}

class ScreenReader : public Framework {
protected:
    ~ScreenReader() override { set_screen_reader(false); }
};

/** The parameter: whether a screen reader is there when the keys are pressed. */
class Keys : public ScreenReader, public testing::WithParamInterface<bool> {};

TEST_P(Keys, KeyboardGivesRemoteControlKeysToEveryHandler) {
    set_screen_reader(GetParam());
    ProbeProcess probe({"window"});
    ASSERT_NE(probe.await("app_control"), "");
    probe.lines_for(1s);
    probe.send("bridge");
    ASSERT_EQ(probe.await("bridge"), GetParam() ? "bridge on" : "bridge off");
    const std::vector<std::array<std::string, 3>> keys{
        {"key Escape", "evas key XF86Back", "key XF86Back XF86Back"},
        {"key F12", "evas key XF86Exit", "key XF86Exit XF86Exit"},
        {"key F1", "evas key XF86Red", "key XF86Red XF86Red"},
        {"key Return", "evas key Return", "key Return Return"},
    };
    for (const auto& [pressed, in_evas, in_ecore] : keys) {
        probe.send(pressed);
        EXPECT_THAT(probe.lines_for(500ms), ElementsAre(in_evas, in_ecore));
    }
    probe.send("down Right"); // the server repeats a key after 660 ms
    EXPECT_GE(probe.lines_for(1s).size(), 8);
    probe.send("up Right");
    probe.lines_for(100ms);
    probe.send("down Return");
    EXPECT_THAT(probe.lines_for(1s), ElementsAre("evas key Return", "key Return Return"));
    probe.send("up Return");
    probe.lines_for(100ms);
}

INSTANTIATE_TEST_SUITE_P(WithAndWithoutAScreenReader, Keys, testing::Bool());

TEST_F(Framework, AKeyPressedWhileTheScreenStandsStillReachesNobody) {
    ProbeProcess probe({"window"});
    ASSERT_NE(probe.await("app_control"), "");
    probe.lines_for(1s);
    const std::vector<std::string> reached{"evas key Return", "key Return Return"};
    const std::vector<std::pair<std::string, std::vector<std::string>>> rows{
        {"block 150 Return", {"blocking", "blocked", "evas key Return", "key Return Return"}},
        {"block 400 Return", {"blocking", "blocked"}},
        {"idle 400 Return", {"blocking", "blocked"}},
        {"key F9", {"evas key F9", "key F9 F9", "blocking", "blocked"}},
        {"key F9 Return", {"evas key F9", "key F9 F9", "blocking", "blocked"}}, // both wait in one queue
    };
    for (const auto& [command, printed] : rows) {
        probe.send(command);
        EXPECT_THAT(probe.lines_for(800ms), ElementsAreArray(printed)) << command;
        probe.send("key Return");
        EXPECT_THAT(probe.lines_for(300ms), ElementsAreArray(reached)) << "after " << command;
    }
}

TEST_F(Framework, AKeyHeldWhileTheFocusGoesAndComesIsNeitherPressedAgainNorDead) {
    ProbeProcess probe({"window"});
    ASSERT_NE(probe.await("app_control"), "");
    probe.lines_for(1s);
    const auto release = [&probe] {
        probe.send("up Return");
        EXPECT_THAT(probe.lines_for(100ms), IsEmpty());
    };
    for (const bool released_meanwhile : {false, true}) {
        probe.send("down Return");
        EXPECT_NE(probe.await("key Return"), "");
        probe.send("hide");
        EXPECT_NE(probe.await("pause"), "");
        if (released_meanwhile)
            release();
        probe.send("show");
        EXPECT_NE(probe.await("resume"), "");
        EXPECT_THAT(probe.lines_for(1s), IsEmpty()) << "a repetition of the held key was taken for a press";
        release();
        probe.send("key Return");
        EXPECT_NE(probe.await("key Return", 1s), "") << "released meanwhile: " << released_meanwhile;
    }
}

TEST_F(ScreenReader, BridgeFollowsAReaderThatComesLaterAndGoesButWaitsForNoBus) {
    set_screen_reader(false);
    ProbeProcess probe({"window"});
    ASSERT_NE(probe.await("app_control"), "");
    for (const bool enabled : {true, false, true}) {
        set_screen_reader(enabled);
        probe.lines_for(500ms);
        probe.send("bridge");
        EXPECT_EQ(probe.await("bridge"), enabled ? "bridge on" : "bridge off");
    }
    probe.send("key Return");
    EXPECT_EQ(probe.await("key"), "key Return Return");

    set_screen_reader(false); // and again, with an accessibility bus that does not answer
    ASSERT_EQ(std::system("pkill -STOP -f [a]ccessibility.conf"), 0);
    set_screen_reader(true);
    probe.lines_for(1500ms);
    probe.send("bridge");
    EXPECT_EQ(probe.await("bridge"), "bridge off");
    std::system("pkill -CONT -f [a]ccessibility.conf");
}

} // namespace

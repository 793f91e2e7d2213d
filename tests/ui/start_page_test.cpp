#include "support/pages.h"

#include "model/util.h"
#include "support/sleep_recorder.h"

#include <cstdlib>
#include <filesystem>
#include <gmock/gmock.h>
#include <system_error>

namespace {

using testing::ElementsAre;

/** The start page of each test, on the television's own radio programs. */
class StartPage : public test::Pages, public testing::WithParamInterface<std::string> {
protected:
    static std::string start() { return "Start " + GetParam(); }
    void expect_only_an_arrow_to_bring_the_focus_back(const std::string& button) {
        EXPECT_EQ(screen->focused(), "");
        screen->press("Return", 2);
        EXPECT_THAT(content(), ElementsAre(button));
        screen->press("Down");
        EXPECT_EQ(screen->focused(), button);
    }
    static bool runs(const std::string& program) {
        return std::system(("pgrep -x " + program + " >/dev/null").c_str()) == 0; // NOLINT(cert-env33-c)
    }
};

TEST_P(StartPage, BringsTheRadioUpAndMakesThePickersAfresh) {
    open(GetParam());
    activate(GetParam() == "TX Test" ? "Set Channel" : "11");
    screen->press("Up", 3);
    screen->press("Return");
    activate(GetParam());
    activate(start());
    EXPECT_THAT(content(), ElementsAre("Please Wait..."));
    expect_only_an_arrow_to_bring_the_focus_back("Please Wait...");
    for (const char* const program : {"cpcd", "socat", "zigbeed"})
        EXPECT_TRUE(runs(program)) << program;
    EXPECT_THAT(log.text(), testing::HasSubstr("Please Wait..."));
    emit("ready");
    activate(GetParam() == "TX Test" ? "Set Channel" : "11");
    EXPECT_EQ(screen->focused(), "[11]");
}

TEST_P(StartPage, WithoutTheRelayItSaysSoAndKeepsThePickers) {
    open(GetParam());
    activate(GetParam() == "TX Test" ? "Set Channel" : "11");
    screen->press("Up", 3);
    screen->press("Return");
    activate(GetParam());
    const std::filesystem::path relay = "/opt/usr/apps/com.kelsor.tv.brimhub/bin/socat";
    std::filesystem::rename(relay, relay.string() + ".away");
    activate(start());
    std::filesystem::rename(relay.string() + ".away", relay);
    EXPECT_THAT(content(), ElementsAre("Failed to start child process"));
    EXPECT_THAT(log.text(), testing::HasSubstr("> Failed to start child process"));
    expect_only_an_arrow_to_bring_the_focus_back("Failed to start child process");
    screen->press("Return"); // starts it all the same
    EXPECT_THAT(content(), ElementsAre("Please Wait..."));
}

TEST_P(StartPage, AnUnforeseenErrorIsLoggedAndAFailedStart) {
    activate(GetParam());
    {
        const SleepRecorder fault( // in the wait for the relay, which has only just been started
            [](std::size_t) { throw std::system_error(EAGAIN, std::generic_category(), "unforeseen"); });
        activate(start());
    }
    EXPECT_THAT(content(), ElementsAre("Failed to start child process"));
    EXPECT_THAT(log.text(), testing::HasSubstr("> ended with an exception: unforeseen: Resource"));
}

INSTANTIATE_TEST_SUITE_P(Tests, StartPage, testing::Values("TX Test", "RX Test"),
                         [](const auto& test) { return test.param.substr(0, 2); });

} // namespace

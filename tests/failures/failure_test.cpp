/** Each failure on a television of its own, made to happen and compared from outside. */
#include "failure.h"
#include "support/road.h"
#include "support/surroundings.h"

#include <algorithm>
#include <array>
#include <gio/gio.h>
#include <sstream>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <thread>
#include <unistd.h>

using namespace std::chrono_literals;

namespace {

constexpr auto button_text = "Failed to start child process";
constexpr auto older_report = "PASS, and longer than what may replace it"; // in the report's files
constexpr mode_t file_mode_mask = 0027;

std::vector<std::string> words(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

std::string label_of(const std::string& path) {
    std::array<char, 100> label{};
    const ssize_t size = getxattr(path.c_str(), "security.SMACK64", label.data(), label.size());
    return {label.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0))};
}

void expect_file(const std::string& path, const FileState& expected) {
    SCOPED_TRACE(path);
    const std::optional<std::string> content = content_of(path);
    ASSERT_EQ(content.has_value(), expected.content.has_value());
    if (!content)
        return;
    if (expected.content != any_content) {
        EXPECT_EQ(content, expected.content);
    }
    struct stat status {};
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, expected.mode.value_or(0666 & ~file_mode_mask));
    if (expected.label) {
        EXPECT_EQ(label_of(path), *expected.label);
    }
    if (expected.is_given_away) {
        EXPECT_EQ(status.st_uid, 5001);
        EXPECT_EQ(status.st_gid, 100);
    }
}

} // namespace

/** The test inside the television in which the failure happens. */
class InTelevision : public Road, public testing::WithParamInterface<Failure> {
protected:
    /** From any page to the outcome of a start. */
    void start() {
        // What is on the log and on the screen when the start is over, by outcome.
        constexpr std::array<std::pair<const char*, const char*>, 3> ends{
            {{"[EVENT DATA] ready", "Channel:"},
             {button_text, button_text},
             {"> child process started", "Please Wait..."}}};
        const std::string test = GetParam().is_rx_test ? "RX Test" : "TX Test";
        operator_.activate(test);
        operator_.wait_for_focus("Start " + test);
        operator_.press("Return");
        if (GetParam().device_after_waits > 0)
            let_device_appear();
        if (GetParam().outcome == Outcome::end)
            return expect_orderly_end();
        const auto& [message, text] = ends.at(static_cast<std::size_t>(GetParam().outcome));
        expect_soon(message, [&, this] { return log_.count(message) > starts_; });
        operator_.wait_for(text);
        expect_running();
        if (GetParam().outcome == Outcome::waiting) {
            std::this_thread::sleep_for(2s); // time enough for a module that could answer
            EXPECT_TRUE(operator_.screen().shows(text));
        }
        ++starts_;
        const std::vector<std::string> calls = {GetParam().is_rx_test ? "ember_start(1)" : "ember_start(0)"};
        expect_asked(GetParam().outcome == Outcome::test_page ? calls : std::vector<std::string>{});
        expect_soon("the ended children to be collected", [] { return simulator::zombies().empty(); });
    }

    void expect_messages() {
        const std::vector<std::string> said = log_.messages();
        auto place = said.begin();
        for (const std::string& wanted : GetParam().messages) {
            place = std::find_if(place, said.end(), [&](const auto& text) { return text.ends_with(wanted); });
            ASSERT_NE(place, said.end()) << "not on the log, or not in this order: " << wanted;
            ++place;
        }
        for (const auto& [text, count] : GetParam().counts)
            EXPECT_EQ(log_.count(text), count) << text;
        EXPECT_EQ(log_.count("stop ncp requester"), 1) << "terminate callbacks";
        for (const std::string name : {"cpcd", "socat", "zigbeed"})
            if (GetParam().survivors.find(name) == std::string::npos) {
                EXPECT_EQ(log_.count("Command [pgrep -c " + name + "] result : 0"),
                          log_.count("Command : killall " + name));
            }
    }

private:
    static void expect_running() {
        expect_soon("the stack to be " + GetParam().running, [] {
            std::vector<std::string> running = simulator::running_processes({"cpcd", "socat", "zigbeed"});
            std::ranges::sort(running);
            return running == words(GetParam().running);
        });
    }

    void let_device_appear() {
        expect_soon("the application to wait",
                    [this] { return log_.count("> waiting /dev/ttyIOT") >= GetParam().device_after_waits; });
        simulator::this_television().call(simulator::radio_module, "SetSerial", g_variant_new("(b)", TRUE));
    }

    long starts_ = 0;
};

TEST_P(InTelevision, When) {
    const Failure& failure = GetParam();
    umask(file_mode_mask);
    std::map<std::string, FileState> files = failure.files;
    for (const std::string& path : {result_file, test_file, factory_file}) {
        std::ofstream(path) << older_report;
        files.insert({path, {.content = older_report}});
    }
    open_application();
    start();
    if (failure.starts_again)
        start();
    if (application().number() != 0) {
        application().terminate();
        expect_orderly_end(words(failure.survivors));
    }
    expect_messages();
    for (const auto& [path, state] : files)
        expect_file(path, state);
}

/** The same from the machine: prepares the television and looks on. */
class Failures : public testing::TestWithParam<Failure> {};

TEST_P(Failures, When) {
    const Failure& failure = GetParam();
    const auto only_root_can = [](const auto& file) { return file.second.is_given_away; };
    if (std::ranges::any_of(failure.files, only_root_can) && geteuid() != 0) {
        ASSERT_EQ(std::getenv("VELMORA_SKIPS_NOTHING"), nullptr) << "this needs root";
        GTEST_SKIP() << failure.name << " needs root: only root gives files away and labels them";
    }
    std::vector<std::string> command = {VELMORA_TELEVISION, "--screen", "1280x720", "--logs",
                                        VELMORA_LOGS "/" + failure.name};
    std::ranges::copy(words(failure.television), std::back_inserter(command));
    command.insert(command.end(), {"--", std::filesystem::read_symlink("/proc/self/exe").string(),
                                   "--gtest_filter=InTelevision.When/" + failure.name});
    simulator::Process television(command);
    EXPECT_EQ(television.wait_for_end(4 * busy_machine_limit), 0);
}

std::string name_of(const testing::TestParamInfo<Failure>& row) { return row.param.name; }

// What a failed test prints of its row.
void PrintTo(const Failure& failure, std::ostream* stream) { *stream << failure.name; }

INSTANTIATE_TEST_SUITE_P(, InTelevision, testing::ValuesIn(failures()), name_of);
INSTANTIATE_TEST_SUITE_P(, Failures, testing::ValuesIn(failures()), name_of);

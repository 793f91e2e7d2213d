#include "platform/log.h"
#include "support/log_capture.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <gmock/gmock.h>
#include <poll.h>
#include <sstream>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

namespace {

using platform::Descriptor;
using platform::LogBuffer;
using platform::LogPriority;
using testing::HasSubstr;

// A pipe's reading and its writing end.
std::pair<Descriptor, Descriptor> make_pipe() {
    std::array<int, 2> ends{};
    EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

// Everything that can be read until the other side closes or is silent for a while.
std::string read_out(const Descriptor& from) {
    std::string text;
    std::array<char, 65536> piece{};
    pollfd wanted{from.get(), POLLIN, 0};
    while (poll(&wanted, 1, 200) > 0) {
        const ssize_t count = read(from.get(), piece.data(), piece.size());
        if (count <= 0)
            break;
        text.append(piece.data(), static_cast<std::size_t>(count));
    }
    return text;
}

std::string head(char letter) { return letter + ("/VELMORA(" + std::to_string(getpid()) + "): "); }

int print(LogPriority priority, const char* message) {
    return __dlog_print(LogBuffer::main, priority, "VELMORA", "%s", message);
}

TEST(Log, WritesOneLineThatATerminalCannotBeTrickedBy) {
    const std::string right_to_left_override = {'\xe2', '\x80', '\xae'};
    LogCapture log;
    for (const auto& [message, shown] : std::initializer_list<std::pair<const char*, const char*>>{
             {"a.cpp: Init(42) > [b]", "a.cpp: Init(42) > [b]"},
             {"err=-1\n", "err=-1"},
             {"one\ntwo\n\n", "one\\ntwo\\n"},
             {"\x1b[2J\r\t\x7f", R"(\x1b[2J\r\t\x7f)"},
             {"caf\xc3\xa9 \xc2\x9b \xe2\x80\xa8", "caf\xc3\xa9 \\u009b \\u2028"},
             {right_to_left_override.c_str(), "\\u202e"},
             {"\x9b\xc3", "\\x9b\\xc3"},
             {"", ""}}) {
        log.clear();
        EXPECT_GT(print(LogPriority::error, message), 0);
        EXPECT_EQ(log.text(), head('E') + shown + "\n");
    }
}

TEST(Log, KeepsLongLinesOfSeveralProcessesWhole) {
    constexpr std::size_t length = 200'000; // more than a pipe holds, so that a writer waits in the middle
    auto [reading, writing] = make_pipe();
    for (const char letter : {'a', 'b', 'c', 'd'})
        start_process([&, &target = writing] {
            const StandardErrorTo redirected(target);
            for (int line = 0; line < 10; ++line)
                print(LogPriority::info, std::string(length, letter).c_str());
            return true;
        });
    writing = Descriptor();
    std::istringstream text(read_out(reading));
    int whole_lines = 0;
    for (std::string line; std::getline(text, line); ++whole_lines)
        ASSERT_EQ(line.substr(line.find(": ") + 2), std::string(length, line.back())) << whole_lines;
    EXPECT_EQ(whole_lines, 40);
    while (wait(nullptr) > 0) {
    }
}

TEST(Log, ColoursOnATerminal) {
    const Descriptor terminal(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
    ASSERT_EQ(grantpt(terminal.get()), 0);
    ASSERT_EQ(unlockpt(terminal.get()), 0);
    const Descriptor screen(open(ptsname(terminal.get()), O_RDWR | O_NOCTTY | O_CLOEXEC));
    {
        const StandardErrorTo redirected(screen);
        print(LogPriority::error, "red");
        print(LogPriority::info, "green");
    }
    const std::string shown = read_out(terminal);
    EXPECT_THAT(shown, HasSubstr("\x1b[31m" + head('E') + "red\x1b[0m"));
    EXPECT_THAT(shown, HasSubstr("\x1b[32m" + head('I') + "green\x1b[0m"));
}

TEST(Log, ReportsWhatItCannotWriteAndLeavesErrnoAlone) {
    const StandardErrorTo redirected(make_pipe().second);
    errno = ERANGE;
    EXPECT_EQ(print(LogPriority::error, "nobody reads"), -EPIPE);
    EXPECT_EQ(errno, ERANGE);
    EXPECT_EQ(__dlog_print(LogBuffer::main, LogPriority::error, nullptr, "no tag"), -EINVAL);
    sigset_t pending;
    sigpending(&pending);
    EXPECT_EQ(sigismember(&pending, SIGPIPE), 0);
}

TEST(Log, SpeaksTheJournalsLanguageWhenStandardErrorIsTheJournal) {
    const std::string path = "/run/systemd/journal/socket";
    std::filesystem::create_directories("/run/systemd/journal");
    const Descriptor journal(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    ASSERT_EQ(bind(journal.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);

    const auto [reading, writing] = make_pipe();
    struct stat status {};
    fstat(writing.get(), &status);
    const std::string name = std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino);
    {
        const StandardErrorTo redirected(writing);
        const ScopedEnvironment journal_stream("JOURNAL_STREAM", name);
        print(LogPriority::error, "failed\n");
        const ScopedEnvironment another("JOURNAL_STREAM", name + "0");
        print(LogPriority::error, "another stream");
    }
    EXPECT_EQ(read_out(journal), "MESSAGE=failed\nPRIORITY=3\nSYSLOG_IDENTIFIER=VELMORA\n");
    EXPECT_EQ(read_out(reading), head('E') + "another stream\n");
    std::filesystem::remove(path);
}

} // namespace

#include "platform/log.h"

#include "services/descriptor.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <map>
#include <poll.h>
#include <sstream>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>

namespace {

using platform::Descriptor;
using platform::LogBuffer;
using platform::LogPriority;
using testing::HasSubstr;
using testing::Not;

/** Gives standard error to `target` while it lives. */
class StandardErrorTo {
public:
    explicit StandardErrorTo(int target) : former_(dup(STDERR_FILENO)) { dup2(target, STDERR_FILENO); }
    ~StandardErrorTo() { dup2(former_.get(), STDERR_FILENO); }
    StandardErrorTo(const StandardErrorTo&) = delete;
    StandardErrorTo& operator=(const StandardErrorTo&) = delete;
    StandardErrorTo(StandardErrorTo&&) = delete;
    StandardErrorTo& operator=(StandardErrorTo&&) = delete;

private:
    Descriptor former_;
};

struct Pipe {
    Pipe() {
        std::array<int, 2> ends{};
        EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
        reading = Descriptor(ends[0]);
        writing = Descriptor(ends[1]);
    }
    Descriptor reading;
    Descriptor writing;
};

/** Everything that can be read until the other side closes or is silent for a while. */
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

std::string head(char letter, const std::string& tag) {
    return std::string(1, letter) + "/" + tag + "(" + std::to_string(getpid()) + "): ";
}

/** What standard error gets for a message. */
std::string logged(const char* message) {
    Pipe pipe;
    {
        const StandardErrorTo redirected(pipe.writing.get());
        const int count = __dlog_print(LogBuffer::main, LogPriority::error, "VELMORA", "%s", message);
        EXPECT_GT(count, 0);
    }
    pipe.writing = Descriptor();
    return read_out(pipe.reading);
}

TEST(Log, WritesOneLineThatATerminalCannotBeTrickedBy) {
    const std::string start = head('E', "VELMORA");
    EXPECT_EQ(logged("a.cpp: Init(42) > [b]"), start + "a.cpp: Init(42) > [b]\n");
    EXPECT_EQ(logged("err=-1\n"), start + "err=-1\n");
    EXPECT_EQ(logged("one\ntwo\n\n"), start + "one\\ntwo\\n\n");
    EXPECT_EQ(logged("\x1b[2J\r\t\x7f"), start + "\\x1b[2J\\r\\t\\x7f\n");
    EXPECT_EQ(logged("caf\xc3\xa9 \xc2\x9b \xe2\x80\xa8"), start + "caf\xc3\xa9 \\u009b \\u2028\n");
    const std::string right_to_left_override = {'\xe2', '\x80', '\xae'};
    EXPECT_EQ(logged(right_to_left_override.c_str()), start + "\\u202e\n");
    EXPECT_EQ(logged("\x9b\xc3"), start + "\\x9b\\xc3\n");
    EXPECT_EQ(logged(""), start + "\n");
}

TEST(Log, KeepsLongLinesOfSeveralProcessesWhole) {
    constexpr int writers = 4;
    constexpr int lines_each = 10;
    constexpr std::size_t length = 200000; // more than a pipe holds, so that a writer must wait in the middle
    Pipe pipe;
    for (int writer = 0; writer < writers; ++writer) {
        if (fork() == 0) {
            const std::string message(length, static_cast<char>('a' + writer));
            dup2(pipe.writing.get(), STDERR_FILENO);
            for (int line = 0; line < lines_each; ++line)
                __dlog_print(LogBuffer::main, LogPriority::info, "T", "%s", message.c_str());
            _exit(0);
        }
    }
    pipe.writing = Descriptor();
    std::istringstream text(read_out(pipe.reading));
    int whole_lines = 0;
    for (std::string line; std::getline(text, line); ++whole_lines) {
        const std::string message = line.substr(line.find(": ") + 2);
        ASSERT_EQ(message, std::string(length, message.front())) << "line " << whole_lines;
    }
    EXPECT_EQ(whole_lines, writers * lines_each);
    while (wait(nullptr) > 0) {
    }
}

TEST(Log, ColoursOnATerminalOnly) {
    EXPECT_THAT(logged("plain"), Not(HasSubstr("\x1b")));
    const Descriptor terminal(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
    ASSERT_EQ(grantpt(terminal.get()), 0);
    ASSERT_EQ(unlockpt(terminal.get()), 0);
    const Descriptor screen(open(ptsname(terminal.get()), O_RDWR | O_NOCTTY | O_CLOEXEC));
    {
        const StandardErrorTo redirected(screen.get());
        __dlog_print(LogBuffer::main, LogPriority::error, "VELMORA", "red");
        __dlog_print(LogBuffer::main, LogPriority::info, "VELMORA", "green");
    }
    const std::string shown = read_out(terminal);
    EXPECT_THAT(shown, HasSubstr("\x1b[31m" + head('E', "VELMORA") + "red\x1b[0m"));
    EXPECT_THAT(shown, HasSubstr("\x1b[32m" + head('I', "VELMORA") + "green\x1b[0m"));
}

TEST(Log, ReportsWhatItCannotWriteAndLeavesErrnoAlone) {
    Pipe pipe;
    pipe.reading = Descriptor();
    const StandardErrorTo redirected(pipe.writing.get());
    errno = ERANGE;
    EXPECT_EQ(__dlog_print(LogBuffer::main, LogPriority::error, "T", "nobody reads"), -EPIPE);
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

    const Pipe stream;
    struct stat status {};
    fstat(stream.writing.get(), &status);
    const std::string name = std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino);
    {
        const StandardErrorTo redirected(stream.writing.get());
        setenv("JOURNAL_STREAM", name.c_str(), 1);
        __dlog_print(LogBuffer::main, LogPriority::error, "VELMORA", "%s", "failed\n");
        setenv("JOURNAL_STREAM", (name + "0").c_str(), 1);
        __dlog_print(LogBuffer::main, LogPriority::error, "VELMORA", "another stream");
        unsetenv("JOURNAL_STREAM");
    }
    EXPECT_EQ(read_out(journal), "MESSAGE=failed\nPRIORITY=3\nSYSLOG_IDENTIFIER=VELMORA\n");
    EXPECT_EQ(read_out(stream.reading), head('E', "VELMORA") + "another stream\n");
    std::filesystem::remove(path);
}

} // namespace

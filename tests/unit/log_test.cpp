#include "platform/log.h"
#include "support/log_capture.h"

#include <array>
#include <cerrno>
#include <gmock/gmock.h>
#include <poll.h>
#include <pty.h>
#include <sys/socket.h>
#include <sys/un.h>

namespace {

using platform::LogPriority;
using simulator::FileDescriptor;
using simulator::StandardErrorTo;

// Reads until no more data arrives, since a terminal delivers in pieces.
std::string read_out(const FileDescriptor& from) {
    std::string all;
    std::array<char, 4096> text{};
    ssize_t size = 1;
    for (pollfd wanted{from.get(), POLLIN, 0}; size > 0 && poll(&wanted, 1, 200) > 0;) {
        size = read(from.get(), text.data(), text.size());
        all.append(text.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
    }
    return all;
}

std::string head(char letter) { return letter + ("/VELMORA(" + std::to_string(getpid()) + "): "); }

int print(LogPriority priority, const char* message) {
    return __dlog_print(platform::LogBuffer::main, priority, "VELMORA", "%s", message);
}

TEST(Log, WritesOneLineWithoutControlCharacters) {
    LogCapture log;
    for (const auto& [message, shown] : std::initializer_list<std::pair<const char*, const char*>>{
             {"one\ntwo\n\n", "one\\ntwo\\n"},
             {"\x1b[2J\r\t\x7f", R"(\x1b[2J\r\t\x7f)"},
             {"caf\xc3\xa9 \xc2\x9b \xe2\x80\xa8", "caf\xc3\xa9 \\u009b \\u2028"},
             {"\xe2\x80\xae", "\\u202e"},
             {"\x9b\xc3", "\\x9b\\xc3"},
             {"", ""}}) {
        log.clear();
        EXPECT_GT(print(LogPriority::error, message), 0);
        EXPECT_EQ(log.text(), head('E') + shown + "\n");
    }
}

TEST(Log, ColoursLinesOnATerminal) {
    int user = -1;
    int screen = -1;
    ASSERT_EQ(openpty(&user, &screen, nullptr, nullptr, nullptr), 0);
    {
        const StandardErrorTo redirected((FileDescriptor(screen)));
        setenv("TERM", "xterm", 1);
        print(LogPriority::error, "red");
        print(LogPriority::info, "green");
        setenv("TERM", "dumb", 1);
        print(LogPriority::info, "grey");
    }
    EXPECT_EQ(read_out(FileDescriptor(user)),
              "\x1b[31m" + head('E') + "red\x1b[0m\r\n" + //
                  "\x1b[32m" + head('I') + "green\x1b[0m\r\n" + head('I') + "grey\r\n");
}

TEST(Log, ReturnsWriteErrorsAndPreservesErrno) {
    const StandardErrorTo redirected(simulator::make_pipe()[1]);
    errno = ERANGE;
    EXPECT_EQ(print(LogPriority::error, "no reader"), -EPIPE);
    EXPECT_EQ(errno, ERANGE);
    EXPECT_EQ(__dlog_print(platform::LogBuffer::main, LogPriority::error, nullptr, "no tag"), -EINVAL);
}

TEST(Log, SendsFieldsWhenStandardErrorIsTheJournal) {
    std::filesystem::create_directories("/run/systemd/journal");
    const auto open_socket = [](auto join) {
        FileDescriptor opened(socket(AF_UNIX, SOCK_DGRAM, 0));
        const sockaddr_un address{.sun_family = AF_UNIX, .sun_path = "/run/systemd/journal/socket"};
        EXPECT_EQ(join(opened.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
        return opened;
    };
    const FileDescriptor journal = open_socket(bind);
    {
        const StandardErrorTo redirected(open_socket(connect));
        print(LogPriority::error, "failed\n");
    }
    using namespace std::string_literals; // lengths have eight bytes, little-endian
    EXPECT_EQ(read_out(journal), "MESSAGE\n\6\0\0\0\0\0\0\0failed\n"
                                 "PRIORITY\n\1\0\0\0\0\0\0\0003\n"
                                 "SYSLOG_IDENTIFIER\n\7\0\0\0\0\0\0\0VELMORA\n"s);
    std::filesystem::remove_all("/run/systemd/journal");
}

} // namespace

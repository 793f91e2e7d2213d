#include "model/file.h"
#include "model/fw_version_reader.h"
#include "model/util.h"
#include "support/log_capture.h"
#include "support/usleep_replacement.h"

#include <csignal>
#include <gmock/gmock.h>
#include <sys/stat.h>

using testing::AllOf;
using testing::Each;
using testing::SizeIs;

// Makes fork and popen fail, and also open with O_CREAT, which the kernel may refuse for another user's file in /tmp.
static bool creation_is_refused = false;

// Replace the C library's functions at link time (-Wl,--wrap=fork, for example).
extern "C" {
decltype(fork) __real_fork;
pid_t __wrap_fork() { return creation_is_refused ? -1 : __real_fork(); }

decltype(popen) __real_popen;
FILE* __wrap_popen(const char* command_line, const char* mode) {
    return creation_is_refused ? nullptr : __real_popen(command_line, mode);
}

int __real_open(const char* path, int flags, mode_t mode);
int __wrap_open(const char* path, int flags, mode_t mode) {
    return creation_is_refused && (flags & O_CREAT) != 0 ? -1 : __real_open(path, flags, mode);
}
}

namespace {

class UtilTest : public testing::Test, protected SleepRecorder {
protected:
    UtilTest() { std::filesystem::create_directories(folder); }
    ~UtilTest() override {
        creation_is_refused = false;
        std::filesystem::remove_all(folder);
    }

    const std::filesystem::path folder = "/tmp/velmora-util-test";
    const std::string file = (folder / "two words").string();
    LogCapture log;
};

TEST_F(UtilTest, ForegroundCommandReturnsTheWaitStatus) {
    EXPECT_EQ(exec_shell("exit 1"), 256);
    EXPECT_EQ(exec_shell("kill -9 $$"), SIGKILL);
#ifndef __SANITIZE_ADDRESS__ // the leak check changes the child's exit status
    const std::string too_long(5'000'000, ' ');
    EXPECT_EQ(exec_shell(("exit 1" + too_long).c_str()), 0) << "a shell that cannot be executed";
#endif
    auto* const before = std::signal(SIGCHLD, SIG_IGN); // the kernel then reaps children
    EXPECT_EQ(exec_shell("true"), -1);
    std::signal(SIGCHLD, before);
    EXPECT_EQ(log.messages().back(), "E util.cpp: exec_shell > Error waitpid");
}

TEST_F(UtilTest, FailedProcessCreationIsLogged) {
    creation_is_refused = true;
    EXPECT_EQ(exec_app("true"), -1);
    EXPECT_EQ(log.messages().back(), "E util.cpp: exec_app > Error vfork");
    EXPECT_EQ(exec_shell("true"), -1);
    EXPECT_EQ(log.messages().back(), "E util.cpp: exec_shell > Error vfork");
    get_command_result("any");
    EXPECT_EQ(log.messages().back(), "E util.cpp: get_command_result > Command [pgrep -c any] result : ");
}

TEST_F(UtilTest, ProcessCountIsRepeatedUnlessTheAnswerIsZero) {
    const std::string program = folder / "pgrep";
    put_file(program, "#!/bin/sh\nprintf %s \"$ANSWER\"\n");
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    setenv("PATH", (folder.string() + ":" + getenv("PATH")).c_str(), 1);
    const std::string long_answer(300, '7');
    for (const auto& [answer, logged] : std::initializer_list<std::pair<std::string, std::string>>{
             {"0 \r\t\n", "0"}, {" 0\n", " 0"}, {"00", "00"}, {"", ""}, {long_answer, long_answer}}) {
        setenv("ANSWER", answer.c_str(), 1);
        log.clear();
        sleeps.clear();
        get_command_result("cpcd");
        EXPECT_THAT(
            log.messages(),
            AllOf(SizeIs(logged == "0" ? 1 : 5),
                  Each("E util.cpp: get_command_result > Command [pgrep -c cpcd] result : " + logged)));
        EXPECT_THAT(sleeps, AllOf(SizeIs(logged == "0" ? 0 : 5), Each(300'000)));
    }
}

TEST_F(UtilTest, NamedPipeDoesNotBlockTheWriter) {
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    write_file(file, "FAIL");
    EXPECT_EQ(FwVersionReader().GetVersion(file), "");
}

TEST_F(UtilTest, ExistingFileIsReplacedIfCreationIsRefused) {
    put_file(file, "PASS, and more");
    creation_is_refused = true;
    write_file(file, "FAIL");
    EXPECT_EQ(content_of(file), "FAIL");
}

TEST_F(UtilTest, LinkIsReplacedAndNeverFollowed) {
    const std::string target = folder / "target";
    put_file(target, "of another account");
    for (const auto& make_link : {symlink, link}) {
        ASSERT_EQ(make_link(target.c_str(), file.c_str()), 0);
        EXPECT_FALSE(give_to_device_owner(file));
        write_file(file, "FAIL");
        EXPECT_EQ(content_of(target), "of another account");
        EXPECT_EQ(content_of(file), "FAIL");
        std::filesystem::remove(file);
    }
}

TEST_F(UtilTest, WaitingChecksThePathThirtyTimes) {
    EXPECT_EQ(wait_condition(file, false), 0);
    EXPECT_THAT(sleeps, AllOf(SizeIs(30), Each(100'000)));
}

} // namespace

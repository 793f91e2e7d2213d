#include "model/file.h"
#include "model/fw_version_reader.h"
#include "model/util.h"
#include "support/log_capture.h"
#include "support/sleep_recorder.h"

#include <csignal>
#include <gmock/gmock.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>

using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::SizeIs;

namespace {

// Whether an action succeeds in a process with a system call filter; calls fail that reach the filter's last statement.
bool succeeds_under(std::vector<sock_filter> filter, const std::function<bool()>& action) {
    filter.insert(filter.begin(), BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)));
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, static_cast<std::uint32_t>(SECCOMP_RET_ERRNO | EAGAIN)));
    const sock_fprog program{static_cast<unsigned short>(filter.size()), filter.data()};
    return succeeds(start_process([&] {
        return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
               prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0 && action();
    }));
}

// The same, with two system calls that fail.
bool succeeds_without(unsigned call, unsigned other_call, const std::function<bool()>& action) {
    return succeeds_under({BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, call, 2, 0),
                           BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, other_call, 1, 0)},
                          action);
}

// The same, with openat failing for O_CREAT, as if the kernel protected another user's files in /tmp.
bool succeeds_without_creating_files(const std::function<bool()>& action) {
    constexpr auto flags = offsetof(seccomp_data, args) + 2 * sizeof(std::uint64_t);
    return succeeds_under({BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_openat, 0, 2),
                           BPF_STMT(BPF_LD | BPF_W | BPF_ABS, flags),
                           BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, O_CREAT, 1, 0)},
                          action);
}

class UtilTest : public testing::Test {
protected:
    UtilTest() { std::filesystem::create_directories(folder); }
    ~UtilTest() override { std::filesystem::remove_all(folder); }

    const std::filesystem::path folder = "/tmp/velmora-util-test";
    const std::string file = (folder / "two words").string();
    LogCapture log;
};

TEST_F(UtilTest, ForegroundCommandReturnsTheWaitStatus) {
    EXPECT_EQ(exec_shell("true"), 0);
    EXPECT_EQ(exec_shell("killall no-such-process"), 256);
    EXPECT_EQ(exec_shell("kill -9 $$"), SIGKILL);
#ifndef __SANITIZE_ADDRESS__ // the leak check changes the child's exit status
    EXPECT_TRUE(succeeds_without(SYS_execve, SYS_execveat, [] { return exec_shell("exit 1") == 0; }))
        << "a shell that cannot be executed exits with status 0";
#endif
    auto* const before = std::signal(SIGCHLD, SIG_IGN); // the kernel then reaps children
    EXPECT_EQ(exec_shell("true"), -1);
    std::signal(SIGCHLD, before);
    EXPECT_EQ(log.messages_of("util.cpp: exec_shell").back(), "Error waitpid");
}

TEST_F(UtilTest, FailedProcessCreationIsLogged) {
    EXPECT_TRUE(succeeds_without(SYS_clone, SYS_clone3, [] {
        const bool is_refused = exec_app("true") == -1 && exec_shell("true") == -1;
        get_command_result("any");
        return is_refused;
    }));
    EXPECT_THAT(log.messages_of("util.cpp: exec_app"), ElementsAre("app name : true", "Error vfork"));
    EXPECT_THAT(log.messages_of("util.cpp: exec_shell"), ElementsAre("Command : true", "Error vfork"));
    EXPECT_THAT(log.messages_of("util.cpp: get_command_result"),
                AllOf(SizeIs(5), Each("Command [pgrep -c any] result : ")));
}

TEST_F(UtilTest, CountingStopsAtExactlyZero) {
    const std::string program = folder / "pgrep";
    const ScopedEnvironment path("PATH", folder.string() + ":" + getenv("PATH"));
    const std::string long_answer(300, '7');
    for (const auto& [answer, logged] :
         std::initializer_list<std::pair<std::string, std::string>>{{R"(0 \r\t\n)", "0"},
                                                                    {"2\\n", "2"},
                                                                    {" 0\\n", " 0"},
                                                                    {"00", "00"},
                                                                    {"", ""},
                                                                    {long_answer, long_answer}}) {
        put_file(program, "#!/bin/sh\nprintf '" + answer + "'\n");
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
        const std::size_t failures = logged == "0" ? 0 : 5;
        const SleepRecorder sleep;
        log.clear();
        get_command_result("cpcd");
        EXPECT_THAT(log.messages_of("util.cpp: get_command_result"),
                    AllOf(SizeIs(std::max<std::size_t>(failures, 1)),
                          Each("Command [pgrep -c cpcd] result : " + logged)));
        EXPECT_THAT(sleep.sleeps(), AllOf(SizeIs(failures), Each(300'000)));
    }
}

TEST_F(UtilTest, NamedPipeDoesNotBlockTheWriter) {
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    write_file(file, "FAIL");
    EXPECT_EQ(FwVersionReader().GetVersion(file), "");
}

TEST_F(UtilTest, ExistingFileIsReplacedIfCreationIsRefused) {
    put_file(file, "PASS, and more");
    EXPECT_TRUE(succeeds_without_creating_files([this] {
        write_file(file + " of another name", "FAIL");
        write_file(file, "FAIL");
        return !std::filesystem::exists(file + " of another name") && content_of(file) == "FAIL";
    }));
}

TEST_F(UtilTest, LinkIsReplacedAndNeverFollowed) {
    const std::string target = folder / "target";
    put_file(target, "of another account");
    const auto write_over = [&] {
        EXPECT_FALSE(give_to_device_owner(file));
        write_file(file, "FAIL");
        EXPECT_EQ(content_of(target), "of another account");
        EXPECT_EQ(content_of(file), "FAIL");
        EXPECT_FALSE(std::filesystem::is_symlink(file) || std::filesystem::equivalent(file, target));
        std::filesystem::remove(file);
    };
    std::filesystem::create_symlink(target, file);
    write_over();
    std::filesystem::create_hard_link(target, file);
    write_over();
}

TEST_F(UtilTest, WaitingChecksThePathThirtyTimes) {
    const SleepRecorder sleep;
    EXPECT_EQ(wait_condition(file, false), 0);
    EXPECT_THAT(sleep.sleeps(), AllOf(SizeIs(30), Each(100'000)));
    put_file(file, "");
    EXPECT_EQ(wait_condition(file, true), 1);
    EXPECT_THAT(sleep.sleeps(), SizeIs(30));
}

} // namespace

#include "model/util.h"
#include "support/log_capture.h"
#include "support/sleep_recorder.h"
#include "support/surroundings.h"

#include <csignal>
#include <gmock/gmock.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>

using testing::Each;
using testing::ElementsAre;
using testing::SizeIs;

namespace {

class UtilTest : public testing::Test {
protected:
    ~UtilTest() override {
        while (wait(nullptr) > 0) { // no child is left to the next test
        }
        std::filesystem::remove_all(folder);
    }

    // Makes a program of the given name come first on the search path.
    void put_program(const std::string& name, const std::string& commands) {
        put_script(folder / name, commands);
        path.emplace("PATH", folder.string() + ":" + getenv("PATH"));
    }

    const std::filesystem::path folder = "/tmp/velmora-util-test";
    LogCapture log;
    std::optional<ScopedEnvironment> path;
};

TEST_F(UtilTest, ForegroundCommandGivesItsRawStatus) {
    EXPECT_EQ(exec_shell("true"), 0);
    EXPECT_EQ(exec_shell("exit 1"), 256);
    EXPECT_EQ(exec_shell("killall no-such-process"), 256);
    EXPECT_EQ(exec_shell("kill -9 $$"), SIGKILL);
    auto* const before = std::signal(SIGCHLD, SIG_IGN); // the system then collects children itself
    EXPECT_EQ(exec_shell("true"), -1);
    std::signal(SIGCHLD, before);
    EXPECT_EQ(log.messages_of("util.cpp: exec_shell").back(), "Error waitpid");
}

// Runs an action in a child process whose system calls of the given numbers fail; gives whether it answered true.
template <typename Action>
bool succeeds_without(unsigned call, unsigned other_call, Action action) {
    const pid_t child = fork();
    if (child == 0) {
        constexpr auto refuse = static_cast<std::uint32_t>(SECCOMP_RET_ERRNO | EAGAIN);
        std::array<sock_filter, 5> filter = {{
            BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
            BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, call, 2, 0),
            BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, other_call, 1, 0),
            BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
            BPF_STMT(BPF_RET | BPF_K, refuse),
        }};
        const sock_fprog program{static_cast<unsigned short>(filter.size()), filter.data()};
        prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
        prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program);
        _exit(action() ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return status == 0;
}

TEST_F(UtilTest, NoProcessCanBeMade) {
    EXPECT_TRUE(succeeds_without(SYS_clone, SYS_clone3, [] {
        const bool refused = exec_app("true") == -1 && exec_shell("true") == -1;
        get_command_result("any");
        return refused;
    }));
    EXPECT_THAT(log.messages_of("util.cpp: exec_app"), ElementsAre("app name : true", "Error vfork"));
    EXPECT_THAT(log.messages_of("util.cpp: exec_shell"), ElementsAre("Command : true", "Error vfork"));
    EXPECT_THAT(log.messages_of("util.cpp: get_command_result"),
                testing::AllOf(SizeIs(5), Each("Command [pgrep -c any] result : ")));
}

TEST_F(UtilTest, ShellThatCannotBeExecutedEndsWithStatusZero) {
    EXPECT_TRUE(succeeds_without(SYS_execve, SYS_execveat, [] { return exec_shell("exit 1") == 0; }));
}

TEST_F(UtilTest, StartedProgramGetsItsStandardDescriptorsAndNothingElse) {
    put_file(folder / "here", "");
    const std::string told = (folder / "told").string();
    for (const unsigned refused : {unsigned{SYS_vhangup}, unsigned{SYS_close_range}}) {
        EXPECT_TRUE(succeeds_without(refused, refused, [&] {
            sigset_t blocked;
            sigemptyset(&blocked);
            sigaddset(&blocked, SIGTERM);
            sigprocmask(SIG_BLOCK, &blocked, nullptr);
            std::signal(SIGHUP, SIG_IGN);
            return dup(STDERR_FILENO) > STDERR_FILENO &&
                   exec_shell(("(ls /proc/$$/fd; grep Sig[BI] /proc/self/status) > " + told).c_str()) == 0;
        }));
        EXPECT_EQ(content_of(told), "0\n1\n2\nSigBlk:\t0000000000000000\nSigIgn:\t0000000000000000\n");
    }
}

TEST_F(UtilTest, CountingEndsAtExactlyZero) {
    struct Case {
        std::string answer; // for printf
        std::string logged;
        std::size_t attempts;
    };
    const std::string long_answer(300, '7');
    for (const auto& [answer, logged, attempts] :
         {Case{"0\\n", "0", 1}, Case{R"(0 \r\t\n)", "0", 1}, Case{"2\\n", "2", 5}, Case{" 0\\n", " 0", 5},
          Case{"00", "00", 5}, Case{"", "", 5}, Case{" \\n", "", 5},
          Case{long_answer + "\\n", long_answer, 5}}) {
        put_program("pgrep", "printf '" + answer + "'");
        const SleepRecorder sleep;
        log.clear();
        get_command_result("cpcd");
        EXPECT_THAT(log.messages_of("util.cpp: get_command_result"),
                    testing::AllOf(SizeIs(attempts), Each("Command [pgrep -c cpcd] result : " + logged)));
        EXPECT_THAT(sleep.sleeps(), testing::AllOf(SizeIs(logged == "0" ? 0 : 5), Each(300'000)));
    }
}

TEST_F(UtilTest, OwnKilledChildIsNotCounted) {
    std::filesystem::create_directories(folder);
    std::filesystem::copy_file("/bin/sleep", folder / "velmora_idle");
    exec_app(
        ("exec " + (folder / "velmora_idle 100").string()).c_str()); // as shells do of themselves, or do not
    for (int attempt = 0; attempt < 400 && exec_shell("pgrep velmora_idle >/dev/null") != 0; ++attempt)
        usleep(5'000);
    exec_shell("killall velmora_idle");
    const SleepRecorder sleep;
    get_command_result("velmora_idle");
    EXPECT_THAT(sleep.sleeps().size(), testing::Le(2));
    EXPECT_EQ(log.messages_of("util.cpp: get_command_result").back(),
              "Command [pgrep -c velmora_idle] result : 0");
}

TEST_F(UtilTest, WaitingTestsThePathThirtyTimes) {
    const std::string file = (folder / "late").string();
    const SleepRecorder never;
    EXPECT_EQ(wait_condition(file, nullptr), 0);
    std::vector<std::string> expected(30, "waiting " + file);
    expected.push_back("Wait Timeout. Fail to connect " + file);
    EXPECT_EQ(log.messages_of("util.cpp: wait_condition"), expected);
    EXPECT_THAT(never.sleeps(), testing::AllOf(SizeIs(30), Each(100'000)));

    log.clear();
    const SleepRecorder late([&](std::size_t sleeps) {
        if (sleeps == 2)
            put_file(file, "");
    });
    EXPECT_EQ(wait_condition(file, nullptr), 1);
    EXPECT_EQ(wait_condition(file, nullptr), 1);
    EXPECT_THAT(log.messages_of("util.cpp: wait_condition"),
                ElementsAre("waiting " + file, "waiting " + file, file + " is ok", file + " is ok"));
}

} // namespace

#include "services/descriptor.h"
#include "support/secure_store.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace secure_store;

namespace {

using Clock = std::chrono::steady_clock;

class SecureStorageInterrupted : public WithoutStore {};

std::string order; // of the calls that make a record last

} // namespace

// The linker puts these in place of the system's (-Wl,--wrap).
extern "C" {
decltype(fsync) __real_fsync, __wrap_fsync;
int __wrap_fsync(int descriptor) {
    order += "sync ";
    return __real_fsync(descriptor);
}
decltype(renameat) __real_renameat, __wrap_renameat;
int __wrap_renameat(int folder, const char* name, int new_folder, const char* new_name) noexcept {
    order += "rename ";
    return __real_renameat(folder, name, new_folder, new_name);
}
}

namespace {

TEST_F(SecureStorageInterrupted, ByAPowerCutHasWrittenTheRecordBeforeItGetsItsName) {
    ASSERT_EQ(write("version", "old"), platform::ok);
    order.clear();
    ASSERT_EQ(write("version", "new"), platform::ok);
    EXPECT_EQ(order, "sync rename sync ");
}

void kill_and_wait(pid_t process) {
    kill(process, SIGKILL);
    waitpid(process, nullptr, 0);
}

/** Starts a write and kills it at a stop before or after one of its system calls; false when it ended before. */
bool kill_write_at(int stop) {
    const pid_t writer = start_process([] {
        return ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) == 0 && raise(SIGSTOP) == 0 &&
               write("version", "new") == platform::ok;
    });
    int status = 0;
    waitpid(writer, &status, 0);
    for (int count = 0; count <= stop && WIFSTOPPED(status); ++count) {
        ptrace(PTRACE_SYSCALL, writer, nullptr, nullptr);
        waitpid(writer, &status, 0);
    }
    if (WIFSTOPPED(status)) {
        kill_and_wait(writer);
        return true;
    }
    EXPECT_EQ(status, 0) << "the write failed by itself";
    return false;
}

TEST_F(SecureStorageInterrupted, AtEverySystemCallHoldsTheOldOrTheNewRecord) {
    ASSERT_EQ(write("version", "old"), platform::ok);
    const std::string good = content_of(file).value();
    struct Case {
        const char* what;
        std::optional<std::string> store;
        std::optional<std::string> temporary;
        ReadRecord before;
    };
    const std::vector<Case> cases = {
        {"no store", {}, {}, {platform::no_such_record, ""}},
        {"a record", good, {}, {platform::ok, "old"}},
        {"a record, and what an earlier kill left", good, good.substr(0, 9), {platform::ok, "old"}},
        {"a damaged store", "damaged", {}, {platform::not_authentic, ""}},
    };
    for (const auto& [what, store, temporary, before] : cases) {
        bool interrupted = true;
        int stop = 0;
        for (; interrupted; ++stop) {
            SCOPED_TRACE(testing::Message() << what << ", stop " << stop);
            std::filesystem::remove_all(top);
            if (store)
                put_file(file, *store);
            if (temporary)
                put_file(folder / "aaba977f.new", *temporary);
            interrupted = kill_write_at(stop);
            const ReadRecord record = read("version");
            const bool is_new = record.result == platform::ok && record.data == "new";
            const bool is_old = record.result == before.result && record.data == before.data;
            ASSERT_TRUE(is_new || (interrupted && is_old)) << record.result << record.data;
            ASSERT_EQ(write("version", "newer"), platform::ok);
            ASSERT_EQ(read("version").data, "newer");
            ASSERT_EQ(std::filesystem::exists(folder / "aaba977f.damaged"), store == "damaged");
            ASSERT_FALSE(std::filesystem::exists(folder / "aaba977f.new"));
        }
        EXPECT_GT(stop, 20) << what;
    }
}

TEST_F(SecureStorageInterrupted, WaitsForAnotherWriterButNotForever) {
    ASSERT_EQ(write("version", "old"), platform::ok);
    const platform::Descriptor other(open(folder.c_str(), O_RDONLY | O_CLOEXEC));
    ASSERT_EQ(flock(other.get(), LOCK_EX), 0);
    const auto start = Clock::now();
    EXPECT_EQ(write("version", "new"), platform::storage_failed);
    EXPECT_LT(Clock::now() - start, std::chrono::seconds(8));
    EXPECT_EQ(read("version").data, "old");

    const pid_t writer = start_process([] { return write("version", "new") == platform::ok; });
    usleep(300'000);
    EXPECT_EQ(waitpid(writer, nullptr, WNOHANG), 0) << "it did not wait";
    flock(other.get(), LOCK_UN);
    EXPECT_TRUE(succeeds(writer));
    EXPECT_EQ(read("version").data, "new");
}

} // namespace

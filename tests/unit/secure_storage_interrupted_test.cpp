#include "services/descriptor.h"
#include "support/secure_store.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <iostream>
#include <memory>
#include <random>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/ptrace.h>
#include <sys/wait.h>

using namespace secure_store;

namespace {

using std::chrono::nanoseconds;
using Clock = std::chrono::steady_clock;

class SecureStorageInterrupted : public WithoutStore {};

/** What a writing process has begun and finished, in memory that it shares with the test. */
class Progress {
public:
    std::atomic<int> begun = 0;
    std::atomic<int> finished = 0;
    std::atomic<bool> failed = false;
};

std::string value_of(int number) {
    std::string value = std::to_string(number) + " ";
    while (value.size() < 20'000) // some pages, so that a write of the file can be cut
        value += value;
    return value;
}

void kill_and_wait(pid_t process) {
    kill(process, SIGKILL);
    waitpid(process, nullptr, 0);
}

void spin(nanoseconds time) {
    for (const auto end = Clock::now() + time; Clock::now() < end;) {
    }
}

/** Writes one number after the other until it is killed. */
pid_t start_writer(Progress& progress) {
    const int last = progress.finished;
    progress.begun = last;
    return start_process([&progress, last] {
        for (int number = last + 1;; ++number) {
            const std::string value = value_of(number);
            progress.begun = number;
            if (write("version", value) != platform::ok) {
                progress.failed = true;
                return false;
            }
            progress.finished = number;
        }
    });
}

/** Progress that this process and those it starts share. */
class SharedProgress {
public:
    SharedProgress()
        : memory_(
              mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)) {
        if (memory_ == MAP_FAILED)
            throw std::bad_alloc();
        progress_ = std::construct_at(static_cast<Progress*>(memory_));
    }
    SharedProgress(const SharedProgress&) = delete;
    SharedProgress& operator=(const SharedProgress&) = delete;
    ~SharedProgress() { munmap(memory_, sizeof(Progress)); }

    Progress& operator*() { return *progress_; }

private:
    void* memory_;
    Progress* progress_ = nullptr;
};

void wait_for_begin(const Progress& progress, int finished) {
    while (progress.begun == finished && !progress.failed) {
    }
}

/** The time that a new process takes for its first write, which is the slowest. */
nanoseconds time_of_first_write(Progress& progress) {
    constexpr int writers = 50;
    nanoseconds sum{0};
    for (int count = 0; count < writers; ++count) {
        const int before = progress.finished;
        const pid_t writer = start_writer(progress);
        wait_for_begin(progress, before);
        const auto start = Clock::now();
        while (progress.finished == before && !progress.failed) {
        }
        sum += Clock::now() - start;
        kill_and_wait(writer);
        progress.finished = std::stoi(read("version").data);
    }
    return sum / writers;
}

TEST_F(SecureStorageInterrupted, AtRandomMomentsHoldsTheOldOrTheNewRecord) {
    constexpr int kills = 1000;
    ASSERT_EQ(write("other", "kept"), platform::ok);
    SharedProgress shared;
    Progress& progress = *shared;
    const nanoseconds write_time = time_of_first_write(progress);
    // NOLINTNEXTLINE(bugprone-random-generator-seed,cert-msc51-cpp): the same moments in every run
    std::mt19937_64 random(1);
    std::uniform_int_distribution<nanoseconds::rep> moment(0, 2 * write_time.count());
    int cut = 0;
    int in_first_write = 0;
    int new_records = 0;
    for (int count = 0; count < kills; ++count) {
        const int last = progress.finished;
        const pid_t writer = start_writer(progress);
        wait_for_begin(progress, last);
        spin(nanoseconds(moment(random)));
        kill_and_wait(writer);
        ASSERT_FALSE(progress.failed) << "kill " << count;
        const int begun = progress.begun;
        const int finished = progress.finished;
        const ReadRecord record = read("version");
        ASSERT_EQ(record.result, platform::ok) << "kill " << count;
        ASSERT_TRUE(record.data == value_of(finished) || record.data == value_of(begun))
            << "kill " << count << " in write " << begun << ": " << record.data.substr(0, 20);
        ASSERT_LE(file_count(), 2) << "temporary files pile up";
        in_first_write += finished == last ? 1 : 0;
        cut += begun != finished ? 1 : 0;
        new_records += begun != finished && record.data == value_of(begun) ? 1 : 0;
        progress.finished = std::stoi(record.data);
    }
    std::cout << kills << " kills, " << cut << " of them within a write, " << in_first_write
              << " within the writer's first one of about " << write_time.count() / 1000 << " us; "
              << new_records << " of those within a write left the new record\n";
    EXPECT_GT(cut, kills / 2) << "the kills missed the writes";
    EXPECT_GT(new_records, 0) << "no kill came late in a write";
    EXPECT_LT(new_records, cut) << "no kill came early in a write";
    EXPECT_EQ(read("other").data, "kept");
    ASSERT_EQ(write("version", "1.2.9"), platform::ok);
    EXPECT_EQ(file_count(), 1) << "a killed write's temporary file stays";
}

/** Starts a write and kills it at a stop before or after one of its system calls; false when it ended before.
 */
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
        std::cout << what << ": killed at " << stop - 1 << " stops\n";
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
    spin(std::chrono::milliseconds(300));
    EXPECT_EQ(waitpid(writer, nullptr, WNOHANG), 0) << "it did not wait";
    flock(other.get(), LOCK_UN);
    EXPECT_TRUE(succeeds(writer));
    EXPECT_EQ(read("version").data, "new");
}

} // namespace

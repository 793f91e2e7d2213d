#include "common/descriptor.h"
#include "support/secure_store.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/file.h>
#include <sys/ptrace.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <thread>

using namespace secure_store;

namespace {

namespace fs = std::filesystem;

class SecureStorageFiles : public WithoutStore {};

mode_t mode_of(const fs::path& path) {
    struct stat status {};
    return lstat(path.c_str(), &status) == 0 ? status.st_mode & 07777U : 0;
}

TEST_F(SecureStorageFiles, KeepOthersOutWhateverTheFileModeMask) {
    const fs::path share = top.parent_path();
    const fs::path aside = "/opt/share.aside";
    fs::rename(share, aside);
    for (const mode_t mask : {0000U, 0777U}) {
        SCOPED_TRACE(testing::Message() << "umask " << std::oct << mask);
        const mode_t before = umask(mask);
        EXPECT_EQ(write("version", "7.4.10"), platform::ok);
        EXPECT_EQ(chmod(file.c_str(), 0666), 0);
        EXPECT_EQ(write("version", "1.2.9"), platform::ok) << "a store that lay open";
        umask(before);
        EXPECT_EQ(mode_of(share), 0755U) << "shared with other applications";
        EXPECT_EQ(mode_of(top), 0700U);
        EXPECT_EQ(mode_of(folder), 0700U);
        EXPECT_EQ(mode_of(file), 0600U);
        fs::remove_all(share);
    }
    if (geteuid() == 0) {
        ASSERT_EQ(write("version", "7.4.10"), platform::ok);
        ASSERT_EQ(chown(file.c_str(), 1234, 5678), 0);
        EXPECT_EQ(write("version", "1.2.9"), platform::ok);
        struct stat status {};
        ASSERT_EQ(stat(file.c_str(), &status), 0);
        EXPECT_EQ(status.st_uid, 1234U) << "a store that was given away";
        EXPECT_EQ(status.st_gid, 5678U);
        fs::remove_all(share);
    }
    fs::rename(aside, share);
}

TEST_F(SecureStorageFiles, AreLeftAloneWhenTheyAreOfAnotherKind) {
    ASSERT_EQ(write("version", "7.4.10"), platform::ok);
    const fs::path elsewhere = "/tmp/store-elsewhere";
    const std::string good = content_of(file).value();
    put_file(elsewhere, good);
    const std::vector<std::pair<const char*, std::function<void()>>> cases = {
        {"folder", [] { fs::create_directory(file); }},
        {"link to a store", [&] { fs::create_symlink(elsewhere, file); }},
        {"link to itself", [] { fs::create_symlink(file, file); }},
        {"pipe", [] { ASSERT_EQ(mkfifo(file.c_str(), 0600), 0); }},
    };
    for (const auto& [what, put] : cases) {
        SCOPED_TRACE(what);
        fs::remove_all(file);
        put();
        const fs::file_type type = fs::symlink_status(file).type();
        EXPECT_EQ(read("version").result, platform::storage_failed);
        EXPECT_EQ(write("version", "1.2.9"), platform::storage_failed);
        EXPECT_EQ(fs::symlink_status(file).type(), type);
        EXPECT_EQ(file_count(), 1);
    }
    fs::remove(file);
    fs::create_symlink(elsewhere, temporary_file);
    EXPECT_EQ(write("version", "1.2.9"), platform::ok) << "not through a link left as the temporary file";
    EXPECT_EQ(read("version").data, "1.2.9");
    EXPECT_EQ(content_of(elsewhere), good);

    const fs::path moved = top / "elsewhere";
    fs::rename(folder, moved);
    fs::create_directory_symlink(moved, folder);
    struct Link {
        uid_t owner;
        uid_t owner_of_folder;
        mode_t mode_of_folder;
    };
    for (const auto& [owner, owner_of_folder, mode] :
         {Link{0, 0, 0755}, {1234, 0, 0755}, {0, 1234, 0755}, {0, 0, 0775}, {0, 0, 0757}}) {
        SCOPED_TRACE(testing::Message() << owner << " " << owner_of_folder << " " << std::oct << mode);
        const bool is_given = lchown(folder.c_str(), owner, owner) == 0; // by root
        EXPECT_EQ(is_given && chown(moved.c_str(), owner_of_folder, 0) == 0, geteuid() == 0);
        EXPECT_EQ(chmod(moved.c_str(), mode), 0);
        const bool is_followed = is_given && owner == 0 && owner_of_folder == 0 && mode == 0755;
        EXPECT_EQ(read("version").result, is_followed ? platform::ok : platform::storage_failed);
        EXPECT_EQ(write("version", "1.2.9"), is_followed ? platform::ok : platform::storage_failed);
    }
    fs::remove(folder);

    put_file(folder, "no folder");
    EXPECT_EQ(read("version").result, platform::storage_failed);
    EXPECT_EQ(write("version", "1.2.9"), platform::storage_failed);
    EXPECT_EQ(content_of(folder), "no folder");
}

// Starts a write and kills it at a stop before or after one of its system calls; false when it ended before.
// Appends the calls that it came to, those that matter on a disk by a letter each.
bool kill_write_at(int stop, std::string& calls) {
    static const std::map<std::uint64_t, char> letters = {
#ifdef SYS_rename // newer kinds of processor have only the other two
        {SYS_rename, 'r'},
#endif
        {SYS_write, 'w'},  {SYS_fsync, 's'}, {SYS_fdatasync, 's'}, {SYS_renameat, 'r'}, {SYS_renameat2, 'r'}};
    const pid_t writer = start_process([] {
        return ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) == 0 && raise(SIGSTOP) == 0 &&
               write("version", "new") == platform::ok;
    });
    int status = 0;
    waitpid(writer, &status, 0);
    ptrace(PTRACE_SETOPTIONS, writer, nullptr, PTRACE_O_TRACESYSGOOD);
    for (int count = 0; count <= stop && WIFSTOPPED(status); ++count) {
        ptrace(PTRACE_SYSCALL, writer, nullptr, nullptr);
        waitpid(writer, &status, 0);
        __ptrace_syscall_info info{};
        if (ptrace(PTRACE_GET_SYSCALL_INFO, writer, sizeof info, &info) > 0 &&
            info.op == PTRACE_SYSCALL_INFO_ENTRY && letters.contains(info.entry.nr))
            calls += letters.at(info.entry.nr);
    }
    if (!WIFSTOPPED(status)) {
        EXPECT_EQ(status, 0) << "the write failed by itself";
        return false;
    }
    kill(writer, SIGKILL);
    waitpid(writer, nullptr, 0);
    return true;
}

TEST_F(SecureStorageFiles, HoldTheOldOrTheNewRecordWhereverAWriteIsKilled) {
    ASSERT_EQ(write("version", "old"), platform::ok);
    const std::string good = content_of(file).value();
    struct Case {
        const char* what;
        std::optional<std::string> store;
        std::optional<std::string> temporary;
        ReadRecord before;
        const char* calls;
    };
    const std::vector<Case> cases = {
        {"no store", {}, {}, {platform::no_such_record, ""}, "^ssw+srs$"},
        {"a record, and what an earlier kill left",
         good,
         good.substr(0, 9),
         {platform::ok, "old"},
         "^w+srs$"},
        {"a damaged store", "damaged", {}, {platform::not_authentic, ""}, "^w+srs$"},
    };
    for (const auto& [what, store, temporary, before, expected_calls] : cases) {
        std::string calls;
        bool is_killed = true;
        int stop = 0;
        for (; is_killed; ++stop) {
            SCOPED_TRACE(testing::Message() << what << ", stop " << stop);
            fs::remove_all(top);
            if (store)
                put_file(file, *store);
            if (temporary)
                put_file(temporary_file, *temporary);
            calls.clear();
            is_killed = kill_write_at(stop, calls);
            const ReadRecord record = read("version");
            const bool is_new = record.result == platform::ok && record.data == "new";
            const bool is_old = record.result == before.result && record.data == before.data;
            ASSERT_TRUE(is_new || (is_killed && is_old)) << record.result << record.data;
            ASSERT_EQ(write("version", "newer"), platform::ok);
            ASSERT_EQ(read("version").data, "newer");
            ASSERT_FALSE(fs::exists(temporary_file));
        }
        EXPECT_GT(stop, 20) << what;
        EXPECT_THAT(calls, testing::ContainsRegex(expected_calls))
            << what << ": new folders synced, the file written, synced and renamed, its folder synced";
    }
}

TEST_F(SecureStorageFiles, WaitForAnotherWriterAndLoseNothing) {
    using namespace std::chrono_literals;
    ASSERT_EQ(write("other", "of another writer"), platform::ok);
    const std::string written = content_of(file).value();
    fs::remove(file);
    const platform::Descriptor other(open(folder.c_str(), O_RDONLY | O_CLOEXEC));
    ASSERT_EQ(flock(other.get(), LOCK_SH), 0);
    const pid_t writer = start_process([] { return write("version", "new") == platform::ok; });
    std::this_thread::sleep_for(300ms);
    EXPECT_EQ(waitpid(writer, nullptr, WNOHANG), 0) << "it did not wait";
    put_file(file, written);
    flock(other.get(), LOCK_UN);
    EXPECT_TRUE(succeeds(writer));
    EXPECT_EQ(read("other").data, "of another writer");
    EXPECT_EQ(read("version").data, "new");
}

} // namespace

#include "secure_storage/secure_record.h"
#include "support/secure_store.h"

#include <csignal>
#include <gmock/gmock.h>
#include <sys/ptrace.h>
#include <sys/stat.h>
#include <sys/syscall.h>

using namespace secure_store;
namespace fs = std::filesystem;

namespace {

using platform::SecureStorageCredential;
using platform::storage_failed;

class SecureStorage : public WithoutStore {};

TEST_F(SecureStorage, KeepsRecordsSeparateAndReplacesThem) {
    const SecureStorageCredential other = credential("another application");
    EXPECT_EQ(read("version").result, platform::no_such_record);
    const std::string version("7.4.10\0", 7);
    ASSERT_EQ(write("version", version), platform::ok);
    ASSERT_EQ(write("other", ""), platform::ok);
    EXPECT_EQ(read("version", other).result, platform::not_authentic);
    ASSERT_EQ(write("version", "of another application", other), platform::ok);
    EXPECT_EQ(read("version").data, version);
    EXPECT_EQ(read("other").result, platform::ok);
    ASSERT_EQ(write("version", "1.2.9"), platform::ok);
    EXPECT_EQ(read("version").data, "1.2.9");
    EXPECT_EQ(read("version", other).data, "of another application");
    EXPECT_EQ(read("none").result, platform::no_such_record);
    EXPECT_EQ(content_of(file)->find("1.2.9"), std::string::npos) << "not encrypted";
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 1) << "a temporary file was left";
}

TEST_F(SecureStorage, RefusesBadArguments) {
    constexpr std::size_t largest = 1024UL * 1024;
    const SecureStorageCredential good = credential();
    SecureStorageCredential bad;
    SecureStorageCredential flagged = good;
    flagged.flags = 1;
    std::size_t length = 0;
    EXPECT_THAT(
        std::vector({ss_init_credential(nullptr, 1, 2, 3, 4, 5, 1, 0),
                     ss_init_credential(&bad, 1, 2, 3, 4, 5, 1, 1),
                     ss_init_credential(&bad, 1, 2, 3, 4, 5, 2, 0), write("key", "data", bad),
                     write("key", "data", flagged), write("", "data"), write(std::string(256, 'k'), "data"),
                     write("key", std::string(largest + 1, 'd')),
                     ss_write(nullptr, 0, 0, 0, "key", &good, private_record),
                     ss_write("d", 1, 0, 0, "key", &good, 0x4002),
                     ss_write("d", 1, 0, 0, "key", nullptr, private_record),
                     ss_read(nullptr, &length, 0, 0, "key", &good, private_record)}),
        testing::Each(platform::invalid_argument));
    EXPECT_FALSE(fs::exists(file));
    EXPECT_EQ(write(std::string(255, 'k'), std::string(largest, 'd')), platform::ok);
}

TEST_F(SecureStorage, DamagedFileNeverReturnsWrongDataAndIsReplacedByTheNextWrite) {
    ASSERT_EQ(write("aaaa", "of a"), platform::ok);
    ASSERT_EQ(write("bbbb", "of b"), platform::ok);
    const std::string good = content_of(file).value();
    std::vector<std::string> damages{"damaged", good + '\0', good + good,
                                     good + std::string(17'000'000, 'x')};
    for (std::size_t byte = 0; byte < good.size(); ++byte) {
        damages.push_back(good.substr(0, byte));
        for (int bit = 0; bit < 8; ++bit)
            (damages.emplace_back(good))[byte] ^= static_cast<char>(1 << bit);
    }
    std::string& swapped = damages.emplace_back(good);
    for (std::size_t place = 0; place + 4 <= good.size(); ++place)
        if (const std::string name = good.substr(place, 4); name == "aaaa" || name == "bbbb")
            swapped.replace(place, 4, name == "aaaa" ? "bbbb" : "aaaa");
    ASSERT_NE(swapped, good);
    const auto is_right = [](const std::string& key, const std::string& data) {
        const ReadRecord record = read(key);
        return record.result != platform::ok || record.data == data;
    };
    for (const std::string& damaged : damages) {
        put_file(file, damaged);
        ASSERT_TRUE(is_right("aaaa", "of a") && is_right("bbbb", "of b")) << damaged.substr(0, good.size());
        if (damaged.size() == good.size() && damaged != swapped)
            continue; // writing for every bit would be slow
        ASSERT_EQ(write("aaaa", "1.2.9"), platform::ok) << damaged.size() << " bytes";
        ASSERT_EQ(read("aaaa").data, "1.2.9");
    }
}

TEST_F(SecureStorage, RecordOpensOnlyOnItsMachineAndUnderItsName) {
    using namespace platform::secure;
    const std::string machine = machine_identity().value();
    const std::string sealed = seal("version", "7.4.10", credential(), machine);
    EXPECT_EQ(open("version", sealed, credential(), machine), "7.4.10");
    EXPECT_EQ(open("version", sealed, credential(), std::string(32, 'b')), std::nullopt);
    EXPECT_EQ(open("version", sealed, credential("another application"), machine), std::nullopt);
    EXPECT_EQ(open("other", sealed, credential(), machine), std::nullopt);
}

struct stat status_of(const fs::path& path) {
    struct stat status {};
    EXPECT_EQ(lstat(path.c_str(), &status), 0) << path;
    return status;
}

TEST_F(SecureStorage, ModesIgnoreTheUmaskAndTheOwnerIsKept) {
    const fs::path share = top.parent_path();
    const fs::path aside = "/opt/share.aside";
    fs::rename(share, aside);
    for (const mode_t mask : {0000U, 0777U}) {
        const mode_t before = umask(mask);
        EXPECT_EQ(write("version", "7.4.10"), platform::ok);
        EXPECT_EQ(chmod(file.c_str(), 0666), 0);
        EXPECT_EQ(write("version", "1.2.9"), platform::ok) << "a store with open permissions";
        umask(before);
        for (const auto& [path, mode] :
             {std::pair{share, 0755U}, {top, 0700U}, {folder, 0700U}, {file, 0600U}})
            EXPECT_EQ(status_of(path).st_mode & 07777U, mode) << path << ", umask " << mask;
        const bool is_given_away = chown(file.c_str(), 1234, 5678) == 0; // by root
        EXPECT_EQ(write("version", "1.2.9"), platform::ok);
        EXPECT_EQ(status_of(file).st_uid, is_given_away ? 1234U : geteuid());
        EXPECT_EQ(status_of(file).st_gid, is_given_away ? 5678U : getegid());
        fs::remove_all(share);
    }
    fs::rename(aside, share);
}

TEST_F(SecureStorage, RefusesOtherFilesAndUnsafeLinks) {
    ASSERT_EQ(write("version", "7.4.10"), platform::ok);
    const fs::path elsewhere = top / "elsewhere";
    const auto link = [&](uid_t owner, uid_t owner_of_target, mode_t mode) {
        return [&elsewhere, owner, owner_of_target, mode] {
            fs::create_directory_symlink(elsewhere, folder);
            const bool is_given = lchown(folder.c_str(), owner, owner) == 0; // by root
            EXPECT_EQ(is_given && chown(elsewhere.c_str(), owner_of_target, 0) == 0, geteuid() == 0);
            EXPECT_EQ(chmod(elsewhere.c_str(), mode), 0);
        };
    };
    struct Case {
        fs::path replaced;
        std::function<void()> put;
        bool is_followed = false;
    };
    const std::vector<Case> cases{
        {file, [] { fs::create_directory(file); }},
        {file, [&] { fs::create_symlink(elsewhere / "aaba977f", file); }},
        {file, [] { fs::create_symlink(file, file); }},
        {file, [] { EXPECT_EQ(mkfifo(file.c_str(), 0600), 0); }},
        {folder, [] { put_file(folder, "no folder"); }},
        {folder, link(0, 0, 0755), geteuid() == 0}, // root's link to a folder that only root can write
        {folder, link(1234, 0, 0755)},
        {folder, link(0, 1234, 0755)},
        {folder, link(0, 0, 0775)},
        {folder, link(0, 0, 0757)},
    };
    fs::copy(folder, elsewhere);
    const std::string good = content_of(file).value();
    for (std::size_t row = 0; row < cases.size(); ++row) {
        SCOPED_TRACE(row);
        const auto& [replaced, put, is_followed] = cases[row];
        fs::remove_all(replaced);
        put();
        const fs::file_type type = fs::symlink_status(replaced).type();
        EXPECT_EQ(read("version").result, is_followed ? platform::ok : storage_failed);
        EXPECT_EQ(write("version", "1.2.9"), is_followed ? platform::ok : storage_failed);
        EXPECT_EQ(fs::symlink_status(replaced).type(), type);
        EXPECT_EQ(content_of(elsewhere / "aaba977f") == good, !is_followed);
        put_file(elsewhere / "aaba977f", good);
    }
}

// Starts a write and kills it before or after one of its system calls; returns false if it finished first. Appends a
// letter to `calls` for each call that affects the disk.
bool kill_write_at(int stop, std::string& calls) {
    static const std::map<std::uint64_t, char> letters = {
#ifdef SYS_rename // some architectures have only the other two
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
        EXPECT_EQ(status, 0) << "the write failed without being killed";
        return false;
    }
    kill(writer, SIGKILL);
    waitpid(writer, nullptr, 0);
    return true;
}

TEST_F(SecureStorage, ContainsTheOldOrNewRecordWhereverAWriteIsKilled) {
    ASSERT_EQ(write("version", "old"), platform::ok);
    struct Case {
        std::optional<std::string> store;
        ReadRecord before;
        const char* calls; /**< new folders synced; the file written, synced and renamed; its folder synced */
    };
    for (const auto& [store, before, expected_calls] :
         {Case{{}, {platform::no_such_record, ""}, "^ssw+srs$"},
          Case{content_of(file), {platform::ok, "old"}, "^w+srs$"},
          Case{"damaged", {platform::not_authentic, ""}, "^w+srs$"}}) {
        std::string calls;
        bool is_killed = true;
        for (int stop = 0; is_killed; ++stop) {
            SCOPED_TRACE(testing::Message() << store.value_or("no store") << ", stop " << stop);
            fs::remove_all(top);
            if (store)
                put_file(file, *store);
            calls.clear();
            is_killed = kill_write_at(stop, calls);
            const ReadRecord record = read("version");
            ASSERT_TRUE(record == ReadRecord(platform::ok, "new") || (is_killed && record == before))
                << record.result << record.data;
            ASSERT_EQ(write("version", "newer"), platform::ok);
            ASSERT_EQ(read("version").data, "newer");
        }
        EXPECT_THAT(calls, testing::ContainsRegex(expected_calls));
    }
}

TEST_F(SecureStorage, KeepsTheRecordsOfConcurrentWriters) {
    const std::vector<std::string> keys{"first", "second", "third", "fourth"};
    std::vector<pid_t> writers;
    for (const std::string& key : keys)
        writers.push_back(start_process([&key] {
            bool is_kept = true;
            for (int time = 0; time < 25; ++time)
                is_kept = is_kept && write(key, key) == platform::ok && read(key).data == key;
            return is_kept;
        }));
    for (const pid_t writer : writers)
        EXPECT_TRUE(succeeds(writer));
    for (const std::string& key : keys)
        EXPECT_EQ(read(key).data, key);
}

} // namespace

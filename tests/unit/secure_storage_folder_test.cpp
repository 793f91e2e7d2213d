#include "support/secure_store.h"

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace secure_store;

namespace {

namespace fs = std::filesystem;

constexpr uid_t nobody = 65534;

class SecureStorageFolder : public WithoutStore {};

mode_t mode_of(const fs::path& path) {
    struct stat status {};
    return lstat(path.c_str(), &status) == 0 ? status.st_mode & 07777U : 0;
}

/** Runs an action in a process that file permissions bind: as this user, or for root as nobody. */
bool succeeds_as_ordinary_user(const std::function<bool()>& action) {
    return succeeds(start_process(
        [&action] { return (getuid() != 0 || (setgid(nobody) == 0 && setuid(nobody) == 0)) && action(); }));
}

/** Gives the store and its folders to the ordinary user. */
void hand_over() {
    if (getuid() != 0)
        return;
    for (const fs::path& path : {top, folder, file})
        ASSERT_EQ(chown(path.c_str(), nobody, nobody), 0);
}

bool root_without_other_users() {
    return getuid() == 0 && !succeeds_as_ordinary_user([] { return true; });
}

TEST_F(SecureStorageFolder, KeepsOthersOutWhateverTheFileModeMask) {
    const fs::path share = top.parent_path();
    const fs::path aside = "/opt/share.aside";
    fs::rename(share, aside);
    for (const mode_t mask : {0000U, 0022U, 0077U, 0777U}) {
        SCOPED_TRACE(testing::Message() << "umask " << std::oct << mask);
        const mode_t before = umask(mask);
        EXPECT_EQ(write("version", "7.4.10"), platform::ok);
        umask(before);
        EXPECT_EQ(mode_of(share), 0755U) << "shared with other applications";
        EXPECT_EQ(mode_of(top), 0700U);
        EXPECT_EQ(mode_of(folder), 0700U);
        EXPECT_EQ(mode_of(file), 0600U);
        ASSERT_EQ(chmod(file.c_str(), 0666), 0);
        EXPECT_EQ(write("version", "1.2.9"), platform::ok);
        EXPECT_EQ(mode_of(file), 0600U) << "a store that lay open";
        fs::permissions(share, fs::perms::owner_all);
        fs::remove_all(share);
    }
    fs::rename(aside, share);
}

TEST_F(SecureStorageFolder, FailsWhenTheStoreIsNoFileAndLeavesItAlone) {
    ASSERT_EQ(write("version", "7.4.10"), platform::ok);
    const fs::path elsewhere = "/tmp/store-elsewhere";
    const std::string good = content_of(file).value();
    const std::vector<std::pair<const char*, std::function<void()>>> cases = {
        {"folder", [] { fs::create_directory(file); }},
        {"link to a store", [&] { put_file(elsewhere, good), fs::create_symlink(elsewhere, file); }},
        {"link to nothing", [] { fs::create_symlink("/tmp/nothing", file); }},
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
    EXPECT_EQ(content_of(elsewhere), good);
    EXPECT_FALSE(fs::exists("/tmp/nothing"));
    fs::remove(elsewhere);
}

TEST_F(SecureStorageFolder, NeverWritesThroughALinkLeftAsTheTemporaryFile) {
    ASSERT_EQ(write("version", "7.4.10"), platform::ok);
    const fs::path victim = "/tmp/victim";
    put_file(victim, "untouched");
    fs::create_symlink(victim, folder / "aaba977f.new");
    EXPECT_EQ(write("version", "1.2.9"), platform::ok);
    EXPECT_EQ(read("version").data, "1.2.9");
    EXPECT_EQ(content_of(victim), "untouched");
    EXPECT_EQ(file_count(), 1);
    fs::remove(victim);
}

TEST_F(SecureStorageFolder, FailsForAUserWithoutTheRight) {
    if (root_without_other_users())
        GTEST_SKIP() << "this sandbox has no other users";
    ASSERT_EQ(write("version", "7.4.10"), platform::ok);
    const std::string before = content_of(file).value();
    const auto fails = [](int expected) {
        return succeeds_as_ordinary_user([expected] {
            return read("version").result == expected &&
                   write("version", "1.2.9") == platform::storage_failed;
        });
    };
    hand_over();
    ASSERT_EQ(chmod(file.c_str(), 0000), 0);
    EXPECT_TRUE(fails(platform::storage_failed)) << "a store that may not be read is not replaced either";
    ASSERT_EQ(chmod(file.c_str(), 0600), 0);
    ASSERT_EQ(chmod(folder.c_str(), 0500), 0);
    EXPECT_TRUE(fails(platform::ok)) << "a folder that may only be read";
    ASSERT_EQ(chmod(folder.c_str(), 0000), 0);
    EXPECT_TRUE(fails(platform::storage_failed)) << "a folder that may not be entered";
    ASSERT_EQ(chmod(folder.c_str(), 0700), 0);
    EXPECT_EQ(content_of(file), before);
}

TEST_F(SecureStorageFolder, KeepsTheOldRecordWhenThereIsNoRoomForTheNew) {
    ASSERT_EQ(write("version", "7.4.10"), platform::ok);
    const std::string before = content_of(file).value();
    const rlim_t size = before.size();
    for (const rlim_t room :
         {rlim_t{0}, rlim_t{1}, size - 1, size, size + 993}) { // the new one needs 994 more
        EXPECT_TRUE(succeeds(start_process([room] {
            const rlimit limit{room, room};
            return std::signal(SIGXFSZ, SIG_IGN) != SIG_ERR && setrlimit(RLIMIT_FSIZE, &limit) == 0 &&
                   write("version", std::string(1000, 'x')) == platform::storage_failed;
        }))) << "room for "
             << room << " bytes";
        EXPECT_EQ(content_of(file), before);
        EXPECT_EQ(file_count(), 1);
    }
}

TEST_F(SecureStorageFolder, KeepsTheOldRecordWhenDescriptorsRunOut) {
    ASSERT_EQ(write("version", "7.4.10"), platform::ok);
    const std::string before = content_of(file).value();
    int failures = 0;
    for (rlim_t free = 0;; ++free) {
        ASSERT_LT(free, 10U) << "a write never succeeds";
        // Each fills the table up to its own limit, then leaves some places free.
        const bool written = succeeds(start_process([free] {
            const rlimit limit{64, 64};
            if (setrlimit(RLIMIT_NOFILE, &limit) != 0)
                return false;
            int last = dup(0);
            for (int next = last; next >= 0; next = dup(0))
                last = next;
            for (rlim_t place = 0; place < free; ++place)
                close(last - static_cast<int>(place));
            return write("version", "1.2.9") == platform::ok;
        }));
        if (written)
            break;
        ++failures;
        ASSERT_EQ(content_of(file), before) << free;
        ASSERT_EQ(file_count(), 1) << free;
    }
    EXPECT_GT(failures, 1);
    EXPECT_EQ(read("version").data, "1.2.9");
}

} // namespace

#include "support/evidence.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <system_error>

namespace fs = std::filesystem;

namespace {

constexpr auto last_picture = "/tmp/last_picture.png";

} // namespace

void take_last_picture(const station::Operator& from) {
    try {
        from.picture(last_picture);
    } catch (const std::runtime_error&) { // the screen itself may be what failed
    }
}

fs::path keep_evidence(const fs::path& log, const std::vector<std::string>& keys) {
    const auto& info = *testing::UnitTest::GetInstance()->current_test_info();
    std::string test = std::string(info.test_suite_name()) + "." + info.name();
    std::ranges::replace(test, '/', '-');
    const fs::path folder = fs::path(VELMORA_EVIDENCE) / test;
    std::error_code not_there; // what cannot be kept is missed, and the test has failed already
    fs::remove_all(folder, not_there);
    fs::create_directories(folder, not_there);
    fs::copy("/var/log/station", folder, not_there);
    for (const fs::path& file : {log, fs::path(last_picture)})
        fs::copy(file, folder, not_there);
    std::ofstream list(folder / "keys");
    for (const std::string& key : keys)
        list << key << '\n';
    return folder;
}

#include "platform/orientation.h"
#include "platform/settings.h"

#include "services/settings_file.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <memory>
#include <vector>

namespace {

using platform::settings::Size;
using testing::Each;
using testing::Eq;
using testing::Ne;
using testing::Optional;
using testing::ResultOf;

class Settings : public testing::Test {
protected:
    Settings() { setenv("XDG_CONFIG_HOME", folder_.c_str(), 1); }
    ~Settings() override {
        std::filesystem::remove_all(folder_);
        unsetenv("XDG_CONFIG_HOME");
    }

    void write(const std::string& text) const {
        std::filesystem::create_directories(folder_ / "tv-platform");
        std::ofstream(folder_ / "tv-platform/settings.ini") << text;
    }

    static std::optional<std::string> read(const char* key) {
        const std::unique_ptr<char, decltype(&std::free)> value(vconf_get_str(key), std::free);
        return value ? std::optional<std::string>(value.get()) : std::nullopt;
    }

private:
    std::filesystem::path folder_ = std::filesystem::temp_directory_path() / "settings-test";
};

TEST_F(Settings, ReadsTheFileAsItIsNow) {
    EXPECT_EQ(read("db/menu_widget/language"), std::nullopt);
    write("[db/menu_widget]\nlanguage=de_DE.utf8\nempty=\n");
    EXPECT_THAT(read("db/menu_widget/language"), Optional(Eq("de_DE.utf8")));
    EXPECT_THAT(read("db/menu_widget/empty"), Optional(Eq("")));
    write("[db/menu_widget]\nlanguage=ar\n");
    EXPECT_THAT(read("db/menu_widget/language"), Optional(Eq("ar")));
}

TEST_F(Settings, AnswersNothingForWhatCannotBeRead) {
    write("[db/menu_widget]\nlanguage=\xff\xfe\n[other]\nkey=1\n");
    for (const char* key :
         {"db/menu_widget/language", "db/menu_widget/none", "none/key", "key", "", "/", "other/"})
        EXPECT_EQ(read(key), std::nullopt) << key;
    EXPECT_EQ(read(nullptr), std::nullopt);
    EXPECT_THAT(read("other/key"), Optional(Eq("1")));
    write("no key file\n");
    EXPECT_EQ(read("other/key"), std::nullopt);
}

TEST_F(Settings, ReadsSizesStrictly) {
    write("[screen]\nsize=1280x720\nmax=16384x1\nzero=0x720\nlarge=16385x1\nsign=-5x5\nrest=1x2x3\nhalf=640\n"
          "blank=1 x2\nhuge=99999999999x1\n");
    EXPECT_THAT(platform::settings::size("screen/size"), Optional(Size{1280, 720}));
    EXPECT_THAT(platform::settings::size("screen/max"), Optional(Size{16384, 1}));
    for (const char* key : {"zero", "large", "sign", "rest", "half", "blank", "huge", "missing"})
        EXPECT_EQ(platform::settings::size("screen/" + std::string(key)), std::nullopt) << key;
}

class Orientation : public Settings {
protected:
    [[nodiscard]] int orientation(const std::string& lines) const {
        write("[db/menu_widget]\n" + lines);
        return ua_UI_orientation_get();
    }
};

TEST_F(Orientation, FollowsTheLanguage) {
    EXPECT_EQ(ua_UI_orientation_get(), 0);
    const auto direction_of = [this](const std::string& language) {
        return orientation("language=" + language);
    };
    EXPECT_THAT(std::vector({"ar", "ar_AE.utf8", "he-IL", "fa_IR.UTF-8", "ur_PK", "az_Arab_IR"}),
                Each(ResultOf(direction_of, Ne(0))));
    EXPECT_THAT(std::vector({"en_US.utf8", "de", "C", "", "sr_RS@latin", "no such language"}),
                Each(ResultOf(direction_of, Eq(0))));
    EXPECT_EQ(direction_of(std::string(4000, 'a')), 0);
}

TEST_F(Orientation, CanBeSetWhateverTheLanguage) {
    EXPECT_NE(orientation("language=en\nmirrored=true"), 0);
    EXPECT_EQ(orientation("language=ar\nmirrored=false"), 0);
    EXPECT_NE(orientation("language=ar\nmirrored=perhaps"), 0) << "a bad value counts as missing";
}

} // namespace

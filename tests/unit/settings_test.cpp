#include "platform/orientation.h"
#include "platform/settings.h"
#include "settings/settings_file.h"
#include "support/settings_folder.h"

#include <gmock/gmock.h>
#include <memory>
#include <sys/stat.h>

namespace {

using platform::settings::Size;
using testing::Eq;
using testing::Optional;

class Settings : public testing::Test {
protected:
    void write(const std::string& text) const { put_file(settings_.file(), text); }

    static std::optional<std::string> read(const char* key) {
        const std::unique_ptr<char, decltype(&std::free)> value(vconf_get_str(key), std::free);
        return value ? std::optional<std::string>(value.get()) : std::nullopt;
    }

    [[nodiscard]] bool is_mirrored_with(const std::string& lines) const {
        write("[db/menu_widget]\n" + lines);
        return ua_UI_orientation_get() != 0;
    }

    test::SettingsFolder settings_{""};
};

TEST_F(Settings, AreReadFromTheCurrentFile) {
    EXPECT_EQ(read("db/menu_widget/language"), std::nullopt);
    EXPECT_EQ(ua_UI_orientation_get(), 0);
    write("[db/menu_widget]\nlanguage=de_DE.utf8\nempty=\n");
    EXPECT_THAT(read("db/menu_widget/language"), Optional(Eq("de_DE.utf8")));
    EXPECT_THAT(read("db/menu_widget/empty"), Optional(Eq("")));
    write("[db/menu_widget]\nlanguage=\xff\xfe\n[other]\nkey=1\n");
    for (const char* key :
         {"db/menu_widget/language", "db/menu_widget/none", "none/key", "key", "", "/", "other/"})
        EXPECT_EQ(read(key), std::nullopt) << key;
    EXPECT_EQ(read(nullptr), std::nullopt);
    EXPECT_THAT(read("other/key"), Optional(Eq("1")));
    write("no key file\n");
    EXPECT_EQ(read("other/key"), std::nullopt);
    std::filesystem::remove(settings_.file());
    ASSERT_EQ(mkfifo(settings_.file().c_str(), 0600), 0);
    EXPECT_EQ(read("other/key"), std::nullopt) << "a pipe without a writer";
}

TEST_F(Settings, SizesAreParsedStrictly) {
    write("[screen]\nsize=1280x720\nmax=16384x1\nzero=0x720\nlarge=16385x1\nsign=-5x5\nrest=1x2x3\nhalf=640\n"
          "blank=1 x2\nhuge=99999999999x1\n");
    EXPECT_THAT(platform::settings::size("screen/size"), Optional(Size{1280, 720}));
    EXPECT_THAT(platform::settings::size("screen/max"), Optional(Size{16384, 1}));
    for (const char* key : {"zero", "large", "sign", "rest", "half", "blank", "huge", "missing"})
        EXPECT_EQ(platform::settings::size("screen/" + std::string(key)), std::nullopt) << key;
}

TEST_F(Settings, LanguageDeterminesTheDirectionUnlessMirroredIsSet) {
    for (const char* language : {"ar", "ar_AE.utf8", "he-IL", "fa_IR.UTF-8", "ur_PK", "az_Arab_IR"})
        EXPECT_TRUE(is_mirrored_with(std::string("language=") + language)) << language;
    const std::string too_long(4000, 'a');
    for (const char* language :
         {"en_US.utf8", "de", "C", "", "sr_RS@latin", "no such language", too_long.c_str()})
        EXPECT_FALSE(is_mirrored_with(std::string("language=") + language)) << language;
    EXPECT_TRUE(is_mirrored_with("language=en\nmirrored=true"));
    EXPECT_FALSE(is_mirrored_with("language=ar\nmirrored=false"));
    EXPECT_TRUE(is_mirrored_with("language=ar\nmirrored=perhaps")) << "a bad value counts as missing";
}

} // namespace

#include "support/canvas.h"
#include "support/pages.h"
#include "support/settings_folder.h"

#include <platform/vell.h>

#include <Ecore_X.h>
#include <X11/Xlib.h>
#include <cmath>
#include <gmock/gmock.h>
#include <map>

namespace {

using testing::Each;
using testing::Le;

/** How the pages are seen: from which side they are written, and in a window of which part of the screen. */
struct View {
    const char* name;
    const char* language;
    double width = 1.0;
    double height = 1.0;
};

/** x, y, width and height in layout units, written from the left. */
struct Units {
    double x, y, width, height;
};

const std::map<std::string, Units> header = {
    {"Exit", {209, 8, 16, 10}}, {"TX Test", {88.5, 8, 30, 10}}, {"RX Test", {121.5, 8, 30, 10}}};
const std::map<std::string, Units> tx_form = {
    {"Power: ", {19, 36, 202, 10}},      {"Set Power", {19, 48, 100, 10}},
    {"Channel: ", {19, 60, 202, 10}},    {"Set Channel", {19, 72, 100, 10}},
    {"Start Stream", {19, 84, 100, 10}}, {"Stop Test", {19, 96, 100, 10}}};

constexpr std::string_view left_arrow = "\u2039";
constexpr std::string_view right_arrow = "\u203A";
bool is_arrow(std::string_view text) { return text == left_arrow || text == right_arrow; }

/** The settings are there before the pages are built. */
struct Language {
    explicit Language(const std::string& language)
        : settings("[db/menu_widget]\nlanguage=" + language + "\n") {}
    test::SettingsFolder settings;
};

/** Where the page is in its window. */
struct Page {
    double x, y, unit;
};

/** All pages and popups at this process's screen size. */
class Look : Language, public test::Pages, public testing::WithParamInterface<View> {
protected:
    Look() : Language(GetParam().language) { resize_window(); }
    ~Look() override { elm_config_mirrored_set(EINA_FALSE); }

    /** Makes the window smaller than the screen, where no window manager has a say. */
    void resize_window() {
        if (GetParam().width == 1.0 && GetParam().height == 1.0)
            return;
        auto* const display = static_cast<Display*>(ecore_x_display_get());
        const auto window = elm_win_xwindow_get(screen->window());
        XSetWindowAttributes attributes{};
        attributes.override_redirect = True;
        XChangeWindowAttributes(display, window, CWOverrideRedirect, &attributes);
        const auto [x, y, width, height] = test::geometry(screen->window());
        const int wanted_width = static_cast<int>(width * GetParam().width);
        const int wanted_height = static_cast<int>(height * GetParam().height);
        ecore_x_window_resize(window, wanted_width, wanted_height);
        EXPECT_TRUE(test::await([&] {
            const Eina_Rectangle now = test::geometry(screen->window());
            return now.w == wanted_width && now.h == wanted_height;
        }));
    }

    /** Looks at what the screen shows now. */
    void check(const std::string& page) const {
        SCOPED_TRACE(page);
        test::settle();
        const Eina_Rectangle window = canvas();
        const auto texts = test::drawn_texts(screen->window());
        EXPECT_GE(texts.size(), 4U);
        for (std::size_t i = 0; i < texts.size(); ++i) {
            const auto& [text, place, widget, whole, covered, contrast] = texts[i];
            EXPECT_TRUE(whole) << text;
            EXPECT_TRUE(test::is_inside(place, window)) << text;
            EXPECT_TRUE(test::is_inside(place, widget)) << text;
            EXPECT_TRUE(covered || contrast >= 4.5 || is_arrow(text)) << text << " " << contrast;
            for (std::size_t j = 0; j < i; ++j)
                EXPECT_FALSE(covered == texts[j].covered && test::overlap(place, texts[j].place))
                    << text << " and " << texts[j].text;
        }
        const auto ring = test::focus_ring(screen->window());
        ASSERT_TRUE(ring);
        EXPECT_GE(ring->contrast, 3.0);
        check_widgets(window);
        EXPECT_THAT(test::picture_scales(screen->window()), Each(Le(1.0)));
    }

    void expect_at(const std::map<std::string, Units>& places) const {
        const auto [page_x, page_y, unit] = page();
        for (const auto& [seen, units] : places) {
            Evas_Object* const widget = screen->find(seen);
            ASSERT_NE(widget, nullptr) << seen;
            const auto [x, y, width, height] = test::geometry(widget);
            const double left = mirrored() ? 240 - units.x - units.width : units.x;
            constexpr double rounding_pixels = 4.0; // of the sizes that stand above each other, each
            EXPECT_NEAR(x, page_x + left * unit, rounding_pixels) << seen;
            EXPECT_NEAR(y, page_y + units.y * unit, rounding_pixels) << seen;
            EXPECT_NEAR(width, units.width * unit, rounding_pixels) << seen;
            EXPECT_NEAR(height, units.height * unit, rounding_pixels) << seen;
        }
    }

    /** The title and the labels begin where their page does, on the side from which it is read. */
    void expect_texts_at_their_start() const {
        const auto [page_x, page_y, unit] = page();
        auto texts = test::drawn_texts(screen->window());
        std::erase_if(texts,
                      [](const auto& text) { return !text.text.ends_with(": ") && text.text != " Velmora"; });
        EXPECT_EQ(texts.size(), 3U);
        for (const auto& text : texts) {
            const double start = page_x + (text.text == " Velmora" ? 15 : 19) * unit;
            EXPECT_NEAR(mirrored() ? canvas().w - text.place.x - text.place.w : text.place.x, start, 2 * unit)
                << text.text;
        }
    }

    /** The picker's arrows: how clear the one that leads on, to less or to more, is on its ground. */
    [[nodiscard]] double arrow_contrast(bool to_more) const {
        for (const auto& text : test::drawn_texts(screen->window()))
            if (text.text == (to_more == mirrored() ? left_arrow : right_arrow))
                return text.contrast;
        return 0.0;
    }

    void choose(const std::string& button, const char* more, int times, const std::string& page) {
        activate(button);
        check(page);
        EXPECT_LT(arrow_contrast(false), 2.0); // spent
        EXPECT_GT(arrow_contrast(true), 4.5);
        screen->press(more, times);
        check(page + ", chosen");
        EXPECT_GT(arrow_contrast(false), 4.5);
        screen->press("Return");
    }

    [[nodiscard]] static bool mirrored() { return elm_config_mirrored_get() != EINA_FALSE; }
    [[nodiscard]] static const char* onward() { return mirrored() ? "Left" : "Right"; }

private:
    /** What can be pressed or read lies in the window, and nothing of it over another. */
    void check_widgets(const Eina_Rectangle& window) const {
        std::vector<std::string> seen = screen->seen();
        const auto popup = std::ranges::find_if(seen, [](const auto& it) { return it.starts_with("popup"); });
        seen.erase(seen.begin(),
                   popup == seen.end() ? seen.begin() + 1 : popup + 1); // the header or the popup
        for (std::size_t i = 0; i < seen.size(); ++i) {
            const Eina_Rectangle place = test::geometry(screen->find(seen[i]));
            EXPECT_TRUE(test::is_inside(place, window)) << seen[i];
            for (std::size_t j = 0; j < i; ++j)
                EXPECT_FALSE(test::overlap(place, test::geometry(screen->find(seen[j]))))
                    << seen[i] << " and " << seen[j];
        }
    }

    /** 240 x 135 units in the window's middle. */
    [[nodiscard]] Page page() const {
        const Eina_Rectangle window = canvas();
        const double unit = std::min(window.w / 240.0, window.h / 135.0);
        return {(window.w - 240 * unit) / 2, (window.h - 135 * unit) / 2, unit};
    }

    [[nodiscard]] Eina_Rectangle canvas() const {
        Eina_Rectangle area{};
        evas_output_viewport_get(evas_object_evas_get(screen->window()), &area.x, &area.y, &area.w, &area.h);
        return area;
    }
};

TEST_P(Look, ShowsEveryTxPageInItsWhole) {
    check("first");
    expect_at(header);
    activate("TX Test");
    check("start");
    expect_at({{"Start TX Test", {70, 71, 100, 10}}});
    elm_vell_button_text_set(screen->find("Start TX Test"), "Failed to start child process");
    check("no start");
    open("TX Test");
    check("page");
    expect_at(tx_form);
    expect_texts_at_their_start();
    choose("Set Power", onward(), 20, "power picker");
    choose("Set Channel", onward(), 15, "channel picker");
    activate("Start Stream");
    check("stream");
    activate("Exit");
    check("exit popup");
}

TEST_P(Look, ShowsEveryRxPageInItsWhole) {
    radio.answer("ember_get_rx_statistics", "('4294967295 packets', 0)");
    activate("RX Test");
    check("start");
    open("RX Test");
    check("page");
    activate("Count Received Packets");
    check("count");
    radio.answer("ember_reset_rx_statistics", "(5,)");
    activate("Reset Count");
    check("reset failed");
    choose("11", onward(), 9, "channel picker");
    check("values");
}

TEST_P(Look, KeepsItsStatesWhenTheLanguageChanges) {
    const auto contrasts = [this] {
        std::map<std::string, double> found; // what is dim, chosen, focused or spent shows in its colours
        for (const auto& text : test::drawn_texts(screen->window()))
            found[text.text] = text.contrast;
        return found;
    };
    const auto change_language = [] {
        elm_config_mirrored_set(mirrored() ? EINA_FALSE : EINA_TRUE);
        test::settle();
    };
    open("TX Test");
    activate("Start Stream");
    const auto streaming = contrasts();
    change_language();
    EXPECT_EQ(contrasts(), streaming);
    check("stream");
    change_language();
    activate("Stop Stream");
    activate("Set Channel");
    change_language();
    check("picker");
    EXPECT_LT(arrow_contrast(false), 2.0);
    EXPECT_GT(arrow_contrast(true), 4.5);
    screen->press(onward(), 1);
    check("picker, stepped");
    EXPECT_EQ(screen->focused(), "[12]");
    EXPECT_GT(arrow_contrast(false), 4.5);
}

INSTANTIATE_TEST_SUITE_P(Views, Look,
                         testing::Values(View{"FromTheLeft", "en_GB"}, View{"FromTheRight", "ar_AE"},
                                         View{"FromTheRightInAWideWindow", "he_IL", 1.0, 3.0 / 4},
                                         View{"FromTheLeftInATallWindow", "en_GB", 2.0 / 3, 1.0}),
                         [](const auto& test) { return test.param.name; });

} // namespace

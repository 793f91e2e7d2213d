/** Checks the rendering of all pages and popups at the current screen size. */
#include "support/pages.h"
#include "support/windows.h"

#include <array>
#include <map>

namespace {

struct View {
    const char* name;
    Eina_Bool mirrored; /**< while the pages are built */
    double width;       /**< the window's share of the screen */
    double height;
};

/**
 * The expected areas of widgets by text, in layout units: x (from the side where reading begins), y, width, height.
 */
const std::map<std::string, std::array<double, 4>> areas{
    {"Exit", {209, 8, 16, 10}},           {"TX Test", {88.5, 8, 30, 10}}, {"RX Test", {121.5, 8, 30, 10}},
    {"Start TX Test", {70, 71, 100, 10}}, {"Power: ", {19, 36, 202, 10}}, {"Set Power", {19, 48, 100, 10}},
    {"Stop Test", {19, 96, 100, 10}}};

/** A word too long for any widget. */
const std::string endless(500, 'W');

bool mirrored() { return elm_config_mirrored_get() != EINA_FALSE; }

/** A line across an object's left edge. */
Eina_Rectangle edge_of(const Evas_Object* object) {
    const auto [x, y, width, height] = test::geometry(object);
    const int length = static_cast<int>(8 * elm_config_scale_get());
    return {x - length / 2, y + height / 2, length, 1};
}

bool is_whole(const test::Drawn& text) {
    if (test::is_type(text.object, "text")) // a shortened text lacks its last character
        return evas_object_text_char_pos_get(text.object, eina_unicode_utf8_get_len(text.text.c_str()) - 1,
                                             nullptr, nullptr, nullptr, nullptr) != EINA_FALSE;
    int width = 0;
    int height = 0;
    evas_object_textblock_size_formatted_get(text.object, &width, &height);
    return width <= test::geometry(text.object).w && height <= test::geometry(text.object).h;
}

/** Whether two widgets with texts overlap; if one widget contains the other, whether their texts do. */
bool collide(const test::Drawn& one, const test::Drawn& other) {
    const auto [widget, other_widget] = std::pair(test::geometry(one.widget), test::geometry(other.widget));
    const auto [text, other_text] = std::pair(test::geometry(one.object), test::geometry(other.object));
    const bool hold = test::is_inside(widget, other_widget) || test::is_inside(other_widget, widget);
    return eina_rectangles_intersect(hold ? &text : &widget, hold ? &other_text : &other_widget) !=
           EINA_FALSE;
}

class Look : public testing::WithParamInterface<View>, public test::Pages {
protected:
    Look() {
        elm_config_mirrored_set(GetParam().mirrored);
        const Eina_Rectangle screen = test::geometry(window);
        const auto width = static_cast<int>(screen.w * GetParam().width);
        const auto height = static_cast<int>(screen.h * GetParam().height);
        ecore_x_window_resize(elm_win_xwindow_get(window), width, height); // there is no window manager
        EXPECT_TRUE(test::await(
            [&] { return test::geometry(window).w == width && test::geometry(window).h == height; }));
        evas_event_callback_add(evas_object_evas_get(window), EVAS_CALLBACK_RENDER_POST, on_frame, this);
    }
    ~Look() override {
        evas_event_callback_del(evas_object_evas_get(window), EVAS_CALLBACK_RENDER_POST, on_frame);
    }

    /** Checks both text directions. Unless `less` (`more`), the arrow to smaller (larger) numbers must be dim. */
    void check(const std::string& page, bool less = true, bool more = true) {
        SCOPED_TRACE(page);
        test::run_for(std::chrono::milliseconds(650)); // until the press feedback has ended
        const auto before = look(less, more);
        elm_config_mirrored_set(!mirrored());
        look(less, more);
        elm_config_mirrored_set(!mirrored());
        for (const auto& [text, light] : look(less, more))
            EXPECT_NEAR(light, before.at(text), 0.5) << text;
    }

    void choose(const std::string& button, int times) {
        activate(button);
        check(button, false);
        for (int time = 0; time < times; ++time)
            press(mirrored() ? "Left" : "Right");
        check(button + ", chosen", true, false);
        press("Return");
    }

private:
    /** @return the contrast of each text, which reveals selected, focused and locked widgets. */
    std::map<std::string, double> look(bool less, bool more) {
        SCOPED_TRACE(mirrored() ? "from the right" : "from the left");
        test::settle();
        std::map<std::string, double> contrasts;
        const std::vector<test::Drawn> texts = this->texts();
        EXPECT_GE(texts.size(), 4U);
        for (auto text = texts.begin(); text != texts.end(); ++text) {
            SCOPED_TRACE(text->text);
            const Eina_Rectangle widget = test::geometry(text->widget);
            const Eina_Rectangle area = test::geometry(text->object);
            const double light = contrasts[text->text] = test::contrast(area);
            const bool is_left = text->text == "\u2039";
            const bool is_spent =
                (is_left || text->text == "\u203A") && !(is_left == mirrored() ? more : less);
            EXPECT_GE(light, is_spent ? 1.01 : 4.5);
            EXPECT_LE(light, is_spent ? 2.0 : 21.0);
            EXPECT_NE(is_whole(*text), text->text.ends_with(endless));
            EXPECT_TRUE(test::is_inside(area, test::geometry(window)));
            EXPECT_TRUE(test::is_inside({area.x, area.y + area.h / 10, area.w, area.h * 8 / 10},
                                        widget)); // the letters, without spacing
            const bool is_usable = test::is_type(text->widget, "elm_button") &&
                                   elm_object_focus_allow_get(text->widget) != EINA_FALSE;
            EXPECT_TRUE(!is_usable || test::contrast(edge_of(text->widget)) >= 3.0);
            EXPECT_TRUE(
                std::none_of(texts.begin(), text, [&](const auto& other) { return collide(*text, other); }));
            if (const auto place = areas.find(text->text); place != areas.end())
                expect_at(place->second, widget);
            const int indent = mirrored() ? widget.x + widget.w - area.x - area.w : area.x - widget.x;
            EXPECT_TRUE(!text->text.ends_with(": ") || indent < elm_vell_unit_to_pixel(2.0));
        }
        const test::Drawn ring = focus_ring();
        const auto [x, y, width, height] = test::geometry(ring.widget);
        const int margin = elm_vell_unit_to_pixel(3.0);
        EXPECT_TRUE(test::is_inside(test::geometry(ring.object),
                                    {x - margin, y - margin, width + 2 * margin, height + 2 * margin}));
        EXPECT_GE(test::contrast(edge_of(ring.object)), 3.0);
        for (const test::Drawn& each : drawn()) // an enlarged image is blurred
            EXPECT_TRUE(!test::is_type(each.object, "image") ||
                        evas_object_image_border_scale_get(each.object) <= 1);
        return contrasts;
    }

    /** The focus ring's image, and the widget that has the ring; null if no ring is visible. */
    [[nodiscard]] test::Drawn focus_ring() const {
        test::Drawn ring{};
        for (const test::Drawn& each : drawn()) {
            int border = 0;
            if (test::is_type(each.object, "image"))
                evas_object_image_border_get(each.object, &border, nullptr, nullptr, nullptr);
            if (border == 72) // unique to the ring's image
                ring = each;
        }
        return ring;
    }

    /** Checks in every frame that the focused widget has the focus ring. */
    static void on_frame(void* self, Evas* /*canvas*/, void* /*event*/) {
        const auto& look = *static_cast<Look*>(self);
        EXPECT_EQ(look.focus_ring().widget, elm_object_focused_object_get(look.window));
    }

    /** Checks a place on the page, which is 240 x 135 units in the middle of the window. */
    void expect_at(const std::array<double, 4>& place, const Eina_Rectangle& area) const {
        const auto [left, top, width, height] = place;
        const Eina_Rectangle screen = test::geometry(window);
        const double unit = std::min(screen.w / 240.0, screen.h / 135.0);
        constexpr double rounding = 4.0; // accumulated, in pixels
        EXPECT_NEAR(area.x, screen.w / 2.0 + ((mirrored() ? 240 - left - width : left) - 120) * unit,
                    rounding);
        EXPECT_NEAR(area.y, screen.h / 2.0 + (top - 67.5) * unit, rounding);
        EXPECT_NEAR(area.w, width * unit, rounding);
        EXPECT_NEAR(area.h, height * unit, rounding);
    }
};

TEST_P(Look, TxPagesRenderCorrectly) {
    check("first");
    activate("TX Test");
    check("start");
    elm_vell_button_text_set(find("Start TX Test"), "Failed to start child process");
    check("no start");
    elm_vell_button_text_set(find("Failed to start child process"), endless.c_str());
    check("endless button");
    activate("TX Test");
    emit_ready();
    check("page");
    choose("Set Power", 20);
    choose("Set Channel", 15);
    activate("Start Stream");
    check("stream");
    activate("Exit");
    check("exit popup");
    elm_object_text_set(find("Do you want to exit ?"), std::string(40, 'W').c_str());
    check("exit popup with a long word");
    elm_object_tree_focus_allow_set(window, EINA_FALSE);
    test::settle();
    EXPECT_EQ(focused(), "");
}

TEST_P(Look, RxPagesRenderCorrectly) {
    radio.answer("ember_get_rx_statistics", "('4294967295 packets', 0)");
    activate("RX Test");
    check("start");
    emit_ready();
    check("page");
    activate("Count Received Packets");
    check("count");
    radio.answer("ember_get_rx_statistics", "('" + endless + " packets', 0)");
    activate("Count Received Packets");
    check("endless count");
    radio.answer("ember_reset_rx_statistics", "(5,)");
    activate("Reset Count");
    check("reset failed");
    choose("11", 15);
    check("values");
}

class LookWindow : public test::Pages {};

TEST_F(LookWindow, HasAUserPositionAndTakesTheKeyboardWhenRaised) {
    Eina_Bool is_placed = EINA_FALSE; // otherwise a window manager may ask the user to place the window
    ecore_x_icccm_size_pos_hints_get(elm_win_xwindow_get(window), &is_placed, nullptr, nullptr, nullptr,
                                     nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    EXPECT_TRUE(is_placed);
    const Eina_Rectangle corner{0, 0, 320, 180}; // covered by the other window
    const simulator::Pixels before = test::look_at(corner);
    const auto is_in_front = [&] { return elm_win_focus_get(window) && test::look_at(corner) == before; };
    const simulator::OtherWindow other;
    other.take_keys();
    EXPECT_TRUE(test::await([&] { return !is_in_front(); }));
    elm_win_raise(window);
    EXPECT_TRUE(test::await(is_in_front));
}

INSTANTIATE_TEST_SUITE_P(, Look,
                         testing::Values(View{"LeftToRight", EINA_FALSE, 1.0, 1.0},
                                         View{"RightToLeftInAWideWindow", EINA_TRUE, 1.0, 3.0 / 4},
                                         View{"LeftToRightInATallWindow", EINA_FALSE, 2.0 / 3, 1.0}),
                         [](const auto& test) { return test.param.name; });

} // namespace

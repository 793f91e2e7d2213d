#include "support/pages.h"
#include "support/settings_folder.h"

#include <platform/vell.h>

#include <Ecore_X.h>
#include <gmock/gmock.h>
#include <map>

namespace {

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

/** Where the widgets of some texts are, wherever they are seen. */
const std::map<std::string, Units> places{
    {"Exit", {209, 8, 16, 10}},           {"TX Test", {88.5, 8, 30, 10}}, {"RX Test", {121.5, 8, 30, 10}},
    {"Start TX Test", {70, 71, 100, 10}}, {"Power: ", {19, 36, 202, 10}}, {"Set Power", {19, 48, 100, 10}},
    {"Stop Test", {19, 96, 100, 10}}};

constexpr std::string_view left_arrow = "\u2039";
constexpr std::string_view right_arrow = "\u203A";

/** A word that is too long for every widget: it is cut. */
const std::string endless(500, 'W');

/** Whether a picker's arrows lead on, or are spent. */
struct Arrows {
    bool less = true;
    bool more = true;
};

/** The settings are there before the pages are built. */
struct Language : testing::WithParamInterface<View> {
    test::SettingsFolder settings{std::string("[db/menu_widget]\nlanguage=") + GetParam().language};
};

/** All pages and popups at this process's screen size. */
class Look : public Language, public test::Pages {
protected:
    Look() {
        if (GetParam().width < 1.0 || GetParam().height < 1.0)
            resize_window();
    }
    ~Look() override { elm_config_mirrored_set(EINA_FALSE); }

    /** Looks at what the screen shows in both directions, and whether its states survive the change. */
    void check(const std::string& page, const Arrows& arrows = {}) const {
        SCOPED_TRACE(page);
        test::await([] { return false; }, std::chrono::milliseconds(650)); // a press shows for so long
        const auto before = look(arrows);
        change_direction();
        (void)look(arrows);
        change_direction();
        for (const auto& [text, light] : look(arrows))
            EXPECT_NEAR(light, before.at(text), 0.5) << text;
    }

    void choose(const std::string& button, int times) {
        activate(button);
        check(button, {.less = false});
        screen->press(mirrored() ? "Left" : "Right", times);
        check(button + ", chosen", {.more = false});
        screen->press("Return");
    }

private:
    /** @return the contrast of each text in front: what is dim, chosen, focused or spent shows in its colours. */
    [[nodiscard]] std::map<std::string, double> look(const Arrows& arrows) const {
        SCOPED_TRACE(mirrored() ? "from the right" : "from the left");
        test::settle();
        std::map<std::string, double> contrasts;
        const auto texts = test::drawn_texts(screen->window());
        EXPECT_GE(texts.size(), 4U);
        for (auto text = texts.begin(); text != texts.end(); ++text) {
            SCOPED_TRACE(text->text);
            const double light = test::contrast(text->place);
            if (!text->covered) // a popup's edge may run through it
                contrasts[text->text] = light;
            if (text->text == left_arrow || text->text == right_arrow)
                expect_arrow(light, (text->text == left_arrow) == mirrored() ? arrows.more : arrows.less);
            else
                EXPECT_TRUE(text->covered || light >= 4.5);
            EXPECT_NE(text->whole, text->text.ends_with(endless));
            EXPECT_TRUE(test::is_inside(text->place, canvas()));
            EXPECT_TRUE(test::is_inside(letters_of(*text), text->widget));
            EXPECT_TRUE(!text->control || text->covered || test::contrast(edge_of(text->widget)) >= 3.0);
            for (auto other = texts.begin(); other != text; ++other)
                EXPECT_FALSE(text->covered == other->covered && collide(*text, *other)) << other->text;
            if (places.contains(text->text))
                expect_at(places.at(text->text), text->widget);
            const bool is_label = text->text.ends_with(": ");
            const int distance = std::abs(side_of(text->place) - side_of(text->widget));
            EXPECT_TRUE(!is_label || distance < elm_vell_unit_to_pixel(2.0));
        }
        const Eina_Rectangle ring = test::focus_ring(screen->window()).value_or(Eina_Rectangle{});
        const int line = static_cast<int>(8 * elm_config_scale_get()); // before what it is around
        EXPECT_GE(test::contrast({ring.x, ring.y + ring.h / 2, line, 1}), 3.0);
        EXPECT_THAT(test::border_scales(screen->window()), testing::Each(testing::Le(1.0)));
        return contrasts;
    }

    /** Its font has room above and below that no letter of these texts takes. */
    static Eina_Rectangle letters_of(const test::DrawnText& text) {
        return {text.place.x, text.place.y + text.place.h / 10, text.place.w, text.place.h * 8 / 10};
    }

    /** A line from what a control stands on into the control. */
    static Eina_Rectangle edge_of(const Eina_Rectangle& control) {
        const int length = static_cast<int>(8 * elm_config_scale_get());
        return {control.x - length / 2, control.y + control.h / 2, length, 1};
    }

    static void expect_arrow(double light, bool leads_on) {
        EXPECT_GT(light, leads_on ? 4.5 : 1.0);
        EXPECT_LT(light, leads_on ? 21.0 : 2.0);
    }

    static void change_direction() { elm_config_mirrored_set(mirrored() ? EINA_FALSE : EINA_TRUE); }

    [[nodiscard]] static bool mirrored() { return elm_config_mirrored_get() != EINA_FALSE; }

    /** In the page, which is 240 x 135 units large and in the window's middle. */
    void expect_at(const Units& units, const Eina_Rectangle& place) const {
        const Eina_Rectangle window = canvas();
        const double unit = std::min(window.w / 240.0, window.h / 135.0);
        const double left = mirrored() ? 240 - units.x - units.width : units.x;
        constexpr double rounding_pixels = 4.0; // of the sizes that stand above each other, each
        EXPECT_NEAR(place.x, window.w / 2.0 + (left - 120) * unit, rounding_pixels);
        EXPECT_NEAR(place.y, window.h / 2.0 + (units.y - 67.5) * unit, rounding_pixels);
        EXPECT_NEAR(place.w, units.width * unit, rounding_pixels);
        EXPECT_NEAR(place.h, units.height * unit, rounding_pixels);
    }

    /** The side from which it is read. */
    static int side_of(const Eina_Rectangle& area) { return mirrored() ? area.x + area.w : area.x; }

    /** Whether two texts, or the widgets that they belong to and that do not hold each other, share a pixel. */
    static bool collide(const test::DrawnText& one, const test::DrawnText& other) {
        const bool hold =
            test::is_inside(one.widget, other.widget) || test::is_inside(other.widget, one.widget);
        return eina_rectangles_intersect(hold ? &one.place : &one.widget,
                                         hold ? &other.place : &other.widget) != EINA_FALSE;
    }

    /** Makes the window smaller than the screen, where no window manager has a say. */
    void resize_window() {
        const Eina_Rectangle before = test::geometry(screen->window());
        const int width = static_cast<int>(before.w * GetParam().width);
        const int height = static_cast<int>(before.h * GetParam().height);
        ecore_x_window_resize(elm_win_xwindow_get(screen->window()), width, height);
        EXPECT_TRUE(test::await([&] { return canvas().w == width && canvas().h == height; }));
    }

    [[nodiscard]] Eina_Rectangle canvas() const {
        Eina_Rectangle area{};
        evas_output_viewport_get(evas_object_evas_get(screen->window()), &area.x, &area.y, &area.w, &area.h);
        return area;
    }
};

TEST_P(Look, ShowsEveryTxPageInItsWhole) {
    check("first");
    activate("TX Test");
    check("start");
    elm_vell_button_text_set(screen->find("Start TX Test"), "Failed to start child process");
    check("no start");
    elm_vell_button_text_set(screen->find("Failed to start child process"), endless.c_str());
    check("endless button");
    open("TX Test");
    check("page");
    choose("Set Power", 20);
    choose("Set Channel", 15);
    activate("Start Stream");
    check("stream");
    activate("Exit");
    check("exit popup");
    elm_object_text_set(screen->find("Do you want to exit ?"), std::string(40, 'W').c_str());
    check("exit popup with a long word");
}

TEST_P(Look, ShowsEveryRxPageInItsWhole) {
    radio.answer("ember_get_rx_statistics", "('4294967295 packets', 0)");
    activate("RX Test");
    check("start");
    open("RX Test");
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

INSTANTIATE_TEST_SUITE_P(Views, Look,
                         testing::Values(View{"FromTheLeft", "en_GB"},
                                         View{"FromTheRightInAWideWindow", "he_IL", 1.0, 3.0 / 4},
                                         View{"FromTheLeftInATallWindow", "en_GB", 2.0 / 3, 1.0}),
                         [](const auto& test) { return test.param.name; });

class FocusRing : public test::Pages {
protected:
    /** The main loop for longer than any movement takes. */
    static void rest() {
        test::await([] { return false; }, std::chrono::milliseconds(250));
    }

    /** After `act` the ring is around what has the focus in every frame. */
    void expect_ring(const std::string& focused, const std::function<void()>& act) const {
        SCOPED_TRACE(focused);
        std::pair frames(screen->window(), 0);
        const auto on_frame = [](void* data, Evas*, void*) {
            auto& [window, count] = *static_cast<decltype(frames)*>(data);
            ++count;
            const Evas_Object* const widget = elm_object_focused_object_get(window);
            const Eina_Rectangle ring = test::focus_ring(window).value_or(Eina_Rectangle{});
            EXPECT_TRUE(widget == nullptr || is_around(ring, widget)) << "frame " << count;
        };
        Evas* const canvas = evas_object_evas_get(screen->window());
        evas_event_callback_add(canvas, EVAS_CALLBACK_RENDER_POST, on_frame, &frames);
        act();
        rest();
        evas_event_callback_del_full(canvas, EVAS_CALLBACK_RENDER_POST, on_frame, &frames);
        EXPECT_GT(frames.second, 0);
        EXPECT_EQ(screen->focused(), focused);
        // It stands around the text, or a picker's number.
        const Eina_Rectangle ring = test::focus_ring(screen->window()).value_or(Eina_Rectangle{});
        const std::string_view number = std::string_view(focused).substr(1, 2);
        const auto texts = test::drawn_texts(screen->window());
        EXPECT_TRUE(std::ranges::any_of(texts, [&](const test::DrawnText& text) {
            return (text.text == focused || text.text == number) && test::is_inside(text.place, ring);
        }));
    }

    /** Not much beyond the widget. */
    static bool is_around(const Eina_Rectangle& ring, const Evas_Object* widget) {
        const int margin = elm_vell_unit_to_pixel(3.0);
        const auto [x, y, width, height] = test::geometry(widget);
        return ring.w > 0 &&
               test::is_inside(ring, {x - margin, y - margin, width + 2 * margin, height + 2 * margin});
    }
};

TEST_F(FocusRing, IsAroundWhatHasTheFocusInEveryFrame) {
    const auto key = [this](const char* name) { return [this, name] { screen->type(name); }; };
    const auto mirror = [](Eina_Bool mirrored) { return [mirrored] { elm_config_mirrored_set(mirrored); }; };
    expect_ring("Start TX Test", key("Return"));
    expect_ring("Set Power", [this] { emit("ready"); });
    expect_ring("Set Channel", key("Down"));
    expect_ring("[11]", key("Return"));
    expect_ring("11", key("Return"));
    expect_ring("Exit", [this] { elm_object_focus_set(screen->find("Exit"), EINA_TRUE); });
    expect_ring("Cancel", key("Return"));
    expect_ring("Yes", key("Left"));
    expect_ring("Yes", mirror(EINA_TRUE));
    expect_ring("Yes", mirror(EINA_FALSE));
    expect_ring("Exit", key("XF86Back"));
    elm_object_tree_focus_allow_set(screen->window(), EINA_FALSE);
    rest();
    EXPECT_FALSE(test::focus_ring(screen->window()));
}

} // namespace

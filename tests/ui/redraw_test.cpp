#include "support/canvas.h"
#include "support/pages.h"

#include <platform/vell.h>

#include <algorithm>
#include <gmock/gmock.h>

namespace {

using testing::Each;
using testing::IsEmpty;
using testing::Not;
using testing::ResultOf;
using testing::SizeIs;

using Frame = std::vector<Eina_Rectangle>; /**< the areas that one frame drew anew */

/** Notes what each frame of a window draws, and where the focus ring is in it. */
class FrameWatch {
public:
    explicit FrameWatch(Evas_Object* window) : window_(window), canvas_(evas_object_evas_get(window)) {
        evas_event_callback_add(canvas_, EVAS_CALLBACK_RENDER_POST, on_frame, this);
    }
    FrameWatch(const FrameWatch&) = delete;
    FrameWatch& operator=(const FrameWatch&) = delete;
    ~FrameWatch() { evas_event_callback_del_full(canvas_, EVAS_CALLBACK_RENDER_POST, on_frame, this); }

    std::vector<Frame> frames;
    std::vector<Eina_Rectangle> rings;

private:
    static void on_frame(void* data, Evas*, void* event) {
        auto* const watch = static_cast<FrameWatch*>(data);
        Frame frame;
        for (const Eina_List* node = static_cast<Evas_Event_Render_Post*>(event)->updated_area;
             node != nullptr; node = eina_list_next(node))
            frame.push_back(*static_cast<Eina_Rectangle*>(eina_list_data_get(node)));
        watch->frames.push_back(frame);
        watch->rings.push_back(test::focus_ring(watch->window_).value_or(test::DrawnRing{}).place);
    }
    Evas_Object* window_;
    Evas* canvas_;
};

class Redraw : public test::Pages {
protected:
    /** Two widgets' areas and what is between them, with the ring around them in whole tiles of the canvas. */
    [[nodiscard]] Eina_Rectangle path(const std::string& from, const std::string& to) const {
        const int ring = elm_vell_unit_to_pixel(3.0);
        const Eina_Rectangle one = test::geometry(screen->find(from));
        const Eina_Rectangle other = test::geometry(screen->find(to));
        const int x = std::min(one.x, other.x);
        const int y = std::min(one.y, other.y);
        return {x - ring, y - ring, std::max(one.x + one.w, other.x + other.w) - x + 2 * ring,
                std::max(one.y + one.h, other.y + other.h) - y + 2 * ring};
    }

    /** The main loop for longer than any movement takes. */
    static void rest() {
        test::await([] { return false; }, std::chrono::milliseconds(250));
    }

    /** What a key has drawn until the screen is at rest again. */
    std::vector<Frame> frames_of(const char* key) const {
        rest();
        FrameWatch watch(screen->window());
        screen->type(key);
        rest();
        const std::size_t drawn = watch.frames.size();
        rest();
        EXPECT_EQ(watch.frames.size(), drawn) << "frames go on after " << key;
        return watch.frames;
    }

    /** The ring around what has the focus after `act`: there in every frame, or on its way in some. */
    template <class Act>
    void expect_ring(const std::string& focused, bool glides, Act act) const {
        SCOPED_TRACE(focused);
        rest();
        FrameWatch watch(screen->window());
        act();
        rest();
        EXPECT_EQ(screen->focused(), focused);
        ASSERT_THAT(watch.rings, Not(IsEmpty()));
        const Eina_Rectangle ring = watch.rings.back();
        const auto elsewhere = std::ranges::count_if(watch.rings, [&ring](const Eina_Rectangle& other) {
            return other.x != ring.x || other.y != ring.y || other.w != ring.w || other.h != ring.h;
        });
        EXPECT_EQ(elsewhere > 2, glides) << elsewhere << " of " << watch.rings.size();
        EXPECT_TRUE(glides || elsewhere == 0);
        EXPECT_TRUE(test::is_inside(ring, path(focused, focused)));
        const std::string_view number = std::string_view(focused).substr(1, 2); // of a picker
        const auto texts = test::drawn_texts(screen->window());
        EXPECT_TRUE(std::ranges::any_of(texts, [&](const test::DrawnText& text) {
            return (text.text == focused || text.text == number) && test::is_inside(text.place, ring);
        }));
    }
};

auto all_inside(const Eina_Rectangle& area) {
    return Each(ResultOf([area](const Eina_Rectangle& drawn) { return test::is_inside(drawn, area); }, true));
}

TEST_F(Redraw, FocusDrawsItsPathAloneAndComesToRest) {
    open("TX Test");
    const std::vector<Frame> frames = frames_of("Down");
    ASSERT_EQ(screen->focused(), "Set Channel");
    ASSERT_THAT(frames, Not(IsEmpty()));
    EXPECT_THAT(frames, Each(all_inside(path("Set Power", "Set Channel"))));
    // The very next frame shows the key's effect: both widgets in their new colours.
    for (const char* const widget : {"Set Power", "Set Channel"})
        EXPECT_TRUE(std::ranges::any_of(frames.front(), [&](const Eina_Rectangle& drawn) {
            return test::is_inside(test::geometry(screen->find(widget)), drawn);
        })) << widget;
}

TEST_F(Redraw, RingStandsAtOnceOnWhatComesAndGlidesOnItsPage) {
    const auto key = [this](const char* name) { return [this, name] { screen->type(name); }; };
    expect_ring("Start TX Test", false, key("Return"));
    expect_ring("Set Power", false, [this] { emit("ready"); });
    expect_ring("Set Channel", true, key("Down"));
    expect_ring("[11]", false, key("Return"));
    expect_ring("11", false, key("Return"));
    expect_ring("Exit", false, [this] { elm_object_focus_set(screen->find("Exit"), EINA_TRUE); });
    expect_ring("Cancel", false, key("Return"));
    expect_ring("Yes", true, key("Left"));
    expect_ring("Yes", false, [] { elm_config_mirrored_set(EINA_TRUE); });
    expect_ring("Yes", false, [] { elm_config_mirrored_set(EINA_FALSE); });
    expect_ring("Exit", false, key("XF86Back"));
    elm_object_tree_focus_allow_set(screen->window(), EINA_FALSE);
    rest();
    EXPECT_FALSE(test::focus_ring(screen->window()));
}

TEST_F(Redraw, NumberIsDrawnInOneFrame) {
    open("TX Test");
    activate("Set Channel");
    const auto picker = path("[11]", "[11]");
    const std::vector<Frame> frames = frames_of("Right");
    EXPECT_THAT(frames, SizeIs(1));
    EXPECT_THAT(frames, Each(all_inside(picker)));
    EXPECT_THAT(frames_of("F5"), IsEmpty());
}

} // namespace

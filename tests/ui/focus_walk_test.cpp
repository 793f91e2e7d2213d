#include "support/pages.h"

#include <algorithm>
#include <array>
#include <gmock/gmock.h>
#include <map>
#include <set>

namespace {

using test::description;
using test::geometry;

/** A key and the way it points. */
struct Direction {
    const char* key;
    int right;
    int down;
};
constexpr std::array<Direction, 4> directions{
    {{"Left", -1, 0}, {"Right", 1, 0}, {"Up", 0, -1}, {"Down", 0, 1}}};

/** How far `to` begins beyond the end of `from`, in pixels; below 0 when it does not lie that way. */
int gap(const Eina_Rectangle& from, const Eina_Rectangle& to, const Direction& way) {
    if (way.right != 0)
        return way.right > 0 ? to.x - (from.x + from.w) : from.x - (to.x + to.w);
    return way.down > 0 ? to.y - (from.y + from.h) : from.y - (to.y + to.h);
}

/** Whether one lies straight before the other. */
bool in_line(const Eina_Rectangle& from, const Eina_Rectangle& to, const Direction& way) {
    if (way.right != 0)
        return to.y < from.y + from.h && from.y < to.y + to.h;
    return to.x < from.x + from.w && from.x < to.x + to.w;
}

/** The parameter: whether the layout is mirrored. */
class FocusWalk : public test::Pages, public testing::WithParamInterface<bool> {
protected:
    FocusWalk() {
        elm_config_mirrored_set(static_cast<Eina_Bool>(GetParam()));
        test::settle();
    }
    ~FocusWalk() override { elm_config_mirrored_set(EINA_FALSE); }

    /** Presses every arrow key on every widget, and fails where a person would get lost. */
    void walk(const std::string& page) {
        SCOPED_TRACE(page);
        tab_ = page.substr(0, page.find(' ')) + " Test";
        const std::vector<Evas_Object*> widgets = screen->usable();
        std::map<Evas_Object*, std::set<Evas_Object*>> steps;
        for (Evas_Object* const from : widgets)
            for (const Direction& way : directions)
                steps[from].insert(step(from, way, widgets));
        for (Evas_Object* const from : widgets)
            EXPECT_EQ(reachable(from, steps).size(), widgets.size()) << "from " << description(from);
    }

private:
    Evas_Object* step(Evas_Object* from, const Direction& way, const std::vector<Evas_Object*>& widgets) {
        elm_object_focus_set(from, EINA_TRUE);
        test::settle();
        screen->press(way.key);
        const auto focused = std::ranges::find_if(
            widgets, [](const Evas_Object* widget) { return elm_object_focus_get(widget) != EINA_FALSE; });
        const std::string where = std::string(way.key) + " from " + description(from);
        if (focused == widgets.end()) {
            ADD_FAILURE() << where << " leads to '" << screen->focused() << "'";
            return from;
        }
        if (*focused != from) {
            EXPECT_GE(gap(geometry(from), geometry(*focused), way), 0)
                << where << " leads to " << description(*focused);
        }
        if (Evas_Object* const nearest = nearest_in_line(from, way, widgets)) {
            const bool enters_header = way.down < 0 && is_in_header(nearest) && !is_in_header(from);
            EXPECT_EQ(description(*focused), enters_header ? tab_ : description(nearest)) << where;
        } else if (way.right != 0) {
            EXPECT_EQ(description(*focused), description(from)) << where;
        }
        return *focused;
    }

    static bool is_in_header(Evas_Object* widget) {
        const std::string text = description(widget);
        return text == "TX Test" || text == "RX Test" || text == "Exit";
    }

    static Evas_Object* nearest_in_line(Evas_Object* from, const Direction& way,
                                        const std::vector<Evas_Object*>& widgets) {
        Evas_Object* nearest = nullptr;
        for (Evas_Object* const widget : widgets) {
            const int distance = gap(geometry(from), geometry(widget), way);
            if (widget != from && distance >= 0 && in_line(geometry(from), geometry(widget), way) &&
                (nearest == nullptr || distance < gap(geometry(from), geometry(nearest), way)))
                nearest = widget;
        }
        return nearest;
    }

    static std::set<Evas_Object*> reachable(Evas_Object* from,
                                            const std::map<Evas_Object*, std::set<Evas_Object*>>& steps) {
        std::set<Evas_Object*> reached{from};
        for (std::vector<Evas_Object*> waiting{from}; !waiting.empty();) {
            Evas_Object* const at = waiting.back();
            waiting.pop_back();
            for (Evas_Object* const next : steps.at(at))
                if (reached.insert(next).second)
                    waiting.push_back(next);
        }
        return reached;
    }

    std::string tab_; /**< the chosen one */
};

TEST_P(FocusWalk, LeadsFromEveryWidgetToEveryOther) {
    activate("TX Test");
    ASSERT_TRUE(test::await([this] { return screen->focused() == "Start TX Test"; }));
    walk("TX start page");
    emit("ready");
    walk("TX test");
    activate("Start Stream");
    walk("TX test with a stream");
    activate("RX Test");
    walk("RX start page");
    emit("ready");
    walk("RX test");
    activate("Exit");
    walk("exit popup");
}

INSTANTIATE_TEST_SUITE_P(Layouts, FocusWalk, testing::Bool(),
                         [](const auto& test) { return test.param ? "mirrored" : "left_to_right"; });

} // namespace

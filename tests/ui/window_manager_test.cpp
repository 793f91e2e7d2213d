/** The window on screens whose window manager does little, or is not there. */
#include "support/log_capture.h"
#include "support/screen.h"
#include "support/settings_folder.h"

#include "base/process.h"
#include "support/windows.h"
#include "ui_driver/screenshot.h"

#include <gtest/gtest.h>
#include <platform/vell.h>

#include <Ecore_X.h>

namespace {

struct Situation {
    const char* name;
    std::string manager; /**< a program of the television, if any */
    bool has_gone;       /**< it was there before */
    const char* settings;
};

class Unmanaged : public testing::TestWithParam<Situation> {
protected:
    Unmanaged() {
        test::start_elementary();
        if (!GetParam().manager.empty()) {
            auto [said, output] = simulator::make_pipe();
            simulator::Descriptors descriptors;
            descriptors.output = std::move(output);
            manager_.emplace(std::vector{VELMORA_PROGRAMS + GetParam().manager}, std::move(descriptors));
            char ready = '\0';
            EXPECT_EQ(read(said.get(), &ready, 1), 1);
        }
        if (GetParam().has_gone)
            manager_.reset(); // what it has announced stays
        window_ = elm_win_util_standard_add("window", "Window");
        EXPECT_TRUE(elm_vell_manager_init(window_));
        Evas_Object* const red = evas_object_rectangle_add(evas_object_evas_get(window_));
        evas_object_color_set(red, 255, 0, 0, 255);
        evas_object_size_hint_weight_set(red, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
        elm_win_resize_object_add(window_, red);
        evas_object_show(red);
        evas_object_show(window_);
    }
    ~Unmanaged() override {
        ecore_x_window_prop_property_del(ecore_x_window_root_first_get(),
                                         ECORE_X_ATOM_NET_SUPPORTING_WM_CHECK);
        evas_object_del(window_);
        test::settle();
    }

    [[nodiscard]] bool await_window(bool wanted) const {
        const auto is_seen_and_has_keyboard = [this] {
            const simulator::Pixels pixel(static_cast<_XDisplay*>(ecore_x_display_get()), 100, 100, 1, 1);
            return ecore_x_window_focus_get() == elm_win_xwindow_get(window_) &&
                   pixel.at(0, 0) == simulator::Color{255, 0, 0};
        };
        return test::await([&] { return is_seen_and_has_keyboard() == wanted; });
    }

    Evas_Object* window_ = nullptr;

private:
    test::SettingsFolder settings_{GetParam().settings};
    LogCapture log_; // keeps what EFL and Xlib log out of the test's output
    std::optional<simulator::Process> manager_;
};

TEST_P(Unmanaged, WindowIsSeenAndHasTheKeyboardWhenItAppearsAndWhenItIsRaised) {
    EXPECT_TRUE(await_window(true)) << "at the start";
    Eina_Bool is_placed = EINA_FALSE; // by the user: or a window manager may ask the user for the place
    ecore_x_icccm_size_pos_hints_get(elm_win_xwindow_get(window_), &is_placed, nullptr, nullptr, nullptr,
                                     nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(is_placed != EINA_FALSE, *GetParam().settings == '\0');
    const simulator::OtherWindow other;
    other.take_keys();
    EXPECT_TRUE(await_window(false));
    elm_win_raise(window_);
    EXPECT_TRUE(await_window(true)) << "after the raise";
}

constexpr const char* in_a_window = "[screen]\nsize=960x540\n";

INSTANTIATE_TEST_SUITE_P(
    , Unmanaged,
    testing::Values(Situation{"WithoutManager", "", false, ""},
                    Situation{"InAWindowWithoutManager", "", false, in_a_window},
                    Situation{"AfterAManager", "/window_manager", true, ""},
                    Situation{"UnderASilentManager", "/silent_window_manager", false, ""},
                    Situation{"InAWindowUnderASilentManager", "/silent_window_manager", false, in_a_window}),
    [](const auto& test) { return test.param.name; });

} // namespace

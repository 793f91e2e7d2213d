/** The window on screens whose window manager does little, or is not there. */
#include "support/log_capture.h"
#include "support/screen.h"
#include "support/settings_folder.h"

#include "base/process.h"
#include "support/windows.h"
#include "ui_driver/screenshot.h"

#include <gtest/gtest.h>
#include <platform/vell.h>
#include <tuple>

#include <X11/Xlib.h> // last: they define words that others use
#include <X11/Xutil.h>

namespace {

enum class Manager { none, gone, silent };

/** A screen of its own, and what another program does on it. */
class Unmanaged : public testing::TestWithParam<std::tuple<Manager, const char*>> {
protected:
    Unmanaged() {
        test::start_elementary();
        if (std::get<Manager>(GetParam()) == Manager::gone) {
            start_manager({VELMORA_PROGRAMS "/window_manager"});
            manager_.reset(); // what it has announced stays
        }
        if (std::get<Manager>(GetParam()) == Manager::silent)
            start_manager({VELMORA_PROGRAMS "/silent_window_manager"});
        window = elm_win_util_standard_add("window", "Window");
        EXPECT_TRUE(elm_vell_manager_init(window));
        Evas_Object* const red = evas_object_rectangle_add(evas_object_evas_get(window));
        evas_object_color_set(red, 255, 0, 0, 255);
        evas_object_size_hint_weight_set(red, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
        elm_win_resize_object_add(window, red);
        evas_object_show(red);
        evas_object_show(window);
    }
    ~Unmanaged() override {
        evas_object_del(window);
        test::settle();
        XDeleteProperty(display_.get(), root_,
                        XInternAtom(display_.get(), "_NET_SUPPORTING_WM_CHECK", False));
    }

    [[nodiscard]] bool is_seen_and_has_keyboard() const {
        Window focused = None;
        int revert_to = 0;
        XGetInputFocus(display_.get(), &focused, &revert_to);
        return focused == elm_win_xwindow_get(window) &&
               simulator::Pixels(display_.get(), 100, 100, 1, 1).at(0, 0) == simulator::Color{255, 0, 0};
    }

    /** Whether its size hints say that the user chose its place. */
    [[nodiscard]] bool is_placed_by_user() const {
        XSizeHints hints{};
        long supplied = 0;
        XGetWMNormalHints(display_.get(), elm_win_xwindow_get(window), &hints, &supplied);
        return (hints.flags & USPosition) != 0;
    }

    Evas_Object* window = nullptr;

private:
    /** One of the television's, until it says that it is ready. */
    void start_manager(const std::vector<std::string>& command) {
        auto [said, output] = simulator::make_pipe();
        simulator::Descriptors descriptors;
        descriptors.output = std::move(output);
        manager_.emplace(command, std::move(descriptors));
        char letter = '\0';
        EXPECT_EQ(read(said.get(), &letter, 1), 1);
    }

    test::SettingsFolder settings_{std::get<const char*>(GetParam())};
    LogCapture log_; // what EFL and the X library say stays out of the test's output
    simulator::Display display_ = simulator::open_display();
    Window root_ = DefaultRootWindow(display_.get());
    std::optional<simulator::Process> manager_;
};

TEST_P(Unmanaged, WindowIsSeenAndHasTheKeyboardWhenItAppearsAndWhenItIsRaised) {
    EXPECT_TRUE(test::await([&] { return is_seen_and_has_keyboard(); })) << "at the start";
    const bool is_full_screen = *std::get<const char*>(GetParam()) == '\0';
    EXPECT_EQ(is_placed_by_user(), is_full_screen); // or a window manager asks the user for its place
    const simulator::OtherWindow other;
    other.take_keys();
    EXPECT_TRUE(test::await([&] { return !is_seen_and_has_keyboard(); }));
    elm_win_raise(window);
    EXPECT_TRUE(test::await([&] { return is_seen_and_has_keyboard(); })) << "after the raise";
}

INSTANTIATE_TEST_SUITE_P(Screens, Unmanaged,
                         testing::Combine(testing::Values(Manager::none, Manager::gone, Manager::silent),
                                          testing::Values("", "[screen]\nsize=960x540\n")));

} // namespace

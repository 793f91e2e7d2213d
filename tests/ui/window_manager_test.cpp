/** Tests the window with minimal window managers and without one. */
#include "base/process.h"
#include "support/settings_folder.h"
#include "support/toolkit_window.h"
#include "support/windows.h"

#include <Ecore_X.h>

namespace {

struct Situation {
    const char* name;
    std::string manager; /**< a program of the television, if any */
    bool has_gone;
    const char* settings;
};

/** Starts the window manager before the window. */
struct Manager : testing::WithParamInterface<Situation> {
    Manager() {
        if (GetParam().manager.empty())
            return;
        auto [said, output] = simulator::make_pipe();
        simulator::Descriptors descriptors;
        descriptors.output = std::move(output);
        process.emplace(std::vector{VELMORA_PROGRAMS + GetParam().manager}, std::move(descriptors));
        char ready = '\0';
        EXPECT_EQ(read(said.get(), &ready, 1), 1);
        if (GetParam().has_gone)
            process.reset(); // its announcement stays on the root window
    }

    test::SettingsFolder settings{GetParam().settings};
    std::optional<simulator::Process> process;
};

class Unmanaged : public Manager, public test::ToolkitWindow {
protected:
    ~Unmanaged() override {
        ecore_x_window_prop_property_del(ecore_x_window_root_first_get(),
                                         ECORE_X_ATOM_NET_SUPPORTING_WM_CHECK);
    }
};

TEST_P(Unmanaged, WindowIsVisibleAndFocusedWhenShownAndWhenRaised) {
    elm_vell_layout_align_set(page, 1); // where the other window covers it
    const Evas_Object* const button = add_button("Go");
    test::settle();
    const Ecore_X_Window window = elm_win_xwindow_get(screen.window());
    const auto is_in_front = [&] {
        return ecore_x_window_focus_get() == window && test::contrast(test::geometry(button)) > 4.5;
    };
    EXPECT_TRUE(test::await(is_in_front)) << "when shown";
    // A user-specified position: otherwise a window manager may ask the user for one.
    Eina_Bool is_placed = EINA_FALSE;
    ecore_x_icccm_size_pos_hints_get(window, &is_placed, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                     nullptr, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(is_placed != EINA_FALSE, *GetParam().settings == '\0');
    const simulator::OtherWindow other;
    other.take_keys();
    EXPECT_TRUE(test::await([&] { return !is_in_front(); }));
    elm_win_raise(screen.window());
    EXPECT_TRUE(test::await(is_in_front)) << "when raised";
}

constexpr const char* in_a_window = "[screen]\nsize=960x540\n";
const std::string silent = "/silent_window_manager";

INSTANTIATE_TEST_SUITE_P(, Unmanaged,
                         testing::Values(Situation{"WithoutManager", "", false, ""},
                                         Situation{"InAWindowWithoutManager", "", false, in_a_window},
                                         Situation{"AfterAManager", "/window_manager", true, ""},
                                         Situation{"UnderASilentManager", silent, false, ""},
                                         Situation{"InAWindowUnderASilentManager", silent, false,
                                                   in_a_window}),
                         [](const auto& test) { return test.param.name; });

} // namespace

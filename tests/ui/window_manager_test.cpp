/** The window on screens whose window manager does little, or is not there. */
#include "support/log_capture.h"
#include "support/screen.h"
#include "support/settings_folder.h"

#include <gtest/gtest.h>
#include <memory>
#include <platform/vell.h>
#include <thread>
#include <tuple>

#include <X11/Xatom.h> // last: Xlib defines words that others use
#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace {

using XDisplay = std::unique_ptr<Display, decltype(&XCloseDisplay)>;

XDisplay open_display() { return {XOpenDisplay(nullptr), XCloseDisplay}; }

/** Lets windows appear, move and restack, and does nothing else: it neither announces itself nor writes on
 * windows nor gives the keyboard. */
void manage_windows(const std::stop_token& stop) {
    const auto display = open_display();
    XSelectInput(display.get(), DefaultRootWindow(display.get()), SubstructureRedirectMask);
    XSync(display.get(), False);
    while (!stop.stop_requested()) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        while (XPending(display.get()) != 0) {
            XEvent event{};
            XNextEvent(display.get(), &event);
            if (event.type == MapRequest)
                XMapWindow(display.get(), event.xmaprequest.window);
            const XConfigureRequestEvent& request = event.xconfigurerequest;
            if (event.type == ConfigureRequest && (request.value_mask & CWStackMode) != 0)
                XRaiseWindow(display.get(), request.window);
            else if (event.type == ConfigureRequest)
                XMoveResizeWindow(display.get(), request.window, request.x, request.y,
                                  static_cast<unsigned>(request.width),
                                  static_cast<unsigned>(request.height));
        }
    }
}

enum class Manager { none, gone, silent };

/** A screen of its own, and what another program does on it. */
class Unmanaged : public testing::TestWithParam<std::tuple<Manager, const char*>> {
protected:
    Unmanaged() {
        test::start_elementary();
        if (std::get<Manager>(GetParam()) == Manager::gone)
            leave_announcement();
        if (std::get<Manager>(GetParam()) == Manager::silent)
            start_manager();
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
        XDeleteProperty(display_.get(), root_, announcement_);
    }

    /** Another program's window comes in front and takes the keyboard. */
    void cover() const {
        const auto other = XCreateSimpleWindow(display_.get(), root_, 0, 0, 320, 180, 0, 0, 0);
        XMapRaised(display_.get(), other);
        EXPECT_TRUE(test::await([&] {
            XWindowAttributes attributes{};
            XGetWindowAttributes(display_.get(), other, &attributes);
            return attributes.map_state == IsViewable;
        }));
        XSetInputFocus(display_.get(), other, RevertToParent, CurrentTime);
    }

    [[nodiscard]] bool is_seen_and_has_keyboard() const {
        Window focused = None;
        int revert_to = 0;
        XGetInputFocus(display_.get(), &focused, &revert_to);
        const std::unique_ptr<XImage, int (*)(XImage*)> pixel(
            XGetImage(display_.get(), root_, 100, 100, 1, 1, AllPlanes, ZPixmap),
            [](XImage* image) { return XDestroyImage(image); });
        return focused == elm_win_xwindow_get(window) && XGetPixel(pixel.get(), 0, 0) == 0xff0000;
    }

    Evas_Object* window = nullptr;

private:
    void leave_announcement() const {
        const auto gone = XCreateSimpleWindow(display_.get(), root_, 0, 0, 1, 1, 0, 0, 0);
        XDestroyWindow(display_.get(), gone);
        XChangeProperty(display_.get(), root_, announcement_, XA_WINDOW, 32, PropModeReplace,
                        reinterpret_cast<const unsigned char*>(&gone), 1);
        XSync(display_.get(), False);
    }
    void start_manager() {
        manager_ = std::jthread(manage_windows);
        EXPECT_TRUE(test::await([&] {
            XWindowAttributes attributes{};
            XGetWindowAttributes(display_.get(), root_, &attributes);
            return (attributes.all_event_masks & SubstructureRedirectMask) != 0;
        }));
    }

    test::SettingsFolder settings_{std::get<const char*>(GetParam())};
    LogCapture log_; // what EFL and the X library say stays out of the test's output
    XDisplay display_ = open_display();
    Window root_ = DefaultRootWindow(display_.get());
    Atom announcement_ = XInternAtom(display_.get(), "_NET_SUPPORTING_WM_CHECK", False);
    std::jthread manager_;
};

TEST_P(Unmanaged, WindowIsSeenAndHasTheKeyboardWhenItAppearsAndWhenItIsRaised) {
    EXPECT_TRUE(test::await([&] { return is_seen_and_has_keyboard(); })) << "at the start";
    cover();
    EXPECT_TRUE(test::await([&] { return !is_seen_and_has_keyboard(); }));
    elm_win_raise(window);
    EXPECT_TRUE(test::await([&] { return is_seen_and_has_keyboard(); })) << "after the raise";
}

INSTANTIATE_TEST_SUITE_P(Screens, Unmanaged,
                         testing::Combine(testing::Values(Manager::none, Manager::gone, Manager::silent),
                                          testing::Values("", "[screen]\nsize=960x540\n")));

} // namespace

/** The window manager of an own screen, seen by two plain windows. */
#include <gtest/gtest.h> // before Xlib, whose macros it would stumble over

#include <X11/XF86keysym.h>
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

#include <poll.h>

#include <chrono>
#include <memory>
#include <optional>

namespace {

struct DisplayCloser {
    void operator()(Display* display) const { XCloseDisplay(display); }
};

/** A window with a connection of its own, like a program's. */
class Program {
public:
    explicit Program(bool asks_for_red = false) : display_(XOpenDisplay(nullptr)) {
        auto* display = display_.get();
        window_ = XCreateSimpleWindow(display, DefaultRootWindow(display), 5, 5, 50, 40, 1, 0, 0);
        XSelectInput(display, window_,
                     KeyPressMask | StructureNotifyMask | FocusChangeMask | PropertyChangeMask);
        Atom close = atom("WM_DELETE_WINDOW");
        XSetWMProtocols(display, window_, &close, 1);
        if (asks_for_red)
            ask_for_red();
    }

    void show() {
        XMapWindow(display_.get(), window_);
        ASSERT_TRUE(wait_for(FocusIn));
    }

    /** Waits until an event of that type arrives and returns it. */
    std::optional<XEvent> wait_for(int type, std::chrono::milliseconds limit = std::chrono::seconds(5)) {
        const auto end = std::chrono::steady_clock::now() + limit;
        XFlush(display_.get());
        while (std::chrono::steady_clock::now() < end) {
            XEvent event{};
            if (XCheckTypedEvent(display_.get(), type, &event) != 0) {
                const bool about_grab = type == FocusIn && event.xfocus.mode != NotifyNormal;
                if (!about_grab)
                    return event;
            }
            pollfd connection{ConnectionNumber(display_.get()), POLLIN, 0};
            poll(&connection, 1, 10);
        }
        return std::nullopt;
    }

    void press(KeySym symbol) {
        const auto code = XKeysymToKeycode(display_.get(), symbol);
        ASSERT_NE(code, 0);
        XTestFakeKeyEvent(display_.get(), code, True, CurrentTime);
        XTestFakeKeyEvent(display_.get(), code, False, CurrentTime);
        XFlush(display_.get());
    }

    bool gets(KeySym symbol, std::chrono::milliseconds limit = std::chrono::seconds(5)) {
        auto event = wait_for(KeyPress, limit);
        return event && XLookupKeysym(&event->xkey, 0) == symbol;
    }

    void send_to_manager(const char* type, long first) {
        XEvent event{};
        event.xclient.type = ClientMessage;
        event.xclient.window = window_;
        event.xclient.message_type = atom(type);
        event.xclient.format = 32;
        event.xclient.data.l[0] = first;
        XSendEvent(display_.get(), DefaultRootWindow(display_.get()), False,
                   SubstructureRedirectMask | SubstructureNotifyMask, &event);
        XFlush(display_.get());
    }

    [[nodiscard]] Atom atom(const char* name) const { return XInternAtom(display_.get(), name, False); }
    [[nodiscard]] Display* display() const { return display_.get(); }
    [[nodiscard]] Window window() const { return window_; }

private:
    /** What EFL leaves on a window that asks for a shared key. */
    void ask_for_red() {
        const unsigned long entry = 0xf00UL | XKeysymToKeycode(display_.get(), XF86XK_Red);
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): Xlib takes 32-bit items as longs
        const auto* bytes = reinterpret_cast<const unsigned char*>(&entry);
        XChangeProperty(display_.get(), window_, atom("_E_WINDOW_KEYROUTER_WINDOW_KEYTABLE"), XA_CARDINAL, 32,
                        PropModeReplace, bytes, 1);
    }

    std::unique_ptr<Display, DisplayCloser> display_;
    Window window_ = None;
};

TEST(WindowManager, AWindowFillsTheScreenAndTheTopOneHasTheFocus) {
    Program first;
    first.show();
    XWindowAttributes attributes{};
    XGetWindowAttributes(first.display(), first.window(), &attributes);
    EXPECT_EQ(attributes.x, 0);
    EXPECT_EQ(attributes.width, 640);
    EXPECT_EQ(attributes.height, 360);

    Program second;
    second.show();
    second.press(XK_a);
    EXPECT_TRUE(second.gets(XK_a));

    XLowerWindow(second.display(), second.window());
    XFlush(second.display());
    EXPECT_TRUE(first.wait_for(FocusIn));
    XRaiseWindow(second.display(), second.window());
    XFlush(second.display());
    EXPECT_TRUE(second.wait_for(FocusIn));
}

TEST(WindowManager, TheRedKeyReachesTheWindowBehindAndTheOneInFront) {
    Program asking(true);
    asking.show();
    asking.press(XF86XK_Red);
    EXPECT_TRUE(asking.gets(XF86XK_Red));
    EXPECT_FALSE(asking.gets(XF86XK_Red, std::chrono::milliseconds(200))) << "one press came twice";

    Program front;
    front.show();
    for (const KeySym symbol : {static_cast<KeySym>(XF86XK_Red), static_cast<KeySym>(XK_F1)}) {
        front.press(symbol);
        EXPECT_TRUE(front.gets(symbol));
        EXPECT_TRUE(asking.gets(symbol));
    }
    front.press(XK_a);
    EXPECT_TRUE(front.gets(XK_a));
    EXPECT_FALSE(asking.gets(XK_a, std::chrono::milliseconds(200)));
}

TEST(WindowManager, AnIconifiedWindowGivesTheFocusAwayAndComesBackWhenActivated) {
    Program behind;
    behind.show();
    Program front(true);
    front.show();
    XIconifyWindow(front.display(), front.window(), DefaultScreen(front.display()));
    EXPECT_TRUE(front.wait_for(UnmapNotify));
    EXPECT_TRUE(behind.wait_for(FocusIn));
    behind.press(XF86XK_Red);
    EXPECT_TRUE(front.gets(XF86XK_Red));

    front.send_to_manager("_NET_ACTIVE_WINDOW", 1);
    EXPECT_TRUE(front.wait_for(FocusIn));
    front.send_to_manager("_NET_CLOSE_WINDOW", 0);
    const auto message = front.wait_for(ClientMessage);
    ASSERT_TRUE(message);
    EXPECT_EQ(static_cast<Atom>(message->xclient.data.l[0]), front.atom("WM_DELETE_WINDOW"));
}

} // namespace

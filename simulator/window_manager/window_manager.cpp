/** The window manager of a virtual screen. */
#include "key_router.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace simulator {
namespace {

bool access_denied = false; // Xlib's error handler has no user data

/** Notes a denied access; ignores other errors, caused by windows that have just disappeared. */
int note_error(Display* /*display*/, XErrorEvent* error) {
    access_denied = access_denied || error->error_code == BadAccess;
    return 0;
}

/**
 * Ordinary windows fill the screen; dialogs have the size they request. Windows raise, lower and iconify
 * themselves, and the top one has the focus.
 */
class WindowManager {
public:
    explicit WindowManager(Display* display) : display_(display) {
        constexpr std::string_view name = "television";
        const Window check = XCreateSimpleWindow(display_, root_, -1, -1, 1, 1, 0, 0, 0);
        for (const Window window : {root_, check})
            write_property(display_, window, atoms_.supporting_wm_check, XA_WINDOW, {check});
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): Xlib takes text as unsigned bytes
        const auto* text = reinterpret_cast<const unsigned char*>(name.data());
        XChangeProperty(display_, check, atoms_.name, atoms_.utf8_string, 8, PropModeReplace, text,
                        static_cast<int>(name.size()));
        write_property(display_, root_, atoms_.supported, XA_ATOM,
                       {atoms_.supporting_wm_check, atoms_.name, atoms_.active_window,
                        atoms_.client_list_stacking, atoms_.state, atoms_.state_fullscreen,
                        atoms_.state_hidden, atoms_.window_type, atoms_.window_type_normal});
        XSync(display_, False);
    }

    void handle(const XEvent& event) {
        switch (event.type) {
        case MapRequest:
            adopt(event.xmaprequest.window);
            activate(event.xmaprequest.window);
            break;
        case ConfigureRequest:
            configure(event.xconfigurerequest);
            break;
        case MapNotify:
            if (const auto client = clients_.find(event.xmap.window); client != clients_.end())
                client->second.mapped = true;
            update_front();
            break;
        case ConfigureNotify:
            update_front();
            break;
        case UnmapNotify:
            handle_unmap(event.xunmap.window);
            break;
        case DestroyNotify:
            forget(event.xdestroywindow.window);
            break;
        case ClientMessage:
            if (clients_.contains(event.xclient.window))
                handle_message(event.xclient);
            break;
        case PropertyNotify:
            if (event.xproperty.atom == atoms_.keyrouter_table && clients_.contains(event.xproperty.window))
                keys_.read_table(event.xproperty.window);
            break;
        case KeyPress:
            keys_.route(event.xkey);
            break;
        default:
            break;
        }
    }

private:
    struct Client {
        bool mapped = false;
        bool iconic = false;
        bool fullscreen = false;
        bool fills_screen = true;
    };

    void adopt(Window window) {
        const auto [client, is_new] = clients_.try_emplace(window);
        if (is_new) {
            Window owner = None;
            const auto states = read_property(display_, window, atoms_.state, XA_ATOM);
            const auto types = read_property(display_, window, atoms_.window_type, XA_ATOM);
            const bool ordinary = types.empty() || types.front() == atoms_.window_type_normal;
            client->second.fullscreen = std::ranges::count(states, atoms_.state_fullscreen) != 0;
            client->second.fills_screen = client->second.fullscreen ||
                                          (ordinary && XGetTransientForHint(display_, window, &owner) == 0);
            XSelectInput(display_, window, PropertyChangeMask);
            keys_.read_table(window);
        }
        if (client->second.fills_screen)
            fill_screen(window);
    }

    void forget(Window window) {
        keys_.forget(window);
        clients_.erase(window);
        update_front();
    }

    void fill_screen(Window window) {
        XSetWindowBorderWidth(display_, window, 0);
        XMoveResizeWindow(display_, window, 0, 0, static_cast<unsigned>(width_),
                          static_cast<unsigned>(height_));
    }

    void configure(const XConfigureRequestEvent& request) {
        XWindowChanges changes{
            request.x,     request.y,     request.width, request.height, request.border_width,
            request.above, request.detail};
        const auto client = clients_.find(request.window);
        const bool is_free = client == clients_.end() || !client->second.fills_screen;
        const unsigned long allowed = is_free ? ~0UL : CWStackMode | CWSibling;
        if (const auto mask = static_cast<unsigned>(request.value_mask & allowed); mask != 0)
            XConfigureWindow(display_, request.window, mask, &changes);
        if (is_free)
            return;
        XEvent unchanged{}; // the reply to a refused size contains the current one
        unchanged.xconfigure = {
            ConfigureNotify, 0,       True, display_, request.window, request.window, 0, 0,
            width_,          height_, 0,    None,     False};
        XSendEvent(display_, request.window, False, StructureNotifyMask, &unchanged);
    }

    void handle_unmap(Window window) {
        const auto client = clients_.find(window);
        if (client == clients_.end())
            return;
        client->second.mapped = false;
        if (client->second.iconic)
            return update_front();
        write_state(window, WithdrawnState);
        forget(window);
    }

    void handle_message(const XClientMessageEvent& message) {
        constexpr unsigned long add = 1;
        constexpr unsigned long toggle = 2;
        const auto number = [&](int index) { return static_cast<unsigned long>(message.data.l[index]); };
        Client& client = clients_[message.window];
        if (message.message_type == atoms_.wm_change_state && number(0) == IconicState) {
            client.iconic = true;
            XUnmapWindow(display_, message.window);
            write_state(message.window, IconicState);
        } else if (message.message_type == atoms_.active_window) {
            activate(message.window);
        } else if (message.message_type == atoms_.state &&
                   (number(1) == atoms_.state_fullscreen || number(2) == atoms_.state_fullscreen)) {
            client.fullscreen = number(0) == add || (number(0) == toggle && !client.fullscreen);
            client.fills_screen = client.fills_screen || client.fullscreen;
            if (client.fullscreen)
                fill_screen(message.window);
            write_state(message.window, client.iconic ? IconicState : NormalState);
        }
    }

    void activate(Window window) {
        clients_[window].iconic = false;
        XMapRaised(display_, window);
        write_state(window, NormalState);
    }

    void write_state(Window window, unsigned long state) {
        write_property(display_, window, atoms_.wm_state, atoms_.wm_state, {state, None});
        std::vector<unsigned long> states;
        if (clients_[window].fullscreen)
            states.push_back(atoms_.state_fullscreen);
        if (state == IconicState)
            states.push_back(atoms_.state_hidden);
        write_property(display_, window, atoms_.state, XA_ATOM, states);
    }

    void offer_focus(Window window) {
        XSetInputFocus(display_, window, RevertToPointerRoot, CurrentTime);
        const auto protocols = read_property(display_, window, atoms_.wm_protocols, XA_ATOM);
        if (std::ranges::count(protocols, atoms_.wm_take_focus) == 0)
            return;
        XEvent event{};
        event.xclient.type = ClientMessage;
        event.xclient.window = window;
        event.xclient.message_type = atoms_.wm_protocols;
        event.xclient.format = 32;
        event.xclient.data.l[0] = static_cast<long>(atoms_.wm_take_focus);
        event.xclient.data.l[1] = CurrentTime;
        XSendEvent(display_, window, False, NoEventMask, &event);
    }

    [[nodiscard]] std::vector<Window> mapped_from_bottom() const {
        Window root = None;
        Window parent = None;
        Window* children = nullptr;
        unsigned count = 0;
        if (XQueryTree(display_, root_, &root, &parent, &children, &count) == 0)
            return {};
        const std::unique_ptr<Window, decltype(&XFree)> held(children, XFree);
        std::vector<Window> mapped(children, children + count);
        std::erase_if(mapped, [this](Window window) {
            const auto client = clients_.find(window);
            return client == clients_.end() || !client->second.mapped;
        });
        return mapped;
    }

    void update_front() {
        const auto mapped = mapped_from_bottom();
        const Window front = mapped.empty() ? None : mapped.back();
        write_property(display_, root_, atoms_.client_list_stacking, XA_WINDOW, mapped);
        if (front == front_)
            return;
        front_ = front;
        keys_.set_front(front);
        write_property(display_, root_, atoms_.active_window, XA_WINDOW, {front});
        if (front != None)
            offer_focus(front);
    }

    Display* display_;
    Window root_ = DefaultRootWindow(display_);
    int width_ = DisplayWidth(display_, DefaultScreen(display_));
    int height_ = DisplayHeight(display_, DefaultScreen(display_));
    Atoms atoms_{display_};
    KeyRouter keys_{display_, root_, atoms_};
    std::map<Window, Client> clients_;
    Window front_ = None;
};

/** Registers as the screen's window manager. @return false if there is another one. */
bool take_over(Display* display) {
    XSetErrorHandler(note_error);
    XSelectInput(display, DefaultRootWindow(display), SubstructureRedirectMask | SubstructureNotifyMask);
    XSync(display, False);
    return !access_denied;
}

} // namespace
} // namespace simulator

int main() {
    const std::unique_ptr<Display, decltype(&XCloseDisplay)> display(XOpenDisplay(nullptr), XCloseDisplay);
    if (!display || !simulator::take_over(display.get())) {
        std::fputs(display ? "window_manager: the screen already has a window manager\n"
                           : "window_manager: no display\n",
                   stderr);
        return EXIT_FAILURE;
    }
    simulator::WindowManager manager(display.get());
    std::puts("ready");
    std::fflush(stdout);
    while (true) {
        XEvent event{};
        XNextEvent(display.get(), &event);
        manager.handle(event);
    }
}

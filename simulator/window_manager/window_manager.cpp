#include "window_manager.h"

#include <X11/Xatom.h>
#include <X11/Xutil.h>

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string_view>

namespace simulator {
namespace {

bool access_denied = false; // Xlib's error handler has no user data

int note_access(Display* /*display*/, XErrorEvent* error) {
    access_denied = access_denied || error->error_code == BadAccess;
    return 0;
}

/** Windows go away at any time; a request that comes too late is no fault. */
int ignore_error(Display* /*display*/, XErrorEvent* /*error*/) { return 0; }

} // namespace

WindowManager::WindowManager(Display* display)
    : display_(display), root_(DefaultRootWindow(display)),
      width_(DisplayWidth(display, DefaultScreen(display))),
      height_(DisplayHeight(display, DefaultScreen(display))), atoms_(display),
      keys_(display, root_, atoms_) {
    XSetErrorHandler(note_access);
    XSelectInput(display_, root_, SubstructureRedirectMask | SubstructureNotifyMask);
    XSync(display_, False);
    if (access_denied)
        throw std::runtime_error("the screen has a window manager already");
    XSetErrorHandler(ignore_error);
    announce();
    XSync(display_, False);
}

void WindowManager::announce() {
    constexpr std::string_view name = "television";
    const auto check = XCreateSimpleWindow(display_, root_, -1, -1, 1, 1, 0, 0, 0);
    for (const auto window : {root_, check}) {
        write_property(display_, window, atoms_.supporting_wm_check, XA_WINDOW, {check});
    }
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): Xlib takes text as unsigned bytes
    const auto* text = reinterpret_cast<const unsigned char*>(name.data());
    XChangeProperty(display_, check, atoms_.name, atoms_.utf8_string, 8, PropModeReplace, text,
                    static_cast<int>(name.size()));
    write_property(display_, root_, atoms_.supported, XA_ATOM,
                   {atoms_.supporting_wm_check, atoms_.name, atoms_.active_window,
                    atoms_.client_list_stacking, atoms_.state, atoms_.state_fullscreen, atoms_.state_hidden,
                    atoms_.window_type, atoms_.window_type_normal});
}

void WindowManager::handle(const XEvent& event) {
    switch (event.type) {
    case MapRequest:
        handle_map_request(event.xmaprequest.window);
        break;
    case ConfigureRequest:
        handle_configure_request(event.xconfigurerequest);
        break;
    case MapNotify:
        if (const auto client = clients_.find(event.xmap.window); client != clients_.end()) {
            client->second.mapped = true;
        }
        update_front();
        break;
    case ConfigureNotify:
        update_front();
        break;
    case UnmapNotify:
        handle_unmap(event.xunmap.window);
        break;
    case DestroyNotify:
        handle_destroy(event.xdestroywindow.window);
        break;
    case ClientMessage:
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

void WindowManager::handle_map_request(Window window) {
    adopt(window);
    auto& client = clients_[window];
    client.iconic = false;
    if (client.fills_screen)
        fill_screen(window);
    XMapRaised(display_, window);
    write_state(window, NormalState);
}

void WindowManager::adopt(Window window) {
    if (clients_.contains(window))
        return;
    Client client;
    Window owner = None;
    const auto states = read_property(display_, window, atoms_.state, XA_ATOM);
    const auto types = read_property(display_, window, atoms_.window_type, XA_ATOM);
    const bool ordinary = types.empty() || types.front() == atoms_.window_type_normal;
    client.fullscreen = std::count(states.begin(), states.end(), atoms_.state_fullscreen) != 0;
    client.fills_screen =
        client.fullscreen || (ordinary && XGetTransientForHint(display_, window, &owner) == 0);
    clients_[window] = client;
    XSelectInput(display_, window, PropertyChangeMask);
    keys_.read_table(window);
}

void WindowManager::fill_screen(Window window) {
    XSetWindowBorderWidth(display_, window, 0);
    XMoveResizeWindow(display_, window, 0, 0, static_cast<unsigned>(width_), static_cast<unsigned>(height_));
}

void WindowManager::handle_configure_request(const XConfigureRequestEvent& request) {
    XWindowChanges changes{request.x,     request.y,     request.width, request.height, request.border_width,
                           request.above, request.detail};
    auto mask = static_cast<unsigned>(request.value_mask);
    const auto client = clients_.find(request.window);
    if (client == clients_.end() || !client->second.fills_screen) {
        XConfigureWindow(display_, request.window, mask, &changes);
        return;
    }
    mask &= CWStackMode | CWSibling;
    if (mask != 0)
        XConfigureWindow(display_, request.window, mask, &changes);
    XEvent unchanged{}; // a size that is refused is answered with the one it has
    unchanged.xconfigure = {ConfigureNotify, 0,       True, display_, request.window, request.window, 0, 0,
                            width_,          height_, 0,    None,     False};
    XSendEvent(display_, request.window, False, StructureNotifyMask, &unchanged);
}

void WindowManager::handle_unmap(Window window) {
    const auto client = clients_.find(window);
    if (client == clients_.end())
        return;
    client->second.mapped = false;
    if (!client->second.iconic) {
        write_state(window, WithdrawnState);
        keys_.forget(window);
        clients_.erase(client);
    }
    update_front();
}

void WindowManager::handle_destroy(Window window) {
    keys_.forget(window);
    clients_.erase(window);
    update_front();
}

void WindowManager::handle_message(const XClientMessageEvent& message) {
    const auto client = clients_.find(message.window);
    if (client == clients_.end())
        return;
    const auto number = [&](int index) { return static_cast<unsigned long>(message.data.l[index]); };
    if (message.message_type == atoms_.wm_change_state && number(0) == IconicState) {
        iconify(message.window);
    } else if (message.message_type == atoms_.active_window) {
        activate(message.window);
    } else if (message.message_type == atoms_.state &&
               (number(1) == atoms_.state_fullscreen || number(2) == atoms_.state_fullscreen)) {
        change_fullscreen(message.window, number(0));
    }
}

void WindowManager::change_fullscreen(Window window, unsigned long action) {
    constexpr unsigned long add = 1;
    constexpr unsigned long toggle = 2;
    auto& client = clients_[window];
    client.fullscreen = action == add || (action == toggle && !client.fullscreen);
    if (client.fullscreen) {
        client.fills_screen = true;
        fill_screen(window);
    }
    write_state(window, client.iconic ? IconicState : NormalState);
}

void WindowManager::iconify(Window window) {
    clients_[window].iconic = true;
    XUnmapWindow(display_, window);
    write_state(window, IconicState);
}

void WindowManager::activate(Window window) {
    clients_[window].iconic = false;
    XMapRaised(display_, window);
    write_state(window, NormalState);
}

void WindowManager::write_state(Window window, int state) {
    write_property(display_, window, atoms_.wm_state, atoms_.wm_state,
                   {static_cast<unsigned long>(state), None});
    std::vector<unsigned long> states;
    if (clients_[window].fullscreen)
        states.push_back(atoms_.state_fullscreen);
    if (state == IconicState)
        states.push_back(atoms_.state_hidden);
    write_property(display_, window, atoms_.state, XA_ATOM, states);
}

void WindowManager::offer_focus(Window window) {
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

std::vector<Window> WindowManager::mapped_from_bottom() const {
    Window root = None;
    Window parent = None;
    Window* children = nullptr;
    unsigned count = 0;
    std::vector<Window> mapped;
    if (XQueryTree(display_, root_, &root, &parent, &children, &count) == 0)
        return mapped;
    const std::unique_ptr<Window, decltype(&XFree)> held(children, XFree);
    std::copy_if(children, children + count, std::back_inserter(mapped), [&](Window window) {
        const auto client = clients_.find(window);
        return client != clients_.end() && client->second.mapped;
    });
    return mapped;
}

void WindowManager::update_front() {
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

} // namespace simulator

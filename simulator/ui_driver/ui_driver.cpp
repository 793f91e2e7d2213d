#include "ui_driver.h"

#include "base/strings.h"

#include <X11/Xlib.h>
#include <algorithm>

namespace simulator {
namespace {

using namespace std::chrono_literals;

constexpr guint look_interval_milliseconds = 15;
constexpr auto answer_limit = 300ms;
constexpr auto reading_limit = 5s;

const Condition readable{"something that can be read",
                         [](const Screen& screen) { return !screen.widgets().empty(); }};

/** Expands repetitions: "Right*3" becomes Right, Right, Right. */
std::vector<std::string> expand_repetitions(const std::vector<std::string>& keys) {
    constexpr int max_times = 1000;
    std::vector<std::string> all;
    for (const std::string& key : keys) {
        const auto star = key.find('*');
        const auto times = star == std::string::npos ? 1 : parse_int(key.substr(star + 1)).value_or(0);
        if (times < 1 || times > max_times)
            throw Refusal("NoSuchKey", "'" + key + "': TIMES in KEY*TIMES must be from 1 to 1000");
        all.insert(all.end(), static_cast<std::size_t>(times), key.substr(0, star));
    }
    return all;
}

void answer_description(const Call& call, const Screen& screen) {
    call.answer({g_variant_new_string(screen.description().c_str())});
}

void answer_widgets(const Call& call, const Screen& screen) { call.answer({to_variant(screen)}); }

void answer_focus(const Call& call, const Screen& screen) {
    const Widget* const focused = screen.focused();
    call.answer({g_variant_new_string(focused != nullptr ? focused->name.c_str() : "")});
}

} // namespace

// By default Xlib exits the process, here the whole television, when the X server goes away.
UiDriver::UiDriver(GDBusConnection* connection)
    : connection_(connection), display_(open_display()), reader_(answer_limit) {
    XSetErrorHandler(+[](_XDisplay* /*display*/, XErrorEvent* /*error*/) { return 0; });
    XSetIOErrorHandler(+[](_XDisplay* /*display*/) { return 0; });
    XSetIOErrorExitHandler(
        display_.get(),
        +[](_XDisplay* /*display*/, void* self) { static_cast<UiDriver*>(self)->is_display_gone_ = true; },
        this);
}

UiDriver::~UiDriver() {
    const Refusal refusal("NotRunning", "the ui_driver exited before it could answer");
    for (const Waiting& waiting : waiting_)
        waiting.call.refuse(refusal);
    for (const Picture& picture : pictures_)
        picture.call.refuse(refusal);
    for (const Held& held : held_) {
        move_key(display_, held.key, false);
        held.call.refuse(refusal);
    }
}

std::map<std::string, Method> UiDriver::methods() {
    const auto see = [this](const Answer& answer) {
        return [this, answer](const Call& call) { wait_for(call, readable, reading_limit, answer); };
    };
    const auto wait = [this](Condition (*condition)(const std::string&)) {
        return [this, condition](const Call& call) {
            wait_for(call, condition(call.text()), call.milliseconds(1), answer_description);
        };
    };
    return {{"Press", [this](Call& call) { press(expand_repetitions(call.texts())); }},
            {"Hold", [this](Call& call) { hold(call); }},
            {"See", see(answer_description)},
            {"Screen", see(answer_widgets)},
            {"Focus", see(answer_focus)},
            {"Wait", wait(text_shown)},
            {"WaitGone", wait(text_gone)},
            {"WaitFocus", wait(focus_on)},
            {"WaitNumber",
             [this](Call& call) {
                 wait_for(call, focused_number(call.number(0)), call.milliseconds(1), answer_description);
             }},
            {"Activate", [this](Call& call) { activate(call); }},
            {"Picture", [this](Call& call) { take_picture(call); }}};
}

void UiDriver::check_display() const {
    if (is_display_gone_)
        throw Refusal("NoScreen", "the X server has exited");
}

void UiDriver::check_key(const std::string& key) const {
    const bool exists = has_key(display_, key); // may detect that the X server has exited
    check_display();
    if (!exists)
        throw Refusal("NoSuchKey", "the keyboard has no key '" + key + "'");
}

void UiDriver::press(const std::vector<std::string>& keys) {
    for (const std::string& key : keys)
        check_key(key);
    for (const std::string& key : keys)
        press_key(display_, key);
}

void UiDriver::hold(const Call& call) {
    const std::string key = call.text(0);
    check_key(key);
    move_key(display_, key, true);
    const auto held = held_.insert(held_.end(), {call.later(), key, {}});
    held->release = call_every(static_cast<guint>(call.milliseconds(1).count()), [this, held] {
        move_key(display_, held->key, false);
        held->call.answer();
        held_.erase(held);
    });
}

void UiDriver::activate(const Call& call) {
    wait_for(call, text_shown(call.text()), reading_limit, [this](const Call& asked, const Screen& screen) {
        reader_.activate(*screen.find(asked.text()),
                         [asked](const std::string& refusal) { asked.finish("NoAction", refusal); });
    });
}

void UiDriver::take_picture(const Call& call) {
    check_display();
    FileDescriptor file(call.take_descriptor(0));
    if (!file)
        throw Refusal("NotWritten", "Picture needs the descriptor of an open file");
    Pixels first_look = Pixels::of_screen(display_.get());
    const auto picture = pictures_.insert(pictures_.end(), {call.later(), nullptr});
    const auto taken = [this, picture](const std::string& error) {
        picture->call.finish("NotWritten", error);
        pictures_.erase(picture);
    };
    picture->screenshot =
        std::make_unique<Screenshot>(display_.get(), std::move(first_look), std::move(file), taken);
}

void UiDriver::wait_for(const Call& call, const Condition& condition, std::chrono::milliseconds limit,
                        const Answer& answer) {
    const auto drop = +[](GDBusConnection* /*bus*/, const char* caller, gpointer self) {
        static_cast<UiDriver*>(self)->waiting_.remove_if(
            [gone = std::string(caller)](const Waiting& waiting) { return waiting.call.sender() == gone; });
    };
    waiting_.push_back({call.later(), Wait(condition, limit), answer, looks_,
                        NameWatch(g_bus_watch_name_on_connection(connection_, call.sender().c_str(),
                                                                 G_BUS_NAME_WATCHER_FLAGS_NONE, nullptr, drop,
                                                                 this, nullptr))});
    if (!is_looking_)
        look();
}

void UiDriver::look() {
    next_look_.reset();
    is_looking_ = true;
    ++looks_;
    reader_.look("", Order::screen, [this](const Screen& screen) {
        is_looking_ = false;
        show(screen);
    });
}

void UiDriver::show(const Screen& screen) {
    waiting_.remove_if(
        [&](const Waiting& waiting) { return waiting.after < looks_ && serve(waiting, screen); });
    if (waiting_.empty())
        return;
    const bool has_new_caller =
        std::ranges::any_of(waiting_, [this](const Waiting& waiting) { return waiting.after == looks_; });
    next_look_ = call_every(has_new_caller ? 0 : look_interval_milliseconds, [this] { look(); });
}

bool UiDriver::serve(const Waiting& waiting, const Screen& screen) {
    try {
        if (!waiting.wait.is_over(screen))
            return false;
        waiting.answer(waiting.call, screen);
    } catch (const NotSeen& not_seen) {
        waiting.call.refuse(Refusal("NotSeen", not_seen.what()));
    }
    return true;
}

} // namespace simulator

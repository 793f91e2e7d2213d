/** What an application tells a screen reader without being asked. */
#pragma once

#include <atspi/atspi.h>
#include <memory>
#include <string>
#include <vector>

namespace simulator {

/**
 * From its making on, what a screen reader would say of itself: what gets the focus ("push button Exit"),
 * popups that appear ("dialog Exit App"), and new names of labels and of what is like that which has the focus ("spin button 7").
 */
class Announcements {
public:
    Announcements();
    ~Announcements();
    Announcements(const Announcements&) = delete;
    Announcements& operator=(const Announcements&) = delete;

    /** Hears what has come in meanwhile. */
    [[nodiscard]] std::size_t count() const;

    /** What was said since the last call. */
    std::vector<std::string> take();

private:
    void hear(const AtspiEvent& event);

    std::unique_ptr<AtspiEventListener, decltype(&g_object_unref)> listener_;
    std::string focused_role_;
    std::vector<std::string> said_;
};

/** Tells the session whether a screen reader is there. @throws std::runtime_error. */
void announce_screen_reader(bool is_there);

} // namespace simulator

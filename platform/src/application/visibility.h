/** Tracks whether the application has a window and whether one is visible. */
#pragma once

#include <Ecore.h>
#include <Ecore_X.h>
#include <array>
#include <functional>
#include <map>

namespace platform {

/**
 * Reports when none of the application's windows is visible (all covered, iconified or hidden) and when one becomes
 * visible again.
 *
 * Elementary selects visibility and structure events for each of its windows (observed, also with an alpha channel).
 * Events of one main-loop iteration are evaluated together, because a window manager may unmap and remap a window that
 * it starts to manage. Deleting the last window is not a pause; if another client destroys that window, a pause may be
 * reported first. Needs a connection to the display.
 */
class Visibility {
public:
    /** Calls `changed` with false when the application becomes invisible and with true when it becomes visible
     * again, and `closed` when its last window is deleted, mapped or not. */
    Visibility(std::function<void(bool visible)> changed, std::function<void()> closed);
    ~Visibility();
    Visibility(const Visibility&) = delete;
    Visibility& operator=(const Visibility&) = delete;

private:
    static Eina_Bool note(void* self, int type, void* event);
    static void evaluate(void* self);

    std::function<void(bool)> changed_;
    std::function<void()> closed_;
    std::array<Ecore_Event_Handler*, 3> handlers_;
    std::map<Ecore_X_Window, bool> windows_; // all that were ever mapped, and whether they are visible
    Ecore_Job* evaluation_ = nullptr;
    bool visible_ = false;
    bool paused_ = false;
};

} // namespace platform

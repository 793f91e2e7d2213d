/** Whether a window of the application can be seen, and whether one exists. */
#pragma once

#include <Ecore.h>
#include <Ecore_X.h>
#include <array>
#include <functional>
#include <map>

namespace platform {

/**
 * Reports when the application's windows are all out of sight (covered, iconified or hidden) and when one comes back.
 *
 * Elementary asks the X server for visibility and structure events of each of its windows (measured, also for
 * a window with an alpha channel). The events of one iteration of the main loop are evaluated together, so
 * that a window manager that unmaps and maps a window while it takes it over does not count. Deleting the last
 * window is no pause, but Elementary also deletes one that another client has destroyed, and there a pause may come
 * first. It needs a connection to the display.
 */
class Visibility {
public:
    /** `changed` is called with false when the application goes out of sight, and with true when it comes
     * back; `closed` when its last window is deleted, mapped or not. */
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
    std::map<Ecore_X_Window, bool> windows_; // those that were ever mapped, and whether they can be seen
    Ecore_Job* evaluation_ = nullptr;
    bool visible_ = false;
    bool paused_ = false;
};

} // namespace platform

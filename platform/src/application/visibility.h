/** Whether anything of the application can be seen, or ever will be. */
#pragma once

#include <Ecore.h>
#include <Ecore_X.h>
#include <array>
#include <functional>
#include <map>

namespace platform {

/**
 * Tells when the application's windows go wholly out of sight (covered, iconified or hidden) and when one
 * comes back.
 *
 * Elementary asks the X server for visibility and structure events of each of its windows (measured, also for
 * a window with an alpha channel). The events of one turn of the main loop are judged together, so that a
 * window manager that unmaps and maps a window while it takes it over does not count. Deleting the last
 * window is no pause, but Elementary also deletes one that another client has destroyed, and there a pause may come
 * first. There is a connection to the display as long as it lives.
 */
class Visibility {
public:
    /** `changed` is called with false when the application goes out of sight, and with true when it comes
     * back; `gone` when its last window is deleted, mapped or not. */
    Visibility(std::function<void(bool visible)> changed, std::function<void()> gone);
    ~Visibility();
    Visibility(const Visibility&) = delete;
    Visibility& operator=(const Visibility&) = delete;

private:
    static Eina_Bool note(void* self, int type, void* event);
    static void judge(void* self);

    std::function<void(bool)> changed_;
    std::function<void()> gone_;
    std::array<Ecore_Event_Handler*, 3> handlers_;
    std::map<Ecore_X_Window, bool> windows_; // those that were ever mapped, and whether they can be seen
    Ecore_Job* judgement_ = nullptr;
    bool visible_ = false;
    bool paused_ = false;
};

} // namespace platform

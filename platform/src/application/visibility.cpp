#include "visibility.h"

#include <Ecore_Evas.h>
#include <algorithm>
#include <utility>

namespace platform {
namespace {

bool is_any_canvas_left() {
    Eina_List* const canvases = ecore_evas_ecore_evas_list_get();
    const bool is_any = canvases != nullptr;
    eina_list_free(canvases);
    return is_any;
}

/** Whether the window shows a canvas of this process; Ecore has helper windows too. */
bool has_canvas(Ecore_X_Window window) {
    bool found = false;
    Eina_List* canvases = ecore_evas_ecore_evas_list_get();
    void* canvas = nullptr;
    EINA_LIST_FREE(canvases, canvas)
    found |= ecore_evas_window_get(static_cast<const Ecore_Evas*>(canvas)) == window;
    return found;
}

} // namespace

Visibility::Visibility(std::function<void(bool)> changed, std::function<void()> gone)
    : changed_(std::move(changed)), gone_(std::move(gone)) {
    handlers_[0].reset(ecore_event_handler_add(ECORE_X_EVENT_WINDOW_VISIBILITY_CHANGE, obscured, this));
    handlers_[1].reset(ecore_event_handler_add(ECORE_X_EVENT_WINDOW_HIDE, hidden, this));
    handlers_[2].reset(ecore_event_handler_add(ECORE_X_EVENT_WINDOW_DESTROY, destroyed, this));
}

Visibility::~Visibility() {
    if (judgement_)
        ecore_job_del(judgement_);
}

Eina_Bool Visibility::obscured(void* self, int /*type*/, void* event) {
    const auto* const change = static_cast<const Ecore_X_Event_Window_Visibility_Change*>(event);
    static_cast<Visibility*>(self)->note(change->win, !change->fully_obscured);
    return ECORE_CALLBACK_PASS_ON;
}

// The X server sends no visibility event when a window is unmapped; when it is mapped again it does.
Eina_Bool Visibility::hidden(void* self, int /*type*/, void* event) {
    static_cast<Visibility*>(self)->note(static_cast<const Ecore_X_Event_Window_Hide*>(event)->win, false);
    return ECORE_CALLBACK_PASS_ON;
}

Eina_Bool Visibility::destroyed(void* self, int /*type*/, void* event) {
    auto* const visibility = static_cast<Visibility*>(self);
    visibility->windows_.erase(static_cast<const Ecore_X_Event_Window_Destroy*>(event)->win);
    visibility->judge_later();
    return ECORE_CALLBACK_PASS_ON;
}

void Visibility::note(Ecore_X_Window window, bool visible) {
    if (!has_canvas(window))
        return;
    windows_[window] = visible;
    judge_later();
}

void Visibility::judge_later() {
    if (!judgement_)
        judgement_ = ecore_job_add(judge, this);
}

void Visibility::judge(void* self) {
    auto* const visibility = static_cast<Visibility*>(self);
    visibility->judgement_ = nullptr;
    auto& windows = visibility->windows_;
    std::erase_if(windows, [](const auto& entry) { return !has_canvas(entry.first); });
    if (!is_any_canvas_left())
        visibility->gone_();
    if (windows.empty())
        return;
    const bool visible = std::ranges::any_of(windows, [](const auto& entry) { return entry.second; });
    if (visible == std::exchange(visibility->visible_, visible))
        return;
    // The first time in sight is the start, not a return.
    if (visible && !std::exchange(visibility->paused_, false))
        return;
    visibility->paused_ = !visible;
    visibility->changed_(visible);
}

} // namespace platform

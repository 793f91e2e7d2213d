#include "visibility.h"

#include <Ecore_Evas.h>
#include <algorithm>
#include <set>
#include <utility>

namespace platform {
namespace {

/** The windows that show a canvas of this process, without Ecore's helper windows. */
std::set<Ecore_X_Window> canvas_windows() {
    std::set<Ecore_X_Window> windows;
    Eina_List* const canvases = ecore_evas_ecore_evas_list_get();
    for (const Eina_List* node = canvases; node; node = eina_list_next(node)) {
        const auto* const canvas = static_cast<const Ecore_Evas*>(eina_list_data_get(node));
        windows.insert(static_cast<Ecore_X_Window>(ecore_evas_window_get(canvas)));
    }
    eina_list_free(canvases);
    return windows;
}

} // namespace

Visibility::Visibility(std::function<void(bool)> changed, std::function<void()> closed)
    : changed_(std::move(changed)),
      closed_(std::move(closed)), handlers_{
                                      ecore_event_handler_add(ECORE_X_EVENT_WINDOW_VISIBILITY_CHANGE, note,
                                                              this),
                                      ecore_event_handler_add(ECORE_X_EVENT_WINDOW_HIDE, note, this),
                                      ecore_event_handler_add(ECORE_X_EVENT_WINDOW_DESTROY, note, this)} {}

Visibility::~Visibility() {
    std::ranges::for_each(handlers_, ecore_event_handler_del);
    if (evaluation_)
        ecore_job_del(evaluation_);
}

Eina_Bool Visibility::note(void* self, int type, void* event) {
    auto* const visibility = static_cast<Visibility*>(self);
    if (type == ECORE_X_EVENT_WINDOW_VISIBILITY_CHANGE) {
        const auto& change = *static_cast<const Ecore_X_Event_Window_Visibility_Change*>(event);
        visibility->windows_[change.win] = change.fully_obscured == 0;
    } else if (type == ECORE_X_EVENT_WINDOW_HIDE) {
        // The X server sends a visibility event when a window is mapped, but not when it is unmapped.
        visibility->windows_[static_cast<const Ecore_X_Event_Window_Hide*>(event)->win] = false;
    }
    if (!visibility->evaluation_)
        visibility->evaluation_ = ecore_job_add(evaluate, visibility);
    return ECORE_CALLBACK_PASS_ON;
}

void Visibility::evaluate(void* self) {
    auto* const visibility = static_cast<Visibility*>(self);
    visibility->evaluation_ = nullptr;
    auto& windows = visibility->windows_;
    const auto canvases = canvas_windows();
    std::erase_if(windows, [&canvases](const auto& entry) { return !canvases.contains(entry.first); });
    if (canvases.empty())
        visibility->closed_();
    if (windows.empty())
        return;
    const bool visible = std::ranges::any_of(windows, [](const auto& entry) { return entry.second; });
    if (visible == std::exchange(visibility->visible_, visible))
        return;
    // Becoming visible for the first time is not a resume.
    if (visible && !std::exchange(visibility->paused_, false))
        return;
    visibility->paused_ = !visible;
    visibility->changed_(visible);
}

} // namespace platform

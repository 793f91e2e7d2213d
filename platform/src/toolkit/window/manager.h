/** The toolkit's one manager: the window it serves, its unit, and items that wait to be shown. */
#pragma once

#include "toolkit/arranging/placement.h"

#include <Elementary.h>
#include <vector>

namespace vell {

class Manager {
public:
    static Manager& instance();

    /** See `elm_vell_manager_init` and `elm_vell_manager_fini`. */
    bool init(Evas_Object* window);
    void fini();

    /** Pixels of a layout unit at the size the window had when the toolkit was readied for it. */
    [[nodiscard]] double unit() const { return unit_; }

    /** What a size in pixels, made from units earlier, is at the window's present size. */
    [[nodiscard]] int rescaled(int pixels) const;
    [[nodiscard]] ItemRequest rescaled(ItemRequest request) const;

    /** The page's area: 240 x 135 units in the middle of the window's area. */
    [[nodiscard]] Area page_area(const Area& window) const;

    /** Shows an object when the layout is next rendered, at the latest at the end of this main-loop turn. */
    void show_later(Evas_Object* object);

    /** Shows everything that waits. */
    void show_waiting();

private:
    Manager() = default;

    static void on_window_resized(void* data, Evas* canvas, Evas_Object* window, void* event);
    static void on_window_deleted(void* data, Evas* canvas, Evas_Object* window, void* event);
    static void on_waiting_deleted(void* data, Evas* canvas, Evas_Object* object, void* event);

    void set_window_size();
    void set_scale(const Size& window);
    void forget_waiting(Evas_Object* object);

    Evas_Object* window_ = nullptr;
    double unit_ = 8.0;
    double ratio_ = 1.0;
    std::vector<Evas_Object*> waiting_;
    Ecore_Job* show_job_ = nullptr;
    Ecore_Event_Handler* show_handler_ = nullptr;
    Ecore_Event_Handler* drop_handler_ = nullptr;
};

} // namespace vell

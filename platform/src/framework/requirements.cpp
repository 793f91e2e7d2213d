#include "requirements.h"

#include "../services/theme_file.h"
#include "platform/log.h"

#include <Ecore_Evas.h>
#include <Ecore_X.h>
#include <Edje.h>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <unistd.h>

namespace platform {
namespace {

/** A group that is in every build of the theme. */
constexpr auto* theme_group = "elm/vell/layout/default";

bool has_display() {
    if (ecore_x_init(nullptr) > 0) {
        ecore_x_shutdown();
        return true;
    }
    const char* const display = std::getenv("DISPLAY");
    if (display && *display)
        __dlog_print(LogBuffer::main, LogPriority::error, "PLATFORM",
                     "no display: nothing answers at DISPLAY=%s", display);
    else
        __dlog_print(LogBuffer::main, LogPriority::error, "PLATFORM", "no display: DISPLAY is not set");
    return false;
}

/** Whether every group of the theme can be loaded: a spoiled file may still list them. */
bool can_be_loaded(const char* file) {
    struct Free {
        void operator()(Ecore_Evas* canvas) const { ecore_evas_free(canvas); }
    };
    const std::unique_ptr<Ecore_Evas, Free> canvas(ecore_evas_buffer_new(1, 1));
    Evas_Object* const object = canvas ? edje_object_add(ecore_evas_get(canvas.get())) : nullptr;
    Eina_List* const groups = edje_file_collection_list(file);
    bool loaded = object != nullptr;
    const Eina_List* item = nullptr;
    void* group = nullptr;
    EINA_LIST_FOREACH(groups, item, group)
    loaded = loaded && edje_object_file_set(object, file, static_cast<const char*>(group));
    edje_file_collection_list_free(groups);
    return loaded;
}

bool has_theme() {
    const std::string file = theme_file();
    const char* problem = nullptr;
    if (access(file.c_str(), R_OK) != 0)
        problem = std::strerror(errno);
    else if (!edje_file_group_exists(file.c_str(), theme_group))
        problem = "it is not a theme of the toolkit";
    else if (!can_be_loaded(file.c_str()))
        problem = "it is spoiled";
    if (problem)
        __dlog_print(LogBuffer::main, LogPriority::error, "PLATFORM", "no theme: %s: %s", file.c_str(),
                     problem);
    return !problem;
}

} // namespace

ApplicationResult check_requirements() {
    if (!has_theme())
        return application_theme_missing;
    return has_display() ? application_ok : application_display_missing;
}

} // namespace platform

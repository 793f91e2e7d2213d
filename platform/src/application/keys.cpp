#include "keys.h"

#include <Ecore.h>
#include <Ecore_Input.h>
#include <array>
#include <string_view>

namespace platform {
namespace {

struct KeyName {
    std::string_view keyboard;
    const char* remote_control;
};

constexpr std::array<KeyName, 3> key_names{{
    {.keyboard = "Escape", .remote_control = "XF86Back"},
    {.keyboard = "F12", .remote_control = "XF86Exit"},
    {.keyboard = "F1", .remote_control = "XF86Red"},
}};

/**
 * Renames the key of one event in place.
 *
 * Ecore X allocates a key event and its strings as one block, so the names may point elsewhere. The text that the key
 * would type is removed with the old name.
 */
Eina_Bool rename_key(void* /*data*/, void* /*loop_data*/, int type, void* event) {
    if (type != ECORE_EVENT_KEY_DOWN && type != ECORE_EVENT_KEY_UP)
        return EINA_TRUE;
    auto* const key = static_cast<Ecore_Event_Key*>(event);
    for (const auto& name : key_names)
        if (key->key && name.keyboard == key->key) {
            key->keyname = key->key = name.remote_control;
            key->string = key->compose = nullptr;
            break;
        }
    return EINA_TRUE;
}

} // namespace

// A filter sees an event before all handlers, whenever they were added.
void add_remote_control_keys() { ecore_event_filter_add(nullptr, rename_key, nullptr, nullptr); }

} // namespace platform

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
 * Renames the key of one event in place, and removes the text that the key would type.
 *
 * Ecore X allocates a key event and its strings as one block, so the pointers to the names can be replaced.
 */
Eina_Bool rename_key(void* /*data*/, int /*type*/, void* event) {
    auto* const key = static_cast<Ecore_Event_Key*>(event);
    for (const auto& name : key_names)
        if (key->key && name.keyboard == key->key) {
            key->keyname = key->key = name.remote_control;
            key->string = key->compose = nullptr;
            break;
        }
    return ECORE_CALLBACK_PASS_ON;
}

} // namespace

void add_remote_control_keys() {
    ecore_event_handler_prepend(ECORE_EVENT_KEY_DOWN, rename_key, nullptr);
    ecore_event_handler_prepend(ECORE_EVENT_KEY_UP, rename_key, nullptr);
}

} // namespace platform

/** All that Velmora asks of a platform, doing nothing. */
#include "platform/application.h"
#include "platform/log.h"
#include "platform/orientation.h"
#include "platform/secure_storage.h"
#include "platform/settings.h"
#include "platform/vell.h"
#include "platform/window.h"

int ui_app_main(int, char**, const platform::LifecycleCallbacks*, void*) {
    return platform::application_display_missing;
}
int ui_app_add_event_handler(platform::EventHandler**, platform::EventType, platform::EventCallback, void*) {
    return 0;
}
void ui_app_quit(const char*) {}
void ui_app_quit_reason_set(const char*) {}

int __dlog_print(platform::LogBuffer, platform::LogPriority, const char*, const char*, ...) { return 0; }
int ua_UI_orientation_get() { return 0; }
char* vconf_get_str(const char*) { return nullptr; }

int ss_init_credential(platform::SecureStorageCredential*, std::uint32_t, std::uint32_t, std::uint32_t,
                       std::uint32_t, std::uint32_t, int, int) {
    return platform::storage_failed;
}
int ss_read(char**, std::size_t*, int, int, const char*, const platform::SecureStorageCredential*, int) {
    return platform::storage_failed;
}
int ss_write(const char*, std::size_t, int, int, const char*, const platform::SecureStorageCredential*, int) {
    return platform::storage_failed;
}
void ss_free_buffer(char*) {}

int elm_win_aux_hint_add(Evas_Object*, const char*, const char*) { return -1; }
bool elm_vell_manager_init(Evas_Object*) { return false; }
void elm_vell_manager_fini() {}
int elm_vell_unit_to_pixel(double) { return 0; }
void elm_vell_object_size_min_set(Evas_Object*, int, int) {}
void elm_vell_object_resize_policy_set(Evas_Object*, int, int) {}
void elm_vell_object_weight_set(Evas_Object*, double) {}
Evas_Object* elm_vell_bg_add(Evas_Object*) { return nullptr; }
void elm_vell_bg_grid_show(Evas_Object*, int) {}
Evas_Object* elm_vell_layout_add(Evas_Object*) { return nullptr; }
void elm_vell_root_layout_set(Evas_Object*, int) {}
void elm_vell_root_layout_render(Evas_Object*) {}
void elm_vell_layout_type_set(Evas_Object*, int) {}
void elm_vell_layout_align_set(Evas_Object*, int) {}
void elm_vell_layout_item_gap_set(Evas_Object*, int) {}
void elm_vell_layout_padding_set(Evas_Object*, int, int, int, int) {}
void elm_vell_layout_bg_color_set(Evas_Object*, const char*) {}
void elm_vell_layout_item_append(Evas_Object*, Evas_Object*, int, int) {}
void elm_vell_layout_clear(Evas_Object*) {}
Evas_Object* elm_vell_header_add(Evas_Object*) { return nullptr; }
void elm_vell_header_style_set(Evas_Object*, int) {}
void elm_vell_header_uiplate_enable(Evas_Object*, bool) {}
void elm_vell_header_text_set(Evas_Object*, const char*) {}
void elm_vell_header_content_set(Evas_Object*, Evas_Object*) {}
void elm_vell_subheader_content_set(Evas_Object*, Evas_Object*) {}
Evas_Object* elm_vell_textbox_add(Evas_Object*) { return nullptr; }
void elm_vell_textbox_text_set(Evas_Object*, const char*) {}
void elm_vell_textbox_text_opacity_set(Evas_Object*, int) {}
void elm_vell_textbox_style_property_set(Evas_Object*, const char*, const char*) {}
Evas_Object* elm_vell_button_add(Evas_Object*) { return nullptr; }
void elm_vell_button_style_set(Evas_Object*, int, int) {}
void elm_vell_button_text_set(Evas_Object*, const char*) {}
const char* elm_vell_button_text_get(const Evas_Object*) { return ""; }
void elm_vell_button_zoom_set(Evas_Object*, int) {}
Evas_Object* elm_vell_spinner_add(Evas_Object*) { return nullptr; }
Evas_Object* elm_vell_spinner_native_get(Evas_Object*) { return nullptr; }
Evas_Object* elm_vell_popup_add(Evas_Object*) { return nullptr; }
void elm_vell_popup_style_set(Evas_Object*, int) {}
void elm_vell_popup_title_set(Evas_Object*, const char*) {}
void elm_vell_popup_message_set(Evas_Object*, const char*, int) {}
void elm_vell_popup_content_set(Evas_Object*, Evas_Object*, int, int) {}
void elm_vell_popup_button_set(Evas_Object*, Evas_Object*, int) {}

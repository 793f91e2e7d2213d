/**
 * A test page with Elementary, Eldbus and GDBus alone: "Start Stream" draws a frame, writes two log lines and calls the
 * NCP host, as Velmora does, and each of the host's events starts the radio and rebuilds the page.
 */
#include <Ecore_Evas.h>
#include <Eldbus.h>
#include <Elementary.h>
#include <gio/gio.h>
#include <initializer_list>
#include <unistd.h>

namespace {

constexpr auto* service = "org.orvane.qm_ncp_host";
constexpr auto* service_interface = "org.orvane.qm_ncp_host.service";
constexpr auto* service_path = "/org/orvane/qm_ncp_host";

struct Page {
    Evas_Object* box;
    Eldbus_Proxy* events;
    GDBusProxy* calls;
};

void draw_frame(Evas_Object* button) {
    elm_object_text_set(button, "Starting");
    Evas* const canvas = evas_object_evas_get(button);
    evas_smart_objects_calculate(canvas);
    ecore_evas_manual_render(ecore_evas_ecore_evas_get(canvas));
}

void start_stream(void* data, Evas_Object* button, void* /*event*/) {
    constexpr auto* method = "ember_start_stream";
    draw_frame(button);
    for (const char* const origin :
         {"ncp_requester.cpp: ember_start_stream(58)", "dbus_client.cpp: ProcessSyncCall(118)"})
        dprintf(STDERR_FILENO, "E/VELMORA(%d): %s > %s\n", getpid(), origin, method);
    g_autoptr(GVariant) reply = g_dbus_proxy_call_sync(static_cast<Page*>(data)->calls, method, nullptr,
                                                       G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
}

void build(Page& page) {
    elm_box_clear(page.box);
    for (const char* const text : {"Power: ", "Channel: "}) {
        Evas_Object* const label = elm_label_add(page.box);
        elm_object_text_set(label, text);
        elm_box_pack_end(page.box, label);
        evas_object_show(label);
    }
    for (const char* const text : {"Set Power", "Set Channel", "Stop Test", "Start Stream"}) {
        Evas_Object* const button = elm_button_add(page.box);
        elm_object_text_set(button, text);
        evas_object_smart_callback_add(button, "clicked", start_stream, &page);
        elm_box_pack_end(page.box, button);
        evas_object_show(button);
        elm_object_focus_set(button, EINA_TRUE);
    }
}

void started(void* data, const Eldbus_Message* /*message*/, Eldbus_Pending* /*pending*/) {
    build(*static_cast<Page*>(data));
}

void on_event(void* data, const Eldbus_Message* /*message*/) {
    eldbus_proxy_call(static_cast<Page*>(data)->events, "ember_start", started, data, -1, "i", 0);
}

} // namespace

EAPI_MAIN int elm_main(int /*argc*/, char** /*argv*/) {
    elm_policy_set(ELM_POLICY_QUIT, ELM_POLICY_QUIT_LAST_WINDOW_CLOSED);
    eldbus_init();
    Eldbus_Connection* const bus = eldbus_connection_get(ELDBUS_CONNECTION_TYPE_SYSTEM);
    Evas_Object* const window = elm_win_util_standard_add("bare", "Bare");
    Page page{elm_box_add(window),
              eldbus_proxy_get(eldbus_object_get(bus, service, service_path), service_interface),
              g_dbus_proxy_new_for_bus_sync(G_BUS_TYPE_SYSTEM, G_DBUS_PROXY_FLAGS_NONE, nullptr, service,
                                            service_path, service_interface, nullptr, nullptr)};
    eldbus_proxy_signal_handler_add(page.events, "ncp_event", on_event, &page);
    evas_object_size_hint_weight_set(page.box, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    elm_win_resize_object_add(window, page.box);
    build(page);
    evas_object_show(page.box);
    elm_win_fullscreen_set(window, EINA_TRUE);
    evas_object_show(window);
    elm_run();
    g_object_unref(page.calls);
    eldbus_connection_unref(bus);
    eldbus_shutdown();
    return 0;
}
ELM_MAIN()

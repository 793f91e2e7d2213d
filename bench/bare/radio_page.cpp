/**
 * A test page with Elementary and Eldbus alone: "Start Stream" calls the NCP host, and each of its events starts the
 * radio and rebuilds the page. With a command-line argument, the button calls through GDBus instead of Eldbus.
 */
#include <Eldbus.h>
#include <Elementary.h>
#include <gio/gio.h>
#include <initializer_list>

namespace {

constexpr auto* service = "org.orvane.qm_ncp_host";
constexpr auto* service_interface = "org.orvane.qm_ncp_host.service";
constexpr auto* service_path = "/org/orvane/qm_ncp_host";

struct Page {
    Evas_Object* box;
    Eldbus_Proxy* proxy;
    GDBusProxy* calls; /**< null when Eldbus makes the calls */
};

void ignore(void* /*data*/, const Eldbus_Message* /*message*/, Eldbus_Pending* /*pending*/) {}

void start_stream(void* data, Evas_Object* /*button*/, void* /*event*/) {
    constexpr auto* method = "ember_start_stream";
    const Page& page = *static_cast<Page*>(data);
    if (page.calls == nullptr) {
        eldbus_proxy_call(page.proxy, method, ignore, nullptr, -1, "");
        return;
    }
    g_autoptr(GVariant) reply =
        g_dbus_proxy_call_sync(page.calls, method, nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
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
    eldbus_proxy_call(static_cast<Page*>(data)->proxy, "ember_start", started, data, -1, "i", 0);
}

} // namespace

EAPI_MAIN int elm_main(int argc, char** /*argv*/) {
    elm_policy_set(ELM_POLICY_QUIT, ELM_POLICY_QUIT_LAST_WINDOW_CLOSED);
    eldbus_init();
    Eldbus_Connection* const bus = eldbus_connection_get(ELDBUS_CONNECTION_TYPE_SYSTEM);
    Evas_Object* const window = elm_win_util_standard_add("bare", "Bare");
    Page page{elm_box_add(window),
              eldbus_proxy_get(eldbus_object_get(bus, service, service_path), service_interface), nullptr};
    if (argc > 1)
        page.calls =
            g_dbus_proxy_new_for_bus_sync(G_BUS_TYPE_SYSTEM, G_DBUS_PROXY_FLAGS_NONE, nullptr, service,
                                          service_path, service_interface, nullptr, nullptr);
    eldbus_proxy_signal_handler_add(page.proxy, "ncp_event", on_event, &page);
    evas_object_size_hint_weight_set(page.box, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    elm_win_resize_object_add(window, page.box);
    build(page);
    evas_object_show(page.box);
    elm_win_fullscreen_set(window, EINA_TRUE);
    evas_object_show(window);
    elm_run();
    g_clear_object(&page.calls);
    eldbus_connection_unref(bus);
    eldbus_shutdown();
    return 0;
}
ELM_MAIN()

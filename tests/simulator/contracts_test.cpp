#include "support/television.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <iterator>

namespace {

using simulator::Value;
using Node = std::unique_ptr<GDBusNodeInfo, decltype(&g_dbus_node_info_unref)>;

Node parsed(const std::string& xml) {
    return {g_dbus_node_info_new_for_xml(xml.c_str(), nullptr), g_dbus_node_info_unref};
}

std::string text_of(GDBusInterfaceInfo* interface) {
    const std::unique_ptr<GString, void (*)(GString*)> text(
        g_string_new(""), [](GString* string) { g_string_free(string, TRUE); });
    g_dbus_interface_info_generate_xml(interface, 0, text.get());
    return text->str;
}

Node exported(const std::string& name, const char* path) {
    const auto bus = simulator::connect_to_system_bus();
    const Value answer(g_dbus_connection_call_sync(
        bus.get(), name.c_str(), path, "org.freedesktop.DBus.Introspectable", "Introspect", nullptr,
        G_VARIANT_TYPE("(s)"), G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
    const char* xml = "";
    if (answer)
        g_variant_get(answer.get(), "(&s)", &xml);
    return parsed(xml);
}

void expect_documented(const std::string& contract, const std::string& name, GDBusArgInfo** arguments) {
    EXPECT_THAT(contract, testing::HasSubstr("<!-- " + name + ": "));
    for (; arguments != nullptr && *arguments != nullptr; ++arguments)
        EXPECT_THAT(contract, testing::HasSubstr("@" + std::string((*arguments)->name) + ": ")) << name;
}

} // namespace

/** What is installed is what a television exports, and says of everything what it is. */
TEST(Contracts, AreExportedAsInstalledAndDocumented) {
    for (const auto& file : std::filesystem::directory_iterator(VELMORA_INTERFACES)) {
        SCOPED_TRACE(file.path());
        std::ifstream stream(file.path());
        const std::string contract(std::istreambuf_iterator<char>(stream), {});
        const Node node = parsed(contract);
        ASSERT_TRUE(node);
        GDBusInterfaceInfo* const interface = node->interfaces[0];
        EXPECT_EQ(file.path().stem(), interface->name);
        const bool is_host = node->path == std::string("/org/orvane/qm_ncp_host");
        std::string path = std::string("/") + interface->name;
        std::ranges::replace(path, '.', '/');
        EXPECT_TRUE(is_host || path == node->path) << node->path;
        const Node object =
            exported(is_host ? "org.orvane.qm_ncp_host" : "org.velmora.Simulator", node->path);
        GDBusInterfaceInfo* const found =
            object ? g_dbus_node_info_lookup_interface(object.get(), interface->name) : nullptr;
        ASSERT_NE(found, nullptr);
        EXPECT_EQ(text_of(found), text_of(interface));
        for (auto** method = interface->methods; method != nullptr && *method != nullptr; ++method) {
            expect_documented(contract, (*method)->name, (*method)->in_args);
            expect_documented(contract, (*method)->name, (*method)->out_args);
        }
        for (auto** signal = interface->signals; signal != nullptr && *signal != nullptr; ++signal)
            expect_documented(contract, (*signal)->name, (*signal)->args);
    }
}

/** How owned GLib objects and values are let go. */
#pragma once

#include <gio/gio.h>

#include <memory>

namespace simulator {

struct GObjectRelease {
    void operator()(gpointer object) const { g_object_unref(object); }
};
using BusConnection = std::unique_ptr<GDBusConnection, GObjectRelease>;

struct VariantRelease {
    void operator()(GVariant* value) const { g_variant_unref(value); }
};
/** A value of a bus call that is kept. */
using Value = std::unique_ptr<GVariant, VariantRelease>;

} // namespace simulator

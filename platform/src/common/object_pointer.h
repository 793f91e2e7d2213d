/** Ownership of a GObject. */
#pragma once

#include <glib-object.h>
#include <memory>

namespace platform {

struct ObjectRelease {
    void operator()(gpointer object) const { g_object_unref(object); }
};

/** Owns one reference of a GObject. */
template <typename Object>
using ObjectPointer = std::unique_ptr<Object, ObjectRelease>;

} // namespace platform

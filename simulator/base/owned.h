/** RAII owners of system and GLib resources. */
#pragma once

#include <gio/gio.h>
#include <unistd.h>

#include <memory>
#include <utility>

namespace simulator {

template <auto release_pointer>
struct Release {
    void operator()(auto* pointer) const { release_pointer(pointer); }
};
template <class Type>
using Object = std::unique_ptr<Type, Release<g_object_unref>>;
using BusConnection = Object<GDBusConnection>;
/** An owned D-Bus value. */
using Value = std::unique_ptr<GVariant, Release<g_variant_unref>>;

/** Owns a resource that a number identifies; the number `none` means no resource. */
template <auto none, auto release_number>
class Owned {
public:
    using Number = decltype(none);

    Owned() = default;
    explicit Owned(Number number) : number_(number) {}
    Owned(Owned&& other) noexcept : number_(other.release()) {}
    Owned& operator=(Owned&& other) noexcept {
        if (this != &other)
            reset(other.release());
        return *this;
    }
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;
    ~Owned() { reset(); }

    /** Releases the current number and takes ownership of a new one. */
    void reset(Number number = none) {
        if (number_ != none)
            release_number(number_);
        number_ = number;
    }
    /** Gives up ownership; the caller releases the number. */
    [[nodiscard]] Number release() { return std::exchange(number_, none); }
    [[nodiscard]] Number get() const { return number_; }
    explicit operator bool() const { return number_ != none; }

private:
    Number number_ = none;
};

using FileDescriptor = Owned<-1, close>;
/** See g_bus_watch_name_on_connection. */
using NameWatch = Owned<0U, g_bus_unwatch_name>;
/** A timer or a watched descriptor, see event_source.h. */
using EventSource = Owned<0U, g_source_remove>;

} // namespace simulator

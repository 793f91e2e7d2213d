/** A running television as it is reached through its door. */
#pragma once

#include <gio/gio.h>
#include <gio/gunixfdlist.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace station {

struct UnrefVariant {
    void operator()(GVariant* value) const { g_variant_unref(value); }
};
using Answer = std::unique_ptr<GVariant, UnrefVariant>;

struct UnrefObject {
    void operator()(gpointer object) const { g_object_unref(object); }
};
using Descriptors = std::unique_ptr<GUnixFDList, UnrefObject>;

/** One object on the television's system bus. */
struct BusPart {
    const char* name;
    const char* path;
    const char* interface;
    const char* program; /**< the part of the television that serves it */
};

extern const BusPart television;
extern const BusPart screen_operator;
extern const BusPart ncp_host;
extern const BusPart radio_module;

class Remote {
public:
    /**
     * @param name     of the television, empty for the only one that runs.
     * @param patience how long to wait for it to appear.
     * @throws WrongUse or Failure.
     */
    explicit Remote(const std::string& name,
                    std::chrono::milliseconds patience = std::chrono::milliseconds::zero());

    /**
     * Calls a method, however long it takes; waits for a television that is still starting.
     *
     * @param arguments   a floating tuple, or null for none.
     * @param descriptors handed over with the call, null for none.
     * @return the answer's tuple.
     * @throws Failure with what the television says, WrongUse when it does not know what it was asked for.
     */
    Answer call(const BusPart& part, const char* method, GVariant* arguments = nullptr,
                GUnixFDList* descriptors = nullptr);

    /** The connection, for calls of another kind. */
    [[nodiscard]] GDBusConnection* bus() const { return bus_.get(); }

    /** Throws what `call` throws for this error. */
    [[noreturn]] static void refuse(const GError& error, const BusPart& part);

private:
    [[nodiscard]] bool is_starting() const;
    [[nodiscard]] std::string why_absent(const BusPart& part);

    std::unique_ptr<GDBusConnection, UnrefObject> bus_;
};

/** The one text of an answer. */
std::string text_of(const Answer& answer);
/** The texts of an answer's list. */
std::vector<std::string> texts_of(const Answer& answer);
/** A floating list of texts. */
GVariant* list_of(const std::vector<std::string>& texts);

} // namespace station

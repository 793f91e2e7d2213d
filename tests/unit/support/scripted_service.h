#pragma once

#include "remote/remote.h"

#include <string>
#include <vector>

/** The television's own NCP host service, which answers as it is told. */
class ScriptedService {
public:
    ScriptedService();
    ScriptedService(const ScriptedService&) = delete;
    ScriptedService& operator=(const ScriptedService&) = delete;
    /** The service answers as ever. */
    ~ScriptedService();

    /** Answers a method with a tuple in GVariant text, for example "('12 packets', 0)". */
    void answer(const std::string& method, const std::string& reply) { behave(method, "reply " + reply); }
    /** Answers a method with a D-Bus error. */
    void refuse(const std::string& method) { behave(method, "error"); }

    /** The calls so far with their arguments: "ember_set_channel(11)". */
    std::vector<std::string> calls();

    /** Emits a signal of the service, with any arguments, and returns when it was dispatched on this thread.
     */
    void emit(const std::string& signal, const std::string& arguments);

private:
    void behave(const std::string& method, const std::string& behaviour);
    std::vector<std::string> all_calls();

    station::Remote television_;
    std::vector<std::string> told_;
    std::size_t earlier_calls_;
};

/** What listeners of this number have heard: "1 ready". They are distinct, and their user data is the notes.
 */
using Notes = std::vector<std::string>;
template <int number>
void note(const std::string& text, void* notes) {
    static_cast<Notes*>(notes)->push_back(std::to_string(number) + " " + text);
}

/** Drops the process's shared system bus connection, so that the next one is made with the present address.
 */
void forget_system_bus();

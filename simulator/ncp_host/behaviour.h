/** How a method of the NCP host answers when it is told to go wrong. */
#pragma once

#include <optional>
#include <string>

namespace simulator {

struct Behaviour {
    enum class Kind {
        normal, /**< what the radio module says */
        code,   /**< that result code, without asking the module */
        error,  /**< a D-Bus error */
        late,   /**< what the module says, so many milliseconds later */
        never,  /**< no reply at all */
        dies,   /**< no reply at all, and the host has ended */
        reply,  /**< this value, of whatever type */
    };
    Kind kind = Kind::normal;
    int number = 0;         /**< the code, or the milliseconds */
    std::string value = {}; /**< a tuple as GVariant text */
};

/** Reads "normal", "code N", "error", "late MS", "never", "dies" or "reply (VALUES)"; nothing for another
 * text. */
std::optional<Behaviour> parse_behaviour(const std::string& text);

} // namespace simulator

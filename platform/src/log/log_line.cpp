#include "log_line.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <glib.h>
#include <unistd.h>

namespace platform {
namespace {

constexpr std::size_t room_around_message = 64;

struct PriorityLook {
    char letter;
    std::string_view colour;
};

PriorityLook look_of(LogPriority priority) {
    switch (priority) {
    case LogPriority::verbose:
        return {'V', "\x1b[2m"};
    case LogPriority::debug:
        return {'D', "\x1b[2m"};
    case LogPriority::info:
        return {'I', "\x1b[32m"};
    case LogPriority::warning:
        return {'W', "\x1b[33m"};
    case LogPriority::error:
        return {'E', "\x1b[31m"};
    case LogPriority::fatal:
        return {'F', "\x1b[1;31m"};
    }
    return {'?', "\x1b[0m"};
}

bool turns_direction(gunichar character) {
    return (character >= 0x202A && character <= 0x202E) || (character >= 0x2066 && character <= 0x2069);
}

bool is_shown_as_is(gunichar character) {
    const GUnicodeType type = g_unichar_type(character);
    return type != G_UNICODE_CONTROL && type != G_UNICODE_LINE_SEPARATOR &&
           type != G_UNICODE_PARAGRAPH_SEPARATOR && !turns_direction(character);
}

/** Nearly all of what is logged, and shown without another look. */
bool is_plain(char character) { return character >= ' ' && character <= '~'; }

std::string escaped(gunichar character) {
    switch (character) {
    case '\n':
        return "\\n";
    case '\r':
        return "\\r";
    case '\t':
        return "\\t";
    default:
        break;
    }
    std::array<char, 16> text{};
    (void)std::snprintf(text.data(), text.size(), character < 0x80 ? "\\x%02x" : "\\u%04x", character);
    return text.data();
}

std::string escaped_byte(char byte) {
    std::array<char, 8> text{};
    (void)std::snprintf(text.data(), text.size(), "\\x%02x", static_cast<unsigned char>(byte));
    return text.data();
}

// Asked once: a process that is forked from this one runs another program before it logs.
const std::string& process_number() {
    static const std::string number = std::to_string(getpid());
    return number;
}

} // namespace

std::string_view without_line_end(std::string_view message) {
    if (message.ends_with('\n'))
        message.remove_suffix(1);
    return message;
}

void append_printable(std::string& line, std::string_view text) {
    const auto take_plain = [&text, &line] {
        const auto* const end = std::ranges::find_if_not(text, is_plain);
        line.append(text.begin(), end);
        text.remove_prefix(static_cast<std::size_t>(end - text.begin()));
    };
    for (take_plain(); !text.empty(); take_plain()) {
        const gunichar character = g_utf8_get_char_validated(text.data(), static_cast<gssize>(text.size()));
        std::size_t length = 1;
        if (character == static_cast<gunichar>(-1) || character == static_cast<gunichar>(-2)) {
            line += escaped_byte(text.front());
        } else {
            length = static_cast<std::size_t>(g_utf8_next_char(text.data()) - text.data());
            if (is_shown_as_is(character))
                line += text.substr(0, length);
            else
                line += escaped(character);
        }
        text.remove_prefix(length);
    }
}

std::string log_line(LogPriority priority, std::string_view tag, std::string_view message, bool coloured) {
    const PriorityLook look = look_of(priority);
    std::string line;
    line.reserve(room_around_message + message.size());
    if (coloured)
        line += look.colour;
    line += look.letter;
    line += '/';
    append_printable(line, tag);
    line += '(';
    line += process_number();
    line += "): ";
    append_printable(line, without_line_end(message));
    if (coloured)
        line += "\x1b[0m";
    line += '\n';
    return line;
}

} // namespace platform

#include "log_line.h"

#include <algorithm>
#include <array>
#include <glib.h>
#include <unistd.h>

namespace platform {
namespace {

constexpr std::size_t typical_overhead = 64;

struct PriorityStyle {
    char letter;
    std::string_view colour;
};

PriorityStyle style_of(LogPriority priority) {
    constexpr std::array<PriorityStyle, 6> styles{{{'V', "\x1b[2m"},
                                                   {'D', "\x1b[2m"},
                                                   {'I', "\x1b[32m"},
                                                   {'W', "\x1b[33m"},
                                                   {'E', "\x1b[31m"},
                                                   {'F', "\x1b[1;31m"}}};
    const auto index = static_cast<std::size_t>(priority) - static_cast<std::size_t>(LogPriority::verbose);
    return index < styles.size() ? styles[index] : PriorityStyle{'?', "\x1b[0m"};
}

bool changes_direction(gunichar character) {
    return (character >= 0x202A && character <= 0x202E) || (character >= 0x2066 && character <= 0x2069);
}

bool is_shown_as_is(gunichar character) {
    const GUnicodeType type = g_unichar_type(character);
    return type != G_UNICODE_CONTROL && type != G_UNICODE_LINE_SEPARATOR &&
           type != G_UNICODE_PARAGRAPH_SEPARATOR && !changes_direction(character);
}

/** Whether a character is printable ASCII, the fast path. */
bool is_plain(char character) { return character >= ' ' && character <= '~'; }

/** Returns the visible form of a character, or of a byte that is not UTF-8. */
std::string escaped(gunichar character, bool is_text) {
    if (character == '\n')
        return "\\n";
    if (character == '\r')
        return "\\r";
    if (character == '\t')
        return "\\t";
    g_autofree char* shown = is_text && character >= 0x80 ? g_strdup_printf("\\u%04x", character)
                                                          : g_strdup_printf("\\x%02x", character);
    return shown;
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
        const bool is_text = character != static_cast<gunichar>(-1) && character != static_cast<gunichar>(-2);
        const std::size_t length =
            is_text ? static_cast<std::size_t>(g_utf8_next_char(text.data()) - text.data()) : 1;
        if (is_text && is_shown_as_is(character))
            line += text.substr(0, length);
        else
            line += escaped(is_text ? character : static_cast<unsigned char>(text.front()), is_text);
        text.remove_prefix(length);
    }
}

std::string log_line(LogPriority priority, std::string_view tag, std::string_view message, bool coloured) {
    const PriorityStyle style = style_of(priority);
    std::string line;
    line.reserve(typical_overhead + message.size());
    if (coloured)
        line += style.colour;
    line += style.letter;
    line += '/';
    append_printable(line, tag);
    line += '(';
    line += std::to_string(getpid());
    line += "): ";
    append_printable(line, without_line_end(message));
    if (coloured)
        line += "\x1b[0m";
    line += '\n';
    return line;
}

} // namespace platform

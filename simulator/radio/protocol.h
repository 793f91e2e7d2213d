/**
 * The messages between the NCP host and the radio module, one per line.
 *
 * A request is "> NUMBER COMMAND [ARGUMENT]", its answer "< NUMBER CODE [TEXT]". The marks > and < distinguish an
 * answer from a terminal's echo of the request; the numbers distinguish late answers from answers to later requests.
 */
#pragma once

#include <array>
#include <optional>
#include <string>
#include <unistd.h>

namespace simulator {

/** Result codes of the radio module and of the NCP host itself. */
enum class RadioCode : int {
    ok = 0,
    not_started = 1,
    already_started = 2,
    bad_mode = 3,      /**< neither TX (0) nor RX (1) */
    wrong_mode = 4,    /**< a stream in RX mode, or statistics in TX mode */
    bad_channel = 5,   /**< not from 11 to 26 */
    bad_power = 6,     /**< not from 0 to 20 */
    streaming = 7,     /**< a new channel, a new power or a second stream during a stream */
    not_streaming = 8, /**< no stream to stop */
    bad_request = 9,   /**< a command or argument the module does not know */
    link_down = 20,    /**< the host has no link to the module */
    no_answer = 21,    /**< the module did not answer in time */
};

struct RadioRequest {
    unsigned number = 0;
    std::string command;
    std::optional<int> argument;
};

struct RadioAnswer {
    unsigned number = 0;
    int code = 0;
    std::string text;
};

/** Formats the message as a line, including the line feed. */
std::string to_line(const RadioRequest& request);
std::string to_line(const RadioAnswer& answer);

/** Parses a line without its line feed; returns nothing if it is not such a message. */
std::optional<RadioRequest> parse_request(const std::string& line);
std::optional<RadioAnswer> parse_answer(const std::string& line);

/** Splits received bytes into lines. Drops lines longer than 512 bytes. */
class LineBuffer {
public:
    void append(std::string_view bytes) {
        waiting_.append(bytes);
        const auto last_end = waiting_.rfind('\n');
        const auto unfinished = last_end == std::string::npos ? 0 : last_end + 1;
        if (waiting_.size() - unfinished > longest_line)
            waiting_.resize(unfinished);
    }
    /** Reads available bytes. @return the result of read(2). */
    ssize_t read_from(int descriptor) {
        std::array<char, longest_line> bytes{};
        const auto count = read(descriptor, bytes.data(), bytes.size());
        if (count > 0)
            append({bytes.data(), static_cast<std::size_t>(count)});
        return count;
    }
    /** Removes and returns the next complete line, without its line feed. */
    std::optional<std::string> next() {
        const auto end = waiting_.find('\n');
        if (end == std::string::npos)
            return std::nullopt;
        auto line = waiting_.substr(0, end);
        waiting_.erase(0, end + 1);
        return line;
    }
    void clear() { waiting_.clear(); }

private:
    static constexpr std::size_t longest_line = 512;
    std::string waiting_;
};

} // namespace simulator

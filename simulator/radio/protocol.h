/**
 * The messages of the NCP host and the radio module, one a line.
 *
 * A request is "> NUMBER COMMAND [ARGUMENT]", its answer "< NUMBER CODE [TEXT]". The marks tell an answer from a
 * terminal's echo of the request, the numbers tell a late answer from that to a later request.
 */
#pragma once

#include <array>
#include <optional>
#include <string>
#include <unistd.h>

namespace simulator {

/** Result codes of the radio module, and those the NCP host itself adds. */
enum class RadioCode : int {
    ok = 0,
    not_started = 1,
    already_started = 2,
    bad_mode = 3,      /**< neither TX (0) nor RX (1) */
    wrong_mode = 4,    /**< a stream asked for in RX mode, statistics in TX mode */
    bad_channel = 5,   /**< not from 11 to 26 */
    bad_power = 6,     /**< not from 0 to 20 */
    streaming = 7,     /**< channel, power and a second stream are refused while the stream runs */
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

/** The message as a line, with the line feed. */
std::string to_line(const RadioRequest& request);
std::string to_line(const RadioAnswer& answer);

/** The message of a line without its line feed; nothing if it is none. */
std::optional<RadioRequest> parse_request(const std::string& line);
std::optional<RadioAnswer> parse_answer(const std::string& line);

/** Cuts received bytes into lines. A line longer than 512 bytes is noise and dropped. */
class LineBuffer {
public:
    void append(std::string_view bytes) {
        waiting_.append(bytes);
        const auto last_end = waiting_.rfind('\n');
        const auto unfinished = last_end == std::string::npos ? 0 : last_end + 1;
        if (waiting_.size() - unfinished > longest_line)
            waiting_.resize(unfinished);
    }
    /** Appends what can be read. @return the result of read(2). */
    ssize_t read_from(int descriptor) {
        std::array<char, longest_line> bytes{};
        const auto count = read(descriptor, bytes.data(), bytes.size());
        if (count > 0)
            append({bytes.data(), static_cast<std::size_t>(count)});
        return count;
    }
    /** Takes the next whole line without its line feed. */
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

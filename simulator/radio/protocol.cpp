#include "radio/protocol.h"

#include <sstream>

namespace simulator {

std::string to_line(const RadioRequest& request) {
    const std::string argument = request.argument ? " " + std::to_string(*request.argument) : "";
    return "> " + std::to_string(request.number) + " " + request.command + argument + "\n";
}

std::string to_line(const RadioAnswer& answer) {
    const std::string text = answer.text.empty() ? "" : " " + answer.text;
    return "< " + std::to_string(answer.number) + " " + std::to_string(answer.code) + text + "\n";
}

std::optional<RadioRequest> parse_request(const std::string& line) {
    std::istringstream words(line);
    std::string mark;
    RadioRequest request;
    if (!(words >> mark >> request.number >> request.command) || mark != ">")
        return std::nullopt;
    int argument = 0;
    if (words >> argument)
        request.argument = argument;
    else if (!words.eof())
        return std::nullopt;
    return request;
}

std::optional<RadioAnswer> parse_answer(const std::string& line) {
    std::istringstream words(line);
    std::string mark;
    RadioAnswer answer;
    if (!(words >> mark >> answer.number >> answer.code) || mark != "<")
        return std::nullopt;
    words >> std::ws;
    std::getline(words, answer.text);
    return answer;
}

} // namespace simulator

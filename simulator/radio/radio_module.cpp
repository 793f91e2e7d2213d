#include "radio_module.h"

#include "base/strings.h"

#include <array>
#include <cerrno>
#include <system_error>

namespace simulator {
namespace {

constexpr auto device_path = "/dev/ttyIOT";

Radio::Time now() { return std::chrono::steady_clock::now(); }

int speed_of(const Options& options) {
    constexpr int slow = 115200;
    constexpr int fast = 921600;
    constexpr int last_slow_firmware = 8;
    const std::string firmware = options.text("firmware");
    const int last_number = parse_int(firmware.substr(firmware.rfind('.') + 1)).value_or(0);
    const auto speed =
        static_cast<int>(options.number("module-speed", last_number <= last_slow_firmware ? slow : fast));
    if (speed != slow && speed != fast)
        throw std::runtime_error("--module-speed: neither 115200 nor 921600");
    return speed;
}

} // namespace

RadioModule::RadioModule(const Options& options)
    : speed_(speed_of(options)), port_(device_path),
      reader_(EventSource::when_readable(port_.descriptor(), [this] { read_line(); })) {
    log_.note("radio speaks at ", speed_);
    for (const std::string& traffic : options.all("traffic"))
        add_traffic(traffic);
    if (options.has("air"))
        join_air(options.text("air"));
    set_serial(!options.has("no-serial") && !options.has("serial-after"));
    if (!options.has("serial-after"))
        return;
    serial_timer_ = EventSource::every(static_cast<guint>(options.number("serial-after", 0) * 1000), [this] {
        serial_timer_.reset();
        set_serial(true);
    });
}

std::map<std::string, Method> RadioModule::methods() {
    return {{"State", [this](Call& call) { call.answer({state()}); }},
            {"SetSerial", [this](Call& call) { set_serial(call.flag()); }},
            {"SetTraffic", [this](Call& call) { set_traffic(call.number(0), call.number(1)); }}};
}

void RadioModule::add_traffic(const std::string& text) {
    const auto middle = text.find('=');
    const auto channel = parse_int(text.substr(0, middle));
    const auto rate = middle == std::string::npos ? std::nullopt : parse_int(text.substr(middle + 1));
    if (!channel || !rate)
        throw std::runtime_error("--traffic " + text + ": not CHANNEL=PACKETS_PER_SECOND");
    set_traffic(*channel, *rate);
}

void RadioModule::set_serial(bool present) {
    port_.show(present);
    log_.note(device_path, present ? " is there" : " is not there");
}

void RadioModule::set_traffic(int channel, int packets_per_second) {
    if (!radio_.set_traffic(channel, packets_per_second, now()))
        throw Refusal("NoSuchTraffic", "no channel " + std::to_string(channel) + ", or no rate " +
                                           std::to_string(packets_per_second));
}

void RadioModule::join_air(const std::filesystem::path& air) {
    air_ = air;
    air_watch_ = std::make_unique<AirWatch>(
        air,
        [this](const auto& stream, int channel, int power) {
            const bool is_heard = radio_.add_stream(stream, channel, power, now());
            log_.note("stream ", stream, is_heard ? " begins" : " is none");
        },
        [this](const auto& stream) {
            radio_.remove_stream(stream, now());
            log_.note("stream ", stream, " ends");
        });
}

/** Lets others hear the stream that the radio sends, as long as it does. */
void RadioModule::follow_stream() {
    if (!radio_.streams() || air_.empty()) {
        air_stream_.reset();
    } else if (!air_stream_) {
        try {
            air_stream_ = std::make_unique<AirStream>(air_, radio_.channel(), radio_.power());
        } catch (const std::system_error& error) {
            log_.error("nobody hears the stream: ", error.what());
        }
    }
}

void RadioModule::lose_line() {
    port_.hold(true);
    lines_.clear();
    radio_.lose_line(now());
    follow_stream();
    log_.note("the television has closed the serial line");
}

/** Who sends bytes has the line open, so its end can be waited for. */
void RadioModule::read_line() {
    std::array<char, 512> bytes{};
    const auto count = read(port_.descriptor(), bytes.data(), bytes.size());
    if (count <= 0) {
        if (count == 0 || errno == EIO)
            lose_line();
        return;
    }
    port_.hold(false);
    if (port_.speed() != speed_) {
        log_.note("noise: ", count, " bytes at ", port_.speed().value_or(0), ", the module speaks at ",
                  speed_);
        lines_.clear();
        return;
    }
    lines_.append({bytes.data(), static_cast<std::size_t>(count)});
    while (const auto line = lines_.next())
        answer(*line);
}

void RadioModule::answer(const std::string& line) {
    const auto request = parse_request(line);
    if (!request) {
        log_.note("not a request: ", line);
        return;
    }
    const auto reply = radio_.handle(*request, now());
    follow_stream();
    const auto text = to_line(reply);
    log_.note(request->command, "(", request->argument ? std::to_string(*request->argument) : "",
              ") = ", reply.code, reply.text.empty() ? "" : " ", reply.text);
    if (write(port_.descriptor(), text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
        log_.error("the serial line is full");
    }
}

GVariant* RadioModule::state() const {
    return g_variant_new_parsed(
        "{'mode': <%s>, 'channel': <%i>, 'power': <%i>, 'stream': <%b>, 'received': <%x>, "
        "'packets_per_second': <%d>, 'serial': <%b>, 'speed': <%i>}",
        name_of(radio_.mode()), radio_.channel(), radio_.power(), radio_.streams(),
        static_cast<gint64>(radio_.received(now())), radio_.packets_per_second(), port_.is_shown(), speed_);
}

} // namespace simulator

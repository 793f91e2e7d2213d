#include "radio_module.h"

#include "base/descriptors.h"
#include "base/strings.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <system_error>
#include <termios.h>

namespace simulator {
namespace {

constexpr auto device_path = "/dev/ttyIOT";
constexpr int slow = 115200;
constexpr int fast = 921600;

Radio::Time now() { return std::chrono::steady_clock::now(); }

int speed_of(const Options& options) {
    constexpr int last_slow_firmware = 8;
    const std::string firmware = options.text("firmware");
    const int last_number = parse_int(firmware.substr(firmware.rfind('.') + 1)).value_or(0);
    const auto speed =
        static_cast<int>(options.number("module-speed", last_number <= last_slow_firmware ? slow : fast));
    if (speed != slow && speed != fast)
        throw std::runtime_error("--module-speed must be 115200 or 921600");
    return speed;
}

/** The speed set on a terminal; 0 if it is neither `slow` nor `fast`. */
int speed_of(int terminal) {
    termios settings{};
    const speed_t speed = tcgetattr(terminal, &settings) == 0 ? cfgetospeed(&settings) : B0;
    return speed == B115200 ? slow : speed == B921600 ? fast : 0;
}

} // namespace

RadioModule::RadioModule(const Options& options)
    : speed_(speed_of(options)), line_(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {
    if (!line_ || grantpt(line_.get()) != 0 || unlockpt(line_.get()) != 0)
        fail_with_errno("no pseudo-terminal");
    terminal_path_ = ptsname(line_.get());
    hold_line(true);
    reader_ = call_when_readable(line_.get(), [this] { read_line(); });
    log_.note("serial speed: ", speed_);
    for (const std::string& traffic : options.all("traffic"))
        add_traffic(traffic);
    if (options.has("air"))
        join_air(options.text("air"));
    set_serial(!options.has("no-serial") && !options.has("serial-after"));
    if (!options.has("serial-after"))
        return;
    serial_timer_ = call_every(static_cast<guint>(options.number("serial-after", 0) * 1000), [this] {
        serial_timer_.reset();
        try {
            set_serial(true);
        } catch (const std::system_error& error) {
            log_.error("the serial device does not appear: ", error.what());
        }
    });
}

RadioModule::~RadioModule() {
    if (is_present_)
        unlink(device_path);
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
    std::error_code error;
    if (std::filesystem::is_symlink(device_path, error))
        unlink(device_path);
    if (present && symlink(terminal_path_.c_str(), device_path) != 0)
        fail_with_errno(device_path);
    is_present_ = present;
    log_.note(device_path, present ? " appears" : " disappears");
}

void RadioModule::hold_line(bool held) {
    if (held == static_cast<bool>(television_end_))
        return;
    television_end_ = held ? open_terminal(terminal_path_) : FileDescriptor();
    if (held && !television_end_)
        fail_with_errno(terminal_path_);
}

void RadioModule::set_traffic(int channel, int packets_per_second) {
    if (!radio_.set_traffic(channel, packets_per_second, now()))
        throw Refusal("NoSuchTraffic", "invalid channel " + std::to_string(channel) + " or rate " +
                                           std::to_string(packets_per_second));
}

void RadioModule::join_air(const std::filesystem::path& air) {
    air_ = air;
    air_watch_ = std::make_unique<AirWatch>(
        air,
        [this](const auto& stream, int channel, int power) {
            const bool is_heard = radio_.add_stream(stream, channel, power, now());
            log_.note("stream ", stream, is_heard ? " begins" : " ignored: invalid channel or power");
        },
        [this](const auto& stream) {
            radio_.remove_stream(stream, now());
            log_.note("stream ", stream, " ends");
        });
}

/** Publishes the radio's stream to other televisions, or ends a published stream, as the radio's state requires. */
void RadioModule::follow_stream() {
    const Radio::State state = radio_.state(now());
    if (!state.streams || air_.empty()) {
        air_stream_.reset();
    } else if (!air_stream_) {
        try {
            air_stream_ = std::make_unique<AirStream>(air_, state.channel, state.power);
        } catch (const std::system_error& error) {
            log_.error("other televisions do not receive the stream: ", error.what());
        }
    }
}

void RadioModule::lose_line() {
    hold_line(true);
    lines_.clear();
    radio_.lose_line(now());
    follow_stream();
    log_.note("the television has closed the serial line");
}

/** After the first bytes the television has the line open, so the module can wait for the hang-up. */
void RadioModule::read_line() {
    const auto count = lines_.read_from(line_.get());
    if (count <= 0) {
        if (count == 0 || errno == EIO)
            lose_line();
        return;
    }
    hold_line(false);
    if (const int speed = speed_of(line_.get()); speed != speed_) {
        log_.note("noise: ", count, " bytes at ", speed, ", expected ", speed_);
        lines_.clear();
        return;
    }
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
    if (write(line_.get(), text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
        log_.error("the serial line is full");
    }
}

GVariant* RadioModule::state() const {
    const Radio::State state = radio_.state(now());
    return g_variant_new_parsed(
        "{'mode': <%s>, 'channel': <%i>, 'power': <%i>, 'stream': <%b>, 'received': <%x>, "
        "'packets_per_second': <%d>, 'serial': <%b>, 'speed': <%i>}",
        name_of(state.mode), state.channel, state.power, state.streams, static_cast<gint64>(state.received),
        radio_.packets_per_second(), is_present_, speed_);
}

} // namespace simulator

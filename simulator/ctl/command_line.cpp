#include "command_line.h"

#include "base/strings.h"
#include "client/client_radio.h"
#include "client/failure.h"
#include "control_sockets.h"
#include "report.h"

#include <CLI/CLI.hpp>
#include <iostream>

namespace simulator {
namespace {

constexpr auto example = R"(
A television is started in another terminal, for example with

  simulator/tv --name desk --screen 1280x720 -- build/dev/bin/velmora

and driven like this:

  tvctl see                                  Velmora | [TX Test] | RX Test | Exit
  tvctl press OK && tvctl wait "Start TX Test"
  tvctl answer ember_set_channel "code 3"    from now on the radio refuses every channel
  tvctl picture screen.png

Ends with 0, with 1 when it did not come true, or with 2 when it was asked for wrongly; then one line on
standard error says why. 'tvctl VERB --help' tells more of a verb.)";

int number_of(const std::string& text) {
    if (const auto number = parse_int(text))
        return *number;
    throw WrongUse("'" + text + "' is not a number");
}

guint milliseconds_of(const std::string& text) {
    const int number = number_of(text);
    if (number < 0)
        throw WrongUse("'" + text + "' is less than no time");
    return static_cast<guint>(number);
}

} // namespace

CommandLine::CommandLine()
    : app_(std::make_unique<CLI::App>("Drives a running simulated television.", "tvctl")) {
    app_->require_subcommand(1);
    app_->fallthrough();
    app_->get_formatter()->label("SUBCOMMAND", "VERB");
    app_->get_formatter()->label("Subcommands", "Verbs");
    app_->get_formatter()->label("OPTIONS", "options");
    app_->add_option("-n,--name", name_, "the television's name; else the only one that runs");
    app_->add_flag("--json", output_.json, "answer in JSON");
    app_->add_subcommand("list", "the names of the televisions that run")->callback([this] {
        is_list_ = true;
    });
    add_screen_verbs();
    add_waiting();
    add_radio_verbs();
    add_stack_verbs();
    add_inside_verbs();
    app_->footer(example); // last: else every verb repeats it
}

CommandLine::~CommandLine() = default;

int CommandLine::run(int argc, char** argv) {
    try {
        app_->parse(argc, argv);
    } catch (const CLI::Success& help) {
        return app_->exit(help);
    } catch (const CLI::ParseError& error) {
        if (app_->get_subcommands().empty() && !app_->remaining().empty())
            throw WrongUse("there is no verb '" + app_->remaining().front() + "' (see tvctl --help)");
        throw WrongUse(std::string(error.what()) + " (see tvctl --help)");
    }
    if (is_list_) {
        const auto names = running_televisions();
        if (names.empty() && !output_.json)
            throw Failure("no television runs");
        output_.say(names);
        return 0;
    }
    Client client(open_control_socket(name_, patience_));
    action_(client);
    std::cout.flush();
    if (!std::cout)
        throw Failure("the answer cannot be written");
    return status_;
}

CLI::App* CommandLine::add_verb(const std::string& name, const std::string& help, const Action& action) {
    CLI::App* const verb = app_->add_subcommand(name, help);
    verb->callback([this, action] { action_ = action; });
    return verb;
}

CLI::App* CommandLine::add_verb(const std::string& name, const std::vector<std::string>& words,
                                const std::string& help, const Action& action) {
    CLI::App* const verb = add_verb(name, help, action);
    for (std::size_t i = 0; i < words.size(); ++i)
        verb->add_option(words[i], words_[i])->option_text(" ")->required();
    return verb;
}

void CommandLine::add_screen_verbs() {
    add_verb("press",
             "presses keys: OK Back Exit Red Up Down Left Right, any X key name; Right*5 presses five times",
             [this](Client& client) {
                 client.call(ui, "Press", g_variant_new("(@as)", to_variant(keys_)));
                 output_.say(keys_);
             })
        ->add_option("KEY", keys_)
        ->option_text("...")
        ->required();
    add_verb("hold", {"KEY", "MILLISECONDS"}, "holds a key down for a time", [this](Client& client) {
        client.call(ui, "Hold", g_variant_new("(su)", words_[0].c_str(), milliseconds_of(words_[1])));
        output_.say(words_[0] + " " + words_[1]);
    });
    add_verb("see", "what is on the screen, the focus in brackets; the widgets as a tree with --json",
             [this](Client& client) { see(client, output_); });
    add_verb("focus", "the name of what has the focus",
             [this](Client& client) { output_.say(text_of(client.call(ui, "Focus"))); });
    add_verb("activate", {"TEXT"}, "presses a widget as a screen reader does", [this](Client& client) {
        client.call(ui, "Activate", g_variant_new("(s)", words_[0].c_str()));
        output_.say(words_[0]);
    });
    add_verb("picture", {"FILE"}, "a PNG of the screen once it stands still", [this](Client& client) {
        picture(client, words_[0]);
        output_.say(words_[0]);
    });
}

void CommandLine::add_waiting() {
    CLI::App* const verb = add_verb(
        "wait", {"TEXT"}, "waits until a text is on the screen, also for a television that is not there yet",
        [this](Client& client) { wait(client); });
    verb->add_option("-t,--time", seconds_, "at most so long (10)")
        ->option_text("SECONDS")
        ->check(CLI::Range(0.0, 1e6));
    verb->add_flag("--gone", gone_, "until it is not there any more");
    verb->add_flag("--focus", focus_, "until it has the focus");
    verb->add_flag("--number", number_, "until the focused widget shows this number");
    verb->parse_complete_callback(
        [this] { patience_ = std::chrono::milliseconds(static_cast<long>(seconds_ * 1000)); });
}

void CommandLine::wait(Client& client) {
    if (gone_ + focus_ + number_ > 1)
        throw WrongUse("wait for one of --gone, --focus and --number");
    const auto milliseconds = static_cast<guint>(patience_.count());
    GVariant* const arguments = number_ ? g_variant_new("(iu)", number_of(words_[0]), milliseconds)
                                        : g_variant_new("(su)", words_[0].c_str(), milliseconds);
    const char* const method = number_ ? "WaitNumber" : focus_ ? "WaitFocus" : gone_ ? "WaitGone" : "Wait";
    output_.say(text_of(client.call(ui, method, arguments)));
}

void CommandLine::add_radio_verbs() {
    add_verb("radio", "the state of the radio module", [this](Client& client) { radio(client, output_); });
    add_verb("calls", "what the NCP host was asked",
             [this](Client& client) { output_.say(asked_of_host(client)); });
    add_verb(
        "answer", {"METHOD", "BEHAVIOUR"},
        R"~(how the NCP host answers: normal, "code N", error, "late MS", never, dies, "reply (VALUES)")~",
        [this](Client& client) {
            let_host_answer(client, words_[0], words_[1]);
            output_.say(words_[0] + " " + words_[1]);
        });
    add_verb("event", {"TEXT"}, "the NCP host says ncp_event with this text", [this](Client& client) {
        client.call(ncp_host, "Emit", g_variant_new("(s)", words_[0].c_str()));
        output_.say(words_[0]);
    });
    add_verb(
        "serial", {"STATE"}, "the serial device appears (on) or disappears (off)", [this](Client& client) {
            if (words_[0] != "on" && words_[0] != "off")
                throw WrongUse("serial is on or off");
            client.call(radio_module, "SetSerial", g_variant_new("(b)", words_[0] == "on" ? TRUE : FALSE));
            output_.say(words_[0]);
        });
    add_verb("traffic", {"CHANNEL", "N"}, "N packets a second arrive on a channel", [this](Client& client) {
        client.call(radio_module, "SetTraffic",
                    g_variant_new("(ii)", number_of(words_[0]), number_of(words_[1])));
        output_.say(words_[0] + " " + words_[1]);
    });
}

void CommandLine::add_stack_verbs() {
    const auto tell = [this](const char* method) {
        return [this, method](Client& client) {
            client.call(television, method, g_variant_new("(s)", words_[0].c_str()));
            output_.say(words_[0]);
        };
    };
    add_verb("components", "the programs of the television and how they are",
             [this](Client& client) { components(client, output_); });
    add_verb("start", {"COMPONENT"}, "starts a component that has ended", tell("Start"));
    add_verb("kill", {"PROGRAM"}, "kills every process of that name inside", tell("Kill"));
    add_verb("language", {"LANGUAGE"}, "the language of the settings, for example ar", tell("SetLanguage"));
    add_verb("end", "ends the television in order", [this](Client& client) {
        client.call(television, "End");
        output_.say(std::string("the television ends"));
    });
}

void CommandLine::add_inside_verbs() {
    CLI::App* const logs = add_verb("log", "prints a log, or all of them",
                                    [this](Client& client) { status_ = log(client, words_[0], follow_); });
    logs->add_option("COMPONENT", words_[0], "which one")->option_text(" ");
    logs->add_flag("-f,--follow", follow_, "goes on with what is added");
    CLI::App* const shell_verb = app_->add_subcommand("shell", "runs a command inside, or bash");
    shell_verb->prefix_command()->fallthrough(false);
    shell_verb->callback([this, shell_verb] {
        action_ = [this, command = shell_verb->remaining()](Client& client) {
            status_ = shell(client, command);
        };
    });
    add_verb("report", {"FILE"}, "a .tar.gz with picture, screen, radio, calls, components and logs",
             [this](Client& client) {
                 report(client, words_[0]);
                 output_.say(words_[0]);
             });
}

} // namespace simulator

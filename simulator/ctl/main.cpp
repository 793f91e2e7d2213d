/** tvctl: drives a running television from outside. */
#include "base/bus.h"
#include "base/owned.h"
#include "base/process.h"
#include "base/strings.h"
#include "client/client.h"
#include "control_sockets.h"
#include "output.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <iostream>
#include <sys/ioctl.h>
#include <sys/stat.h>

namespace simulator {
namespace {

constexpr auto help_footer = R"(
A television is started in another terminal, for example with

  simulator/tv --name desk --screen 1280x720 -- build/dev/bin/velmora

and driven like this:

  tvctl see                                  Velmora | [TX Test] | RX Test | Exit
  tvctl press OK && tvctl wait "Start TX Test"
  tvctl answer ember_set_channel "code 3"    from now on the radio refuses every channel
  tvctl picture screen.png

Exits 0 on success, 1 on failure or time-out, 2 on a usage error; then one line on standard error says why.
'tvctl VERB --help' tells more of a verb.)";

/** A verb that calls one method: its words are the arguments, and it prints the answer, or the words without one. */
struct Verb {
    const char* name;
    std::vector<const char*> words; /**< "KEY..." takes all that are left */
    const char* help;
    const ObjectAddress& object;
    const char* method;
    const char* json_method = nullptr; /**< another one with --json */
    const char* said = nullptr;        /**< instead of the words */
};

const std::array<Verb, 16> verbs{{
    {"press",
     {"KEY..."},
     "presses keys: OK Back Exit Red Up Down Left Right, any X key name; Right*5 presses five times",
     ui,
     "Press"},
    {"hold", {"KEY", "MILLISECONDS"}, "holds a key down for a time", ui, "Hold"},
    {"see",
     {},
     "what is on the screen, the focus in brackets; the widgets as a tree with --json",
     ui,
     "See",
     "Screen"},
    {"focus", {}, "the name of what has the focus", ui, "Focus"},
    {"activate", {"TEXT"}, "presses a widget as a screen reader does", ui, "Activate"},
    {"radio", {}, "the state of the radio module", radio_module, "State"},
    {"calls", {}, "what the NCP host was asked", ncp_host, "Calls"},
    {"answer",
     {"METHOD", "BEHAVIOUR"},
     R"~(how the NCP host answers: normal, "code N", error, "late MS", never, dies, "reply (VALUES)")~",
     ncp_host,
     "SetBehaviour"},
    {"event", {"TEXT"}, "the NCP host says ncp_event with this text", ncp_host, "Emit"},
    {"serial", {"STATE"}, "the serial device appears (on) or disappears (off)", radio_module, "SetSerial"},
    {"traffic", {"CHANNEL", "N"}, "N packets a second arrive on a channel", radio_module, "SetTraffic"},
    {"components", {}, "the components of the television and how they are", television, "Components"},
    {"start", {"COMPONENT"}, "starts a component that has ended", television, "Start"},
    {"kill", {"PROGRAM"}, "kills a component, or every process of that name inside", television, "Kill"},
    {"language", {"LANGUAGE"}, "the language of the settings, for example ar", television, "SetLanguage"},
    {"end", {}, "shuts the television down cleanly", television, "End", nullptr, "the television ends"},
}};

int to_number(const std::string& text) {
    if (const auto number = parse_int(text))
        return *number;
    throw WrongUse("'" + text + "' is not a number");
}

/** The words as arguments of these types. */
GVariant* to_arguments(GDBusArgInfo** types, const std::vector<std::string>& words) {
    g_auto(GVariantBuilder) arguments; // a word may be refused
    g_variant_builder_init(&arguments, G_VARIANT_TYPE_TUPLE);
    for (std::size_t i = 0; types != nullptr && types[i] != nullptr; ++i) {
        const std::string type = types[i]->signature;
        if (type == "as") {
            g_variant_builder_add_value(&arguments, to_variant(words));
        } else if (type == "s") {
            g_variant_builder_add(&arguments, "s", words[i].c_str());
        } else if (type == "b") {
            if (words[i] != "on" && words[i] != "off")
                throw WrongUse("'" + words[i] + "' is not on or off");
            g_variant_builder_add(&arguments, "b", words[i] == "on" ? TRUE : FALSE);
        } else {
            const int number = to_number(words[i]);
            if (type == "u" && number < 0)
                throw WrongUse("must not be negative: " + words[i]);
            g_variant_builder_add(&arguments, type.c_str(), number);
        }
    }
    return g_variant_builder_end(&arguments);
}

/** Runs a script of this folder to its end. @return its status. */
int run_script(const char* name, std::vector<std::string> words) {
    const char* const folder = g_getenv("VELMORA_CTL");
    words.insert(words.begin(), std::string(folder != nullptr ? folder : ".") + "/" + name);
    Process script(words);
    return script.wait_for_end(std::chrono::hours(24)).value_or(1);
}

class CommandLine {
public:
    CommandLine() {
        app_.require_subcommand(1);
        app_.fallthrough();
        app_.get_formatter()->label("SUBCOMMAND", "VERB");
        app_.get_formatter()->label("Subcommands", "Verbs");
        app_.get_formatter()->label("OPTIONS", "options");
        app_.add_option("-n,--name", name_, "the television's name; else the only one that runs");
        app_.add_flag("--json", json_, "answer in JSON");
        add_others();
        add_wait();
        for (const Verb& verb : verbs)
            add_row(verb);
        app_.footer(help_footer); // last: else every verb repeats it
    }

    /** @return the exit status. @throws Failure or WrongUse. */
    int run(int argc, char** argv) {
        arguments_.assign(argv, argv + argc);
        try {
            app_.parse(argc, argv);
        } catch (const CLI::Success& help) {
            return app_.exit(help);
        } catch (const CLI::ParseError& error) {
            if (app_.get_subcommands().empty() && !app_.remaining().empty())
                throw WrongUse("there is no verb '" + app_.remaining().front() + "' (see tvctl --help)");
            throw WrongUse(std::string(error.what()) + " (see tvctl --help)");
        }
        action_();
        std::cout.flush();
        if (!std::cout)
            throw Failure("the answer cannot be written");
        return status_;
    }

private:
    CLI::App* add_verb(const std::string& name, const std::string& help,
                       const std::function<void()>& action) {
        CLI::App* const verb = app_.add_subcommand(name, help);
        verb->callback([this, action] {
            action_ = [this, action] {
                name_ = find_television(name_, limit_);
                action();
            };
        });
        return verb;
    }

    static void add_word(CLI::App* verb, const std::string& name, std::string& word) {
        verb->add_option(name, word)->option_text(" ")->required();
    }

    void add_row(const Verb& verb) {
        CLI::App* const added = add_verb(verb.name, verb.help, [this, &verb] { call(verb); });
        for (std::size_t i = 0; i < verb.words.size(); ++i)
            if (const std::string word = verb.words[i]; word.ends_with("..."))
                added->add_option(word.substr(0, word.size() - 3), more_words_)
                    ->option_text("...")
                    ->required();
            else
                add_word(added, word, words_.at(i));
    }

    void call(const Verb& verb) {
        std::vector<std::string> words = more_words_;
        if (words.empty())
            words.assign(words_.begin(), words_.begin() + static_cast<std::ptrdiff_t>(verb.words.size()));
        const char* const method = json_ && verb.json_method != nullptr ? verb.json_method : verb.method;
        const GDBusMethodInfo* const contract =
            g_dbus_interface_info_lookup_method(contract_of(verb.object.interface).interfaces[0], method);
        const Value answer = client().call(verb.object, method, to_arguments(contract->in_args, words));
        if (g_variant_n_children(answer.get()) != 0)
            print(first_of(answer).release());
        else if (!more_words_.empty())
            print(to_variant(words));
        else
            print(verb.said != nullptr ? verb.said : joined(words, " "));
    }

    void add_wait() {
        CLI::App* const verb = add_verb(
            "wait", "waits until a text is on the screen, also for a television that is not there yet",
            [this] { wait(); });
        add_word(verb, "TEXT", words_[0]);
        verb->add_option("-t,--time", seconds_, "at most so long (10)")
            ->option_text("SECONDS")
            ->check(CLI::Range(0.0, 1e6));
        verb->add_flag("--gone", gone_, "until it is not there any more");
        verb->add_flag("--focus", focus_, "until it has the focus");
        verb->add_flag("--number", number_, "until the focused widget shows this number");
        verb->parse_complete_callback(
            [this] { limit_ = std::chrono::milliseconds(static_cast<long>(seconds_ * 1000)); });
    }

    void wait() {
        if (gone_ + focus_ + number_ > 1)
            throw WrongUse("wait for one of --gone, --focus and --number");
        const auto milliseconds = static_cast<guint>(limit_.count());
        GVariant* const arguments = number_ ? g_variant_new("(iu)", to_number(words_[0]), milliseconds)
                                            : g_variant_new("(su)", words_[0].c_str(), milliseconds);
        const char* const method = number_  ? "WaitNumber"
                                   : focus_ ? "WaitFocus"
                                   : gone_  ? "WaitGone"
                                            : "Wait";
        print(first_of(client().call(ui, method, arguments)).release());
    }

    void add_others() {
        app_.add_subcommand("list", "the names of the televisions that run")->callback([this] {
            action_ = [this] {
                const auto names = running_televisions();
                if (names.empty() && !json_)
                    throw Failure("no television runs");
                print(to_variant(names));
            };
        });
        add_word(add_verb("picture", "a PNG of the screen once it stands still", [this] { picture(); }),
                 "FILE", words_[0]);
        CLI::App* const logs = add_verb("log", "prints a log, or all of them", [this] { log(); });
        logs->add_option("COMPONENT", words_[0], "which one")->option_text(" ");
        logs->add_flag("-f,--follow", follow_, "goes on with what is added");
        CLI::App* const shell_verb = add_verb("shell", "runs a command inside, or bash", [this] { shell(); });
        shell_verb->prefix_command()->fallthrough(false);
        shell_verb->parse_complete_callback([this, shell_verb] { more_words_ = shell_verb->remaining(); });
        const auto report = [this] {
            status_ = run_script("report", {name_, words_[0]});
            if (status_ == 0)
                print(words_[0]);
        };
        add_word(
            add_verb("report", "a .tar.gz with picture, screen, radio, calls, components and logs", report),
            "FILE", words_[0]);
    }

    /** Leaves no file behind when there is no picture. */
    void picture() {
        constexpr mode_t readable = 0666;
        const std::string& file = words_[0];
        const FileDescriptor target(open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, readable));
        if (!target)
            throw Failure("cannot write " + file + ": " + std::strerror(errno));
        try {
            client().call(ui, "Picture", g_variant_new("(h)", 0), hand_over({target.get()}).get());
        } catch (...) {
            struct stat found {};
            if (fstat(target.get(), &found) == 0 && S_ISREG(found.st_mode))
                unlink(file.c_str());
            throw;
        }
        print(file);
    }

    void log() {
        const auto names = to_strings(first_of(client().call(television, "Logs")).get());
        if (!words_[0].empty() && std::ranges::find(names, words_[0]) == names.end())
            throw WrongUse("there is no log of " + words_[0] + "; there are " + joined(names, ", "));
        std::vector<std::string> command{"tail", "--lines=+1"};
        if (follow_)
            command.emplace_back("--follow");
        for (const auto& name : words_[0].empty() ? names : std::vector{words_[0]})
            command.push_back("/var/log/simulator/" + name + ".log");
        run_inside(command);
    }

    /** On a terminal the command gets one of its own, so that it has job control and its keys. */
    void shell() {
        if (g_getenv("VELMORA_TERMINAL") != nullptr) {
            std::signal(SIGHUP, SIG_IGN);
            ioctl(STDIN_FILENO, TIOCNOTTY); // the command inside takes it
        } else if (isatty(STDIN_FILENO) == 1 && isatty(STDOUT_FILENO) == 1) {
            status_ = run_script("terminal", arguments_);
            return;
        }
        run_inside(more_words_.empty() ? std::vector<std::string>{"bash"} : more_words_);
    }

    void run_inside(const std::vector<std::string>& command) {
        const char* const terminal = g_getenv("TERM");
        const std::vector<std::string> environment{std::string("TERM=") +
                                                   (terminal != nullptr ? terminal : "dumb")};
        GVariant* const handles = g_variant_new_parsed("[handle 0, 1, 2]");
        const Value status = first_of(
            client().call(television, "Run",
                          g_variant_new("(@as@as@ah)", to_variant(command), to_variant(environment), handles),
                          hand_over({STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}).get()));
        status_ = g_variant_get_int32(status.get());
    }

    [[nodiscard]] Client client() const { return Client(connect_to_bus(bus_address_of(name_))); }

    void print(GVariant* value) const {
        const Value held(g_variant_ref_sink(value));
        std::cout << (json_ ? to_json(value) : to_words(value)) << '\n';
    }
    void print(const std::string& text) const { print(g_variant_new_string(text.c_str())); }

    CLI::App app_{"Drives a running simulated television.", "tvctl"};
    std::vector<std::string> arguments_;
    std::function<void()> action_;
    int status_ = 0;
    std::string name_;                   // the television's
    std::chrono::milliseconds limit_{0}; // for a television that is not there yet
    std::array<std::string, 2> words_;
    std::vector<std::string> more_words_;
    bool json_ = false;
    double seconds_ = 10;
    bool gone_ = false;
    bool focus_ = false;
    bool number_ = false;
    bool follow_ = false;
};

/** In one piece: others may write to the same terminal. */
int report_error(const std::exception& error, int status) {
    std::cerr << std::string("tvctl: ") + error.what() + '\n';
    return status;
}

} // namespace
} // namespace simulator

int main(int argc, char** argv) {
    try {
        return simulator::CommandLine().run(argc, argv);
    } catch (const simulator::WrongUse& error) {
        return simulator::report_error(error, 2);
    } catch (const std::exception& error) {
        return simulator::report_error(error, 1);
    }
}

/** tvctl: controls a running television. */
#include "base/bus.h"
#include "base/process.h"
#include "control_sockets.h"
#include "output.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <sys/ioctl.h>
#include <sys/stat.h>

namespace simulator {
namespace {

constexpr auto help_examples = R"(Start a television in another terminal, for example:

  simulator/tv --name desk --screen 1280x720 -- build/dev/bin/velmora

Then control it:

  tvctl see                                  Velmora | [TX Test] | RX Test | Exit
  tvctl press OK && tvctl wait "Start TX Test"
  tvctl answer ember_set_channel "code 3"    the radio now refuses every channel

Exits 0 on success, 1 on failure or time-out, 2 on a usage error, with one line on standard error.)";

/** Converts the words to arguments of these types. */
GVariant* to_arguments(GDBusArgInfo** types, const std::vector<std::string>& words) {
    g_auto(GVariantBuilder) arguments; // freed if a word is invalid
    g_variant_builder_init(&arguments, G_VARIANT_TYPE_TUPLE);
    for (std::size_t i = 0; types != nullptr && types[i] != nullptr; ++i) {
        const std::string type = types[i]->signature;
        if (type == "as") {
            g_variant_builder_add_value(&arguments, to_variant(words));
        } else if (type == "s") {
            g_variant_builder_add(&arguments, "s", words[i].c_str());
        } else if (type == "b") {
            if (words[i] != "on" && words[i] != "off")
                throw UsageError("'" + words[i] + "' must be on or off");
            g_variant_builder_add(&arguments, "b", words[i] == "on" ? TRUE : FALSE);
        } else {
            const auto number = parse_int(words[i]);
            if (!number || (type == "u" && *number < 0))
                throw UsageError("'" + words[i] + (number ? "' must not be negative" : "' is not a number"));
            g_variant_builder_add(&arguments, type.c_str(), *number);
        }
    }
    return g_variant_builder_end(&arguments);
}

class CommandLine {
public:
    /** @return the exit status. @throws Failure or UsageError. */
    int run(int argc, char** argv) {
        arguments_.assign(argv, argv + argc);
        parse(argc, argv, true);
        if (argc < 2)
            throw UsageError("a verb is required (see tvctl --help)");
        const auto verb = std::ranges::find(verbs, std::string_view(argv[1]), &Verb::name);
        if (verb == verbs.end())
            throw UsageError("unknown verb '" + std::string(argv[1]) + "' (see tvctl --help)");
        if (verb->run != &CommandLine::shell)
            parse(argc, argv, false);
        words_.assign(argv + 2, argv + argc);
        check_words(*verb);
        if (verb->run != &CommandLine::list) {
            const double limit = verb->run == &CommandLine::wait ? seconds_ : 0;
            name_ = find_television(name_, std::chrono::milliseconds(static_cast<long>(limit * 1000)));
        }
        (this->*verb->run)(*verb);
        std::cout.flush();
        if (!std::cout)
            throw Failure("cannot write to standard output");
        return status_;
    }

private:
    /** By default, calls `method` with the words as arguments; prints its answer, or the words if it has none. */
    struct Verb {
        const char* name;
        const char* words; /**< "[WORD]" is optional, "WORD..." takes all remaining words */
        const char* help;
        const char* interface = nullptr;
        const char* method = nullptr;
        const char* json_method = nullptr; /**< method to call with --json instead */
        void (CommandLine::*run)(const Verb& verb) = &CommandLine::call;
    };
    static const std::vector<Verb> verbs;

    [[nodiscard]] Client client() const {
        g_autofree char* path = g_dbus_address_escape_value(control_socket_of(name_).c_str());
        return Client(connect_to_bus(std::string("unix:path=") + path));
    }
    void print(const std::string& text) const { print(g_variant_new_string(text.c_str())); }

    /** Parses and removes the options. @param stops_at_verb whether to leave those after the verb. */
    void parse(int& argc, char** argv, bool stops_at_verb) {
        g_autofree char* name = nullptr;
        const std::array<GOptionEntry, 8> options{{
            {"name", 'n', 0, G_OPTION_ARG_FILENAME, &name,
             "name of the television; not needed if only one is running", "NAME"},
            {"json", 0, 0, G_OPTION_ARG_NONE, &json_, "print JSON", nullptr},
            {"time", 't', 0, G_OPTION_ARG_DOUBLE, &seconds_, "wait: time-out (default: 10)", "SECONDS"},
            {"gone", 0, 0, G_OPTION_ARG_NONE, &gone_, "wait: until TEXT has disappeared", nullptr},
            {"focus", 0, 0, G_OPTION_ARG_NONE, &focus_, "wait: until TEXT has the focus", nullptr},
            {"number", 0, 0, G_OPTION_ARG_NONE, &number_,
             "wait: until the focused widget shows the number TEXT", nullptr},
            {"follow", 'f', 0, G_OPTION_ARG_NONE, &follow_, "log: keep printing new lines", nullptr},
            {},
        }};
        std::ostringstream summary;
        summary << "Controls a running simulated television.\n\nVerbs:";
        for (const Verb& verb : verbs)
            summary << "\n  " << std::left << std::setw(24) << std::string(verb.name) + " " + verb.words
                    << verb.help;
        g_autoptr(GOptionContext) context = g_option_context_new("VERB [WORD...]");
        g_option_context_set_summary(context, summary.str().c_str());
        g_option_context_set_description(context, help_examples);
        g_option_context_add_main_entries(context, options.data(), nullptr);
        g_option_context_set_strict_posix(context, stops_at_verb ? TRUE : FALSE);
        g_autoptr(GError) error = nullptr;
        if (g_option_context_parse(context, &argc, &argv, &error) == FALSE)
            throw UsageError(std::string(error->message) + " (see tvctl --help)");
        if (name != nullptr)
            name_ = name;
        if (!(seconds_ >= 0 && seconds_ <= 1e6))
            throw UsageError("--time must be from 0 to 1000000 seconds");
        if (gone_ + focus_ + number_ > 1)
            throw UsageError("--gone, --focus and --number exclude each other");
    }

    void check_words(const Verb& verb) const {
        std::istringstream expected(verb.words);
        std::size_t count = 0;
        for (std::string word; expected >> word; ++count) {
            if (count == words_.size() && !word.starts_with('['))
                throw UsageError(word.substr(0, word.find('.')) + " is required (see tvctl --help)");
            if (word.find("...") != std::string::npos)
                return;
        }
        if (words_.size() > count)
            throw UsageError("unexpected argument " + words_[count] + " (see tvctl --help)");
    }

    void call(const Verb& verb) {
        const char* const method = json_ && verb.json_method != nullptr ? verb.json_method : verb.method;
        const GDBusMethodInfo* const contract =
            g_dbus_interface_info_lookup_method(contract_of(verb.interface).interfaces[0], method);
        const Value answer = client().call(verb.interface, method, to_arguments(contract->in_args, words_));
        if (g_variant_n_children(answer.get()) != 0)
            print(first_of(answer).release());
        else
            print(words_.empty() ? verb.name : joined(words_, " "));
    }

    void wait(const Verb& verb) {
        words_.push_back(std::to_string(static_cast<int>(seconds_ * 1000)));
        const char* const method = number_  ? "WaitNumber"
                                   : focus_ ? "WaitFocus"
                                   : gone_  ? "WaitGone"
                                            : "Wait";
        call({verb.name, verb.words, verb.help, ui, method});
    }

    void list(const Verb& /*verb*/) {
        const auto names = running_televisions();
        if (names.empty() && !json_)
            throw Failure("no television is running");
        print(to_variant(names));
    }

    /** Removes the file on failure. */
    void picture(const Verb& /*verb*/) {
        constexpr mode_t readable = 0666;
        const std::string& file = words_[0];
        const FileDescriptor target(open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, readable));
        if (!target)
            throw Failure("cannot write " + file + ": " + std::strerror(errno));
        try {
            client().call(ui, "Picture", g_variant_new("(h)", 0), {target.get()});
        } catch (...) {
            struct stat found {};
            if (fstat(target.get(), &found) == 0 && S_ISREG(found.st_mode))
                unlink(file.c_str());
            throw;
        }
        print(file);
    }

    void log(const Verb& /*verb*/) {
        const auto names = to_strings(first_of(client().call(television, "Logs")).get());
        if (!words_.empty() && std::ranges::find(names, words_[0]) == names.end())
            throw UsageError("no log named " + words_[0] + "; the logs are " + joined(names, ", "));
        std::vector<std::string> command{"tail", "--lines=+1"};
        if (follow_)
            command.emplace_back("--follow");
        for (const auto& name : words_.empty() ? names : words_)
            command.push_back("/var/log/simulator/" + name + ".log");
        run_inside(command);
    }

    /** On a terminal, gives the command its own pseudo-terminal, for job control and Ctrl-C. */
    void shell(const Verb& /*verb*/) {
        if (g_getenv("VELMORA_TERMINAL") != nullptr) {
            std::signal(SIGHUP, SIG_IGN);
            ioctl(STDIN_FILENO, TIOCNOTTY); // the command inside takes over the terminal
        } else if (isatty(STDIN_FILENO) == 1 && isatty(STDOUT_FILENO) == 1) {
            return run_script("terminal", arguments_);
        }
        run_inside(words_.empty() ? std::vector<std::string>{"bash"} : words_);
    }

    void report(const Verb& /*verb*/) {
        run_script("report", {name_, words_[0]});
        if (status_ == 0)
            print(words_[0]);
    }

    void run_inside(const std::vector<std::string>& command) {
        const char* const terminal = g_getenv("TERM");
        const std::string environment = std::string("TERM=") + (terminal != nullptr ? terminal : "dumb");
        GVariant* const handles = g_variant_new_parsed("[handle 0, 1, 2]");
        const Value status = first_of(client().call(
            television, "Run",
            g_variant_new("(@as@as@ah)", to_variant(command), to_variant({environment}), handles),
            {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}));
        status_ = g_variant_get_int32(status.get());
    }

    /** Runs a script from this folder and waits for it. */
    void run_script(const char* name, std::vector<std::string> words) {
        const char* const folder = g_getenv("VELMORA_CTL");
        words.insert(words.begin(), std::string(folder != nullptr ? folder : ".") + "/" + name);
        status_ = Process(words).wait_for_end(std::chrono::hours(24)).value_or(1);
    }

    void print(GVariant* value) const {
        const Value held(g_variant_take_ref(value));
        std::cout << (json_ ? to_json(value) : to_words(value)) << '\n';
    }

    std::vector<std::string> arguments_;
    std::vector<std::string> words_; // after the verb
    std::string name_;               // of the television
    int status_ = 0;
    gboolean json_ = FALSE;
    double seconds_ = 10;
    gboolean gone_ = FALSE;
    gboolean focus_ = FALSE;
    gboolean number_ = FALSE;
    gboolean follow_ = FALSE;
};

const std::vector<CommandLine::Verb> CommandLine::verbs{
    {"press", "KEY...",
     "press keys: OK Back Exit Red Up Down Left Right or any X key name; Right*5: five times", ui, "Press"},
    {"hold", "KEY MILLISECONDS", "hold a key down", ui, "Hold"},
    {"see", "", "print the screen, the focus in brackets; with --json all widgets as a tree", ui, "See",
     "Screen"},
    {"focus", "", "print the name of the focused widget", ui, "Focus"},
    {"activate", "TEXT", "press a widget as a screen reader does", ui, "Activate"},
    {.name = "wait",
     .words = "TEXT",
     .help = "wait until TEXT is on the screen; also waits for the television to start",
     .run = &CommandLine::wait},
    {.name = "picture",
     .words = "FILE",
     .help = "save a PNG screenshot once the screen is still",
     .run = &CommandLine::picture},
    {"radio", "", "print the state of the radio module", radio_module, "State"},
    {"calls", "", "list the calls that the NCP host has received", ncp_host, "Calls"},
    {"answer", "METHOD BEHAVIOUR",
     R"~(set how the NCP host answers: normal, "code N", error, "late MS", never, dies, "reply (VALUES)")~",
     ncp_host, "SetBehaviour"},
    {"event", "TEXT", "send ncp_event with this text", ncp_host, "Emit"},
    {"serial", "STATE", "make the serial device appear (on) or disappear (off)", radio_module, "SetSerial"},
    {"traffic", "CHANNEL N", "set the background traffic to N packets per second", radio_module,
     "SetTraffic"},
    {"components", "", "list the components and their states", television, "Components"},
    {"start", "COMPONENT", "restart a component that has exited", television, "Start"},
    {"kill", "PROGRAM", "kill the component PROGRAM, or all programs of this name in the television",
     television, "Kill"},
    {"language", "LANGUAGE", "change the language setting, for example to ar", television, "SetLanguage"},
    {"end", "", "shut the television down cleanly", television, "End"},
    {.name = "log",
     .words = "[COMPONENT]",
     .help = "print one log, or all of them",
     .run = &CommandLine::log},
    {.name = "shell",
     .words = "[COMMAND...]",
     .help = "run a command in the television (default: bash)",
     .run = &CommandLine::shell},
    {.name = "report",
     .words = "FILE",
     .help = "save screenshot, widgets, radio state, calls, components and logs as .tar.gz",
     .run = &CommandLine::report},
    {.name = "list", .words = "", .help = "list the running televisions", .run = &CommandLine::list},
};

/** Prints the error in one write, as other processes may use the same terminal. */
int report_error(const std::exception& error, int status) {
    std::cerr << std::string("tvctl: ") + error.what() + '\n';
    return status;
}

} // namespace
} // namespace simulator

int main(int argc, char** argv) {
    setlocale(LC_CTYPE, "");
    try {
        return simulator::CommandLine().run(argc, argv);
    } catch (const simulator::UsageError& error) {
        return simulator::report_error(error, 2);
    } catch (const std::exception& error) {
        return simulator::report_error(error, 1);
    }
}

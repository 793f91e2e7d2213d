#include "verbs.h"

#include "base/file_descriptor.h"
#include "base/strings.h"
#include "client/failure.h"
#include "inside.h"
#include "json.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <iostream>
#include <sys/stat.h>
#include <unistd.h>

namespace simulator {
namespace {} // namespace

void Output::say(const std::string& line) const {
    std::cout << (json ? json_of(g_variant_new_string(line.c_str())) : line) << '\n';
}

void Output::say(const std::vector<std::string>& words) const {
    std::cout << (json ? json_of(to_variant(words)) : joined(words, " ")) << '\n';
}

void see(Client& client, const Output& output) {
    if (output.json)
        std::cout << json_of(first_of(client.call(ui, "Screen")).get()) << '\n';
    else
        output.say(text_of(client.call(ui, "See")));
}

void radio(Client& client, const Output& output) {
    const Value state = client.call(radio_module, "State");
    if (output.json)
        std::cout << json_of(first_of(state).get()) << '\n';
    else
        output.say(words_of_radio(state));
}

void components(Client& client, const Output& output) {
    const Value components = client.call(television, "Components");
    std::cout << (output.json ? json_of(first_of(components).get())
                              : joined(words_of_components(components), " | "))
              << '\n';
}

std::vector<std::string> words_of_radio(const Value& state) {
    std::vector<std::string> words;
    g_autoptr(GVariantIter) each = nullptr;
    g_variant_get(state.get(), "(a{sv})", &each);
    const char* name = nullptr;
    GVariant* value = nullptr;
    while (g_variant_iter_next(each, "{&sv}", &name, &value) != FALSE) {
        const Value held(value);
        words.push_back(std::string(name) + "=" + printed(value));
    }
    return words;
}

std::vector<std::string> words_of_components(const Value& components) {
    std::vector<std::string> words;
    const Value list = first_of(components);
    GVariantIter each;
    g_variant_iter_init(&each, list.get());
    while (const Value component{g_variant_iter_next_value(&each)}) {
        const char* name = nullptr;
        const char* state = nullptr;
        g_variant_lookup(component.get(), "component", "&s", &name);
        g_variant_lookup(component.get(), "state", "&s", &state);
        words.push_back(std::string(name) + " " + state);
    }
    return words;
}

void picture(Client& client, const std::string& file) {
    constexpr mode_t readable = 0666;
    const FileDescriptor target(open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, readable));
    if (!target)
        throw Failure("cannot write " + file + ": " + std::strerror(errno));
    try {
        const DescriptorList list(g_unix_fd_list_new());
        g_unix_fd_list_append(list.get(), target.get(), nullptr);
        client.call(ui, "Picture", g_variant_new("(h)", 0), list.get());
    } catch (...) {
        struct stat found {};
        if (fstat(target.get(), &found) == 0 && S_ISREG(found.st_mode))
            unlink(file.c_str());
        throw;
    }
}

int log(Client& client, const std::string& component, bool follow) {
    const auto names = to_strings(first_of(client.call(television, "Logs")).get());
    if (!component.empty() && std::ranges::find(names, component) == names.end())
        throw WrongUse("there is no log of " + component + "; there are " + joined(names, ", "));
    std::vector<std::string> command{"tail", "--lines=+1"};
    if (follow)
        command.emplace_back("--follow");
    for (const auto& name : component.empty() ? names : std::vector{component})
        command.push_back("/var/log/simulator/" + name + ".log");
    return run_inside(client, command);
}

int shell(Client& client, const std::vector<std::string>& command) {
    const auto what = command.empty() ? std::vector<std::string>{"bash"} : command;
    const bool on_terminal = isatty(STDIN_FILENO) == 1 && isatty(STDOUT_FILENO) == 1;
    return on_terminal ? run_on_terminal(client, what) : run_inside(client, what);
}

} // namespace simulator

#include "verbs.h"

#include "common/file_descriptor.h"
#include "common/texts.h"
#include "inside.h"
#include "json.h"
#include "remote/failure.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <iostream>
#include <sys/stat.h>
#include <unistd.h>

namespace station {
namespace {

GVariant* objects_of(const Value& parts) {
    GVariantBuilder list;
    g_variant_builder_init(&list, G_VARIANT_TYPE("aa{sv}"));
    g_autoptr(GVariantIter) each = nullptr;
    g_variant_get(parts.get(), "(a(ssi))", &each);
    const char* name = nullptr;
    const char* state = nullptr;
    int process = 0;
    while (g_variant_iter_next(each, "(&s&si)", &name, &state, &process) != FALSE)
        g_variant_builder_add_parsed(&list, "{'part': <%s>, 'state': <%s>, 'process': <%i>}", name, state,
                                     process);
    return g_variant_builder_end(&list);
}

} // namespace

void Output::say(const std::string& line) const {
    std::cout << (json ? json_of(g_variant_new_string(line.c_str())) : line) << '\n';
}

void Output::say(const std::vector<std::string>& words) const {
    std::cout << (json ? json_of(list_of(words)) : joined(words, " ")) << '\n';
}

void see(Remote& remote, const Output& output) {
    if (output.json)
        std::cout << tree_of(first_of(remote.call(screen_operator, "Screen")).get()) << '\n';
    else
        output.say(text_of(remote.call(screen_operator, "See")));
}

void radio(Remote& remote, const Output& output) {
    const Value state = remote.call(radio_module, "State");
    if (output.json)
        std::cout << json_of(first_of(state).get()) << '\n';
    else
        output.say(words_of_radio(state));
}

void parts(Remote& remote, const Output& output) {
    const Value parts = remote.call(television, "Parts");
    std::cout << (output.json ? json_of(objects_of(parts)) : joined(words_of_parts(parts), " | ")) << '\n';
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

std::vector<std::string> words_of_parts(const Value& parts) {
    std::vector<std::string> words;
    g_autoptr(GVariantIter) each = nullptr;
    g_variant_get(parts.get(), "(a(ssi))", &each);
    const char* name = nullptr;
    const char* state = nullptr;
    while (g_variant_iter_next(each, "(&s&si)", &name, &state, nullptr) != FALSE)
        words.push_back(std::string(name) + " " + state);
    return words;
}

void picture(Remote& remote, const std::string& file) {
    constexpr mode_t readable = 0666;
    const FileDescriptor target(open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, readable));
    if (!target)
        throw Failure("cannot write " + file + ": " + std::strerror(errno));
    try {
        const DescriptorList list(g_unix_fd_list_new());
        g_unix_fd_list_append(list.get(), target.get(), nullptr);
        remote.call(screen_operator, "Picture", g_variant_new("(h)", 0), list.get());
    } catch (...) {
        struct stat found {};
        if (fstat(target.get(), &found) == 0 && S_ISREG(found.st_mode))
            unlink(file.c_str());
        throw;
    }
}

int log(Remote& remote, const std::string& part, bool follow) {
    const auto names = texts_of(first_of(remote.call(television, "Logs")).get());
    if (!part.empty() && std::ranges::find(names, part) == names.end())
        throw WrongUse("there is no log of " + part + "; there are " + joined(names, ", "));
    std::vector<std::string> command{"tail", "--lines=+1"};
    if (follow)
        command.emplace_back("--follow");
    for (const auto& name : part.empty() ? names : std::vector{part})
        command.push_back("/var/log/station/" + name + ".log");
    return run_inside(remote, command);
}

int shell(Remote& remote, const std::vector<std::string>& command) {
    const auto what = command.empty() ? std::vector<std::string>{"bash"} : command;
    const bool on_terminal = isatty(STDIN_FILENO) == 1 && isatty(STDOUT_FILENO) == 1;
    return on_terminal ? run_on_terminal(remote, what) : run_inside(remote, what);
}

} // namespace station

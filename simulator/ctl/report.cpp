#include "report.h"

#include "base/file_descriptor.h"
#include "base/strings.h"
#include "client/client_radio.h"
#include "client/failure.h"
#include "inside.h"
#include "json.h"
#include "verbs.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>

namespace simulator {
namespace {

namespace fs = std::filesystem;

/** A folder that goes with this. */
class ScratchFolder {
public:
    ScratchFolder() : path_(made()) {}
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ~ScratchFolder() {
        std::error_code error;
        fs::remove_all(path_, error);
    }
    [[nodiscard]] const fs::path& path() const { return path_; }

private:
    static fs::path made() {
        g_autoptr(GError) error = nullptr;
        g_autofree char* path = g_dir_make_tmp("tvctl-XXXXXX", &error);
        if (path == nullptr)
            throw Failure(error->message);
        return path;
    }
    fs::path path_;
};

class Report {
public:
    Report(Client& client, fs::path folder) : client_(client), folder_(std::move(folder)) {
        fs::create_directories(folder_ / "logs");
    }

    void collect() {
        attempt("picture.png", [this] { picture(client_, folder_ / "picture.png"); });
        attempt("screen.txt", [this] { write("screen.txt", {text_of(client_.call(ui, "See"))}); });
        attempt("screen.json",
                [this] { write("screen.json", {json_of(first_of(client_.call(ui, "Screen")).get())}); });
        attempt("radio.txt",
                [this] { write("radio.txt", words_of_radio(client_.call(radio_module, "State"))); });
        attempt("calls.txt", [this] { write("calls.txt", asked_of_host(client_)); });
        attempt("components.txt", [this] {
            write("components.txt", words_of_components(client_.call(television, "Components")));
        });
        attempt("logs", [this] { copy_logs(); });
    }

private:
    void write(const std::string& name, const std::vector<std::string>& lines) const {
        std::ofstream file(folder_ / name, std::ios::app);
        for (const auto& line : lines)
            file << line << '\n';
        if (!file.flush())
            throw Failure(std::strerror(errno));
    }

    /** One command inside for all of them, since starting one takes three milliseconds. */
    void copy_logs() {
        const FileDescriptor logs(open((folder_ / "logs").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (run_inside(client_, {"sh", "-c", "cp /var/log/simulator/*.log /dev/stdin/"}, logs.get()) != 0)
            throw Failure("they cannot all be copied");
    }

    void attempt(const std::string& what, const std::function<void()>& get) const {
        try {
            get();
        } catch (const std::exception& error) {
            write("missing.txt", {what + ": " + error.what()});
        }
    }

    Client& client_;
    fs::path folder_;
};

void pack(const fs::path& folder, const std::string& name, const std::string& file) {
    const std::array<const char*, 9> command{"tar",          "--create",   "--gzip",
                                             "--file",       file.c_str(), "--directory",
                                             folder.c_str(), name.c_str(), nullptr};
    g_autoptr(GError) error = nullptr;
    g_autoptr(GSubprocess) tar = g_subprocess_newv(command.data(), G_SUBPROCESS_FLAGS_STDERR_PIPE, &error);
    g_autofree char* said = nullptr;
    if (tar == nullptr ||
        g_subprocess_communicate_utf8(tar, nullptr, nullptr, nullptr, &said, &error) == FALSE)
        throw Failure(error->message);
    if (g_subprocess_get_successful(tar) == FALSE)
        throw Failure("cannot write " + file + ": " +
                      std::string(said).substr(0, std::string(said).find('\n')));
}

} // namespace

void report(Client& client, const std::string& file) {
    const ScratchFolder scratch;
    std::string name = fs::path(file).filename();
    name.resize(std::min(name.size(), name.find(".tar")));
    if (name.empty() || name == ".")
        throw WrongUse(file + " is not the name of a file");
    Report(client, scratch.path() / name).collect();
    pack(scratch.path(), name, file);
}

} // namespace simulator

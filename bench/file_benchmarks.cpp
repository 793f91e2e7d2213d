#include "benchmarks.h"
#include "table.h"

#include "model/fw_version_reader.h"
#include "model/secure_data.h"

#include <array>
#include <cstddef>
#include <filesystem>
#include <fstream>

namespace bench {
namespace {

constexpr const char* image = "/tmp/firmware_image";
constexpr std::uintmax_t mebibyte = 1048576;

void firmware_version(benchmark::State& state, std::uintmax_t mebibytes) {
    const simulator::StandardErrorTo log(log_file());
    std::ofstream(image).put('\0');
    std::filesystem::resize_file(image, mebibytes * mebibyte);
    for (auto _ : state)
        benchmark::DoNotOptimize(FwVersionReader().GetVersion(image));
}

void secure_read(benchmark::State& state) {
    const simulator::StandardErrorTo log(log_file());
    SecureData::StoreStringData("bench", "7.4.8");
    for (auto _ : state)
        if (SecureData::LoadStringData("bench") != "7.4.8")
            state.SkipWithError("the record cannot be read");
}

void secure_write(benchmark::State& state) {
    const simulator::StandardErrorTo log(log_file());
    for (auto _ : state)
        SecureData::StoreStringData("bench", "7.4.8");
}

template <class Function>
void add(const std::string& what, Function function) {
    benchmark::RegisterBenchmark(measurement(what, own_name).c_str(), function)
        ->UseRealTime()
        ->Unit(benchmark::kMicrosecond);
}

} // namespace

void add_file_benchmarks() {
    for (const std::uintmax_t mebibytes : {1U, 16U, 64U})
        add("version of a firmware image of " + std::to_string(mebibytes) + " MiB",
            [mebibytes](benchmark::State& state) { firmware_version(state, mebibytes); });
    add("secure store, read", secure_read);
    add("secure store, write", secure_write);
}

} // namespace bench

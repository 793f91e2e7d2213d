#include "support/secure_store.h"

#include <algorithm>
#include <array>
#include <bit>
#include <memory>
#include <sodium.h>
#include <sys/wait.h>
#include <system_error>

namespace secure_store {

using platform::SecureStorageCredential;
using platform::secure::Bytes;

namespace {

Bytes bytes_of(std::string_view text) { return {text.begin(), text.end()}; }

} // namespace

SecureStorageCredential credential(std::string_view identity) {
    std::array<char, 20> characters{};
    std::ranges::copy(identity, characters.begin());
    const auto words = std::bit_cast<std::array<std::uint32_t, 5>>(characters);
    SecureStorageCredential made;
    EXPECT_EQ(ss_init_credential(&made, words[0], words[1], words[2], words[3], words[4], 1, 0),
              platform::ok);
    return made;
}

ReadRecord read(const std::string& key, const SecureStorageCredential& by) {
    char* data = nullptr;
    std::size_t length = 0;
    const int result = ss_read(&data, &length, 0, 0, key.c_str(), &by, private_record);
    const std::unique_ptr<char, decltype(&ss_free_buffer)> owned(data, ss_free_buffer);
    EXPECT_EQ(data != nullptr, result == platform::ok);
    return {result, data != nullptr ? std::string(data, length) : ""};
}

int write(const std::string& key, const std::string& data, const SecureStorageCredential& by) {
    return ss_write(data.data(), data.size(), 0, 0, key.c_str(), &by, private_record);
}

std::string store_of(const std::string& key, const std::string& data, const SecureStorageCredential& by,
                     const std::string& machine) {
    const Bytes bytes = platform::secure::encode({platform::secure::seal(key, bytes_of(data), by, machine)});
    return {bytes.begin(), bytes.end()};
}

std::string with_fitting_hash(std::string bytes) {
    constexpr std::size_t hash_size = crypto_generichash_BYTES;
    const Bytes hashed = bytes_of(std::string_view(bytes).substr(0, bytes.size() - hash_size));
    std::array<unsigned char, hash_size> hash{};
    crypto_generichash(hash.data(), hash.size(), hashed.data(), hashed.size(), nullptr, 0);
    std::ranges::copy(hash, bytes.end() - hash_size);
    return bytes;
}

std::string with_flipped_bit(std::string bytes, std::size_t bit) {
    bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ (1 << (bit % 8)));
    return bytes;
}

std::ptrdiff_t file_count() { return std::distance(std::filesystem::directory_iterator(folder), {}); }

pid_t start_process(const std::function<bool()>& action) {
    const pid_t process = fork();
    if (process < 0)
        throw std::system_error(errno, std::generic_category(), "fork");
    if (process == 0)
        _exit(action() ? 0 : 1);
    return process;
}

bool succeeds(pid_t process) {
    int status = 0;
    return waitpid(process, &status, 0) == process && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace secure_store

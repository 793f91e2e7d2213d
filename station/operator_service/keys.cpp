#include "keys.h"

#include "common/refusal.h"

#include <charconv>

namespace station {

std::vector<std::string> written_out(const std::vector<std::string>& keys) {
    constexpr int most = 1000;
    std::vector<std::string> all;
    for (const std::string& key : keys) {
        const auto star = key.find('*');
        int times = 1;
        if (star != std::string::npos) {
            const char* const end = key.data() + key.size();
            const auto [rest, error] = std::from_chars(key.data() + star + 1, end, times);
            if (error != std::errc() || rest != end || times < 1 || times > most)
                throw Refusal("NoSuchKey", "'" + key + "' is not KEY*TIMES, 1 to 1000 times");
        }
        all.insert(all.end(), static_cast<std::size_t>(times), key.substr(0, star));
    }
    return all;
}

} // namespace station

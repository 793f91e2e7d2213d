#include "keys.h"

#include "base/bus.h"
#include "base/strings.h"

namespace simulator {

std::vector<std::string> written_out(const std::vector<std::string>& keys) {
    constexpr int most = 1000;
    std::vector<std::string> all;
    for (const std::string& key : keys) {
        const auto star = key.find('*');
        const auto times = star == std::string::npos ? 1 : parse_int(key.substr(star + 1)).value_or(0);
        if (times < 1 || times > most)
            throw Refusal("NoSuchKey", "'" + key + "' is not KEY*TIMES, 1 to 1000 times");
        all.insert(all.end(), static_cast<std::size_t>(times), key.substr(0, star));
    }
    return all;
}

} // namespace simulator

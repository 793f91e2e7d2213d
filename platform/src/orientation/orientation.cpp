#include "platform/orientation.h"

#include "files/installed_files.h"
#include "platform/log.h"
#include "settings/settings_file.h"
#include "writing_direction.h"

#include <dlfcn.h>

namespace {

/** The module's operation, which stays loaded; null when it cannot be (logged). */
decltype(&is_right_to_left) load_writing_direction() {
    void* const module = dlopen(platform::writing_direction_module().c_str(), RTLD_NOW | RTLD_LOCAL);
    void* const operation = module != nullptr ? dlsym(module, "is_right_to_left") : nullptr;
    if (operation == nullptr)
        __dlog_print(platform::LogBuffer::main, platform::LogPriority::error, "PLATFORM",
                     "every language counts as written from the left: %s", dlerror());
    return reinterpret_cast<decltype(&is_right_to_left)>(operation);
}

} // namespace

int ua_UI_orientation_get() {
    if (const std::optional<bool> mirrored = platform::settings::boolean("db/menu_widget/mirrored"))
        return *mirrored ? 1 : 0;
    const std::optional<std::string> language = platform::settings::text("db/menu_widget/language");
    if (!language)
        return 0;
    static const auto is_right_to_left = load_writing_direction();
    return is_right_to_left != nullptr && is_right_to_left(language->c_str()) ? 1 : 0;
}

#include "default_theme.h"

#include "common/installed_files.h"

#include <cstdlib>

namespace platform {

void replace_default_theme() {
    setenv("ELM_DATA_DIR", toolkit_data_folder().c_str(), 1);
    setenv("ELM_LIB_DIR", ELEMENTARY_LIBRARY_FOLDER, 1); // otherwise Elementary does not find its modules
}

} // namespace platform

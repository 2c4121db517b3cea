// SPDX-License-Identifier: MIT
#include "config/ini_file.hpp"

#include "kv/config.h"

namespace kv::config {

Located::Located(const char *path) {
    if (path != nullptr && *path != '\0') {
        path_ = path;
    } else if (kv_suche_datei(nullptr, nullptr, nullptr, main_file_) == 0) {
        path_ = main_file_;
    }
}

}  // namespace kv::config

#include "config/ini_file.hpp"

namespace kv::config {

Located::Located(const char *path) : path_(path != nullptr && *path != '\0' ? path : nullptr) {}

}  // namespace kv::config

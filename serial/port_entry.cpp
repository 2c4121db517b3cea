#include "serial/port_entry.hpp"

#include <cstdint>
#include <cstdio>

#include "kv/ini.h"
#include "kv/serial.h"
#include "kv/strings.h"

#include "platform/platform.hpp"

namespace {

constexpr char kDefaultEntry[] = "9600,n,8,1,p";
constexpr std::size_t kDirectorySize = 64;
constexpr std::size_t kKeySize = 257;  // a name of 255 characters, and the colon

}  // namespace

int32_t GetComEntry(char *entry, const char *port) noexcept {
    char directory[kDirectorySize];
    if (!kv::platform::windows_directory(directory, sizeof directory)) return 0;
    char path[kDirectorySize + sizeof "\\WIN.INI"];
    std::snprintf(path, sizeof path, "%s\\WIN.INI", directory);
    str_cpy(entry, kDefaultEntry);
    char key[kKeySize];
    if (std::snprintf(key, sizeof key, "%s:", port) >= static_cast<int>(sizeof key)) return 1;
    std::int32_t size = kv::serial::kEntryLength;
    ini_read_string(path, "Ports", key, entry, &size);
    return 1;
}

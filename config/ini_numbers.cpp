// Numbers and lists of numbers in INI files.
#include <cstdint>
#include <cstring>

#include "kv/ini.h"
#include "kv/strings.h"

namespace {

constexpr std::int32_t kValueLength = 512;

class ValueText {
  public:
    ValueText(const char *path, const char *section, const char *entry) {
        std::int32_t size = kValueLength;
        status_ = ini_read_string(path, section, entry, text_, &size);
    }

    std::int32_t status() const { return status_; }
    char *text() { return text_; }

  private:
    std::int32_t status_;
    char text_[kValueLength + 1];
};

// The pieces up to each comma; a comma at the end is followed by no piece.
template <typename Number, typename Convert>
std::int32_t read_list(ValueText value, Number *items, std::int32_t *count, Convert convert) {
    if (value.status() != INI_OK) {
        *count = 0;
        return value.status();
    }
    std::int32_t stored = 0;
    for (char *piece = value.text(); *piece != '\0';) {
        if (stored >= *count) return INI_NO_ROOM;
        char *comma = std::strchr(piece, ',');
        if (comma != nullptr) *comma = '\0';
        items[stored++] = convert(piece);
        if (comma == nullptr) break;
        piece = comma + 1;
    }
    *count = stored;
    return INI_OK;
}

}  // namespace

int32_t ini_read_long(const char *path, const char *section, const char *entry, int32_t *value) noexcept {
    ValueText text(path, section, entry);
    if (text.status() == INI_OK) *value = convert_stol(text.text());
    return text.status();
}

int32_t ini_read_double(const char *path, const char *section, const char *entry, double *value) noexcept {
    ValueText text(path, section, entry);
    if (text.status() == INI_OK) *value = convert_stod(text.text());
    return text.status();
}

int32_t ini_read_longs(const char *path, const char *section, const char *entry, int32_t *items,
                       int32_t *count) noexcept {
    return read_list(ValueText(path, section, entry), items, count, convert_stol);
}

int32_t ini_read_doubles(const char *path, const char *section, const char *entry, double *items,
                         int32_t *count) noexcept {
    return read_list(ValueText(path, section, entry), items, count, convert_stod);
}

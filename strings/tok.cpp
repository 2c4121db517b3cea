// Taking texts and lists of texts apart.
#include <cstring>

#include "kv/frame.h"
#include "kv/strings.h"

#include "strings/state.hpp"

using kv::strings::state;

namespace {

char *next_in_list(char *list) {
    char *current = list != nullptr ? list : state.list_position;
    if (current == nullptr) {
        kv_error("The str_tok was called with wrong parameter <source>.", nullptr, nullptr, "Str",
                 __LINE__);
        return nullptr;
    }
    // The position stays on the empty text that ends the list, so that later calls end there too.
    const bool at_end = *current == '\0';
    state.list_position = at_end ? current : current + std::strlen(current) + 1;
    return at_end ? nullptr : current;
}

}  // namespace

char *str_tok(char *s, const char *delims) noexcept {
    return delims != nullptr ? std::strtok(s, delims) : next_in_list(s);
}

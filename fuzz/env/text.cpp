// SPDX-License-Identifier: MIT
// The text format: whatever a text holds, what was read of it is written and read again as the same tree.
#include <algorithm>

#include "fuzz/env/support.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const bool ready = (kvfuzz::quiet(), true);
    KV_REQUIRE(ready);

    // A name that begins with a byte 0 may be empty, which no text can say again.
    std::string text(reinterpret_cast<const char *>(data), size);
    std::replace(text.begin(), text.end(), '\0', '0');

    kvfuzz::Environment first;
    const int32_t status = kvfuzz::read(text, first);
    KV_REQUIRE(status == ENV_OK || status == ENV_SYNTAX);
    if (status == ENV_SYNTAX) {
        int32_t line = 0;
        int32_t column = 0;
        KV_REQUIRE(env_get_error(&line, &column, 0, nullptr) == ENV_OK);
        KV_REQUIRE(line >= 1 && line <= 1 + std::count(text.begin(), text.end(), '\n'));
        KV_REQUIRE(column >= 1 && column <= static_cast<int32_t>(text.size()) + 1);
    }

    // And what the functions store: every text that the format can hold, deep in the tree as well.
    const std::string line = text.substr(0, text.find('\n'));
    if (line.find_first_of(" \t{") != 0 && (line.empty() || line.find_last_of(" \t") != line.size() - 1)) {
        KV_REQUIRE(env_put(first, "stored", "v", line.c_str()) == ENV_OK);
        KV_REQUIRE(env_put(first, "stored", "b@b@b@v", line.c_str()) == ENV_OK);
    }

    const std::string canonical = kvfuzz::written(first);
    kvfuzz::Environment second;
    KV_REQUIRE(kvfuzz::read(canonical, second) == ENV_OK);
    KV_REQUIRE(
        kvfuzz::same_elements(static_cast<ENV *>(first)->sections, static_cast<ENV *>(second)->sections));
    KV_REQUIRE(kvfuzz::written(second) == canonical);

    // The same over a string, whose source works on larger pieces.
    if (canonical.find('\r') == std::string::npos) {
        kvfuzz::Environment third;
        KV_REQUIRE(env_read_from_string(canonical.c_str(), third) == ENV_OK);
        KV_REQUIRE(kvfuzz::same_elements(static_cast<ENV *>(first)->sections,
                                         static_cast<ENV *>(third)->sections));
    }
    return 0;
}

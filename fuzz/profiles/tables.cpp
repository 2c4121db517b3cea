// SPDX-License-Identifier: MIT
// Tables of any content with random calls: what is read forwards and backwards and by conditions is what
// the plain model reads, and no search goes on for ever.
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "fuzz/profiles/support.hpp"
// The model is not what is looked for faults: uninstrumented, it leaves more of the time to the library.
#pragma clang attribute push(__attribute__((no_sanitize("address", "undefined", "coverage"))), \
                             apply_to = function)
#include "tests/models/profiles.hpp"
#pragma clang attribute pop

namespace {

constexpr char kHeader[] = "T S A B\n";

bool same_number(std::string_view field, double value) {
    char text[80];
    text[field.copy(text, sizeof text - 1)] = '\0';
    const double expected = field == "nil" ? -1 : std::strtod(text, nullptr);
    return expected == value || (std::isnan(expected) && std::isnan(value));
}

// Whether a result is what the model read: type, size and two values with blanks between them.
bool is_entry(std::string_view entry, std::int32_t result, std::string_view name, const double *values) {
    if (entry.empty() || result != 0) return entry.empty() && result != 0;
    const std::size_t second = entry.rfind(' ');
    const std::size_t first = entry.rfind(' ', second - 1);
    return entry.substr(0, first) == name &&
           same_number(entry.substr(first + 1, second - first - 1), values[0]) &&
           same_number(entry.substr(second + 1), values[1]);
}

struct Calls {
    PROFIL *table;
    kvtest::Model model;
    double values[2];
    char name[PROFIL_NAME_SIZE];
    char texts[2][PROFIL_FIELD_SIZE];
    std::string pattern;

    void check(std::int32_t result, const std::string &entry) {
        KV_REQUIRE(result == 0 || result == -1);
        KV_REQUIRE(std::memchr(name, '\0', sizeof name) != nullptr);
        KV_REQUIRE(is_entry(entry, result, name, values));
    }
    void call(unsigned which) {
        switch (which % 8) {
            case 0:
            case 1:
                return check(profil_next(table, values, name), model.next(4));
            case 2:
            case 3:
                return check(profil_prev(table, values, name), model.prev(4));
            case 4: {
                char greater[] = ">";
                const PROFIL_CONDITION condition = {"A", greater, 5};
                return check(profil_search_next(table, &condition, 1, "", values, name), model.search(5));
            }
            case 5:
                profil_get_exact(table, pattern.c_str(), values, name);
                break;
            case 6:
                profil_get_strings(table, pattern.c_str(), texts, name);
                break;
            default:
                break;
        }
        model.rewind();
        KV_REQUIRE(profil_reset(table, nullptr, nullptr) == 0);
    }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static const kvfuzz::TableFile file;
    static const char *const kNames[] = {"A", "B", nullptr};
    kvfuzz::Input input(data, size);
    std::string calls;
    for (int i = 0; i < 24; ++i) calls += static_cast<char>(input.byte());
    const std::string rest = input.rest();
    if (PROFIL *any = file.fill(rest, kNames); any != nullptr) profil_close(any);
    const std::string content = kHeader + rest;
    PROFIL *table = file.fill(content, kNames);
    KV_REQUIRE(table != nullptr);
    Calls run{table, kvtest::Model(content), {}, {}, {}, rest.substr(0, 20)};
    for (const char which : calls) run.call(static_cast<unsigned char>(which));
    for (int i = 0; i < 10; ++i) run.call(0);
    for (int i = 0; i < 10; ++i) run.call(2);
    return profil_close(table);
}

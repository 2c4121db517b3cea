// Tables of any content with random calls: what is read forwards and backwards and by conditions is what
// the plain model reads, and no search goes on for ever.
#include <cstring>

#include "fuzz/profiles/support.hpp"
#include "tests/profiles/model.hpp"

namespace {

constexpr char kHeader[] = "T S A B\n";

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
        KV_REQUIRE(kvtest::through_library(result, name, values) == kvtest::values_of(entry));
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
    for (int i = 0; i < 40; ++i) calls += static_cast<char>(input.byte());
    const std::string rest = input.rest();
    if (PROFIL *any = file.fill(rest, kNames); any != nullptr) profil_close(any);
    const std::string content = kHeader + rest;
    PROFIL *table = file.fill(content, kNames);
    KV_REQUIRE(table != nullptr);
    Calls run{table, kvtest::Model(content), {}, {}, {}, rest.substr(0, 20)};
    for (const char which : calls) run.call(static_cast<unsigned char>(which));
    for (int i = 0; i < 20; ++i) run.call(0);
    for (int i = 0; i < 20; ++i) run.call(2);
    return profil_close(table);
}

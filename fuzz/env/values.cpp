// SPDX-License-Identifier: MIT
// The grammar of numbers: what is accepted has the value that the C library gives it, and is accepted in
// every form that the getters know.
#include <algorithm>
#include <cmath>
#include <vector>

#include "fuzz/env/support.hpp"

namespace {

// The text up to its end mark, as strtod understands it.
std::string plain(const std::string &text) {
    std::string result = text.substr(0, text.find_first_of("\r\n"));
    std::replace(result.begin(), result.end(), 'D', 'e');
    std::replace(result.begin(), result.end(), 'd', 'e');
    return result;
}

bool same(double a, double b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

void check_single(ENV *env, const std::string &text) {
    double real = -1;
    if (env_get_double(env, "s", "v", 1, &real) == 0) {
        KV_REQUIRE(text.find_first_not_of("0123456789+-.EeDd \t\r\n") >= text.find_first_of("\r\n"));
        KV_REQUIRE(same(real, std::strtod(plain(text).c_str(), nullptr)));
        double one = 0;
        int32_t count = 1;
        KV_REQUIRE(env_get_doubles(env, "s", "v", 1, &count, &one) == 0 && count == 1 && same(one, real));
        KV_REQUIRE(env_put_double(env, "s", "w", real) == ENV_OK);
        double again = 0;
        const int32_t status = env_get_double(env, "s", "w", 1, &again);
        KV_REQUIRE(status == (std::isfinite(real) ? 0 : ENV_SYNTAX));
        if (std::isfinite(again)) KV_REQUIRE(std::fabs(again - real) <= std::fabs(real) * 1e-5);
    }
    int32_t whole = -1;
    if (env_get_long(env, "s", "v", 1, &whole) == 0) {
        KV_REQUIRE(env_get_double(env, "s", "v", 1, &real) == 0);
        KV_REQUIRE(whole == static_cast<int32_t>(std::clamp(real, -2147483648.0, 2147483647.0)));
    }
}

void check_list(ENV *env, const std::string &text) {
    std::vector<double> values(text.size() + 1);
    auto count = static_cast<int32_t>(values.size());
    const int32_t status = env_get_doubles(env, "s", "v", 1, &count, values.data());
    KV_REQUIRE(status == 0 || (status == ENV_SYNTAX && count == 0));
    if (status != 0) return;
    const std::string list = plain(text);
    KV_REQUIRE(count == 1 + std::count(list.begin(), list.end(), ','));
    if (count > 1) {
        std::vector<double> few(static_cast<size_t>(count) - 1);
        int32_t room = count - 1;
        KV_REQUIRE(env_get_doubles(env, "s", "v", 1, &room, few.data()) == ENV_TOO_SMALL && room == 0);
    }
}

void check_strings(ENV *env, const std::string &text) {
    int32_t count = 0;
    int32_t longest = 0;
    KV_REQUIRE(env_get_array_size(env, "s", "v", 1, &count, &longest) == 0);
    KV_REQUIRE(count == 1 + std::count(text.begin(), text.end(), ','));
    std::vector<std::vector<char>> buffers(static_cast<size_t>(count),
                                           std::vector<char>(static_cast<size_t>(longest) + 1));
    std::vector<char *> pointers;
    for (auto &buffer : buffers) pointers.push_back(buffer.data());
    int32_t stored = count;
    KV_REQUIRE(env_get_strings(env, "s", "v", 1, &stored, longest + 1, pointers.data()) == 0 &&
               stored == count);
    KV_REQUIRE(env_put_strings(env, "s", "w", count, pointers.data()) == ENV_OK);
    const char *joined = nullptr;
    KV_REQUIRE(env_get_reference(env, "s", "w", 1, &joined) == 0 && text == joined);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const bool ready = (kvfuzz::quiet(), true);
    KV_REQUIRE(ready);
    const std::string text = std::string(reinterpret_cast<const char *>(data), size).c_str();
    kvfuzz::Environment env;
    KV_REQUIRE(env_put(env, "s", "v", text.c_str()) == ENV_OK);
    check_single(env, text);
    check_list(env, text);
    check_strings(env, text);
    return 0;
}

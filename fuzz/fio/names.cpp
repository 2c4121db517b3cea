// SPDX-License-Identifier: MIT
// The test of names beside the rule written out plainly.
#include "kv/fio.h"

#include "fuzz/fio/support.hpp"

namespace {

bool allowed(char c) {
    return std::string(" \"+,./:;<=>[\\]^|").find(c) == std::string::npos;
}

int32_t expected(const std::string &name) {
    const std::size_t point = name.find('.');
    const std::string first = name.substr(0, point);
    const std::string second = point != name.npos ? name.substr(point + 1) : "";
    bool valid = !name.empty() && first.size() <= 8 && second.size() <= 3;
    for (const char c : first + second) valid = valid && allowed(c);
    if (!valid) return 1;
    return name.find_first_of("*?") != name.npos ? 2 : 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    std::string name(reinterpret_cast<const char *>(data), size);
    name = name.c_str();
    KV_REQUIRE(fio_test_filename(name.c_str()) == expected(name));
    return 0;
}

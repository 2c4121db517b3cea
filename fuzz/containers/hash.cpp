// SPDX-License-Identifier: MIT
// Operations on a table, its parent and its grandparent, against slots that are walked by the rules.
#include "tests/models/hash.hpp"

#include "kv.h"

#include "fuzz/support.hpp"

namespace {

// Few different numbers, the extreme ones among them.
int32_t coarse_hash(const char *key) {
    static constexpr int32_t kNumbers[] = {0, 1, 2, -3, INT32_MIN, INT32_MAX, 10, 77};
    return kNumbers[static_cast<unsigned char>(key[0]) % 8];
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    kvmodel::HashTable models[] = {
        {0, 13, coarse_hash, nullptr}, {1, 7, coarse_hash, &models[0]}, {2, 3, coarse_hash, &models[1]}};
    HASH *tables[3];
    for (int32_t i = 0; i < 3; ++i) {
        const auto slots = static_cast<int32_t>(models[i].slots.size());
        tables[i] = hash_open(i, slots, coarse_hash, i > 0 ? tables[i - 1] : nullptr);
    }
    kvfuzz::Input input(data, size);
    for (kv_value step = 1; !input.empty(); ++step) {
        const std::size_t which = input.below(3);
        kvmodel::HashTable &model = models[which];
        const std::string key(1 + input.below(2), static_cast<char>('a' + input.below(20)));
        switch (input.below(5)) {
            case 0:
            case 1:
                KV_REQUIRE(hash_put(tables[which], key.c_str(), step) == model.put(key, step));
                break;
            case 2:
                KV_REQUIRE(hash_remove_name(tables[which], key.c_str()) == model.remove(key));
                break;
            case 3: {
                const auto index = static_cast<int32_t>(input.below(15)) - 1;
                KV_REQUIRE(hash_remove_index(tables[which], index) == model.remove_index(index));
                break;
            }
            default: {
                kv_value value = 0;
                kv_value expected_value = 0;
                int32_t id = -1;
                int32_t expected_id = -1;
                KV_REQUIRE(hash_get(tables[which], key.c_str(), &value, &id) ==
                           model.get(key, expected_value, expected_id));
                KV_REQUIRE(id == expected_id && value == expected_value);
            }
        }
    }
    for (int i = 2; i >= 0; --i) hash_close(tables[i]);
    return 0;
}

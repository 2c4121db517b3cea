// SPDX-License-Identifier: MIT
// Operations on a table, its parent and its grandparent, against slots that are walked by the rules.
#include "tests/models/hash.hpp"

#include "kv.h"

#include "fuzz/support.hpp"

namespace {

// What a table without a function of its own and without a parent has.
int32_t byte_sum(const char *key) {
    int32_t sum = 0;
    for (; *key != '\0'; ++key) sum += static_cast<signed char>(*key);
    return sum;
}

// Few different numbers, the extreme ones among them.
int32_t coarse_hash(const char *key) {
    static constexpr int32_t kNumbers[] = {0, 1, 2, -3, INT32_MIN, INT32_MAX, 10, 77};
    return kNumbers[static_cast<unsigned char>(key[0]) % 8];
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    kvfuzz::Input input(data, size);
    const bool plain = size % 4 == 0;
    const hash_function function = plain ? byte_sum : coarse_hash;
    kvmodel::HashTable models[] = {
        {0, 13, function, nullptr}, {1, 7, function, &models[0]}, {2, 3, function, &models[1]}};
    HASH *tables[3];
    for (int32_t i = 0; i < 3; ++i) {  // the later ones have the parent's function
        const auto slots = static_cast<int32_t>(models[i].slots.size());
        tables[i] =
            hash_open(i, slots, plain || i > 0 ? nullptr : coarse_hash, i > 0 ? tables[i - 1] : nullptr);
    }
    for (kv_value step = 1; !input.empty(); ++step) {
        const std::size_t which = input.below(3);
        kvmodel::HashTable &model = models[which];
        const std::string key(1 + input.below(2),
                              static_cast<char>((plain ? 0xD8 : 'a') + input.below(20)));
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
    for (int i = 2; i >= 0; --i) {
        for (int32_t index = -1; index <= static_cast<int32_t>(models[i].slots.size()); ++index) {
            char *key = nullptr;
            kv_value value = -77;
            const kvmodel::HashTable::Slot *const slot = models[i].at(index);
            KV_REQUIRE(hash_get_index(tables[i], index, &key, &value) == (slot != nullptr ? index : -1));
            KV_REQUIRE(slot != nullptr ? slot->key == key && slot->value == value : key == nullptr);
            heap_free(key);
        }
        hash_reset(tables[i]);
        KV_REQUIRE(hash_get_index(tables[i], 1, nullptr, nullptr) == -1);
        hash_close(tables[i]);
    }
    return 0;
}

// Operations on a table, its parent and its grandparent, against slots that are walked by the rules.
#include <cstring>
#include <optional>
#include <vector>

#include "kv.h"

#include "fuzz/support.hpp"

namespace {

// Few different numbers, the extreme ones among them.
int32_t coarse_hash(const char *key) {
    static constexpr int32_t kNumbers[] = {0, 1, 2, -3, INT32_MIN, INT32_MAX, 10, 77};
    return kNumbers[static_cast<unsigned char>(key[0]) % 8];
}

struct Slot {
    std::string key;
    kv_value value;
};

struct Model {
    std::vector<std::optional<Slot>> slots;

    std::size_t home(const std::string &key) const {
        const int64_t hash = coarse_hash(key.c_str());
        return static_cast<std::size_t>(hash < 0 ? -hash : hash) % (slots.size() - 1) + 1;
    }
    bool holds(std::size_t at, const std::string &key) const { return slots[at] && slots[at]->key == key; }
    int32_t place(const std::string &key) const {
        const std::size_t start = home(key);
        std::size_t at = start;
        do {
            if (!slots[at] || holds(at, key)) return static_cast<int32_t>(at);
            at = (at + start) % slots.size();
        } while (at != start);
        return -1;
    }
};

int32_t find(const Model *chain, std::size_t count, const std::string &key, std::size_t &owner) {
    for (std::size_t pass = 1; pass <= 13; ++pass) {
        for (owner = 0; owner < count; ++owner) {
            const Model &model = chain[owner];
            const std::size_t at = model.home(key) * pass % model.slots.size();
            if (pass <= model.slots.size() && model.holds(at, key)) return static_cast<int32_t>(at);
        }
    }
    return -1;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static constexpr int32_t kSizes[] = {3, 7, 13};
    Model models[3];  // the innermost first
    HASH *tables[3];
    for (int32_t i = 2; i >= 0; --i) {
        models[i].slots.resize(static_cast<std::size_t>(kSizes[i]));
        tables[i] = hash_open(i, kSizes[i], coarse_hash, i < 2 ? tables[i + 1] : nullptr);
    }
    kvfuzz::Input input(data, size);
    for (kv_value step = 1; !input.empty(); ++step) {
        const std::size_t which = input.below(3);
        Model &model = models[which];
        const std::string key(1 + input.below(2), static_cast<char>('a' + input.below(20)));
        switch (input.below(5)) {
            case 0:
            case 1: {
                const int32_t place = model.place(key);
                KV_REQUIRE(hash_put(tables[which], key.c_str(), step) == place);
                if (place >= 0) model.slots[static_cast<std::size_t>(place)] = Slot{key, step};
                break;
            }
            case 2: {
                int32_t place = model.place(key);
                if (place >= 0 && !model.slots[static_cast<std::size_t>(place)]) place = -1;
                KV_REQUIRE(hash_remove_name(tables[which], key.c_str()) == place);
                if (place >= 0) model.slots[static_cast<std::size_t>(place)].reset();
                break;
            }
            case 3: {
                const auto index = static_cast<int32_t>(input.below(15)) - 1;
                const bool used =
                    index >= 0 && index < kSizes[which] && model.slots[static_cast<std::size_t>(index)];
                KV_REQUIRE(hash_remove_index(tables[which], index) == (used ? index : -1));
                if (used) model.slots[static_cast<std::size_t>(index)].reset();
                break;
            }
            default: {
                std::size_t owner = 0;
                const int32_t expected = find(models + which, 3 - which, key, owner);
                kv_value value = 0;
                int32_t id = -1;
                KV_REQUIRE(hash_get(tables[which], key.c_str(), &value, &id) == expected);
                if (expected < 0) break;
                KV_REQUIRE(id == static_cast<int32_t>(which + owner));
                KV_REQUIRE(value == models[which + owner].slots[static_cast<std::size_t>(expected)]->value);
            }
        }
    }
    for (HASH *table : tables) hash_close(table);
    return 0;
}

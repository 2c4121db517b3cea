// SPDX-License-Identifier: MIT
// A hash table as the interface describes it: slots that are walked by its rules.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "kv/containers.h"

namespace kvmodel {

struct HashTable {
    struct Slot {
        std::string key;
        kv_value value;
    };

    HashTable(int32_t number, int32_t size, hash_function function, const HashTable *enclosing)
        : id(number), slots(static_cast<std::size_t>(size)), hashfn(function), parent(enclosing) {}

    std::size_t home(const std::string &key) const {
        const int64_t hash = hashfn(key.c_str());
        return static_cast<std::size_t>(std::abs(hash)) % (slots.size() - 1) + 1;
    }
    const Slot *at(int32_t index) const {
        const auto place = static_cast<std::size_t>(index);
        return index >= 0 && place < slots.size() && slots[place] ? &*slots[place] : nullptr;
    }
    int32_t place(const std::string &key) const {
        const std::size_t start = home(key);
        std::size_t at = start;
        do {
            if (!slots[at] || slots[at]->key == key) return static_cast<int32_t>(at);
            at = (at + start) % slots.size();
        } while (at != start);
        return -1;
    }
    int32_t put(const std::string &key, kv_value value) {
        const int32_t at = place(key);
        if (at >= 0) slots[static_cast<std::size_t>(at)] = Slot{key, value};
        return at;
    }
    int32_t remove_index(int32_t index) {
        if (at(index) == nullptr) return -1;
        slots[static_cast<std::size_t>(index)].reset();
        return index;
    }
    int32_t remove(const std::string &key) { return remove_index(place(key)); }
    int32_t get(const std::string &key, kv_value &value, int32_t &found_id) const {
        bool more = true;
        for (std::size_t pass = 1; more; ++pass) {
            more = false;
            for (const HashTable *table = this; table != nullptr; table = table->parent) {
                if (pass > table->slots.size()) continue;
                more = true;
                const auto index = static_cast<int32_t>(table->home(key) * pass % table->slots.size());
                const Slot *slot = table->at(index);
                if (slot == nullptr || slot->key != key) continue;
                value = slot->value;
                found_id = table->id;
                return index;
            }
        }
        return -1;
    }

    int32_t id;
    std::vector<std::optional<Slot>> slots;
    hash_function hashfn;
    const HashTable *parent;
};

}  // namespace kvmodel

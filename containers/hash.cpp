// Hash tables with open addressing.
//
// Removing a key leaves a hole without a mark, and a lookup does not stop at one, so that by the rules a
// key that is missing has been looked for in every slot. Each slot therefore counts the keys of the table
// whose home it is: a lookup that has met them all is done. The result is the same.
#include <cstddef>
#include <cstring>
#include <limits>

#include "kv/containers.h"
#include "kv/frame.h"
#include "kv/strings.h"

#include "memory/owned.hpp"

namespace {

// A key with its value, in one block of memory.
struct Entry {
    kv_value value;
    char key[1];  // as long as it is
};

struct Slot {
    Entry *entry;               // null: empty
    std::int32_t hash;          // of the key
    std::int32_t keys_at_home;  // keys in the table whose home this slot is
};

Entry *make_entry(const char *key) {
    const std::size_t size = offsetof(Entry, key) + std::strlen(key) + 1;
    if (size > std::numeric_limits<std::uint32_t>::max()) return nullptr;
    auto *entry = static_cast<Entry *>(heap_malloc(static_cast<std::uint32_t>(size)));
    if (entry != nullptr) std::memcpy(&entry->key, key, size - offsetof(Entry, key));
    return entry;
}

// What a lookup needs of a key in one table.
struct Wanted {
    const char *key;
    std::int32_t hash;
    std::int32_t home;
};

std::int32_t byte_sum(const char *key) {
    if (key == nullptr) {
        kv_error(" NIL  parameter", nullptr, nullptr, "Hash", __LINE__);
        return 0;
    }
    std::uint32_t sum = 0;
    for (; *key != '\0'; ++key) sum += static_cast<std::uint32_t>(static_cast<signed char>(*key));
    return static_cast<std::int32_t>(sum);
}

bool is_prime(std::int32_t n) {
    if (n < 3 || n % 2 == 0) return false;
    for (std::int32_t divisor = 3; divisor <= n / divisor; divisor += 2) {
        if (n % divisor == 0) return false;
    }
    return true;
}

// The largest 32-bit number is a prime.
std::int32_t prime_from(std::int32_t size) {
    if (size < 3) return 3;
    std::int32_t prime = size | 1;
    while (!is_prime(prime)) prime += 2;
    return prime;
}

bool holds(const Slot &slot, const char *key, std::int32_t hash) {
    return slot.entry != nullptr && slot.hash == hash && std::strcmp(slot.entry->key, key) == 0;
}

}  // namespace

struct HASH {
    std::int32_t id;
    std::int32_t size;  // a prime
    Slot *slots;
    hash_function hashfn;
    HASH *parent;
    std::int32_t children;  // open tables whose parent this is

    // The running lookup.
    std::int32_t probe_position;
    std::int32_t probe_home;
    std::int32_t probe_hash;
    std::int32_t probe_left;  // keys with this home not met yet

    Slot &at(std::int32_t index) { return slots[static_cast<std::size_t>(index)]; }
    std::int32_t home_of(std::int32_t hash) const;
    std::int32_t after(std::int32_t position, std::int32_t home) const;
    std::int32_t find_place(const Wanted &wanted);
    bool start_lookup(const char *key, std::int32_t hash);
    bool probe(const char *key);
    void clear_slot(Slot &slot);
    void clear();
};

namespace {

Wanted want(const HASH &table, const char *key) {
    const std::int32_t hash = table.hashfn(key);
    return {key, hash, table.home_of(hash)};
}

}  // namespace

std::int32_t HASH::home_of(std::int32_t hash) const {
    const auto bits = static_cast<std::uint32_t>(hash);
    const std::uint32_t magnitude = hash < 0 ? 0 - bits : bits;
    return static_cast<std::int32_t>(magnitude % static_cast<std::uint32_t>(size - 1)) + 1;
}

// The slot that follows in the sequence of a home slot.
inline std::int32_t HASH::after(std::int32_t position, std::int32_t home) const {
    const std::int32_t room = size - home;
    return position < room ? position + home : position - room;
}

// The first slot of the sequence that is empty or holds the key; -1 if there is none.
std::int32_t HASH::find_place(const Wanted &wanted) {
    std::int32_t position = wanted.home;
    do {
        const Slot &slot = at(position);
        if (slot.entry == nullptr || holds(slot, wanted.key, wanted.hash)) return position;
        position = after(position, wanted.home);
    } while (position != wanted.home);
    return -1;
}

// Whether the home slot holds the key.
inline bool HASH::start_lookup(const char *key, std::int32_t hash) {
    const std::int32_t home = home_of(hash);
    const Slot &slot = at(home);
    probe_position = home;
    if (holds(slot, key, hash)) return true;
    probe_home = home;
    probe_hash = hash;
    probe_left = slot.keys_at_home;
    if (slot.entry != nullptr && home_of(slot.hash) == home) --probe_left;
    return false;
}

// Whether the next slot holds the key; some are left to be met.
inline bool HASH::probe(const char *key) {
    probe_position = after(probe_position, probe_home);
    const Slot &slot = at(probe_position);
    if (holds(slot, key, probe_hash)) return true;
    if (slot.entry != nullptr && home_of(slot.hash) == probe_home) --probe_left;
    return false;
}

void HASH::clear_slot(Slot &slot) {
    --at(home_of(slot.hash)).keys_at_home;
    heap_free(slot.entry);
    slot.entry = nullptr;
}

void HASH::clear() {
    for (std::int32_t i = 0; i < size; ++i) {
        if (at(i).entry != nullptr) clear_slot(at(i));
    }
}

HASH *hash_open(int32_t id, int32_t size, hash_function hashfn, HASH *parent) noexcept {
    const std::int32_t prime = prime_from(size);
    auto *slots = static_cast<Slot *>(heap_calloc(static_cast<std::uint32_t>(prime), sizeof(Slot)));
    if (slots == nullptr) return nullptr;
    if (hashfn == nullptr) hashfn = parent != nullptr ? parent->hashfn : byte_sum;
    HASH *table =
        kv::memory::make_owned<HASH>(HASH{id, prime, slots, hashfn, parent, 0, -1, -1, 0, 0}).release();
    if (table == nullptr) {
        heap_free(slots);
        return nullptr;
    }
    if (parent != nullptr) ++parent->children;
    return table;
}

void hash_close(HASH *table) noexcept {
    if (table == nullptr || table->children != 0) return;
    table->clear();
    heap_free(table->slots);
    if (table->parent != nullptr) --table->parent->children;
    heap_free(table);
}

void hash_reset(HASH *table) noexcept {
    if (table == nullptr) return;
    table->clear();
    table->probe_position = -1;
    table->probe_home = -1;
}

int32_t hash_put(HASH *table, const char *key, kv_value value) noexcept {
    if (table == nullptr || key == nullptr) return -1;
    const Wanted wanted = want(*table, key);
    const std::int32_t index = table->find_place(wanted);
    if (index < 0) return -1;
    Slot &slot = table->at(index);
    if (slot.entry == nullptr) {
        slot.entry = make_entry(key);
        if (slot.entry == nullptr) return -1;
        slot.hash = wanted.hash;
        ++table->at(wanted.home).keys_at_home;
    }
    slot.entry->value = value;
    return index;
}

// All first slots, then all second ones, and so on, from the table to its ancestors each time.
int32_t hash_get(HASH *table, const char *key, kv_value *value, int32_t *id) noexcept {
    if (table == nullptr || key == nullptr) return -1;
    hash_function hashfn = nullptr;
    std::int32_t hash = 0;
    HASH *found = table;
    for (; found != nullptr; found = found->parent) {
        if (found->hashfn != hashfn) {
            hashfn = found->hashfn;
            hash = hashfn(key);
        }
        if (found->start_lookup(key, hash)) break;
    }
    for (bool more = true; found == nullptr && more;) {
        more = false;
        for (HASH *each = table; each != nullptr && found == nullptr; each = each->parent) {
            if (each->probe_left == 0) continue;
            more = true;
            if (each->probe(key)) found = each;
        }
    }
    if (found == nullptr) return -1;
    if (value != nullptr) *value = found->at(found->probe_position).entry->value;
    if (id != nullptr) *id = found->id;
    return found->probe_position;
}

int32_t hash_get_index(HASH *table, int32_t index, char **key, kv_value *value) noexcept {
    if (key != nullptr) *key = nullptr;
    if (table == nullptr || index < 0 || index >= table->size) return -1;
    const Slot &slot = table->at(index);
    if (slot.entry == nullptr) return -1;
    if (key != nullptr) {
        *key = str_alloc(slot.entry->key);
        if (*key == nullptr) return -1;
    }
    if (value != nullptr) *value = slot.entry->value;
    return index;
}

int32_t hash_remove_name(HASH *table, const char *key) noexcept {
    if (table == nullptr || key == nullptr) return -1;
    return hash_remove_index(table, table->find_place(want(*table, key)));
}

int32_t hash_remove_index(HASH *table, int32_t index) noexcept {
    if (table == nullptr || index < 0 || index >= table->size || table->at(index).entry == nullptr)
        return -1;
    table->clear_slot(table->at(index));
    return index;
}

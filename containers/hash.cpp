// SPDX-License-Identifier: MIT
// Hash tables with open addressing.
//
// Removing a key leaves a hole without a mark, and a lookup does not stop at one, so that by the rules a
// key that is missing has been looked for in every slot. Each slot therefore counts the keys of the table
// whose home it is: a lookup that has met them all is done. The result is the same.
//
// A lookup writes into no table, so that threads may look into tables, and into what is a parent of
// several, at the same time.
#include <atomic>
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
    std::int32_t hash;
    char key[1];  // as long as it is
};

// What a search needs of a key in one table.
struct Wanted {
    const char *key;
    std::int32_t hash;
    std::int32_t home;
};

struct Slot {
    Entry *entry;
    std::int32_t home;          // of the key; 0, which is nobody's: empty
    std::int32_t keys_at_home;  // keys in the table whose home this slot is

    bool holds(const Wanted &wanted) const {
        return home == wanted.home && entry->hash == wanted.hash &&
               std::strcmp(entry->key, wanted.key) == 0;
    }
};

// Smaller tables are at hand in the cache.
constexpr std::int32_t kManySlots = 10000;

Entry *make_entry(const char *key, std::int32_t hash) {
    const std::size_t size = offsetof(Entry, key) + std::strlen(key) + 1;
    if (size > std::numeric_limits<std::uint32_t>::max()) return nullptr;
    auto *entry = static_cast<Entry *>(heap_malloc(static_cast<std::uint32_t>(size)));
    if (entry == nullptr) return nullptr;
    entry->hash = hash;
    std::memcpy(&entry->key, key, size - offsetof(Entry, key));
    return entry;
}

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

// Remainders by one divisor without a division (Lemire, Kaser, Kurz, "Faster remainder by direct
// computation", 2019): the fraction of a quotient, in 64 bits, times the divisor.
class Remainder {
  public:
    explicit Remainder(std::uint32_t divisor)
        : divisor_(divisor), reciprocal_(std::numeric_limits<std::uint64_t>::max() / divisor + 1) {}

    std::uint32_t of(std::uint32_t number) const {
#ifdef __SIZEOF_INT128__
        __extension__ using Wide = unsigned __int128;
        const std::uint64_t fraction = reciprocal_ * number;
        return static_cast<std::uint32_t>((Wide{fraction} * divisor_) >> 64);
#else
        return number % divisor_;
#endif
    }

  private:
    std::uint32_t divisor_;
    std::uint64_t reciprocal_;
};

}  // namespace

struct HASH {
    HASH(std::int32_t number, std::int32_t prime, Slot *slot_array, hash_function function, HASH *enclosing)
        : id(number),
          size(prime),
          home_offset(static_cast<std::uint32_t>(prime - 1)),
          slots(slot_array),
          hashfn(function),
          parent(enclosing) {}

    std::int32_t id;
    std::int32_t size;      // a prime
    Remainder home_offset;  // by size - 1
    Slot *slots;
    hash_function hashfn;
    HASH *parent;
    std::atomic<std::int32_t> children = 0;  // open tables whose parent this is

    std::int32_t give(std::int32_t index, kv_value *value_out, std::int32_t *id_out) const;
    Wanted want(const char *key) const;
    Slot &at(std::int32_t index) const { return slots[static_cast<std::size_t>(index)]; }
    std::int32_t home_of(std::int32_t hash) const;
    std::int32_t after(std::int32_t position, std::int32_t home) const;
    std::int32_t find_place(const Wanted &wanted) const;
    std::int32_t find_behind_home(const Wanted &wanted, std::int32_t &steps) const;
    void clear_slot(Slot &slot);
    void clear();
};

inline std::int32_t HASH::home_of(std::int32_t hash) const {
    const auto bits = static_cast<std::uint32_t>(hash);
    const std::uint32_t magnitude = hash < 0 ? 0 - bits : bits;
    return static_cast<std::int32_t>(home_offset.of(magnitude)) + 1;
}

inline Wanted HASH::want(const char *key) const {
    const std::int32_t hash = hashfn(key);
    return {key, hash, home_of(hash)};
}

// The slot that follows in the sequence of a home slot.
inline std::int32_t HASH::after(std::int32_t position, std::int32_t home) const {
    const std::uint32_t next = static_cast<std::uint32_t>(position) + static_cast<std::uint32_t>(home);
    const auto behind = static_cast<std::uint32_t>(size);
    return static_cast<std::int32_t>(next < behind ? next : next - behind);
}

// What a lookup gives.
inline std::int32_t HASH::give(std::int32_t index, kv_value *value_out, std::int32_t *id_out) const {
    if (value_out != nullptr) *value_out = at(index).entry->value;
    if (id_out != nullptr) *id_out = id;
    return index;
}

// The first slot of the sequence that is empty or holds the key; -1 if there is none.
std::int32_t HASH::find_place(const Wanted &wanted) const {
    std::int32_t position = wanted.home;
    do {
        const Slot &slot = at(position);
        if (slot.home == 0 || slot.holds(wanted)) return position;
        position = after(position, wanted.home);
    } while (position != wanted.home);
    return -1;
}

// The first slot of the sequence that holds the key, fewer than `steps` after the home slot; -1 if there
// is none. When it is found, `steps` becomes the number of steps to it.
std::int32_t HASH::find_behind_home(const Wanted &wanted, std::int32_t &steps) const {
    std::int32_t position = wanted.home;
    std::int32_t left =
        at(position).keys_at_home - static_cast<std::int32_t>(at(position).home == position);
    for (std::int32_t step = 1; left > 0 && step < steps; ++step) {
        position = after(position, wanted.home);
        if (at(position).home != wanted.home) continue;
        if (at(position).holds(wanted)) {
            steps = step;
            return position;
        }
        --left;
    }
    return -1;
}

void HASH::clear_slot(Slot &slot) {
    --at(slot.home).keys_at_home;
    heap_free(slot.entry);
    slot.home = 0;
}

void HASH::clear() {
    for (std::int32_t i = 0; i < size; ++i) {
        if (at(i).home != 0) clear_slot(at(i));
    }
}

namespace {

constexpr std::int32_t kAnySteps = std::numeric_limits<std::int32_t>::max();

// A table of a chain with what is wanted there.
class Link {
  public:
    Link(const HASH &table, const Wanted &wanted) : table_(&table), wanted_(wanted) {}

    const HASH *table() const { return table_; }
    const Wanted &wanted() const { return wanted_; }
    void go_on() {
        const hash_function hashfn = table_->hashfn;
        table_ = table_->parent;
        if (table_ == nullptr) return;
        if (table_->hashfn != hashfn) wanted_.hash = table_->hashfn(wanted_.key);
        wanted_.home = table_->home_of(wanted_.hash);
    }

  private:
    const HASH *table_;
    Wanted wanted_;
};

// Looks at all first slots, from the table to its ancestors, then at all second ones, and so on. The first
// that has the key is that of the table where it lies the fewest steps after its home slot.
std::int32_t get_from_chain(const HASH &table, const Wanted &wanted, kv_value *value, std::int32_t *id) {
    for (Link link(table, wanted); link.table() != nullptr; link.go_on()) {
        const std::int32_t home = link.wanted().home;
        if (link.table()->at(home).holds(link.wanted())) return link.table()->give(home, value, id);
    }
    const HASH *owner = nullptr;
    std::int32_t index = -1;
    std::int32_t steps = kAnySteps;
    for (Link link(table, wanted); link.table() != nullptr; link.go_on()) {
        const std::int32_t found = link.table()->find_behind_home(link.wanted(), steps);
        if (found < 0) continue;
        owner = link.table();
        index = found;
    }
    return owner != nullptr ? owner->give(index, value, id) : -1;
}

// A key that is not in its home slot. Apart, so that hash_get() is short.
[[gnu::noinline]] std::int32_t get_behind_home(const HASH &table, const Wanted &wanted, kv_value *value,
                                               std::int32_t *id) noexcept {
    if (table.parent != nullptr) return get_from_chain(table, wanted, value, id);
    std::int32_t steps = kAnySteps;
    const std::int32_t index = table.find_behind_home(wanted, steps);
    return index < 0 ? -1 : table.give(index, value, id);
}

}  // namespace

HASH *hash_open(int32_t id, int32_t size, hash_function hashfn, HASH *parent) noexcept {
    const std::int32_t prime = prime_from(size);
    auto *slots = static_cast<Slot *>(heap_calloc(static_cast<std::uint32_t>(prime), sizeof(Slot)));
    if (slots == nullptr) return nullptr;
    if (hashfn == nullptr) hashfn = parent != nullptr ? parent->hashfn : byte_sum;
    HASH *table = kv::memory::make_owned<HASH>(id, prime, slots, hashfn, parent).release();
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
}

int32_t hash_put(HASH *table, const char *key, kv_value value) noexcept {
    if (table == nullptr || key == nullptr) return -1;
    const Wanted wanted = table->want(key);
    const std::int32_t index = table->find_place(wanted);
    if (index < 0) return -1;
    Slot &slot = table->at(index);
    if (slot.home == 0) {
        slot.entry = make_entry(key, wanted.hash);
        if (slot.entry == nullptr) return -1;
        slot.home = wanted.home;
        ++table->at(wanted.home).keys_at_home;
    }
    slot.entry->value = value;
    return index;
}

int32_t hash_get(HASH *table, const char *key, kv_value *value, int32_t *id) noexcept {
    if (table == nullptr || key == nullptr) return -1;
    const Wanted wanted = table->want(key);
    const Slot &slot = table->at(wanted.home);
    // Of a large table, what costs is waiting for its memory: the next slot is fetched ahead.
    if (table->size > kManySlots) __builtin_prefetch(&table->at(table->after(wanted.home, wanted.home)));
    if (slot.holds(wanted)) return table->give(wanted.home, value, id);
    return get_behind_home(*table, wanted, value, id);
}

int32_t hash_get_index(HASH *table, int32_t index, char **key, kv_value *value) noexcept {
    if (key != nullptr) *key = nullptr;
    if (table == nullptr || index < 0 || index >= table->size) return -1;
    const Slot &slot = table->at(index);
    if (slot.home == 0) return -1;
    if (key != nullptr) {
        *key = str_alloc(slot.entry->key);
        if (*key == nullptr) return -1;
    }
    if (value != nullptr) *value = slot.entry->value;
    return index;
}

int32_t hash_remove_name(HASH *table, const char *key) noexcept {
    if (table == nullptr) return -1;
    if (key == nullptr) {
        if (table->hashfn == byte_sum) byte_sum(key);  // which reports it
        return -1;
    }
    return hash_remove_index(table, table->find_place(table->want(key)));
}

int32_t hash_remove_index(HASH *table, int32_t index) noexcept {
    if (table == nullptr || index < 0 || index >= table->size || table->at(index).home == 0) return -1;
    table->clear_slot(table->at(index));
    return index;
}

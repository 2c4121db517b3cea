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
    std::int32_t id;
    std::int32_t size;      // a prime
    Remainder home_offset;  // by size - 1
    Slot *slots;
    hash_function hashfn;
    HASH *parent;
    std::int32_t children;  // open tables whose parent this is

    // The running lookup of a chain of tables.
    std::int32_t probe_position;
    std::int32_t probe_home;
    std::int32_t probe_hash;
    std::int32_t probe_left;  // keys with this home not met yet

    std::int32_t give(const Slot &slot, std::int32_t index, kv_value *value_out,
                      std::int32_t *id_out) const;
    Wanted want(const char *key) const;
    Slot &at(std::int32_t index) const { return slots[static_cast<std::size_t>(index)]; }
    std::int32_t home_of(std::int32_t hash) const;
    std::int32_t after(std::int32_t position, std::int32_t home) const;
    std::int32_t find_place(const Wanted &wanted) const;
    std::int32_t find_behind_home(const Wanted &wanted) const;
    bool start_lookup(const Wanted &wanted);
    bool probe(const char *key);
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
inline std::int32_t HASH::give(const Slot &slot, std::int32_t index, kv_value *value_out,
                               std::int32_t *id_out) const {
    if (value_out != nullptr) *value_out = slot.entry->value;
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

// The first slot of the sequence behind the home slot that holds the key; -1 if there is none.
std::int32_t HASH::find_behind_home(const Wanted &wanted) const {
    std::int32_t position = wanted.home;
    std::int32_t left =
        at(position).keys_at_home - static_cast<std::int32_t>(at(position).home == position);
    while (left > 0) {
        position = after(position, wanted.home);
        if (at(position).home != wanted.home) continue;
        if (at(position).holds(wanted)) return position;
        --left;
    }
    return -1;
}

// Whether the home slot holds the key.
bool HASH::start_lookup(const Wanted &wanted) {
    const Slot &slot = at(wanted.home);
    probe_position = wanted.home;
    probe_home = wanted.home;
    probe_hash = wanted.hash;
    probe_left = slot.keys_at_home - static_cast<std::int32_t>(slot.home == wanted.home);
    return slot.holds(wanted);
}

// Whether the next slot holds the key; some are left to be met.
bool HASH::probe(const char *key) {
    probe_position = after(probe_position, probe_home);
    const Slot &slot = at(probe_position);
    if (slot.home != probe_home) return false;
    --probe_left;
    return slot.holds({key, probe_hash, probe_home});
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

// The table that has the key, at its probe_position; null if none has it. All first slots are looked at,
// then all second ones, and so on, from the table to its ancestors each time.
const HASH *find_in_chain(HASH &table, Wanted wanted) {
    hash_function hashfn = table.hashfn;
    for (HASH *each = &table; each != nullptr; each = each->parent) {
        if (each->hashfn != hashfn) {
            hashfn = each->hashfn;
            wanted.hash = hashfn(wanted.key);
        }
        wanted.home = each->home_of(wanted.hash);
        if (each->start_lookup(wanted)) return each;
    }
    for (bool more = true; more;) {
        more = false;
        for (HASH *each = &table; each != nullptr; each = each->parent) {
            if (each->probe_left == 0) continue;
            more = true;
            if (each->probe(wanted.key)) return each;
        }
    }
    return nullptr;
}

// A key that is not in its home slot. Apart, so that hash_get() is short.
[[gnu::noinline]] std::int32_t get_behind_home(HASH &table, Wanted wanted, kv_value *value,
                                               std::int32_t *id) noexcept {
    if (table.parent == nullptr) {
        const std::int32_t index = table.find_behind_home(wanted);
        return index < 0 ? -1 : table.give(table.at(index), index, value, id);
    }
    const HASH *owner = find_in_chain(table, wanted);
    if (owner == nullptr) return -1;
    return owner->give(owner->at(owner->probe_position), owner->probe_position, value, id);
}

}  // namespace

HASH *hash_open(int32_t id, int32_t size, hash_function hashfn, HASH *parent) noexcept {
    const std::int32_t prime = prime_from(size);
    auto *slots = static_cast<Slot *>(heap_calloc(static_cast<std::uint32_t>(prime), sizeof(Slot)));
    if (slots == nullptr) return nullptr;
    if (hashfn == nullptr) hashfn = parent != nullptr ? parent->hashfn : byte_sum;
    HASH *table =
        kv::memory::make_owned<HASH>(HASH{id, prime, Remainder(static_cast<std::uint32_t>(prime - 1)),
                                          slots, hashfn, parent, 0, -1, -1, 0, 0})
            .release();
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
    if (slot.holds(wanted)) return table->give(slot, wanted.home, value, id);
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

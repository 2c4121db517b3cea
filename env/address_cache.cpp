// SPDX-License-Identifier: MIT
#include "env/address_cache.hpp"

#include <cstring>
#include <new>

#include "env/bytes.hpp"
#include "env/element.hpp"
#include "env/state.hpp"

namespace kv::env {

// Behind the record stand the bytes of the section and of the path.
struct AddressCache::Record {
    Element *element;
    std::uint32_t section_length;
    std::uint32_t path_length;

    char *section() { return reinterpret_cast<char *>(this + 1); }
    char *path() { return section() + section_length; }
    bool is_of(const Address &address) {
        return section_length == address.section.size() && path_length == address.path.size() &&
               same_bytes(section(), address.section.data(), address.section.size()) &&
               same_bytes(path(), address.path.data(), address.path.size());
    }
};

namespace {

constexpr std::size_t kFirstSize = 256;
// So many searches in a row without a change: trees that are being edited are not worth it.
constexpr std::uint32_t kWarmUp = 64;
// More addresses than this do not stay in the processor's cache, which is what makes this fast.
constexpr std::uint32_t kMostAddresses = 16384;
constexpr std::size_t kLongestAddress = 256;

std::uint32_t hash_of(const Address &address) {
    constexpr std::uint32_t kMultiplier = 0x9E3779B1;
    return kv::env::hash_of(address.section) * kMultiplier ^ kv::env::hash_of(address.path);
}

}  // namespace

bool AddressCache::is_warming_up() {
    if (changes_ == state.changes) return ++searches_ < kWarmUp;
    clear();
    changes_ = state.changes;
    searches_ = 0;
    return true;
}

void AddressCache::clear() {
    places_ = {};
    words_ = {};
    count_ = 0;
}

Element *AddressCache::find_in_places(const char *section, const char *path) {
    if (changes_ != state.changes) return nullptr;
    const Address address{section, path};
    const std::uint32_t hash = hash_of(address);
    const std::size_t mask = places_.size() - 1;
    for (std::size_t at = hash & mask; places_[at].record != kFree; at = (at + 1) & mask) {
        if (places_[at].hash != hash) continue;
        auto &record = reinterpret_cast<Record &>(words_[places_[at].record]);
        prefetch(*record.element);
        if (record.is_of(address)) return record.element;
    }
    return nullptr;
}

void AddressCache::keep_searched(const char *section, const char *path, Element &element) {
    const Address address{section, path};
    if (address.section.size() + address.path.size() > kLongestAddress) return;
    if (count_ == kMostAddresses) {
        clear();
        given_up_ = true;
        return;
    }
    try {
        if ((std::size_t{count_} + 1) * 3 > places_.size() * 2) grow();
        put({hash_of(address), add_record(address, element)});
        ++count_;
    } catch (const std::bad_alloc &) {
        clear();
    }
}

std::uint32_t AddressCache::add_record(const Address &address, Element &element) {
    constexpr std::size_t kWord = sizeof(std::uint64_t);
    const std::size_t start = words_.size();
    const std::size_t bytes = sizeof(Record) + address.section.size() + address.path.size();
    words_.resize(start + (bytes + kWord - 1) / kWord);
    auto *record =
        ::new (&words_[start]) Record{&element, static_cast<std::uint32_t>(address.section.size()),
                                      static_cast<std::uint32_t>(address.path.size())};
    std::memcpy(record->section(), address.section.data(), address.section.size());
    std::memcpy(record->path(), address.path.data(), address.path.size());
    return static_cast<std::uint32_t>(start);
}

void AddressCache::grow() {
    memory::Vector<Place> old(places_.empty() ? kFirstSize : places_.size() * 2, Place{0, kFree});
    old.swap(places_);
    for (const Place &place : old) {
        if (place.record != kFree) put(place);
    }
}

void AddressCache::put(Place place) {
    const std::size_t mask = places_.size() - 1;
    std::size_t at = place.hash & mask;
    while (places_[at].record != kFree) at = (at + 1) & mask;
    places_[at] = place;
}

}  // namespace kv::env

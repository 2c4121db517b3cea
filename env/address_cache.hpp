// SPDX-License-Identifier: MIT
// The addresses that were looked up lately in an environment, each with the element that it led to.
//
// A deep path in a large tree is searched for in several tables, one after the other, and each of them
// costs cache misses. Here the whole address, byte for byte, leads to its element at once. Everything is
// forgotten when a change to any tree may lead an address elsewhere (see State::changes); what may be
// missing from the tree, and what is found at any depth, is not kept, since elements that are appended lead
// to it.
#pragma once

#include <cstdint>
#include <string_view>

#include "memory/owned.hpp"

namespace kv::env {

struct Element;

/// The parts of an address.
struct Address {
    std::string_view section;
    std::string_view path;
};

class AddressCache {
  public:
    /// The element of an address that is exactly so in here; null if there is none.
    Element *find(const char *section, const char *path) {
        return places_.empty() ? nullptr : find_in_places(section, path);
    }
    /// Keeps the outcome of an exact search, if there is room and no change was made lately.
    void keep(const char *section, const char *path, Element &element) {
        if (!given_up_ && !is_warming_up()) keep_searched(section, path, element);
    }

  private:
    struct Place {
        std::uint32_t hash;
        std::uint32_t record;  // where the record begins; kFree: no record
    };
    struct Record;
    static constexpr std::uint32_t kFree = 0xFFFFFFFF;

    bool is_warming_up();
    Element *find_in_places(const char *section, const char *path);
    void keep_searched(const char *section, const char *path, Element &element);
    std::uint32_t add_record(const Address &address, Element &element);
    void grow();
    void put(Place place);
    void clear();

    memory::Vector<Place> places_;         // a hash table, a power of two of them
    memory::Vector<std::uint64_t> words_;  // the records
    std::uint32_t count_ = 0;
    std::uint32_t searches_ = 0;  // since the last change
    std::uint64_t changes_ = 0;   // State::changes then
    bool given_up_ = false;       // there were too many addresses
};

}  // namespace kv::env

// SPDX-License-Identifier: MIT
#include "env/name_table.hpp"

#include <cstring>
#include <limits>
#include <new>

#include "env/bytes.hpp"
#include "env/element.hpp"
#include "env/ordered.hpp"
#include "memory/owned.hpp"

namespace kv::env {

namespace {

constexpr std::size_t kFirstSize = 16;
constexpr std::uint16_t kFree = 0;
constexpr std::uint16_t kRepeated = 1;  // the reference is to an Ordered
constexpr std::uintptr_t kUnit = alignof(std::max_align_t);

// Another part of the hash than the one that gives the place; never kFree.
std::uint16_t tag_of(std::uint32_t hash) {
    constexpr std::uint32_t kUsed = 0x8000;
    return static_cast<std::uint16_t>((hash >> 16 | kUsed) & ~std::uint32_t{kRepeated});
}

bool is_full(std::size_t used, std::size_t size) {
    return used * 5 > size * 4;
}

}  // namespace

Namesakes::Namesakes(void *reference, bool repeated) {
    if (repeated) {
        all_ = static_cast<Ordered *>(reference);
    } else {
        only_ = static_cast<Element *>(reference);
    }
}

Element *Namesakes::first() const {
    return all_ != nullptr ? all_->front() : only_;
}

void Namesakes::prefetch_only() const {
    if (only_ != nullptr) prefetch(*only_);
}

std::int32_t Namesakes::count() const {
    if (all_ != nullptr) return static_cast<std::int32_t>(all_->size());
    return only_ != nullptr ? 1 : 0;
}

Element *Namesakes::at(std::int32_t n) const {
    if (all_ == nullptr) return n == 1 ? only_ : nullptr;
    const auto position = static_cast<std::size_t>(n) - 1;
    return position < all_->size() ? all_->at(position) : nullptr;
}

std::int32_t Namesakes::position(const Element &element) const {
    return all_ != nullptr ? static_cast<std::int32_t>(all_->position(element)) + 1 : 1;
}

void *NameTable::reference(std::size_t place) const {
    if (wide_ != 0) return load<void *>(references() + place * sizeof(void *));
    const std::uintptr_t distance = load<std::uint32_t>(references() + place * sizeof(std::uint32_t));
    return reinterpret_cast<void *>(base_ + distance * kUnit);  // NOLINT(performance-no-int-to-ptr)
}

bool NameTable::can_refer_to(const void *target) const {
    const std::uintptr_t distance = reinterpret_cast<std::uintptr_t>(target) - base_;
    return wide_ != 0 ||
           (distance % kUnit == 0 && distance / kUnit <= std::numeric_limits<std::uint32_t>::max());
}

void NameTable::refer(std::size_t place, const void *target) {
    if (wide_ != 0) {
        std::memcpy(references() + place * sizeof target, &target, sizeof target);
        return;
    }
    const auto distance =
        static_cast<std::uint32_t>((reinterpret_cast<std::uintptr_t>(target) - base_) / kUnit);
    std::memcpy(references() + place * sizeof distance, &distance, sizeof distance);
}

Namesakes NameTable::namesakes(std::size_t place) const {
    return {reference(place), (tags()[place] & kRepeated) != 0};
}

// The place of a name, or the free place where it would go.
std::size_t NameTable::place_of(std::string_view name, std::uint32_t hash) const {
    const std::uint16_t wanted = tag_of(hash);
    for (std::size_t place = hash & mask_;; place = (place + 1) & mask_) {
        const std::uint16_t tag = tags()[place];
        if (tag == kFree) return place;
        if ((tag & ~kRepeated) != wanted) continue;
        const Namesakes found = namesakes(place);
        found.prefetch_only();
        if (found.first()->is_named(name)) return place;
    }
}

Namesakes NameTable::find(std::string_view name) const {
    const std::size_t place = place_of(name, hash_of(name));
    return tags()[place] != kFree ? namesakes(place) : Namesakes{};
}

void NameTable::allocate(std::size_t size, bool wide) {
    const std::size_t bytes = size * (sizeof(Tag) + (wide ? sizeof(void *) : sizeof(std::uint32_t)));
    if (bytes > std::numeric_limits<std::uint32_t>::max()) throw std::bad_alloc();
    auto *const block = static_cast<char *>(heap_malloc(static_cast<std::uint32_t>(bytes)));
    if (block == nullptr) throw std::bad_alloc();
    std::memset(block, 0, size * sizeof(Tag));
    block_ = block;
    mask_ = static_cast<std::uint32_t>(size - 1);
    used_ = 0;
    wide_ = wide ? 1 : 0;
}

void NameTable::build(const List &list) {
    // The window of addresses that a reference reaches lies around the first element.
    constexpr std::uintptr_t kHalfWindow = std::numeric_limits<std::uint32_t>::max() / 2 * kUnit;
    const auto first = reinterpret_cast<std::uintptr_t>(list.first);
    base_ = first > kHalfWindow ? first - kHalfWindow : first % kUnit;
    std::size_t size = kFirstSize;
    while (is_full(static_cast<std::size_t>(list.count), size)) size *= 2;
    allocate(size, false);
    for (Element *element = list.first; element != nullptr; element = element->next) insert(*element);
}

void NameTable::clear() {
    if (block_ == nullptr) return;
    for (std::size_t place = 0; place < size(); ++place) {
        if ((tags()[place] & kRepeated) != 0) {
            memory::Owned<Ordered>{static_cast<Ordered *>(reference(place))}.reset();
        }
    }
    heap_free(block_);
    *this = {};
}

// Moves everything to a table of another size or with references of another width.
void NameTable::rebuild(std::size_t size, bool wide) {
    const NameTable old = *this;
    allocate(size, wide);
    for (std::size_t from = 0; from < old.size(); ++from) {
        const Tag tag = old.tags()[from];
        if (tag == kFree) continue;
        std::size_t place = hash_of(old.namesakes(from).first()->name_view()) & mask_;
        while (tags()[place] != kFree) place = (place + 1) & mask_;
        tags()[place] = tag;
        refer(place, old.reference(from));
        ++used_;
    }
    heap_free(old.block_);
}

void NameTable::put(std::size_t place, Tag tag, void *target) {
    tags()[place] = tag;
    refer(place, target);
}

void NameTable::insert(Element &element) {
    if (is_full(used_ + 1, size())) rebuild(size() * 2, wide_ != 0);
    if (!can_refer_to(&element)) rebuild(size(), true);
    const std::string_view name = element.name_view();
    const std::uint32_t hash = hash_of(name);
    std::size_t place = place_of(name, hash);
    const Tag tag = tags()[place];
    if (tag == kFree) {
        put(place, tag_of(hash), &element);
        ++used_;
        return;
    }
    if ((tag & kRepeated) != 0) {
        static_cast<Ordered *>(reference(place))->insert(&element);
        return;
    }
    auto all = memory::make_owned<Ordered>();
    if (all == nullptr) throw std::bad_alloc();
    all->insert(static_cast<Element *>(reference(place)));
    all->insert(&element);
    if (!can_refer_to(all.get())) {
        rebuild(size(), true);
        place = place_of(name, hash);
    }
    put(place, static_cast<Tag>(tag | kRepeated), all.release());
}

void NameTable::remove(const Element &element) {
    const std::string_view name = element.name_view();
    const std::uint32_t hash = hash_of(name);
    const std::size_t place = place_of(name, hash);
    if ((tags()[place] & kRepeated) == 0) {
        free_place(place);
        return;
    }
    auto *all = static_cast<Ordered *>(reference(place));
    all->erase(element);
    if (all->size() > 1) return;
    put(place, tag_of(hash), all->front());
    memory::Owned<Ordered>{all}.reset();
}

// Frees a place and moves back what had to step over it.
void NameTable::free_place(std::size_t place) {
    for (std::size_t next = (place + 1) & mask_; tags()[next] != kFree; next = (next + 1) & mask_) {
        const std::size_t home = hash_of(namesakes(next).first()->name_view()) & mask_;
        if (((next - home) & mask_) < ((next - place) & mask_)) continue;
        put(place, tags()[next], reference(next));
        place = next;
    }
    tags()[place] = kFree;
    --used_;
}

}  // namespace kv::env

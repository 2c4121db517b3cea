#include "env/index.hpp"

#include <cstring>

namespace kv::env {

namespace {

constexpr std::size_t kFirstTableSize = 32;

// Eight bytes at a time: multiply, and fold the high half of the product into the low one.
std::uint32_t hash_of(std::string_view name) {
    constexpr std::uint64_t kMultiplier = 0x9E3779B97F4A7C15;  // 2^64 divided by the golden ratio
    std::uint64_t hash = name.size() * kMultiplier;
    const char *at = name.data();
    std::size_t rest = name.size();
    while (rest > 0) {
        std::uint64_t word = 0;
        const std::size_t count = rest < sizeof word ? rest : sizeof word;
        if (count == sizeof word) {
            std::memcpy(&word, at, sizeof word);
        } else {
            for (std::size_t i = 0; i < count; ++i) word = word << 8 | static_cast<unsigned char>(at[i]);
        }
        hash = (hash ^ word) * kMultiplier;
        hash ^= hash >> 32;
        at += count;
        rest -= count;
    }
    return static_cast<std::uint32_t>(hash ^ hash >> 15);
}

}  // namespace

Index::~Index() {
    for (const Slot &slot : slots_) {
        if (slot.repeated) memory::Owned<Ordered>{slot.all}.reset();
    }
}

// The place of a name, or the free place where it would go.
Index::Slot &Index::find(std::string_view name, std::uint32_t hash) {
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t place = hash & mask;; place = (place + 1) & mask) {
        Slot &slot = slots_[place];
        if (slot.only == nullptr) return slot;
        if (slot.hash == hash && first_of(slot)->is_named(name)) return slot;
    }
}

Element *Index::named(std::string_view name, std::int32_t n) {
    if (slots_.empty()) build_names();
    const Slot &slot = find(name, hash_of(name));
    if (slot.only == nullptr) return nullptr;
    if (!slot.repeated) return n == 1 ? slot.only : nullptr;
    const auto position = static_cast<std::size_t>(n) - 1;
    return position < slot.all->size() ? slot.all->at(position) : nullptr;
}

std::int32_t Index::count_named(std::string_view name) {
    if (slots_.empty()) build_names();
    const Slot &slot = find(name, hash_of(name));
    if (slot.only == nullptr) return 0;
    return slot.repeated ? static_cast<std::int32_t>(slot.all->size()) : 1;
}

std::int32_t Index::occurrence(const Element &element) {
    if (slots_.empty()) build_names();
    const std::string_view name = element.name();
    const Slot &slot = find(name, hash_of(name));
    return slot.repeated ? static_cast<std::int32_t>(slot.all->position(element)) + 1 : 1;
}

Element *Index::at(std::int32_t position) {
    Element *found = nullptr;
    if (remembered_ != nullptr && position == remembered_position_) return remembered_;
    if (remembered_ != nullptr && position == remembered_position_ + 1) {
        found = remembered_->next;
    } else if (position == list_.count) {
        found = list_.last;
    } else {
        if (!ordered_) build_order();
        found = order_.at(static_cast<std::size_t>(position) - 1);
    }
    remember(found, position);
    return found;
}

void Index::remember(Element *element, std::int32_t position) {
    remembered_ = element;
    remembered_position_ = position;
}

void Index::linked(Element &element) {
    if (element.next != nullptr) remembered_ = nullptr;
    if (!numbered_) return;
    number_linked(element);
    if (!slots_.empty()) add_name(element);
    if (ordered_) order_.insert(&element);
}

void Index::unlinking(const Element &element) {
    remembered_ = nullptr;
    if (!slots_.empty()) remove_name(element);
    if (ordered_) order_.erase(element);
}

void Index::number() {
    if (!numbered_) number_all(list_);
    numbered_ = true;
}

void Index::build_names() {
    number();
    std::size_t size = kFirstTableSize;
    while (size * 3 / 4 < static_cast<std::size_t>(list_.count)) size *= 2;
    slots_.resize(size);
    for (Element *element = list_.first; element != nullptr; element = element->next) add_name(*element);
}

void Index::build_order() {
    number();
    for (Element *element = list_.first; element != nullptr; element = element->next)
        order_.insert(element);
    ordered_ = true;
}

void Index::grow() {
    memory::Vector<Slot> old(slots_.size() * 2);
    old.swap(slots_);
    const std::size_t mask = slots_.size() - 1;
    for (const Slot &slot : old) {
        if (slot.only == nullptr) continue;
        std::size_t place = slot.hash & mask;
        while (slots_[place].only != nullptr) place = (place + 1) & mask;
        slots_[place] = slot;
    }
}

void Index::add_name(Element &element) {
    if ((used_ + 1) * 5 > slots_.size() * 4) grow();
    const std::string_view name = element.name();
    const std::uint32_t hash = hash_of(name);
    Slot &slot = find(name, hash);
    if (slot.only == nullptr) {
        slot.hash = hash;
        slot.only = &element;
        ++used_;
        return;
    }
    if (!slot.repeated) {
        auto all = memory::make_owned<Ordered>();
        if (all == nullptr) throw std::bad_alloc();
        all->insert(slot.only);
        slot.all = all.release();
        slot.repeated = true;
    }
    slot.all->insert(&element);
}

void Index::remove_name(const Element &element) {
    const std::string_view name = element.name();
    Slot &slot = find(name, hash_of(name));
    if (!slot.repeated) {
        remove_slot(static_cast<std::size_t>(&slot - slots_.data()));
        return;
    }
    slot.all->erase(element);
    if (slot.all->size() > 1) return;
    const memory::Owned<Ordered> all(slot.all);
    slot.only = all->front();
    slot.repeated = false;
}

// Frees a place and moves back what had to step over it.
void Index::remove_slot(std::size_t place) {
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t next = (place + 1) & mask; slots_[next].only != nullptr; next = (next + 1) & mask) {
        const std::size_t home = slots_[next].hash & mask;
        if (((next - home) & mask) < ((next - place) & mask)) continue;
        slots_[place] = slots_[next];
        place = next;
    }
    slots_[place] = Slot{};
    --used_;
}

void drop_index(List &list) {
    if (list.index == nullptr) return;
    memory::Owned<Index>{list.index}.reset();
    list.index = nullptr;
}

}  // namespace kv::env

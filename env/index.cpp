#include "env/index.hpp"

namespace kv::env {

namespace {

constexpr std::size_t kFirstTableSize = 16;

}  // namespace

Element *Slot::at(std::int32_t n) const {
    if (!repeated) return n == 1 ? only : nullptr;
    const auto position = static_cast<std::size_t>(n) - 1;
    return position < all->size() ? all->at(position) : nullptr;
}

Index::~Index() {
    for (const Slot &slot : slots_) {
        if (slot.repeated) memory::Owned<Ordered>{slot.all}.reset();
    }
    list_.slots = nullptr;
}

Slot &Index::slot_of(std::string_view name, std::uint32_t hash) {
    return slots_[static_cast<std::size_t>(&find_slot(list_, name, hash) - slots_.data())];
}

void Index::use_table(memory::Vector<Slot> &table) {
    slots_.swap(table);
    list_.slots = slots_.data();
    list_.slot_mask = static_cast<std::uint32_t>(slots_.size() - 1);
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
    memory::Vector<Slot> table(size);
    use_table(table);
    for (Element *element = list_.first; element != nullptr; element = element->next) add_name(*element);
}

void Index::build_order() {
    number();
    for (Element *element = list_.first; element != nullptr; element = element->next)
        order_.insert(element);
    ordered_ = true;
}

void Index::grow() {
    memory::Vector<Slot> table(slots_.size() * 2);
    use_table(table);
    const std::size_t mask = slots_.size() - 1;
    for (const Slot &slot : table) {  // the old one now
        if (slot.only == nullptr) continue;
        std::size_t place = slot.hash & mask;
        while (slots_[place].only != nullptr) place = (place + 1) & mask;
        slots_[place] = slot;
    }
}

void Index::add_name(Element &element) {
    if ((used_ + 1) * 5 > slots_.size() * 4) grow();
    const std::string_view name = element.name_view();
    const std::uint32_t hash = hash_of(name);
    Slot &slot = slot_of(name, hash);
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
    const std::string_view name = element.name_view();
    Slot &slot = slot_of(name, hash_of(name));
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

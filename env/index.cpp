// SPDX-License-Identifier: MIT
#include "env/index.hpp"

namespace kv::env {

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
    if (list_.names.is_built()) list_.names.insert(element);
    if (ordered_) order_.insert(&element);
}

void Index::unlinking(const Element &element) {
    remembered_ = nullptr;
    if (list_.names.is_built()) list_.names.remove(element);
    if (ordered_) order_.erase(element);
}

void Index::number() {
    if (!numbered_) number_all(list_);
    numbered_ = true;
}

void Index::build_names() {
    number();
    list_.names.build(list_);
}

void Index::build_order() {
    number();
    for (Element *element = list_.first; element != nullptr; element = element->next)
        order_.insert(element);
    ordered_ = true;
}

void drop_index(List &list) {
    if (list.index == nullptr) return;
    list.names.clear();
    memory::Owned<Index>{list.index}.reset();
    list.index = nullptr;
}

}  // namespace kv::env

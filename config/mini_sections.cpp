// SPDX-License-Identifier: MIT
#include "config/mini_sections.hpp"

#include <cstring>
#include <new>

namespace kv::mini {

namespace {

constexpr std::size_t kLongestText = INT32_MAX / 2;

// A block for the record and what follows it.
template <typename Record>
memory::Owned<Record> make_record(std::size_t behind) {
    if (behind > INT32_MAX) throw std::bad_alloc();
    void *const block = heap_malloc(static_cast<std::uint32_t>(sizeof(Record) + behind));
    if (block == nullptr) throw std::bad_alloc();
    return memory::Owned<Record>(::new (block) Record());
}

char *copy(char *to, std::string_view text) {
    if (!text.empty()) std::memmove(to, text.data(), text.size());
    to[text.size()] = '\0';
    return to;
}

template <typename Record>
char *name_behind(Record &record, std::string_view name) {
    record.name = copy(reinterpret_cast<char *>(&record + 1), name);
    record.name_size = static_cast<std::uint32_t>(name.size()) & INT32_MAX;
    record.owns_name = 0;
    return record.name + name.size() + 1;
}

}  // namespace

Entry::~Entry() {
    if (owns_name) heap_free(name);
    if (owns_value) heap_free(value);
}

void Entry::set(std::string_view text) {
    if (text.size() > kLongestText) throw std::bad_alloc();
    const auto size = static_cast<std::uint32_t>(text.size());
    if (size > room) {
        char *const block = copy(memory::Allocator<char>().allocate(text.size() + 1), text);
        if (owns_value) heap_free(value);
        value = block;
        room = size & INT32_MAX;
        owns_value = 1;
    } else {
        copy(value, text);
    }
    value_size = size;
}

Section::~Section() {
    if (owns_name) heap_free(name);
}

Entry &Section::append(std::string_view key, std::string_view text) {
    if (key.size() > kLongestText || text.size() > kLongestText) throw std::bad_alloc();
    memory::Owned<Entry> entry = make_record<Entry>(key.size() + text.size() + 2);
    entry->value = copy(name_behind(*entry, key), text);
    entry->value_size = static_cast<std::uint32_t>(text.size());
    entry->room = entry->value_size & INT32_MAX;
    entry->owns_value = 0;
    return entries.append(std::move(entry));
}

memory::Owned<Section> Sections::make(std::string_view name) {
    if (name.size() > kLongestText) throw std::bad_alloc();
    memory::Owned<Section> section = make_record<Section>(name.size() + 1);
    name_behind(*section, name);
    return section;
}

Section &Sections::add(memory::Owned<Section> section) {
    return section->name_size == 0 ? prepend(std::move(section)) : append(std::move(section));
}

}  // namespace kv::mini

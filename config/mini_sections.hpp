// SPDX-License-Identifier: MIT
// The sections of one INI file in memory: the records, and how they come to be.
#pragma once

#include <cstdint>
#include <string_view>

#include "config/mini_list.hpp"
#include "memory/owned.hpp"
#include "platform/text_lines.hpp"

namespace kv::mini {

/// The most characters of a line that are taken as one.
inline constexpr std::size_t kLongestLine = 512;

/// An entry is one block: the record, the key, the value. A value that outgrows its room gets a block of
/// its own.
struct Entry : Node {
    Entry() = default;
    Entry(const Entry &) = delete;
    Entry &operator=(const Entry &) = delete;
    ~Entry();

    std::string_view text() const { return {value, value_size}; }
    /// Puts a copy of the text, which may be a part of the old value, in the place of the value. Throws
    /// std::bad_alloc, nothing being changed.
    void set(std::string_view text);

    char *value;
    std::uint32_t value_size;
    std::uint32_t room : 31;  ///< the longest value that fits
    std::uint32_t owns_value : 1;
};

/// The name is empty for the unnamed section.
struct Section : Node {
    Section() = default;
    Section(const Section &) = delete;
    Section &operator=(const Section &) = delete;
    ~Section();

    /// Appends an entry; throws std::bad_alloc.
    Entry &append(std::string_view key, std::string_view text);

    List<Entry> entries;
    bool modified = false;  ///< a value was written that the file does not have yet
    bool merged = false;    ///< what is being made for the file has it
    bool created = false;   ///< by a write, since the file did not have it then: nothing was loaded
};

/// The unnamed section, if it is there, stands in front.
class Sections : public List<Section> {
  public:
    /// An empty section, which add() takes; throws std::bad_alloc.
    static memory::Owned<Section> make(std::string_view name);
    Section &add(memory::Owned<Section> section);
};

// ---- Loading. An exhausted heap throws std::bad_alloc; sections that are not read to their end, which
// ---- an exhausted heap or a read error leaves, are dropped.

/// Loads all sections.
void load_all(platform::TextLines &lines, Sections &sections);
/// Loads the first section of this name; null if there is none.
Section *load_one(platform::TextLines &lines, std::string_view name, Sections &sections);

/// Loads those sections that were created by writes and are in the file by now: the file's entries come
/// first, with the values that were written to them.
void load_created(std::string_view file, Sections &sections);

// ---- The bytes of the file after an update. These throw std::bad_alloc.

/// The file from the sections alone.
memory::String rewritten(Sections &sections);
/// The old file with the loaded sections in their places and the new ones at the end.
memory::String merged(std::string_view old, Sections &sections);
/// To be called when the file has what was made last.
void mark_saved(Sections &sections);

}  // namespace kv::mini

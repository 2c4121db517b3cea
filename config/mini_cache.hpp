// SPDX-License-Identifier: MIT
// A cache: what the functions of the family share.
#pragma once

#include <cstdint>
#include <new>

#include "kv/frame.h"
#include "kv/mini.h"

#include "config/mini_sections.hpp"
#include "memory/owned.hpp"

struct MINI {
    kv::memory::String dir;
    kv::memory::String name;  // empty: there is no file
    std::int32_t flags = 0;
    kv::mini::Sections sections;

    bool is_read_only() const { return (flags & MINI_READONLY) != 0; }
};

namespace kv::mini {

/// The path of a cache's file; empty if the cache has none.
class Path {
  public:
    static constexpr std::size_t kSize = 256;

    explicit Path(const MINI &cache);

    const char *text() const { return text_; }

  private:
    char text_[kSize];
};

/// A file's lines, as far as this family reads them.
class FileLines {
  public:
    explicit FileLines(const char *path);

    bool is_open() const { return open_; }
    /// True if there is no file.
    bool is_missing() const { return file_.missing(); }
    platform::TextLines &lines() { return lines_; }

  private:
    platform::InputFile file_;
    bool open_;
    char buffer_[16384];
    platform::TextLines lines_;
};

/// A section argument without the blanks around it; NIL counts as empty.
std::string_view section_name(const char *section);

/// INI_OK with the loaded section of this name, which is loaded from the file if need be; INI_NO_SECTION;
/// INI_FAILED if the file cannot be read. Throws std::bad_alloc.
std::int32_t find_section(MINI &cache, std::string_view name, Section *&section);

/// Runs what loads or writes. An exhausted heap ends the process.
template <typename Function>
std::int32_t or_exit(Function function) noexcept {
    try {
        return function();
    } catch (const std::bad_alloc &) {
        kv_exit("Insufficient of memory.", nullptr, nullptr, "Mini", __LINE__);
    }
}

}  // namespace kv::mini

// SPDX-License-Identifier: MIT
// What an INI file says, read once and by the library's own rules.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kvtool {

/// The text of an INI file. Names are compared as the library does it: of sections and keys of one name the
/// first one counts, and a section's name of blanks alone is the unnamed section.
class IniDocument {
  public:
    struct Entry {
        std::string_view key;
        std::string_view value;
    };
    struct Section {
        std::string_view name;  ///< empty for the unnamed section
        std::vector<Entry> entries;
    };

    /// Reads a file, or standard input. Throws Failure (kFile). What the library cannot read of it is told
    /// on standard error.
    explicit IniDocument(const std::string &file);
    IniDocument(const IniDocument &) = delete;
    IniDocument &operator=(const IniDocument &) = delete;

    /// What messages call the file.
    const std::string &name() const { return name_; }
    /// The value of an entry, if there is one; all else that the file holds is passed over.
    std::optional<std::string_view> find(std::string_view section, std::string_view key) const;
    /// All sections in their order; the unnamed one is the first if it has entries.
    std::vector<Section> sections() const;
    /// One of them. Throws Failure (kNotFound) with the nearest name if there is none; the unnamed section
    /// is always there.
    Section section(std::string_view name) const;
    /// Throws Failure (kNotFound) with the nearest name.
    [[noreturn]] void fail_not_found(std::string_view section, std::string_view key) const;

  private:
    std::string name_;
    std::string text_;
};

/// The path of the main configuration file, empty if there is none.
std::string main_ini_file();

/// "[section] key", as messages call an entry or, without a key, a section.
std::string describe_ini(std::string_view section, const char *key);

}  // namespace kvtool

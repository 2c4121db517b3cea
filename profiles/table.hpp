// SPDX-License-Identifier: MIT
// The handle of a table, and the steps by which it is read.
#pragma once

#include <cstdint>
#include <string_view>

#include "kv/profiles.h"

#include "memory/owned.hpp"
#include "platform/text_window.hpp"

namespace kv::profiles {

inline constexpr std::int32_t kBlockLines = 16;
inline constexpr std::size_t kLongestField = PROFIL_FIELD_SIZE - 1;
inline constexpr std::size_t kFirstValue = 2;  // the columns before it are the name
inline constexpr std::int32_t kEnd = -1;       // as a character: the end of the file
inline constexpr std::int64_t kUnknown = -1;   // as a position
inline constexpr std::int32_t kNoColumn = -1;

/// What a value is compared by; in any other way, everything will do.
enum class Comparison : std::int32_t {
    any = -1,
    greater = 0,
    less = 1,
    greater_or_equal = 2,
    less_or_equal = 3,
    equal = 4,
    different = 5
};

/// A stored condition.
struct Check {
    std::int32_t column;
    Comparison comparison;
    double value;
};

/// The two fields of an entry's name.
struct EntryName {
    char type[PROFIL_FIELD_SIZE];
    char size[PROFIL_FIELD_SIZE];
};

}  // namespace kv::profiles

struct PROFIL {
    kv::platform::TextWindow file;
    kv::memory::String path;
    std::int64_t data_start;
    std::int32_t block;                                   // of 16 lines, in which the reading stands
    std::int32_t line_in_block;                           // the line there that is read
    std::int64_t line_starts[kv::profiles::kBlockLines];  // of this block's lines, as far as they are known
    std::int32_t requested;                               // columns that the application wants
    std::int32_t columns;
    kv::memory::String header;                     // the names, each with a zero byte after it
    kv::memory::Vector<std::int32_t> column_slot;  // where the application wants a column's value
    kv::memory::Vector<double> column_factor;
    kv::memory::Vector<unsigned char> column_has_condition;
    kv::memory::Vector<kv::profiles::Check> conditions;
    std::int32_t current;  // the character that was read last; a blank after a move
    // Where the blocks begin, as far as stepping back has asked for it. A block starts after 16 more line
    // feeds, whether or not the lines that they end are empty.
    kv::memory::Vector<std::int64_t> block_starts;
    char long_field[PROFIL_FIELD_SIZE];  // the text of a field that does not stand in the buffer as a whole
};

namespace kv::profiles {

// ---- The header

/// Reads the header. False if the file has none. Throws std::bad_alloc.
bool read_header(PROFIL &table);
/// The number of the first column of that name, or kNoColumn.
std::int32_t find_column(const PROFIL &table, const char *name);
void select_columns(PROFIL &table, const char *const *names, const double *factors);

// ---- Lines and fields

/// Goes to the first entry.
void rewind(PROFIL &table);
/// Goes to the entry before the one last read; false, and to the first entry, if there is none.
bool step_back(PROFIL &table);

/// Reads a field. The text is valid until the next one is read; empty at the end of the file.
std::string_view read_field(PROFIL &table);
/// Reads fields without looking at them.
void drop_fields(PROFIL &table, std::size_t count);
/// Reads to the end of an entry's line, and one character more.
void skip_line(PROFIL &table);

// ---- Entries

/// Reads the name of the next entry; false at the end of the file.
bool read_name(PROFIL &table, EntryName &name);
/// Writes a full name.
void write_name(const EntryName &name, char *full_name);
/// The value of a column's field.
double value_of(const PROFIL &table, std::size_t column, std::string_view field);
/// Reads the values of the entry whose name has been read.
void read_values(PROFIL &table, double *values);
/// Makes all values -1.
void clear_values(const PROFIL &table, double *values);

}  // namespace kv::profiles

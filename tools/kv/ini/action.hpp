// SPDX-License-Identifier: MIT
// What the actions of `kv ini` share. Each file defines the actions of one group.
#pragma once

#include <string>
#include <vector>

#include "kv/ini.h"

#include "tools/kv/actions.hpp"
#include "tools/kv/ini/document.hpp"

namespace kvtool {

extern const Action kIniGet;
extern const Action kIniSections;
extern const Action kIniKeys;
extern const Action kIniList;
extern const Action kIniSet;
extern const Action kIniDelete;
extern const Action kIniRename;
extern const Action kIniEdit;

/// The operands after the file, which is the first one if there is one more than the action needs and no
/// --file; else the one that --file names, or the main configuration file.
struct IniOperands {
    std::string file;
    std::vector<std::string> words;
    bool file_given;
};

/// `wanted` is the number of words. Throws Failure: kUsage at a word too many, kFile if there is no main
/// configuration file.
IniOperands ini_operands(std::string_view command, const Arguments &arguments, std::size_t wanted);

/// Throws Failure (kNotFound) for what the document has not: with the nearest name, or with the right
/// command if the first operand was meant to be a file.
[[noreturn]] void fail_not_found(std::string_view command, const IniDocument &document,
                                 const IniOperands &given, const std::string &section,
                                 const std::string &key);

}  // namespace kvtool

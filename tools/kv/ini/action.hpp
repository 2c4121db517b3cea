// What the actions of `kv ini` share. Each file defines the actions of one group.
#pragma once

#include <string>
#include <vector>

#include "kv/ini.h"

#include "tools/kv/actions.hpp"

namespace kvtool {

extern const Action kIniGet;
extern const Action kIniSections;
extern const Action kIniKeys;
extern const Action kIniList;
extern const Action kIniSet;
extern const Action kIniDelete;
extern const Action kIniRename;
extern const Action kIniEdit;

/// The file that --file names, else the main configuration file. Throws Failure (kFile) if none is found.
std::string ini_file(const Arguments &arguments);

/// "[section] key", as messages call an entry or a section.
std::string describe_ini(const std::string &section, const char *key);

/// Throws Failure for a status that a read or a change of the file gave; nothing for INI_OK.
void require_ini(int32_t status, const std::string &file, const std::string &section, const char *key);

/// Throws Failure (kFile), and says why, if the file cannot be read.
void require_readable(const std::string &file);

}  // namespace kvtool

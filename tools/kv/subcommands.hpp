// SPDX-License-Identifier: MIT
// The subcommands of the program; each has a file or a folder of its own name.
#pragma once

#include "tools/kv/actions.hpp"

namespace kvtool {

const ActionTable &calc_table();     ///< expressions
const ActionTable &env_table();      ///< environment files
const ActionTable &ini_table();      ///< INI files
const ActionTable &ls_table();       ///< directories
const ActionTable &mat_table();      ///< tables of mats
const ActionTable &plot_table();     ///< plot files to a serial port
const ActionTable &profile_table();  ///< tables of profiles
const ActionTable &record_table();   ///< record files
const ActionTable &scan_table();     ///< tokens
const ActionTable &timer_table();    ///< times commands
const ActionTable &where_table();    ///< the configuration search

}  // namespace kvtool

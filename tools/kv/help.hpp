// SPDX-License-Identifier: MIT
// The help, made from the tables.
#pragma once

#include "tools/kv/actions.hpp"

namespace kvtool {

void print_help();
void print_help(const ActionTable &table);
void print_help(const ActionTable &table, const Action &action);

/// "-o, --output FILE"
std::string forms_of(const Option &option);

}  // namespace kvtool

// SPDX-License-Identifier: MIT
// The manual page, made from the tables.
#pragma once

namespace kvtool {

/// `kv manual`: prints kv.1 for man; the exit code.
int print_manual();

}  // namespace kvtool

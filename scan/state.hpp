// SPDX-License-Identifier: MIT
// All process-wide state of the scanner: the trace that all tracing scanners share.
#pragma once

#include <cstdint>

#include "kv/scan.h"

#include "memory/owned.hpp"
#include "platform/platform.hpp"

namespace kv::scan {

struct State {
    std::int32_t tracing;         // open scanners that trace
    platform::ReportFile *trace;  // owned; null: not open
};

inline constinit State state{};

/// Counts one more tracing scanner and returns its number.
std::int32_t start_trace();
/// Counts one less.
void end_trace();
/// Writes a token's line.
void trace(const SCANNER &scanner, std::int32_t kind, const SCAN_TOKEN &token);

}  // namespace kv::scan

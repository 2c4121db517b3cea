// SPDX-License-Identifier: MIT
// What checks of an environment file have to say of it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tools/kv/env/document.hpp"

namespace kvtool {

enum class Severity : std::uint8_t { note, warning, error };

struct Finding {
    std::size_t offset;  ///< in the file
    Severity severity;
    std::uint32_t node;  ///< the element that it is about; EnvDocument::kNone: none
    std::string message;
};

using Findings = std::vector<Finding>;

/// What the format accepts in a file and nobody means, as warnings.
void find_oddities(const EnvDocument &site, Findings &findings);

/// What is not as in the maker's file. `free` has the words of patterns, see `kv env check --help`;
/// elements that it names, and all below them, may be there whatever the maker's file has. Nothing is said
/// of an element that there is a finding about. Throws Failure (kUsage) at a pattern that is none.
void find_differences(const EnvDocument &site, const EnvDocument &maker,
                      const std::vector<std::string> &free, Findings &findings);

}  // namespace kvtool

// SPDX-License-Identifier: MIT
// File name patterns as DOS understands them.
#pragma once

namespace kv::platform {

bool has_wildcards(const char *name);

/// True if the whole name matches, without regard to the case of ASCII letters. "*" is any characters, "?"
/// any one but a point, or none at the end of a name or of the part before a point. "*.*" is every name,
/// and a point before a wildcard or at the end of the pattern also stands for no point at the end of the
/// name, so that "*." is every name without an extension.
bool matches_pattern(const char *pattern, const char *name);

}  // namespace kv::platform

// SPDX-License-Identifier: MIT
// The drives: where each one is in the file system, which one is current, and where one is on each.
#pragma once

#include "platform/posix/path_builder.hpp"

namespace kv::platform::posix {

/// The drive that is the file system's root; its current directory is that of the process.
inline constexpr char kNativeDrive = 'Z';

/// Appends the host directory of a drive (a capital letter), without a slash at its end; that of Z is the
/// empty text. False if there is no such drive.
bool append_drive(char drive, PathBuilder &host);

/// Reads the current directory of a drive, as it stands after the drive's host directory: "/a/b", or ""
/// or "/" for the root. False if it cannot be read.
bool read_directory(char drive, HostPath &directory);

/// The drive of a path, a capital letter: the one it names, else the current one. The path then begins
/// after the designation.
char take_drive(std::string_view &path);

}  // namespace kv::platform::posix

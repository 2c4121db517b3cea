// Why a file cannot be read.
#pragma once

#include <string>

namespace kvtool {

struct Unreadable {
    std::string text;  ///< "FILE: is a directory", "FILE: cannot be read: No such file or directory"
    bool missing;      ///< there is no such file
};

/// Of a file that the library could not read; it tells only that, and the system's own word says why.
Unreadable why_unreadable(const std::string &file);

}  // namespace kvtool

// SPDX-License-Identifier: MIT
// How the program ends, and the one way in which its parts give up.
#pragma once

#include <string>

namespace kvtool {

enum ExitCode {
    kDone = 0,
    kNotFound = 1,  ///< no such element, not of the wanted type, or a check failed
    kUsage = 2,     ///< the command line asks for something that cannot be done
    kFile = 3       ///< a file cannot be read or written, or breaks the format
};

/// Thrown by whatever cannot go on; main() writes the text to standard error.
struct Failure {
    ExitCode code;
    std::string text;
};

}  // namespace kvtool

// SPDX-License-Identifier: MIT
// Standard output and standard error at a console that has characters of its own, as that of Windows.
#pragma once

namespace kvtool {

/// While it exists, what is written to std::cout and std::cerr appears at such a console as the characters
/// that it stands for, whatever the console's code page is. Files and pipes get the bytes as they are.
class ConsoleStreams {
  public:
    ConsoleStreams();
    ConsoleStreams(const ConsoleStreams &) = delete;
    ConsoleStreams &operator=(const ConsoleStreams &) = delete;
    ~ConsoleStreams();
};

}  // namespace kvtool

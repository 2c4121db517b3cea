// Who is at the other end of a standard stream.
#pragma once

#include <cstdio>

namespace kvtool {

/// True if the stream is a person's terminal.
bool is_terminal(std::FILE *stream);

}  // namespace kvtool

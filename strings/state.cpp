#include "strings/state.hpp"

namespace kv::strings {

constinit State state{};  // ready before any code runs

}  // namespace kv::strings

#include "clock/state.hpp"

namespace kv::clock {

constinit State state{};

}  // namespace kv::clock

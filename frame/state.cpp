// SPDX-License-Identifier: MIT
#include "frame/state.hpp"

namespace kv::frame {

// Ready before any code runs: nothing is prepared when the library is loaded.
constinit State state{.log_lock = platform::Lock::of(platform::Lock::Kind::log),
                      .trace_lock = platform::Lock::of(platform::Lock::Kind::trace),
                      .trace = {},
                      .trace_depth = 0,
                      .trace_off = false,
                      .error_output = 1,
                      .application_name = "Unknown Application",
                      .first_exit_node = nullptr,
                      .last_exit_node = nullptr,
                      .running_exit_node = nullptr,
                      .platform_code = 0};

}  // namespace kv::frame

// SPDX-License-Identifier: MIT
// The sibling library of the serial output: there is none here.
#include "platform/platform.hpp"

namespace kv::platform {

PlotHelperResult run_plot_helper(const PlotHelper &, const char *, const char *, std::int32_t &) {
    return PlotHelperResult::not_loaded;
}

}  // namespace kv::platform

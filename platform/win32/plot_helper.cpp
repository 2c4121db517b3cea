// SPDX-License-Identifier: MIT
// The sibling library of the serial output, which exists for Win32s alone.
#include <windows.h>

#include "platform/platform.hpp"

namespace kv::platform {

namespace {

using Initialize = BOOL(WINAPI *)(HINSTANCE, DWORD);
using Plot = std::int32_t (*)(const char *, const char *);

template <typename Function>
Function entry(HMODULE library, const char *name) {
    return reinterpret_cast<Function>(reinterpret_cast<void *>(GetProcAddress(library, name)));
}

}  // namespace

PlotHelperResult run_plot_helper(const PlotHelper &helper, const char *path, const char *port,
                                 std::int32_t &result) {
    const HMODULE library = LoadLibraryA(helper.library);
    if (library == nullptr) return PlotHelperResult::not_loaded;
    const auto initialize = entry<Initialize>(library, helper.initialize);
    const auto plot = entry<Plot>(library, helper.plot);
    if (initialize == nullptr || plot == nullptr || initialize(library, 1) == 0) {
        return PlotHelperResult::not_initialized;
    }
    result = plot(path, port);
    FreeLibrary(library);
    return PlotHelperResult::done;
}

}  // namespace kv::platform

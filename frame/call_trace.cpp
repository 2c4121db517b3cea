// SPDX-License-Identifier: MIT
// The application's call trace.
#include <algorithm>
#include <mutex>
#include <string_view>

#include "kv/frame.h"

#include "frame/log.hpp"
#include "frame/state.hpp"
#include "platform/platform.hpp"

using kv::frame::state;
using kv::frame::TraceEntry;

namespace {

constexpr char kMismatchCaption[] = "MISSMATCH WITH BEGIN-END-BRACKET:\n";
constexpr char kMismatchText[] = "  END without BEGIN!\n\n";

TraceEntry &innermost() {
    return state.trace[static_cast<std::size_t>(state.trace_depth - 1)];
}

// False if the trace has overflowed.
bool enter(std::string_view name) {
    const std::lock_guard guard(state.trace_lock);
    if (state.trace_off) return true;
    if (state.trace_depth > 0 && name == innermost().name) {
        ++innermost().count;
        return true;
    }
    if (state.trace_depth == kv::frame::kTraceEntries) {
        state.trace_off = true;
        return false;
    }
    ++state.trace_depth;
    TraceEntry &entry = innermost();
    *std::copy(name.begin(), name.end(), entry.name) = '\0';
    entry.count = 1;
    return true;
}

// False if there is nothing to leave.
bool leave() {
    const std::lock_guard guard(state.trace_lock);
    if (state.trace_off) return true;
    if (state.trace_depth == 0) return false;
    if (--innermost().count == 0) --state.trace_depth;
    return true;
}

}  // namespace

void kv_begin(const char *name) noexcept {
    const std::string_view whole = name != nullptr ? name : "";
    if (enter(whole.substr(0, kv::frame::kTraceNameLength))) return;
    kv_error("kv_begin: runtime stack overflow", nullptr, nullptr, "Kv", __LINE__);
}

void kv_end() noexcept {
    if (leave()) return;
    const kv::platform::KeptErrors errors;
    kv::platform::message_box(kMismatchText, kMismatchCaption, kv::platform::BoxOwner::focused_window);
    kv::frame::LogEntry entry;
    entry.text("> ");
    entry.text(kMismatchCaption);
    entry.text(kMismatchText);
}

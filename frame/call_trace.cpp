// The application's call trace.
#include <algorithm>
#include <cstring>
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

}  // namespace

void kv_begin(const char *name) noexcept {
    if (state.trace_off) return;
    const std::string_view kept =
        std::string_view(name != nullptr ? name : "").substr(0, kv::frame::kTraceNameLength);
    if (state.trace_depth > 0 && kept == innermost().name) {
        ++innermost().count;
        return;
    }
    if (state.trace_depth == kv::frame::kTraceEntries) {
        state.trace_off = true;
        kv_error("kv_begin: runtime stack overflow", nullptr, nullptr, "Kv", __LINE__);
        return;
    }
    ++state.trace_depth;
    TraceEntry &entry = innermost();
    *std::copy(kept.begin(), kept.end(), entry.name) = '\0';
    entry.count = 1;
}

void kv_end() noexcept {
    if (state.trace_off) return;
    if (state.trace_depth > 0) {
        if (innermost().count > 1) {
            --innermost().count;
        } else {
            --state.trace_depth;
        }
        return;
    }
    kv::platform::message_box(kMismatchText, kMismatchCaption, kv::platform::BoxOwner::focused_window);
    kv::frame::LogEntry entry;
    entry.text("> ");
    entry.text(kMismatchCaption);
    entry.text(kMismatchText);
}

// SPDX-License-Identifier: MIT
#include "env/state.hpp"

#include "kv/frame.h"
#include "kv/memory.h"

namespace kv::env {

namespace {

constexpr std::array<bool, 256> only(unsigned char c) {
    std::array<bool, 256> set{};
    set[c] = true;
    return set;
}

platform::Lock &environment_lock = platform::Lock::of(platform::Lock::Kind::environments);

}  // namespace

constinit State state{.delimiter = "@",
                      .previous_delimiter = "",
                      .is_delimiter = only('@'),
                      .iteration = {},
                      .syntax_error = {},
                      .first_handle = nullptr,
                      .writing = nullptr,
                      .changes = 0};

Lock::Lock() : taken_(kv_get_win32() >= 3) {
    if (taken_) environment_lock.lock();
}

Lock::~Lock() {
    if (taken_) environment_lock.unlock();
}

void end_iteration() {
    heap_free(state.iteration.section);
    heap_free(state.iteration.path);
    state.iteration = {};
}

}  // namespace kv::env

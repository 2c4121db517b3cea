// SPDX-License-Identifier: MIT
// The functions that run before the process ends.
#include "kv/frame.h"
#include "kv/memory.h"

#include "frame/state.hpp"

using kv::frame::ExitNode;
using kv::frame::state;

namespace {

int32_t register_function(kv_exit_function fn) {
    if (fn == nullptr) return -1;
    auto *node = static_cast<ExitNode *>(heap_malloc(sizeof(ExitNode)));
    if (node == nullptr) {
        kv_error("endprog_fkt: out of space", nullptr, nullptr, "Endprog", __LINE__);
        return -1;
    }
    *node = {fn, nullptr};
    (state.last_exit_node != nullptr ? state.last_exit_node->next : state.first_exit_node) = node;
    state.last_exit_node = node;
    return 0;
}

// Calls the functions from `node` on. A function may register more, which run too, or free the list,
// which ends the walk.
void run_from(ExitNode *node) {
    ExitNode *outer = state.running_exit_node;
    while (node != nullptr) {
        state.running_exit_node = node;
        node->fn();
        if (state.running_exit_node == nullptr) return;
        node = node->next;
    }
    state.running_exit_node = outer;
}

int32_t run_one(kv_exit_function fn) {
    if (fn == nullptr) return -1;
    for (const ExitNode *node = state.first_exit_node; node != nullptr; node = node->next) {
        if (node->fn == fn) {
            fn();
            return 0;
        }
    }
    return -1;
}

void free_list() {
    ExitNode *node = state.first_exit_node;
    state.first_exit_node = state.last_exit_node = state.running_exit_node = nullptr;
    while (node != nullptr) {
        ExitNode *next = node->next;
        heap_free(node);
        node = next;
    }
}

}  // namespace

int32_t endprog_fkt(int32_t mode, kv_exit_function fn) noexcept {
    switch (mode) {
        case KV_ENDPROG_REGISTER:
            return register_function(fn);
        case KV_ENDPROG_RUN_ALL:
            run_from(state.first_exit_node);
            return 0;
        case KV_ENDPROG_RUN_ONE:
            return run_one(fn);
        case KV_ENDPROG_FREE:
            free_list();
            return 0;
        default:
            return -1;
    }
}

int32_t kv_atexit() noexcept {
    const bool nested = state.running_exit_node != nullptr;
    run_from(nested ? state.running_exit_node->next : state.first_exit_node);
    return endprog_fkt(KV_ENDPROG_FREE, nullptr);
}

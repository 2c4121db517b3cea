// SPDX-License-Identifier: MIT
// Stacks: a chain whose first node is the top.
#include "kv/containers.h"

#include "containers/chain.hpp"

using namespace kv::containers;

struct STACK {
    Node *top;
};

STACK *stack_open() noexcept {
    return kv::memory::make_owned<STACK>().release();
}

void stack_close(STACK *stack) noexcept {
    if (stack == nullptr) return;
    free_chain(stack->top);
    heap_free(stack);
}

void stack_push(STACK *stack, kv_value value) noexcept {
    if (stack == nullptr) return;
    if (Node *node = make_node(value, stack->top)) stack->top = node;
}

kv_value stack_pop(STACK *stack) noexcept {
    return stack != nullptr ? take_first(stack->top) : 0;
}

kv_value stack_get(const STACK *stack) noexcept {
    return stack != nullptr ? first_value(stack->top) : 0;
}

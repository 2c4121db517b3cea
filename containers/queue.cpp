// SPDX-License-Identifier: MIT
// Queues: a chain that grows at its tail.
#include "kv/containers.h"

#include "containers/chain.hpp"

using namespace kv::containers;

struct QUEUE {
    Node *head;
    Node *tail;  // the node posted last; means nothing while there is no head
};

QUEUE *queue_open() noexcept {
    return kv::memory::make_owned<QUEUE>().release();
}

void queue_close(QUEUE *queue) noexcept {
    free_chain(queue->head);
    heap_free(queue);
}

void queue_post(QUEUE *queue, kv_value value) noexcept {
    Node *node = make_node(value, nullptr);
    if (node == nullptr) return;
    (queue->head != nullptr ? queue->tail->next : queue->head) = node;
    queue->tail = node;
}

kv_value queue_get(QUEUE *queue) noexcept {
    return take_first(queue->head);
}

kv_value queue_look(const QUEUE *queue) noexcept {
    return first_value(queue->head);
}

void queue_clear(QUEUE *queue) noexcept {
    free_chain(queue->head);
}

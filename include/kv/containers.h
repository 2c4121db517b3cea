/* Containers: stacks and queues of values.
 *
 * A container owns its nodes and its handle, never what the values point to. It belongs to one thread
 * at a time. Nothing here reports anything. */
#ifndef KV_CONTAINERS_H
#define KV_CONTAINERS_H

#include "kv/types.h"

KV_BEGIN_DECLS

/* ---- Stacks: the value pushed last comes out first. Every function accepts NIL for the stack. */

typedef struct STACK STACK;

/** @return a new, empty stack, released with stack_close(); NIL when the heap is exhausted */
KV_API STACK *stack_open(void) KV_NOEXCEPT;

/** Releases a stack and what is left on it. NIL is ignored. */
KV_API void stack_close(STACK *stack) KV_NOEXCEPT;

/** Puts a value on top. The value is dropped when the stack is NIL or the heap is exhausted; the stack
 *  is unchanged then. */
KV_API void stack_push(STACK *stack, kv_value value) KV_NOEXCEPT;

/** Removes the top value.
 *
 *  @return the value; 0 when the stack is NIL or empty, which a stored 0 cannot be told from */
KV_API kv_value stack_pop(STACK *stack) KV_NOEXCEPT;

/** The top value, left in place; otherwise as stack_pop(). */
KV_API kv_value stack_get(const STACK *stack) KV_NOEXCEPT;

/* ---- Queues: the value posted first comes out first. The queue must not be NIL. */

typedef struct QUEUE QUEUE;

/** @return a new, empty queue, released with queue_close(); NIL when the heap is exhausted */
KV_API QUEUE *queue_open(void) KV_NOEXCEPT;

/** Releases a queue and what is left in it. */
KV_API void queue_close(QUEUE *queue) KV_NOEXCEPT;

/** Appends a value. When the heap is exhausted the value is dropped and the queue is unchanged. */
KV_API void queue_post(QUEUE *queue, kv_value value) KV_NOEXCEPT;

/** Removes the value that was posted first.
 *
 *  @return the value; 0 when the queue is empty, which a stored 0 cannot be told from */
KV_API kv_value queue_get(QUEUE *queue) KV_NOEXCEPT;

/** The value that was posted first, left in place; otherwise as queue_get(). */
KV_API kv_value queue_look(const QUEUE *queue) KV_NOEXCEPT;

/** Empties a queue, which stays usable. */
KV_API void queue_clear(QUEUE *queue) KV_NOEXCEPT;

KV_END_DECLS

#endif

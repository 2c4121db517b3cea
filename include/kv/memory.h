/* Memory: the allocation wrappers that every block of the library comes from.
 *
 * Blocks that the library hands out for the caller to free (str_alloc(), env_write_to_string(), ...)
 * are freed with heap_free() or heap_smart_free(). None of these functions reports an exhausted heap:
 * they return NIL. They keep no state of their own and may be called from any thread. */
#ifndef KV_MEMORY_H
#define KV_MEMORY_H

#include "kv/types.h"

KV_BEGIN_DECLS

/** Allocates a block.
 *
 *  @param size  bytes
 *  @return the block, its content undefined, aligned for every type; NIL when the heap is exhausted.
 *          The caller frees it with heap_free(). */
KV_API void *heap_malloc(uint32_t size) KV_NOEXCEPT;

/** Allocates a block of count x size bytes, all zero; otherwise as heap_malloc(). */
KV_API void *heap_calloc(uint32_t count, uint32_t size) KV_NOEXCEPT;

/** Changes a block's size, moving it if need be.
 *
 *  @param block  a block of these functions, or NIL for a new one
 *  @param size   the new size in bytes; 0 with a block frees it and gives NIL
 *  @return the block, which takes the place of the old one; NIL when the heap is exhausted, the old
 *          block then being untouched and still the caller's */
KV_API void *heap_realloc(void *block, uint32_t size) KV_NOEXCEPT;

/** Frees a block. NIL is ignored. */
KV_API void heap_free(void *block) KV_NOEXCEPT;

/** Frees the block that a pointer variable holds and sets the variable to NIL.
 *
 *  @param reference  the address of the pointer variable (void **); a variable that holds NIL is left
 *                    alone. NIL instead of an address is reported with kv_message
 *                    ("heap_smart_free: NIL-reference"). */
KV_API void heap_smart_free(void *reference) KV_NOEXCEPT;

/** Does nothing; kept for the applications that call it. */
KV_API void heap_statistic(void) KV_NOEXCEPT;

KV_END_DECLS

#endif

/* SPDX-License-Identifier: MIT */
/* Memory: the allocation wrappers that every block of the library comes from, and pool heaps.
 *
 * Blocks that the library hands out for the caller to free (str_alloc(), env_write_to_string(), ...)
 * are freed with heap_free() or heap_smart_free(). None of the wrappers reports an exhausted heap:
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
KV_API void *KV_CALL heap_malloc(uint32_t size) KV_NOEXCEPT;

/** Allocates a block of count x size bytes, all zero; otherwise as heap_malloc(). */
KV_API void *KV_CALL heap_calloc(uint32_t count, uint32_t size) KV_NOEXCEPT;

/** Changes a block's size, moving it if need be.
 *
 *  @param block  a block of these functions, or NIL for a new one
 *  @param size   the new size in bytes; 0 with a block frees it and gives NIL
 *  @return the block, which takes the place of the old one; NIL when the heap is exhausted, the old
 *          block then being untouched and still the caller's */
KV_API void *KV_CALL heap_realloc(void *block, uint32_t size) KV_NOEXCEPT;

/** Frees a block. NIL is ignored. */
KV_API void KV_CALL heap_free(void *block) KV_NOEXCEPT;

/** Frees the block that a pointer variable holds and sets the variable to NIL.
 *
 *  @param reference  the address of the pointer variable (void **); a variable that holds NIL is left
 *                    alone. NIL instead of an address is reported with kv_message
 *                    ("heap_smart_free: NIL-reference"). */
KV_API void KV_CALL heap_smart_free(void *reference) KV_NOEXCEPT;

/* ---- Pool heaps: many small pieces, released all at once. A pool belongs to one thread at a time. */

typedef struct HEAP HEAP;

/** Opens a pool. It takes its memory in blocks of one size from heap_malloc().
 *
 *  @param cachesize  the capacity of a block in bytes, rounded up to a multiple of 8; no piece can be
 *                    larger
 *  @param clear      not 0: pieces are handed out filled with zero
 *  @return the pool, released with heap_close(); NIL when the heap is exhausted or cachesize is negative,
 *          after a kv_error ("heap_open: out of space") */
KV_API HEAP *KV_CALL heap_open(int32_t cachesize, int32_t clear) KV_NOEXCEPT;

/** Takes a piece of a pool: of the first block that has more bytes left than the size, rounded up to a
 *  multiple of 8 (a block with exactly so many is passed over), else of a new block.
 *
 *  @param size  bytes, from 0 to the pool's capacity of a block
 *  @return the piece, aligned to 8 bytes, valid until heap_close(); its first size bytes are zero if the
 *          pool was opened so, else undefined. NIL, the pool unchanged, after a kv_error: the pool is NIL
 *          ("heap_allocate: incorrect ID for this heap"), the size is negative or larger than a block
 *          ("heap_allocate: parameter 'size' greater than cachesize"), or the heap is exhausted
 *          ("heap_allocate: out of space") */
KV_API void *KV_CALL heap_allocate(HEAP *pool, int32_t size) KV_NOEXCEPT;

/** Does nothing: pieces are not returned one by one. A NIL pool is reported with kv_error
 *  ("heap_deallocate: incorrect ID for this heap"). */
KV_API void KV_CALL heap_deallocate(HEAP *pool, void *piece) KV_NOEXCEPT;

/** Releases a pool with all its pieces. NIL is ignored. */
KV_API void KV_CALL heap_close(HEAP *pool) KV_NOEXCEPT;

/** Does nothing; kept for the applications that call it. */
KV_API void KV_CALL heap_statistic(void) KV_NOEXCEPT;

KV_END_DECLS

#endif

/* SPDX-License-Identifier: MIT */
/* Containers: doubly linked lists of the caller's elements; stacks, queues and hash tables of values.
 *
 * A list links elements that the caller allocates and owns. The other containers own their nodes and
 * handles, never what the values point to. A container belongs to one thread at a time; hash tables share
 * more, see there. Only list_init() and the insertions into lists ever report anything. */
#ifndef KV_CONTAINERS_H
#define KV_CONTAINERS_H

#include "kv/types.h"

KV_BEGIN_DECLS

/* ---- Lists: the descriptor and the elements belong to the caller, and so does their memory.
 *
 * Every element begins with its links, a LIST_ELEM; the caller's own data follow in the same block. An
 * element is in at most one list at a time. Only list_init() checks its descriptor: everywhere else it
 * must be valid, and callbacks that are not said to be optional must not be NIL. Every walk reads the
 * next link before it calls a callback, so that a callback may unlink or free the element it gets. */

typedef struct LIST_ELEM LIST_ELEM;

/** The links at the very start of every element. */
struct LIST_ELEM {
    LIST_ELEM *prev; /**< NIL for the first */
    LIST_ELEM *next; /**< NIL for the last */
};

/** The descriptor of a list, usually embedded in a larger structure. Prepared with list_init(). */
typedef struct LIST {
    int32_t count;    /**< the number of linked elements */
    LIST_ELEM *first; /**< NIL when empty */
    LIST_ELEM *last;  /**< NIL when empty */
} LIST;

/** Compares an element with a key, which is passed on unchanged. The result 1 means that they match;
 *  every other value means that they do not. */
typedef int32_t(KV_CALL *list_compare_function)(LIST_ELEM *element, kv_value key);

/** Is shown an element. The argument is passed on unchanged. */
typedef void(KV_CALL *list_visit_function)(LIST_ELEM *element, void *argument);

/** Releases an element that is no longer linked. heap_free() does for elements that own nothing else. */
typedef void(KV_CALL *list_free_function)(void *element);

/** Makes a list empty, without looking at what its fields held.
 *
 *  A NIL list is reported with kv_error ("list_open: invalid listdescriptor"). */
KV_API void KV_CALL list_init(LIST *list) KV_NOEXCEPT;

/** Links an element in front of another.
 *
 *  @param reference  an element of the list; NIL to insert at the front
 *  @param element    the new element; its links are overwritten
 *
 *  A reference without a predecessor that is not the first element of the list is reported with kv_error
 *  ("list_insert_before: list is not in order"); nothing is changed then. */
KV_API void KV_CALL list_insert_before(LIST *list, LIST_ELEM *reference, LIST_ELEM *element) KV_NOEXCEPT;

/** Links an element after another.
 *
 *  @param reference  an element of the list; NIL to append at the end
 *  @param element    the new element; its links are overwritten
 *
 *  A reference without a successor that is not the last element of the list is reported with kv_error
 *  ("list_insert_after: list is not in order"); nothing is changed then. */
KV_API void KV_CALL list_insert_after(LIST *list, LIST_ELEM *reference, LIST_ELEM *element) KV_NOEXCEPT;

/** Unlinks an element without freeing it. Its own links keep their values, so that a walk can go on
 *  from it.
 *
 *  @param element  an element of this list, or NIL to do nothing */
KV_API void KV_CALL list_delete(LIST *list, LIST_ELEM *element) KV_NOEXCEPT;

/** Unlinks an element as list_delete() and then passes it to a callback.
 *
 *  @param element       an element of this list, or NIL to do nothing
 *  @param free_element  may be NIL */
KV_API void KV_CALL list_free(LIST *list, LIST_ELEM *element, list_free_function free_element) KV_NOEXCEPT;

/** Passes every element to a callback, from the first on, and empties the list afterwards.
 *
 *  @param free_element  may be NIL: the elements are left as they are then */
KV_API void KV_CALL list_free_all(LIST *list, list_free_function free_element) KV_NOEXCEPT;

/** @return the first element that matches the key, from the first one on; NIL if none does */
KV_API LIST_ELEM *KV_CALL list_search(const LIST *list, list_compare_function compare,
                                      kv_value key) KV_NOEXCEPT;

/** @param list   not looked at
 *  @param start  the element to begin with, itself included; NIL finds nothing
 *  @return the first element that matches the key, towards the end; NIL if none does */
KV_API LIST_ELEM *KV_CALL list_search_from(const LIST *list, LIST_ELEM *start,
                                           list_compare_function compare, kv_value key) KV_NOEXCEPT;

/** @param end  the last element to look at; one that is not met (NIL too) does not stop the search before
 *              the list ends
 *  @return the first element that matches the key, from the first one on; NIL if none does */
KV_API LIST_ELEM *KV_CALL list_search_to(const LIST *list, LIST_ELEM *end, list_compare_function compare,
                                         kv_value key) KV_NOEXCEPT;

/** Searches from `start` as list_search_from(), up to `end` as list_search_to(). */
KV_API LIST_ELEM *KV_CALL list_search_from_to(const LIST *list, LIST_ELEM *start, LIST_ELEM *end,
                                              list_compare_function compare, kv_value key) KV_NOEXCEPT;

/** @return the first element that matches the key, from the last one towards the front; NIL if none
 *          does */
KV_API LIST_ELEM *KV_CALL list_search_backward(const LIST *list, list_compare_function compare,
                                               kv_value key) KV_NOEXCEPT;

/** Shows every element to a callback, from the first to the last. */
KV_API void KV_CALL list_traverse(const LIST *list, list_visit_function visit, void *argument) KV_NOEXCEPT;

/** Shows every element to a callback, from the last to the first. */
KV_API void KV_CALL list_traverse_backward(const LIST *list, list_visit_function visit,
                                           void *argument) KV_NOEXCEPT;

/** @param number  the position, from 1; every smaller number counts as 1
 *  @return the element at that position; NIL after the end */
KV_API LIST_ELEM *KV_CALL list_get_element_by_number(const LIST *list, int32_t number) KV_NOEXCEPT;

/** @return the element's next; NIL for NIL */
KV_API LIST_ELEM *KV_CALL list_next_elem(const LIST_ELEM *element) KV_NOEXCEPT;

/** @return the element's prev; NIL for NIL */
KV_API LIST_ELEM *KV_CALL list_prev_elem(const LIST_ELEM *element) KV_NOEXCEPT;

/** @retval 1  the element is linked in this list
 *  @retval 0  it is not, or is NIL */
KV_API int32_t KV_CALL list_isinlist(const LIST *list, const LIST_ELEM *element) KV_NOEXCEPT;

/* ---- Stacks: the value pushed last comes out first. Every function accepts NIL for the stack. */

typedef struct STACK STACK;

/** @return a new, empty stack, released with stack_close(); NIL when the heap is exhausted */
KV_API STACK *KV_CALL stack_open(void) KV_NOEXCEPT;

/** Releases a stack and what is left on it. NIL is ignored. */
KV_API void KV_CALL stack_close(STACK *stack) KV_NOEXCEPT;

/** Puts a value on top. The value is dropped when the stack is NIL or the heap is exhausted; the stack
 *  is unchanged then. */
KV_API void KV_CALL stack_push(STACK *stack, kv_value value) KV_NOEXCEPT;

/** Removes the top value.
 *
 *  @return the value; 0 when the stack is NIL or empty, which a stored 0 cannot be told from */
KV_API kv_value KV_CALL stack_pop(STACK *stack) KV_NOEXCEPT;

/** The top value, left in place; otherwise as stack_pop(). */
KV_API kv_value KV_CALL stack_get(const STACK *stack) KV_NOEXCEPT;

/* ---- Queues: the value posted first comes out first. The queue must not be NIL. */

typedef struct QUEUE QUEUE;

/** @return a new, empty queue, released with queue_close(); NIL when the heap is exhausted */
KV_API QUEUE *KV_CALL queue_open(void) KV_NOEXCEPT;

/** Releases a queue and what is left in it. */
KV_API void KV_CALL queue_close(QUEUE *queue) KV_NOEXCEPT;

/** Appends a value. When the heap is exhausted the value is dropped and the queue is unchanged. */
KV_API void KV_CALL queue_post(QUEUE *queue, kv_value value) KV_NOEXCEPT;

/** Removes the value that was posted first.
 *
 *  @return the value; 0 when the queue is empty, which a stored 0 cannot be told from */
KV_API kv_value KV_CALL queue_get(QUEUE *queue) KV_NOEXCEPT;

/** The value that was posted first, left in place; otherwise as queue_get(). */
KV_API kv_value KV_CALL queue_look(const QUEUE *queue) KV_NOEXCEPT;

/** Empties a queue, which stays usable. */
KV_API void KV_CALL queue_clear(QUEUE *queue) KV_NOEXCEPT;

/* ---- Hash tables: from texts to values, with a fixed number of slots. A table may name a parent, in
 *      which a lookup goes on; so scopes are built. Keys are copied; values are neither interpreted nor
 *      freed.
 *
 * The slots. The home slot of a key is (|hash| mod (size - 1)) + 1; the slots where the key may be are
 * the multiples of its home slot, modulo the size, which is a prime: every slot, each once, comes up
 * before the home slot again.
 *
 * Threads. A lookup reads the table and its ancestors and changes none of them, so that several threads may
 * look up at once in one table, in tables with a common parent and in that parent, and may open and close
 * tables under a parent that they share. What changes the keys of a table, hash_put(), hash_reset() and
 * the removals, and hash_close() on it, must not run while another thread uses the table or looks up in
 * one below it. A hash function of the caller runs in the thread of the call. */

typedef struct HASH HASH;

/** A hash function. It gives equal texts equal numbers. */
typedef int32_t(KV_CALL *hash_function)(const char *key);

/** Opens a table.
 *
 *  @param id      the caller's number of the table, which lookups give
 *  @param size    the slots wanted: rounded up to an odd prime, 3 for all that is less; as many keys fit
 *  @param hashfn  the hash function; NIL: the parent's, without a parent the sum of the bytes as signed
 *                 numbers
 *  @param parent  the table where lookups go on, or NIL; it must stay open until this one is closed
 *  @return the table, released with hash_close(); NIL when the heap is exhausted */
KV_API HASH *KV_CALL hash_open(int32_t id, int32_t size, hash_function hashfn, HASH *parent) KV_NOEXCEPT;

/** Releases a table with its keys. A table that is the parent of an open one stays open; NIL is
 *  ignored. */
KV_API void KV_CALL hash_close(HASH *table) KV_NOEXCEPT;

/** Removes all keys. The table keeps its slots, its parent and its children. NIL is ignored. */
KV_API void KV_CALL hash_reset(HASH *table) KV_NOEXCEPT;

/** Stores a value under a key, in this table only. The key goes to the first of its slots that is empty
 *  or has it already; its old value is replaced.
 *
 *  @return the index of the slot; -1, with the table as it was: table or key is NIL, the table is full, or
 *          the heap is exhausted */
KV_API int32_t KV_CALL hash_put(HASH *table, const char *key, kv_value value) KV_NOEXCEPT;

/** Looks a key up in a table and its ancestors. First the key's home slots in all of them are looked at,
 *  the table's own first; then the second slots, and so on, past empty ones; the first that has the key
 *  wins. So a key off its home slot can be hidden by the same key of an ancestor.
 *
 *  @param value  receives the value; may be NIL
 *  @param id     receives the number of the table that had the key; may be NIL
 *  @return the index of the slot in the table that had the key; -1, with both untouched: not found, or
 *          table or key is NIL */
KV_API int32_t KV_CALL hash_get(HASH *table, const char *key, kv_value *value, int32_t *id) KV_NOEXCEPT;

/** What is in a slot of this table; the indexes 0, 1, 2, ... up to the size enumerate it.
 *
 *  @param key    receives a copy of the key, which the caller frees with heap_free(); may be NIL
 *  @param value  receives the value; may be NIL
 *  @return the index; -1, with NIL in *key and *value untouched: the table is NIL, the slot is empty or
 *          there is none of this index, or the heap is exhausted */
KV_API int32_t KV_CALL hash_get_index(HASH *table, int32_t index, char **key, kv_value *value) KV_NOEXCEPT;

/** Removes a key from this table. It is looked for as hash_put() does: no further than to the first
 *  empty slot.
 *
 *  A NIL key is reported where the table has the library's hash function.
 *
 *  @return the index of the slot, which is empty now; -1: not found, or table or key is NIL */
KV_API int32_t KV_CALL hash_remove_name(HASH *table, const char *key) KV_NOEXCEPT;

/** Removes the key in a slot of this table.
 *
 *  @return the index; -1: the table is NIL, the slot is empty or there is none of this index */
KV_API int32_t KV_CALL hash_remove_index(HASH *table, int32_t index) KV_NOEXCEPT;

KV_END_DECLS

#endif

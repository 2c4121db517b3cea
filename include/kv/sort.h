/* SPDX-License-Identifier: MIT */
/* Sorting: vectors of numbers, the runtime library's quicksort, and lists.
 *
 * Vectors and lists belong to one thread while they are sorted. Nothing here reports anything; where the
 * heap has no room for working memory, the same result takes more time. */
#ifndef KV_SORT_H
#define KV_SORT_H

#include "kv/containers.h"
#include "kv/types.h"

KV_BEGIN_DECLS

/** Sorts real numbers in ascending order, in place.
 *
 *  @param values  n numbers; values that are not a number end up at the front or at the end
 *  @param n       their count; nothing is done below 2 */
KV_API void KV_CALL sort_dvector(double *values, int32_t n) KV_NOEXCEPT;

/** Sorts whole numbers in ascending order, in place; otherwise as sort_dvector(). */
KV_API void KV_CALL sort_lvector(int32_t *values, int32_t n) KV_NOEXCEPT;

/** Sorts pointers to real numbers, which stay where they are.
 *
 *  @param values    n numbers
 *  @param pointers  receives n pointers into values, in ascending order of what they point to
 *  @param n         the count; nothing is done below 1 */
KV_API void KV_CALL sort_dvector_by_index(double *values, double **pointers, int32_t n) KV_NOEXCEPT;

/** Sorts pointers to whole numbers; otherwise as sort_dvector_by_index(). */
KV_API void KV_CALL sort_lvector_by_index(int32_t *values, int32_t **pointers, int32_t n) KV_NOEXCEPT;

/** The C function qsort().
 *
 *  @param base     n elements of size bytes each
 *  @param compare  negative, 0 or positive, as *a comes before *b, is equal or comes after it */
KV_API void KV_CALL sort_quick(void *base, uint32_t n, uint32_t size,
                               int(KV_CALL *compare)(const void *a, const void *b)) KV_NOEXCEPT;

/** Says whether one element is to stand in front of another.
 *
 *  @param earlier  the element that came first in the list
 *  @param later    the other one
 *  @return 1 if earlier is smaller, 2 if it is greater, anything else if it is neither */
typedef int32_t(KV_CALL *sort_compare_function)(LIST_ELEM *earlier, LIST_ELEM *later);

/** Sorts a list by relinking its elements.
 *
 *  An element stays in front of a later one only if the comparison returns 1 (mode 1, ascending) or 2
 *  (every other mode, descending); so elements that compare neither way come out in the reverse of their
 *  order.
 *
 *  A list of up to 64 elements is sorted by insertion, whatever the comparison says: each element in its
 *  turn goes in front of the first one of those before it that does not stay in front of it, or to the end.
 *  A longer list is merged. That gives the same order if the comparison orders consistently: if elements
 * that compare neither way with each other compare alike with all others. A comparison that leaves other
 * pairs undecided, or contradicts itself, gives some order then, of the same elements.
 *
 *  @param mode     1 ascending, anything else descending
 *  @param compare  the comparison, which must not change the list; called up to n * n / 2 times for a list
 * of up to 64 elements, some n log n times for a longer one */
KV_API void KV_CALL sort_list(LIST *list, int32_t mode, sort_compare_function compare) KV_NOEXCEPT;

KV_END_DECLS

#endif

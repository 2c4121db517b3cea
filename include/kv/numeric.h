/* SPDX-License-Identifier: MIT */
/* Numeric helpers: rounding to powers of ten, signs, and trigonometry in degrees.
 *
 * Every function takes every argument, reports nothing, keeps no state, and may be called from any
 * thread. Real numbers are IEEE 754 binary64. */
#ifndef KV_NUMERIC_H
#define KV_NUMERIC_H

#include "kv/types.h"

KV_BEGIN_DECLS

/** Rounds to a multiple of a power of ten: floor(x / f + 0.5) * f with f = 10^n. Halves are rounded
 *  towards plus infinity, also below zero: pround(-2.5, 0) is -2.
 *
 *  @param n  the exponent: 0 rounds to whole numbers, -2 to hundredths, 3 to thousands
 *  @return the rounded value; not a number where the formula gives that (f or x / f beyond the range of
 *          a double) */
KV_API double KV_CALL pround(double x, int32_t n) KV_NOEXCEPT;

/** @return -1, 0 or 1: the sign of v */
KV_API int32_t KV_CALL lsgn(int32_t v) KV_NOEXCEPT;

/** @return -1.0 below zero, 0.0 for zero of either sign, 1.0 above; -1.0 for not a number */
KV_API double KV_CALL fsgn(double x) KV_NOEXCEPT;

/* ---- Trigonometry. Angles are in degrees.
 *
 * Angles of 360 degrees and more, and below 0, are reduced into a full circle by taking off or adding
 * 360 until they lie in it; only an addition that ends in the circle is rounded. The factors between
 * degrees and radians are the doubles nearest to pi / 180 and 180 / pi. */

/** @param angle  degrees
 *  @return its sine; not a number for an infinite angle or not a number */
KV_API double KV_CALL sin_deg(double angle) KV_NOEXCEPT;

/** The cosine; otherwise as sin_deg(). */
KV_API double KV_CALL cos_deg(double angle) KV_NOEXCEPT;

/** The tangent, large but finite at odd multiples of 90; otherwise as sin_deg(). */
KV_API double KV_CALL tan_deg(double angle) KV_NOEXCEPT;

/** @return the angle in degrees, -90 to 90, whose sine is x; not a number outside -1 to 1 */
KV_API double KV_CALL asin_deg(double x) KV_NOEXCEPT;

/** @return the angle in degrees, 0 to 180, whose cosine is x; not a number outside -1 to 1 */
KV_API double KV_CALL acos_deg(double x) KV_NOEXCEPT;

/** @return the angle in degrees, -90 to 90, whose tangent is x */
KV_API double KV_CALL atan_deg(double x) KV_NOEXCEPT;

/** @return the direction in degrees, -180 to 180, in which the point (x, y) is seen from the origin */
KV_API double KV_CALL atan2_deg(double y, double x) KV_NOEXCEPT;

KV_END_DECLS

#endif

/* SPDX-License-Identifier: MIT */
/* Expression calculator: the value of an arithmetic and logical expression.
 *
 * Operators, those that bind tightest first; all but "^" and "? :" group from the left:
 *
 *   - NOT            in front of an operand
 *   ^                power; from the right: 2^3^2 is 2^9, and -2^2 is (-2)^2
 *   * /
 *   + -
 *   = <> < > <= >=   give 1 or 0; also "#" or "><" for "<>", "=<" for "<=", "=>" for ">="
 *   AND OR           give 1 or 0; of equal rank
 *   c ? a : b        a if c is not 0, else b; the other one is checked, but not computed
 *
 * Operands are numbers, PI, parentheses, and functions: SIN COS TAN COT of degrees; ASN ACS ATN ACT (arc
 * sine, cosine, tangent and cotangent) in degrees; ABS, SQRT, EXP, LGT (natural logarithm), LOG (decimal
 * logarithm), and MIN and MAX of one or more arguments. The case of names does not matter. A value is true
 * if it is not 0. Only SQRT checks its argument; the other functions give infinity or not a number outside
 * their domain. Whole numbers beyond 32 bits are real numbers.
 *
 * The state of an evaluation is process-wide: one thread at a time. Nothing is reported but through the
 * results. An expression may be of any length and nesting. */
#ifndef KV_CALC_H
#define KV_CALC_H

#include "kv/types.h"

KV_BEGIN_DECLS

/** Errors of calc_expression(), as calc_error() gives them. */
enum {
    CALC_OK = 0,
    CALC_SYNTAX = 1,            /**< what cannot begin an operand, or stands behind the expression */
    CALC_NO_ARGUMENT = 2,       /**< no "(" behind the name of a function, or behind AND or OR where an
                                     operand is due */
    CALC_UNCLOSED = 3,          /**< no ")" */
    CALC_NO_ALTERNATIVE = 7,    /**< no ":" of a "?" */
    CALC_FRACTIONAL_POWER = 14, /**< a negative base with an exponent that is no 32-bit whole number */
    CALC_INFINITE_POWER = 15,   /**< a power that is infinite or not a number */
    CALC_DIVISION_BY_ZERO = 16,
    CALC_NEGATIVE_ROOT = 17, /**< the square root of a negative number */
    CALC_OUT_OF_MEMORY = 18  /**< the heap has no room for the nesting of the expression */
};

/** Sets the decimal places that results are rounded to (none at the start).
 *
 *  @param places  digits after the point; 0: results are not rounded; below 0 to tens, hundreds, ...
 *                 -1: the entry "Nachkommastellen" of section "Calculator" in the main configuration file
 *                 (kv_getinipath("kv")) says it; the setting stays as it is where there is no such entry */
KV_API void KV_CALL calc_init(int32_t places) KV_NOEXCEPT;

/** Evaluates an expression.
 *
 *  @param value  receives the value, rounded as pround() does to the decimal places set; without meaning
 *                after an error
 *  @param ok     receives the result as one byte
 *  @retval 1  the expression has a value
 *  @retval 0  it has none; calc_error() tells why */
KV_API int32_t KV_CALL calc_expression(const char *expression, double *value, char *ok) KV_NOEXCEPT;

/** Tells how the last evaluation ended.
 *
 *  @param code     receives CALC_OK or the error
 *  @param line     receives the line of the token where the evaluation stopped, from 0; for the errors 14
 *                  to 17 that is the one after the operand
 *  @param column   receives its column, from 0
 *  @param message  receives the text for the code: the entry "f<code>" ("f16") of section "Calculator" in
 *                  the main configuration file (kv_getinipath("kv")), cut to 100 characters; where there
 *                  is none, "Error in expression". At least 101 bytes.
 *  @return the status of ini_read_string() for that entry: 0 if it was found */
KV_API int32_t KV_CALL calc_error(int32_t *code, int32_t *line, int32_t *column, char *message) KV_NOEXCEPT;

KV_END_DECLS

#endif

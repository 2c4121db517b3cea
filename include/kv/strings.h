/* SPDX-License-Identifier: MIT */
/* Strings: the string toolkit, conversions between numbers and text, and DOS text.
 *
 * Texts are 8-bit and end with a zero byte. Destination buffers belong to the caller, who makes them
 * large enough: no function here can check their size. Source and destination may overlap. Positions
 * and indexes count bytes from 0; one that 32 bits cannot hold is given as INT32_MAX. Where case is
 * ignored or changed, only the ASCII letters have case, whatever the application's locale is; numbers
 * are written and read with a decimal point in every locale. NIL is accepted only where it is said.
 *
 * str_tok() and str_rpt() keep process-wide state and are meant for one thread; everything else may be
 * called from any thread. Only str_tok(), str_stoe() and str_etos() ever report anything. */
#ifndef KV_STRINGS_H
#define KV_STRINGS_H

#include "kv/types.h"

KV_BEGIN_DECLS

/* ---- Copying and joining */

/** Copies a text with its terminator.
 *
 *  @param dst  at least str_len(src) + 1 bytes
 *  @return dst */
KV_API char *KV_CALL str_cpy(char *dst, const char *src) KV_NOEXCEPT;

/** Makes a copy of a text in a block of its own.
 *
 *  @param src  the text, or NIL
 *  @return the copy, which the caller frees with heap_free() or heap_smart_free(); NIL when src is NIL,
 *          when the heap is exhausted, or when the text is longer than a block can be (4 GB) */
KV_API char *KV_CALL str_alloc(const char *src) KV_NOEXCEPT;

/** Copies the beginning of a text and terminates it.
 *
 *  @param dst  at least min(str_len(src), n) + 1 bytes; nothing beyond is written
 *  @param n    the most characters to copy; none when n <= 0
 *  @return dst */
KV_API char *KV_CALL str_ncpy(char *dst, const char *src, int32_t n) KV_NOEXCEPT;

/** Copies the characters src[from] to src[to], both included, and terminates them.
 *
 *  A `to` beyond the end means the last character. dst becomes the empty text when from < 0, to < 0,
 *  from > to, or `from` lies beyond the last character.
 *
 *  @param dst  at least to - from + 2 bytes, or what src has from `from` on with its terminator
 *  @return dst */
KV_API char *KV_CALL str_pcpy(char *dst, const char *src, int32_t from, int32_t to) KV_NOEXCEPT;

/** Appends a text.
 *
 *  @param dst  a text with room for str_len(src) more bytes
 *  @return dst */
KV_API char *KV_CALL str_cat(char *dst, const char *src) KV_NOEXCEPT;

/** Appends the beginning of a text and terminates the result.
 *
 *  @param dst  a text with room for min(str_len(src), n) more bytes
 *  @param n    the most characters to append; none when n <= 0
 *  @return dst */
KV_API char *KV_CALL str_ncat(char *dst, const char *src, int16_t n) KV_NOEXCEPT;

/** Appends the characters src[from] to src[to], both included; positions as for str_pcpy(). Where that
 *  would give the empty text, dst stays as it is.
 *
 *  @param dst  a text with room for the characters that are appended
 *  @return dst */
KV_API char *KV_CALL str_pcat(char *dst, const char *src, int32_t from, int32_t to) KV_NOEXCEPT;

/* ---- Comparing */

/** @retval 1  a and b are equal byte for byte
 *  @retval 0  they differ */
KV_API int32_t KV_CALL str_eq(const char *a, const char *b) KV_NOEXCEPT;

/** @retval 1  a and b are equal but for the case of ASCII letters
 *  @retval 0  they differ */
KV_API int32_t KV_CALL str_ieq(const char *a, const char *b) KV_NOEXCEPT;

/** Compares bytes as unsigned values.
 *
 *  @retval -1  a comes before b
 *  @retval 0   a and b are equal
 *  @retval 1   a comes after b */
KV_API int32_t KV_CALL str_cmp(const char *a, const char *b) KV_NOEXCEPT;

/** Compares without regard to case: the bytes in lower case, as unsigned values.
 *
 *  @return negative, 0 or positive, as a comes before b, is equal or comes after it */
KV_API int32_t KV_CALL str_icmp(const char *a, const char *b) KV_NOEXCEPT;

/** Compares at most the first n characters, bytes as unsigned values.
 *
 *  @return negative, 0 (always when n is 0) or positive, as for str_icmp() */
KV_API int32_t KV_CALL str_ncmp(const char *a, const char *b, uint32_t n) KV_NOEXCEPT;

/* ---- Searching */

/** @return the number of characters before the terminator */
KV_API int32_t KV_CALL str_len(const char *s) KV_NOEXCEPT;

/** @return the first c in s, NIL if there is none; for c = 0 the terminator */
KV_API char *KV_CALL str_chr(const char *s, char c) KV_NOEXCEPT;

/** @return the last c in s, NIL if there is none; for c = 0 the terminator */
KV_API char *KV_CALL str_rchr(const char *s, char c) KV_NOEXCEPT;

/** @return the index of the first c in s, -1 if there is none; for c = 0 the length */
KV_API int32_t KV_CALL str_ichr(const char *s, char c) KV_NOEXCEPT;

/** @return the index of the last c in s, -1 if there is none; for c = 0 the length */
KV_API int32_t KV_CALL str_irchr(const char *s, char c) KV_NOEXCEPT;

/** @return the first occurrence of sub in s, NIL if there is none; s itself for an empty sub */
KV_API char *KV_CALL str_pos(const char *s, const char *sub) KV_NOEXCEPT;

/** @return the index of the first occurrence of sub in s, -1 if there is none; 0 for an empty sub */
KV_API int32_t KV_CALL str_ipos(const char *s, const char *sub) KV_NOEXCEPT;

/* ---- Changing in place */

/** Turns a to z into capitals.
 *
 *  @return s */
KV_API char *KV_CALL str_cap(char *s) KV_NOEXCEPT;

/** Turns A to Z into small letters.
 *
 *  @return s */
KV_API char *KV_CALL str_low(char *s) KV_NOEXCEPT;

/** Removes leading and trailing blanks (the space character only). A text without them is not written
 *  to.
 *
 *  @return s */
KV_API char *KV_CALL str_trim(char *s) KV_NOEXCEPT;

/** Removes leading blanks, moving the rest to the front; otherwise as str_trim(). */
KV_API char *KV_CALL str_ltrim(char *s) KV_NOEXCEPT;

/** Removes trailing blanks; otherwise as str_trim(). */
KV_API char *KV_CALL str_rtrim(char *s) KV_NOEXCEPT;

/* ---- Taking apart, repeating */

/** Takes a text apart, one piece for each call: the first call gets the text, later calls NIL.
 *
 *  With delims it is the C function strtok(): pieces are separated by any of the characters of delims,
 *  the text is changed, and the first call for a text must name it.
 *
 *  Without (NIL) the text is a list of texts, one behind the other, each with its terminator, the last
 *  one empty; it is not changed. Both ways keep a position of their own.
 *
 *  @param s       the text or list, or NIL to go on; it must live as long as the walk
 *  @param delims  the separating characters, or NIL
 *  @return the next piece, inside s; NIL at the end, and on every further call. Without delims also NIL
 *          when there is no list to go on with, after a kv_error ("The str_tok was called with wrong
 *          parameter <source>."). */
KV_API char *KV_CALL str_tok(char *s, const char *delims) KV_NOEXCEPT;

/** A text of one character repeated.
 *
 *  @param n  the number of characters: none when n <= 0, and at most 255
 *  @return the library's own buffer with the text, overwritten by the next call; not to be freed */
KV_API char *KV_CALL str_rpt(char c, int32_t n) KV_NOEXCEPT;

/* ---- Escapes */

/** Turns backslash escapes into the characters they stand for:
 *  `\a` `\b` `\t` `\n` `\v` `\f` `\r` `\"` `\'` `\\`.
 *
 *  A backslash before anything else, or at the end, stays, and what follows it is read on its own.
 *
 *  @param dst  receives the text: at least str_len(src) + 1 bytes; NIL to write into src itself
 *  @param src  the text, NIL to do nothing
 *  @return where the text was written; dst when src is NIL; NIL when the heap is exhausted, after a
 *          kv_error ("out of space"), nothing being written */
KV_API char *KV_CALL str_stoe(char *dst, const char *src) KV_NOEXCEPT;

/** Turns characters into backslash escapes, so that str_stoe() gives the text back.
 *
 *  @param dst  receives the text: up to 2 * str_len(src) + 1 bytes; NIL to write into src itself, which
 *              then has that room
 *  @param src  the text, NIL to do nothing
 *  @return as for str_stoe() */
KV_API char *KV_CALL str_etos(char *dst, const char *src) KV_NOEXCEPT;

/* ---- Numbers and text */

/** Writes a number with a fixed number of decimals.
 *
 *  @param width     the least number of characters, blanks filling the front; a negative width puts the
 *                   number at the left of a field of -width characters
 *  @param decimals  digits after the point (no point for 0); a negative number counts as 0
 *  @param dst       receives the text; it needs room for the width and for the number, which has up to
 *                   311 characters more than its decimals, and for the terminator. It becomes the empty
 *                   text when the width or the decimals are more than the platform can print. */
KV_API void KV_CALL convert_dtos(double value, int32_t width, int32_t decimals, char *dst) KV_NOEXCEPT;

/** Writes a whole number.
 *
 *  @param width  as for convert_dtos()
 *  @param dst    receives the text; it needs room for the width, or 11 characters, and the terminator */
KV_API void KV_CALL convert_ltos(int32_t value, int32_t width, char *dst) KV_NOEXCEPT;

/** Reads a number as the C function atof() does in the "C" locale.
 *
 *  @return the value of the longest number at the beginning of s, after white space; 0 if there is
 *          none */
KV_API double KV_CALL convert_stod(const char *s) KV_NOEXCEPT;

/** Reads a whole number as the C function atol() does where a long has 32 bits.
 *
 *  @return the value of the digits at the beginning of s, after white space and a sign; 0 if there are
 *          none; INT32_MAX or INT32_MIN for a number beyond them */
KV_API int32_t KV_CALL convert_stol(const char *s) KV_NOEXCEPT;

/** Turns the German letters of DOS (OEM) text into those of the Windows ANSI code page, in place. Other
 *  bytes stay.
 *
 *  @param mode  0 to convert; anything else leaves the text alone
 *  @return s */
KV_API char *KV_CALL dos_to_win(char *s, int32_t mode) KV_NOEXCEPT;

KV_END_DECLS

#endif

/* INI files: read and rewritten directly on disk.
 *
 * Every call is complete in itself: it opens the file, does its work and closes it; nothing is kept
 * between calls.
 *
 * The format. A file is text: lines that end with CR LF when written, with CR LF or LF when read; a
 * Ctrl-Z (26) ends the text. White space (characters 1 to 32) around a line is ignored. An empty line,
 * and a line that begins with ";", is a comment. A line that begins with "[" is a section's header: its
 * name is what stands before the first "]" (or the line's end) without the blanks around it. Every other
 * line is an entry: its key is what stands before the first "=", without the blanks around it, and its
 * value is all that follows, leading blanks included. The entries before the first header are the unnamed
 * section; a section argument that is NIL, empty or only blanks means it. Names and keys are compared
 * byte for byte. Where a header or a key is repeated, the first one counts. A line longer than 511
 * characters is taken as several lines. A zero byte ends what is read of its line.
 *
 * A line that is neither a comment nor a header and has no "=" is reported with kv_error() ("Incorrect
 * entry's format. '=' is not found.", source "Ini") where a call comes across it in the section it works
 * on, and is otherwise ignored.
 *
 * A path is a file's path; NIL or "" means the main configuration file where a function says so. Section
 * names are meant to have at most 79 characters, a line of key, "=" and value at most 511: what is longer
 * is written as it is, but does not read back whole. Real numbers have a decimal point in every locale.
 *
 * All functions may be called from several threads, also on the same file. */
#ifndef KV_INI_H
#define KV_INI_H

#include "kv/types.h"

KV_BEGIN_DECLS

/** Status codes. */
enum {
    INI_FAILED = -1,    /**< the file was not found, or cannot be read */
    INI_OK = 0,         /**< done */
    INI_NO_SECTION = 1, /**< there is no such section */
    INI_NO_ENTRY = 2,   /**< there is no such entry */
    INI_NO_ROOM = 3     /**< more than the buffer or the array holds */
};

/* ---- Reading. NIL or "" as the path means the main configuration file. */

/** Reads an entry's value, or lists the keys of a section.
 *
 *  @param section  the section's name
 *  @param entry    the key, or NIL to list the section's keys
 *  @param buf      for a value: receives it with its terminator, size + 1 bytes. For a list: receives
 *                  each key followed by a zero byte, and one more zero byte at the end, size bytes in all;
 *                  str_tok(buf, NIL) walks through it. A key that stands there twice is listed twice.
 *  @param size     for a value: the most characters to copy, unchanged. For a list: the capacity in bytes;
 *                  receives the bytes used, the last zero byte not counted.
 *  @retval INI_OK          the value, or all keys
 *  @retval INI_NO_ROOM     the value was cut, or only the first keys, each of them whole, did fit
 *  @retval INI_NO_SECTION  no such section; buf and size are untouched
 *  @retval INI_NO_ENTRY    no such entry; buf and size are untouched
 *  @retval INI_FAILED      the file was not found, or cannot be read; a list may have been begun */
KV_API int32_t ini_read_string(const char *path, const char *section, const char *entry, char *buf,
                               int32_t *size) KV_NOEXCEPT;

/** Reads an entry as a whole number, as convert_stol() reads it: 0 for a text that is none.
 *
 *  @retval INI_OK  *value is the number. Otherwise *value is untouched, and the result is
 *  @retval INI_NO_SECTION  no such section
 *  @retval INI_NO_ENTRY    no such entry
 *  @retval INI_FAILED      the file was not found, or cannot be read */
KV_API int32_t ini_read_long(const char *path, const char *section, const char *entry,
                             int32_t *value) KV_NOEXCEPT;

/** Reads an entry as a real number, as convert_stod() reads it; otherwise as ini_read_long(). */
KV_API int32_t ini_read_double(const char *path, const char *section, const char *entry,
                               double *value) KV_NOEXCEPT;

/** Reads an entry as a list of whole numbers with commas between them, each as convert_stol() reads it. A
 *  comma at the end is followed by no item; an empty value is an empty list.
 *
 *  @param items  receives the numbers
 *  @param count  how many numbers fit into items; receives how many there are
 *  @retval INI_OK          done
 *  @retval INI_NO_ROOM     there are more than fit: items is full, count is unchanged
 *  @retval INI_NO_SECTION  no such section; *count is 0
 *  @retval INI_NO_ENTRY    no such entry; *count is 0
 *  @retval INI_FAILED      the file was not found, or cannot be read; *count is 0 */
KV_API int32_t ini_read_longs(const char *path, const char *section, const char *entry, int32_t *items,
                              int32_t *count) KV_NOEXCEPT;

/** Reads an entry as a list of real numbers, each as convert_stod() reads it; otherwise as
 *  ini_read_longs(). */
KV_API int32_t ini_read_doubles(const char *path, const char *section, const char *entry, double *items,
                                int32_t *count) KV_NOEXCEPT;

KV_END_DECLS

#endif

/* SPDX-License-Identifier: MIT */
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
    INI_NO_ROOM = 3,    /**< more than the buffer, the array or a list's text holds; a NIL value */
    INI_BAD_NAME = 5,   /**< a new name that is empty or only blanks */

    INI_NOT_WRITABLE = 2, /**< of a change: the file cannot be opened for writing */
    INI_WRITE_FAILED = 3  /**< of a change: writing the file failed, on a full disk for one */
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
KV_API int32_t KV_CALL ini_read_string(const char *path, const char *section, const char *entry, char *buf,
                                       int32_t *size) KV_NOEXCEPT;

/** Reads an entry as a whole number, as convert_stol() reads it: 0 for a text that is none.
 *
 *  @retval INI_OK  *value is the number. Otherwise *value is untouched, and the result is
 *  @retval INI_NO_SECTION  no such section
 *  @retval INI_NO_ENTRY    no such entry
 *  @retval INI_FAILED      the file was not found, or cannot be read */
KV_API int32_t KV_CALL ini_read_long(const char *path, const char *section, const char *entry,
                                     int32_t *value) KV_NOEXCEPT;

/** Reads an entry as a real number, as convert_stod() reads it; otherwise as ini_read_long(). */
KV_API int32_t KV_CALL ini_read_double(const char *path, const char *section, const char *entry,
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
KV_API int32_t KV_CALL ini_read_longs(const char *path, const char *section, const char *entry,
                                      int32_t *items, int32_t *count) KV_NOEXCEPT;

/** Reads an entry as a list of real numbers, each as convert_stod() reads it; otherwise as
 *  ini_read_longs(). */
KV_API int32_t KV_CALL ini_read_doubles(const char *path, const char *section, const char *entry,
                                        double *items, int32_t *count) KV_NOEXCEPT;

/** Lists the names of the sections, as ini_read_string() lists keys; the unnamed section is not among them.
 *  A name that stands there twice is listed twice. An addition of this library's own.
 *
 *  @param buf   receives the list, size bytes in all
 *  @param size  the capacity in bytes; receives the bytes used, the last zero byte not counted
 *  @retval INI_OK       all names
 *  @retval INI_NO_ROOM  only the first names, each of them whole, did fit
 *  @retval INI_FAILED   the file was not found, or cannot be read; a list may have been begun */
KV_API int32_t KV_CALL ini_read_sections(const char *path, char *buf, int32_t *size) KV_NOEXCEPT;

/* ---- Changing
 *
 * A change makes a new file out of the old one. Up to the place of the change it is in normal form: lines
 * without the white space around them, one empty line before each header (none before a first header
 * that no entry precedes) and no others, the entries of the section that is worked on as "key=value", and
 * that section's lines without "=" left out (and reported). Behind the place of the change everything
 * stays as it was, but for lone line feeds, which become CR LF. A change that does not find its section or
 * its entry still writes the file in normal form. What stands after a Ctrl-Z stays after the text.
 *
 * A file that is there but cannot be read is not changed: INI_FAILED. The same holds for an exhausted
 * heap.
 *
 * Saving. The file has either its old content or all of the new one, whenever the process or the machine
 * stops: a new file is written, which has no name (on Windows, and on file systems without such files, a
 * name of its own, and nobody else can read it) until it is complete, and then replaces the old one. The
 * owner, the permissions, the access list and the attributes of the file stay; links are followed.
 *
 * A file that a new one cannot replace is written in place: one with several hard links, that of another
 * owner or with attributes that this process may not give a file, a mount point, a device, any file in a
 * directory that may not be written, and, on Windows, one that somebody has open and lets nobody delete.
 * When writing fails, its old content is put back; but what the file
 * holds when the process is killed or the machine stops while it is written is not certain.
 *
 * Several processes and threads. Changes of one file are made one after the other, and none is lost.
 * Reads give what the file held before or after a change, in place too. For that, files are locked while
 * they are changed or read. Waiting for a lock ends after 10 seconds, or the number of seconds in the
 * environment variable KV_LOCK_TIMEOUT: reading then goes on without the lock; a change fails with the
 * status of a file that cannot be written (INI_FAILED for the functions that delete), and nothing is
 * changed. A change that meets one without such a lock, of an editor for one, before it is saved begins
 * anew. The locks are advice among programs with this library from version 1.1 on; versions before take
 * no part in them. On Linux they are locks of open files on bytes from offset 2^62 on, which disturb
 * neither flock() nor locks on the content; a process that may read a file can hold them up. On file
 * systems without locks there is no waiting. */

/** Sets an entry to a value. What is missing is added: an entry at the end of its section, after the
 *  comments there; a section at the end of the file; the file. NIL or "" as the path means the main
 *  configuration file.
 *
 *  @retval INI_OK            done
 *  @retval INI_NOT_WRITABLE  the file cannot be opened for writing, or is in use; it is unchanged
 *  @retval INI_WRITE_FAILED  writing failed; the file is unchanged
 *  @retval INI_FAILED        the main configuration file was not found, or the file cannot be read */
KV_API int32_t KV_CALL ini_write_string(const char *path, const char *section, const char *entry,
                                        const char *value) KV_NOEXCEPT;

/** Sets an entry to a whole number; as ini_write_string(). */
KV_API int32_t KV_CALL ini_write_long(const char *path, const char *section, const char *entry,
                                      int32_t value) KV_NOEXCEPT;

/** Sets an entry to a real number with six digits after the point; as ini_write_string(). */
KV_API int32_t KV_CALL ini_write_double(const char *path, const char *section, const char *entry,
                                        double value) KV_NOEXCEPT;

/** Sets an entry to a list of whole numbers with commas between them.
 *
 *  @param count  how many; 0 or less writes an empty value
 *  @retval INI_NO_ROOM  the text, with a comma after each number, is longer than 512 characters; the file
 *                       is untouched. Otherwise as ini_write_string(). */
KV_API int32_t KV_CALL ini_write_longs(const char *path, const char *section, const char *entry,
                                       const int32_t *items, int32_t count) KV_NOEXCEPT;

/** Sets an entry to a list of real numbers with six significant digits; otherwise as ini_write_longs(). */
KV_API int32_t KV_CALL ini_write_doubles(const char *path, const char *section, const char *entry,
                                         const double *items, int32_t count) KV_NOEXCEPT;

/** Removes an entry.
 *
 *  @param path  the file; NIL is not accepted here, nor by the functions below
 *  @retval INI_OK          the entry was there; that the new file could be saved it does not say
 *  @retval INI_NO_SECTION  no such section
 *  @retval INI_NO_ENTRY    no such entry
 *  @retval INI_FAILED      there is no such file, it cannot be read, or it is in use */
KV_API int32_t KV_CALL ini_delete_entry(const char *path, const char *section,
                                        const char *entry) KV_NOEXCEPT;

/** Removes a section: its header and all up to the next one. Of the unnamed section the comments stay.
 *
 *  @retval INI_OK          the section was there; that the new file could be saved it does not say
 *  @retval INI_NO_SECTION  no such section
 *  @retval INI_FAILED      there is no such file, it cannot be read, or it is in use */
KV_API int32_t KV_CALL ini_delete_section(const char *path, const char *section) KV_NOEXCEPT;

/** Renames a section. The unnamed section gets a header before its first entry.
 *
 *  @param oldname  the section; the blanks around it are ignored
 *  @param newname  its new name: the first 79 characters, without the blanks around them
 *  @retval INI_OK            done
 *  @retval INI_BAD_NAME      the new name is empty; the file was not opened
 *  @retval INI_NO_SECTION    no such section
 *  @retval INI_NOT_WRITABLE  the file cannot be opened for writing, or is in use; it is unchanged
 *  @retval INI_WRITE_FAILED  writing failed; the file is unchanged
 *  @retval INI_FAILED        there is no such file, or it cannot be read */
KV_API int32_t KV_CALL ini_rename_section(const char *path, const char *oldname,
                                          const char *newname) KV_NOEXCEPT;

/** Renames an entry; its value stays.
 *
 *  @param section  the section; the blanks around it are ignored
 *  @param oldname  the key
 *  @param newname  its new name: the first 79 characters, without the blanks around them
 *  @retval INI_OK            done
 *  @retval INI_BAD_NAME      the new name is empty; the file was not opened
 *  @retval INI_NO_SECTION    no such section
 *  @retval INI_NO_ENTRY      no such entry, or (INI_NOT_WRITABLE) the file cannot be opened for writing or
 *                            is in use
 *  @retval INI_WRITE_FAILED  writing failed; the file is unchanged
 *  @retval INI_FAILED        there is no such file, or it cannot be read */
KV_API int32_t KV_CALL ini_rename_entry(const char *path, const char *section, const char *oldname,
                                        const char *newname) KV_NOEXCEPT;

/** What an INI_EDIT does, as the function of that name. */
enum {
    INI_EDIT_WRITE = 0,          /**< ini_write_string(): entry, and its value in text */
    INI_EDIT_DELETE_ENTRY = 1,   /**< ini_delete_entry(): entry */
    INI_EDIT_DELETE_SECTION = 2, /**< ini_delete_section() */
    INI_EDIT_RENAME_ENTRY = 3,   /**< ini_rename_entry(): entry, and its new name in text */
    INI_EDIT_RENAME_SECTION = 4  /**< ini_rename_section(): the section's new name in text */
};

/** One of several edits. What an edit does not use is not read. */
typedef struct INI_EDIT {
    int32_t operation; /**< one of the INI_EDIT_ operations */
    const char *section;
    const char *entry;
    const char *text;
} INI_EDIT;

/** Makes several edits one after the other and saves the file once: all of them or none. An addition of
 *  this library's own.
 *
 *  Other than with the edits' functions, a line of more than 511 characters stays byte for byte, as long as
 *  what is read in its place is not what changes; of an entry that is set or deleted all of the line goes,
 *  and of one that is renamed all of the value stays.
 *
 *  @param path     the file; NIL or "" means the main configuration file. It need not exist if the first
 *                  edit writes an entry.
 *  @param edits    count edits
 *  @param reached  receives the index of the edit that failed, or count when all of them could be made
 *                  and saving failed; may be NIL
 *  @retval INI_OK  done. Otherwise the file is unchanged. With *reached less than count the status is what
 *                  the edit's function gives: INI_NO_SECTION, INI_NO_ENTRY or INI_BAD_NAME; INI_FAILED for
 *                  an unknown operation, or a file that was not found or cannot be read. With *reached
 *                  equal to count it is INI_NOT_WRITABLE (also of a file in use), INI_WRITE_FAILED or
 *                  INI_FAILED. */
KV_API int32_t KV_CALL ini_edit(const char *path, const INI_EDIT *edits, int32_t count,
                                int32_t *reached) KV_NOEXCEPT;

/* ---- Reading or writing, as a flag says
 *
 * With write not 0 they are the ini_write_ functions, else the ini_read_ functions, with their statuses. */

/** Writes the text in buf (size is not used), or reads into it. */
KV_API int32_t KV_CALL ini_rw_string(int32_t write, const char *path, const char *section,
                                     const char *entry, char *buf, int32_t *size) KV_NOEXCEPT;

/** Writes or reads *value; INI_NO_ROOM when value is NIL. */
KV_API int32_t KV_CALL ini_rw_long(int32_t write, const char *path, const char *section, const char *entry,
                                   int32_t *value) KV_NOEXCEPT;

/** Writes or reads *value; INI_NO_ROOM when value is NIL. */
KV_API int32_t KV_CALL ini_rw_double(int32_t write, const char *path, const char *section,
                                     const char *entry, double *value) KV_NOEXCEPT;

/** Writes *count items, or reads as many as fit; INI_NO_ROOM also when items or count is NIL. */
KV_API int32_t KV_CALL ini_rw_longs(int32_t write, const char *path, const char *section, const char *entry,
                                    int32_t *items, int32_t *count) KV_NOEXCEPT;

/** Writes *count items, or reads as many as fit; INI_NO_ROOM also when items or count is NIL. */
KV_API int32_t KV_CALL ini_rw_doubles(int32_t write, const char *path, const char *section,
                                      const char *entry, double *items, int32_t *count) KV_NOEXCEPT;

/** Reads the sounds for errors, warnings and ticks from the section "Beep" of the main configuration file:
 *  the entries "Error", "Warning" and "Tick", two whole numbers each. What is missing there stays as it
 *  was; at the start the pairs are 500,700 and 100,700 and 1,0. Nothing in the library plays them. */
KV_API void KV_CALL ini_initialize_tkit(void) KV_NOEXCEPT;

KV_END_DECLS

#endif

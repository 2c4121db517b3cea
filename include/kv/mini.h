/* SPDX-License-Identifier: MIT */
/* In-memory INI: the sections of one INI file kept in memory.
 *
 * A cache is opened on a file, whether it exists yet or not. Its sections are loaded all at once
 * (MINI_LOADALL) or each when it is first asked for; reads and writes work on the loaded sections, and
 * mini_update_file() or mini_close() puts the changes into the file. A section that is not loaded costs a
 * walk through the file at each access; in a loaded one, finding an entry costs the same however many
 * sections and entries there are.
 *
 * The format, and which entry a name means, is that of kv/ini.h; two things differ. A line has at most 512
 * characters, a longer one is taken as several lines; and a zero byte ends a line, what follows is the
 * next one. Of two sections of one name, and of two entries of one key, lookups find the first.
 *
 * A section argument may be NIL, empty or blank for the unnamed section, and blanks around it are ignored,
 * except where its name is said to be compared as given; entries are compared as given. Names are meant to
 * have at most 79 characters, a line of key, "=" and value at most 512; what is longer is kept, but does
 * not read back whole from the file. Functions that take a buffer write nothing outside it.
 *
 * The status codes are those of kv/ini.h and MINI_REFUSED. A line without "=" in a section that is loaded
 * is reported with kv_error() ("Incorrect entry's format. '=' is not found.", source "Mini") and skipped.
 * An exhausted heap while a section is loaded or a value written ends the process with kv_exit()
 * ("Insufficient of memory.").
 *
 * A cache is meant for one thread at a time; different caches may be used at the same time, also on the
 * same file. */
#ifndef KV_MINI_H
#define KV_MINI_H

#include "kv/ini.h"
#include "kv/types.h"

KV_BEGIN_DECLS

/** A cache. */
typedef struct MINI MINI;

/** Flags of mini_open(). */
enum {
    MINI_REWRITE = 1, /**< an update writes the cache alone: comments, empty lines and the sections that
                           are not loaded are lost */
    MINI_LOADALL = 2, /**< load every section now */
    MINI_READONLY = 4 /**< never write the file: deleting and renaming are refused, what is written stays
                           in memory */
};

/** Status: refused, since the cache is read-only. */
enum { MINI_REFUSED = 4 };

/* ---- The cache and its file */

/** Opens a cache on an INI file.
 *
 *  @param dir    the directory of a `name` that has none; NIL or "": the current directory of this moment
 *  @param name   the file; NIL, "" or a name that ends with a separator: the main configuration file,
 *                which kv_suche_datei() finds. When that fails it is reported ("kv_suche_datei did not
 *                find KVINIFILE"), and the cache is one of a file that does not exist.
 *  @param flags  the MINI_ flags, joined with |
 *  @return the cache, which mini_close() frees; a file that cannot be opened is made by the first update.
 *          NIL when the heap is exhausted or the path has more than 255 characters, and with MINI_READONLY
 *          when the file cannot be read. */
KV_API MINI *KV_CALL mini_open(const char *dir, const char *name, int32_t flags) KV_NOEXCEPT;

/** Updates the file, unless the cache is read-only, and frees the cache. Whether the update succeeded is
 *  not told; who has to know calls mini_update_file() before.
 *
 *  @param cache  the caller's pointer to the cache; becomes NIL
 *  @retval 1  closed
 *  @retval 0  `cache`, or the pointer, is NIL */
KV_API int32_t KV_CALL mini_close(MINI **cache) KV_NOEXCEPT;

/** Puts the changes into the file.
 *
 *  Usually they are merged into it as it is now, so that what others have changed in sections that are not
 *  loaded stays. The lines of a loaded section become those of the cache: values are replaced in place,
 *  entries that the cache has no more disappear, new ones come at the end of the section; new sections
 *  come at the end of the file. Comments stay. The lines lose the white space around them, and empty lines
 *  are left out but for one before each header after the first entry. Lines without "=" in loaded
 *  sections are reported ("Incorrect entry's format. '=' is not found;", "entry has been ignored") and
 *  left out. With MINI_REWRITE the sections are written one after the other without empty lines.
 *
 *  A section that a write has created, because the file did not have it, is looked for again now: entries
 *  that others have put into the file meanwhile stay and are loaded.
 *
 *  The file has either its old content or all of the new one, whenever the process or the machine stops,
 *  but for the files that are written in place, which kv/ini.h names. Updates wait for other changes of the
 *  file and for each other as said there, too.
 *
 *  @retval 1  the file was rewritten
 *  @retval 0  `cache` is NIL or read-only, the file cannot be read or written or is in use, or the heap is
 *             exhausted: the file is as it was, and the changes are still to be put into it */
KV_API int32_t KV_CALL mini_update_file(MINI *cache) KV_NOEXCEPT;

/** Frees all loaded sections; what was written to them and not yet put into the file is lost.
 *
 *  @retval INI_OK      done
 *  @retval INI_FAILED  `cache` is NIL */
KV_API int32_t KV_CALL mini_unload_all_sections(MINI *cache) KV_NOEXCEPT;

/** Frees one loaded section; as mini_unload_all_sections().
 *
 *  @param section  the name, compared as given
 *  @retval INI_OK          done
 *  @retval INI_NO_SECTION  `section` is NIL or not loaded
 *  @retval INI_FAILED      `cache` is NIL */
KV_API int32_t KV_CALL mini_unload_one_section(MINI *cache, const char *section) KV_NOEXCEPT;

/* ---- Reading. A section that is not loaded is loaded first. */

/** Reads an entry's value, or lists the keys of a section.
 *
 *  @param entry  the key, or NIL to list the section's keys
 *  @param buf    for a value: receives it with its terminator, size + 1 bytes. For a list: receives each
 *                key followed by a zero byte, and one more zero byte at the end, size bytes in all;
 *                str_tok(buf, NIL) walks through it
 *  @param size   for a value: the most characters to copy; receives the value's length if it fits. For a
 *                list: the capacity in bytes; receives the bytes used, the last zero byte not counted.
 *  @retval INI_OK          the whole value, or all keys
 *  @retval INI_NO_ROOM     the value was cut (size is unchanged), or only the first keys, each of them
 *                          whole, did fit; or `buf` or `size` is NIL
 *  @retval INI_NO_SECTION  the section is neither loaded nor in the file
 *  @retval INI_NO_ENTRY    no such entry
 *  @retval INI_FAILED      `cache` is NIL, or the file is there but cannot be read. Here, and where there
 *                          is no section or entry, buf and size are untouched. */
KV_API int32_t KV_CALL mini_read_string(MINI *cache, const char *section, const char *entry, char *buf,
                                        int32_t *size) KV_NOEXCEPT;

/** Reads an entry as a whole number, as convert_stol() reads it.
 *
 *  @retval INI_OK  *value is the number. Otherwise *value is untouched, and the result is
 *  @retval INI_NO_ROOM     `value` is NIL
 *  @retval INI_NO_ENTRY    `entry` is NIL, or there is no such entry
 *  @retval INI_NO_SECTION  the section is neither loaded nor in the file
 *  @retval INI_FAILED      `cache` is NIL, or the file is there but cannot be read */
KV_API int32_t KV_CALL mini_read_long(MINI *cache, const char *section, const char *entry,
                                      int32_t *value) KV_NOEXCEPT;

/** Reads an entry as a real number, as convert_stod() reads it; otherwise as mini_read_long(). */
KV_API int32_t KV_CALL mini_read_double(MINI *cache, const char *section, const char *entry,
                                        double *value) KV_NOEXCEPT;

/** Reads an entry as a list of whole numbers with commas between them, each as convert_stol() reads it. A
 *  comma at the end is followed by no item; an empty value is an empty list.
 *
 *  @param items  receives the numbers
 *  @param count  how many numbers fit into items; receives how many there are
 *  @retval INI_OK          done
 *  @retval INI_NO_ROOM     there are more than fit: items is full, count is unchanged; or `items` or
 *                          `count` is NIL
 *  @retval INI_NO_ENTRY    `entry` is NIL, or there is no such entry; here and below count is unchanged
 *  @retval INI_NO_SECTION  the section is neither loaded nor in the file
 *  @retval INI_FAILED      `cache` is NIL, or the file is there but cannot be read */
KV_API int32_t KV_CALL mini_read_longs(MINI *cache, const char *section, const char *entry, int32_t *items,
                                       int32_t *count) KV_NOEXCEPT;

/** Reads an entry as a list of real numbers, each as convert_stod() reads it; otherwise as
 *  mini_read_longs(). */
KV_API int32_t KV_CALL mini_read_doubles(MINI *cache, const char *section, const char *entry, double *items,
                                         int32_t *count) KV_NOEXCEPT;

/** Gives a value as a text; never NIL.
 *
 *  @param section  with `buf` as for mini_read_string(); without it compared as given, and NIL finds
 *                  nothing
 *  @param buf      receives what mini_read_string() gives, and "" where that is not INI_OK; at least one
 *                  byte. NIL: nothing is copied and `size` not used.
 *  @return buf. Without it the cache's own copy of the value, valid until the entry is changed or unloaded;
 *          "" when `cache`, `section` or `entry` is NIL or there is no such value. */
KV_API const char *KV_CALL mini_get_string(MINI *cache, const char *section, const char *entry, char *buf,
                                           int32_t *size) KV_NOEXCEPT;

/* ---- Writing, to the cache; on a read-only cache too. A section that is not loaded is loaded first. */

/** Sets an entry to a value. A section or an entry that is missing is added at the end, the unnamed section
 *  in front.
 *
 *  @param entry  the key; blanks around it are ignored
 *  @param value  the value, copied; it may be one that mini_get_string() gave
 *  @retval INI_OK        done
 *  @retval INI_NO_ENTRY  `entry` is NIL or blank; a missing section is added all the same for a blank one
 *  @retval INI_NO_ROOM   `value` is NIL; nothing is changed
 *  @retval INI_FAILED    `cache` is NIL, or the file is there but cannot be read, so that the section's
 *                        other entries are not known; nothing is changed */
KV_API int32_t KV_CALL mini_write_string(MINI *cache, const char *section, const char *entry,
                                         const char *value) KV_NOEXCEPT;

/** Sets an entry to a whole number; as mini_write_string(). */
KV_API int32_t KV_CALL mini_write_long(MINI *cache, const char *section, const char *entry,
                                       int32_t value) KV_NOEXCEPT;

/** Sets an entry to a real number with six significant digits; as mini_write_string(). */
KV_API int32_t KV_CALL mini_write_double(MINI *cache, const char *section, const char *entry,
                                         double value) KV_NOEXCEPT;

/** Sets an entry to a list of whole numbers with commas between them.
 *
 *  @param count  how many; 0 or less writes an empty value
 *  @retval INI_NO_ROOM  the text, with a comma after each number, is longer than 512 characters, or
 *                       `items` is NIL and count positive; nothing is changed. Otherwise as
 *                       mini_write_string(). */
KV_API int32_t KV_CALL mini_write_longs(MINI *cache, const char *section, const char *entry,
                                        const int32_t *items, int32_t count) KV_NOEXCEPT;

/** Sets an entry to a list of real numbers with six significant digits; as mini_write_longs(). */
KV_API int32_t KV_CALL mini_write_doubles(MINI *cache, const char *section, const char *entry,
                                          const double *items, int32_t count) KV_NOEXCEPT;

/* ---- Either */

/** mini_write_string() of buf if `write` is not 0, else mini_read_string(). */
KV_API int32_t KV_CALL mini_rw_string(int32_t write, MINI *cache, const char *section, const char *entry,
                                      char *buf, int32_t *size) KV_NOEXCEPT;

/** mini_write_long() of *value if `write` is not 0, else mini_read_long().
 *
 *  @retval INI_NO_ROOM  `value` is NIL; otherwise as those */
KV_API int32_t KV_CALL mini_rw_long(int32_t write, MINI *cache, const char *section, const char *entry,
                                    int32_t *value) KV_NOEXCEPT;

/** mini_write_double() of *value if `write` is not 0, else mini_read_double(); as mini_rw_long(). */
KV_API int32_t KV_CALL mini_rw_double(int32_t write, MINI *cache, const char *section, const char *entry,
                                      double *value) KV_NOEXCEPT;

/** mini_write_longs() of *count items if `write` is not 0, else mini_read_longs().
 *
 *  @retval INI_NO_ROOM  `items` or `count` is NIL; otherwise as those */
KV_API int32_t KV_CALL mini_rw_longs(int32_t write, MINI *cache, const char *section, const char *entry,
                                     int32_t *items, int32_t *count) KV_NOEXCEPT;

/** mini_write_doubles() of *count items if `write` is not 0, else mini_read_doubles(); as
 *  mini_rw_longs(). */
KV_API int32_t KV_CALL mini_rw_doubles(int32_t write, MINI *cache, const char *section, const char *entry,
                                       double *items, int32_t *count) KV_NOEXCEPT;

/* ---- Deleting and renaming
 *
 * Of a loaded section, entries are deleted and renamed in the cache, and the file follows with the next
 * update. Otherwise the file is changed at once, as the ini_ function of the same name does it. */

/** Deletes an entry.
 *
 *  @retval INI_OK          done
 *  @retval INI_NO_ENTRY    `entry` is NIL, or there is no such entry
 *  @retval MINI_REFUSED    the cache is read-only
 *  @retval INI_NO_SECTION  the section is neither loaded nor in the file
 *  @retval INI_FAILED      `cache` is NIL; or the section is not loaded, and there is no file or it cannot
 *                          be read */
KV_API int32_t KV_CALL mini_delete_entry(MINI *cache, const char *section, const char *entry) KV_NOEXCEPT;

/** Deletes a section, a loaded one from the cache and, at once, from the file; whether the file could be
 *  changed is then not told.
 *
 *  @param section  the name; NIL is not accepted for the unnamed section
 *  @retval INI_OK          done
 *  @retval INI_NO_ENTRY    `section` is NIL
 *  @retval MINI_REFUSED    the cache is read-only
 *  @retval INI_NO_SECTION  the section is neither loaded nor in the file
 *  @retval INI_FAILED      `cache` is NIL; or the section is not loaded, and there is no file or it cannot
 *                          be read */
KV_API int32_t KV_CALL mini_delete_section(MINI *cache, const char *section) KV_NOEXCEPT;

/** Renames an entry, which keeps its place and its value.
 *
 *  @param oldname  the key, compared as given
 *  @param newname  its new name: the first 79 characters, without the blanks around them; NIL counts as ""
 *  @retval INI_OK           done
 *  @retval INI_NO_ENTRY     `oldname` is NIL, or there is no such entry; or, where the section is not
 *                           loaded, the file cannot be opened for writing (INI_NOT_WRITABLE)
 *  @retval MINI_REFUSED     the cache is read-only
 *  @retval INI_BAD_NAME     the new name is empty
 *  @retval INI_NO_SECTION   the section is neither loaded nor in the file
 *  @retval INI_WRITE_FAILED the section is not loaded, and writing the file failed
 *  @retval INI_FAILED       `cache` is NIL; the section is not loaded, and there is no file or it cannot be
 *                           read; or the heap is exhausted. Nothing is changed but after INI_OK. */
KV_API int32_t KV_CALL mini_rename_entry(MINI *cache, const char *section, const char *oldname,
                                         const char *newname) KV_NOEXCEPT;

/** Renames a section, a loaded one in the cache and, at once, in the file; whether the file could be
 *  changed is then not told.
 *
 *  @param oldname  the section; NIL is not accepted for the unnamed section
 *  @param newname  as for mini_rename_entry()
 *  @retval INI_OK           done
 *  @retval INI_NO_ENTRY     `oldname` is NIL; or, where the section is not loaded, the file cannot be
 *                           opened for writing (INI_NOT_WRITABLE)
 *  @retval MINI_REFUSED     the cache is read-only
 *  @retval INI_BAD_NAME     the new name is empty
 *  @retval INI_NO_SECTION   the section is neither loaded nor in the file
 *  @retval INI_WRITE_FAILED the section is not loaded, and writing the file failed
 *  @retval INI_FAILED       as for mini_rename_entry() */
KV_API int32_t KV_CALL mini_rename_section(MINI *cache, const char *oldname,
                                           const char *newname) KV_NOEXCEPT;

KV_END_DECLS

#endif

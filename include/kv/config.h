/* SPDX-License-Identifier: MIT */
/* Configuration search: the main configuration file "kv3.ini" and the files that it names.
 *
 * What steers the search:
 *
 *   KV        environment variable: a directory that is searched after the current one
 *   kv        environment variable: the full path of the main configuration file, for kv_getinipath().
 *             Where the names of variables have no case, these two are one variable.
 *   registry  under the current user, the default value of the key "Software\kv Software AG\<file name>" is
 *             the full path of that file, at most 255 characters. On POSIX the registry is the text file
 *             that the environment variable KV_REGISTRY names (by a path of the host); nothing is found
 *             without it. There "[Software\kv Software AG\kv3.ini]" begins a key, whose name has no case,
 *             and a line "@=C:\config\kv3.ini" is its default value, without the blanks around it. A line
 *             that begins with ";" is a comment.
 *
 * The main configuration file is looked for
 *
 *   1. in the current directory,
 *   2. in the directory that KV names, if that is set and not empty,
 *   3. in "C:\",
 *   4. where the registry says.
 *
 * Another file is looked for
 *
 *   1. as it is named, in the current directory unless the name is absolute,
 *   2. in the directory that KV names,
 *   3. in each of the directories that an entry of the main configuration file lists, separated by ";",
 *   4. where the registry says, if there is no main configuration file or it has no such entry.
 *
 * Paths have at most 255 characters; a place whose path would be longer does not count. The list of
 * directories and the values of paths have at most 256 characters; a longer value counts as missing.
 * Failures are reported with kv_error() (source "Kv"), those of the registry not at all. The family is
 * meant for one thread. */
#ifndef KV_CONFIG_H
#define KV_CONFIG_H

#include "kv/types.h"

KV_BEGIN_DECLS

/** Searches the main configuration file or another one.
 *
 *  @param section,entry  the entry of the main configuration file that lists the directories to search.
 *                        When either is NIL or empty, a file that the current directory and KV do not have
 *                        gives the main configuration file itself
 *  @param filename       the file, with or without directories; NIL for the main configuration file. A
 *                        file without a name ("") is nowhere
 *  @param out            receives the file's full path: 256 bytes
 *  @retval 0   found
 *  @retval -1  not found; out is untouched. Reports: "File C:\kv3.ini not found" when the main
 *              configuration file is missing (the registry may still give another file), "File <filename>
 *              in <list> not found" when none of the listed directories has the file */
KV_API int32_t KV_CALL kv_suche_datei(const char *section, const char *entry, const char *filename,
                                      char *out) KV_NOEXCEPT;

/** Reads a path from an entry of the main configuration file, and writes it as fio_makepath() does: with
 *  "\" as the separator and without one at its end.
 *
 *  @param section  the section; NIL for the unnamed one
 *  @param out      receives the path: 256 bytes
 *  @retval 0   done
 *  @retval -1  after a report, out being untouched: "File kv3.ini  not found" when the main configuration
 *              file is missing; "Section <section> or Entry <entry> in <file> not found" when it has no
 *              such entry, when the entry is NIL, or when the path has more than 255 characters */
KV_API int32_t KV_CALL kv_suche_pfad(const char *section, const char *entry, char *out) KV_NOEXCEPT;

/** The path of an INI file that is known by a short name. The main configuration file is here the one that
 *  the variable kv names, or "c:\kv3.ini" when that is not set; it is not searched.
 *
 *  @param name  the short name, not NIL
 *  @return never NIL, and not to be freed. For the name "kv" the path of the main configuration file, valid
 *          until the variable changes. Otherwise the library's own buffer of 256 bytes, overwritten by the
 *          next call, with the value of the entry `name` in its section "Pfade", or, when there is none or
 *          it has more than 255 characters, "c:\<name>.ini"; the empty text when that is too long */
KV_API const char *KV_CALL kv_getinipath(const char *name) KV_NOEXCEPT;

/* ---- An addition: what the search does */

/** The places of a search. */
enum {
    KV_PLACE_CURRENT = 1,  /**< as it is named, in the current directory */
    KV_PLACE_VARIABLE = 2, /**< the directory that KV names */
    KV_PLACE_DRIVE_C = 3,  /**< the root of drive C */
    KV_PLACE_REGISTRY = 4, /**< the path in the registry */
    KV_PLACE_LIST = 5,     /**< a directory that the main configuration file lists */
    KV_PLACE_MAIN = 6      /**< the main configuration file instead of the file */
};

/** Is told of a place.
 *
 *  @param place  one of KV_PLACE_
 *  @param path   the file's path there, valid during the call; NIL when KV is not set or the registry has
 *                no such key; the empty text when the path would be too long
 *  @param found  1 if the file is there, else 0 */
typedef void(KV_CALL *kv_place_function)(int32_t place, const char *path, int32_t found, void *user);

/** Searches as kv_suche_datei(), and tells of every place in the order in which it was looked at. Where the
 *  main configuration file has to be found first, its places are told too.
 *
 *  @retval 0   found, at the last place that was told
 *  @retval -1  not found, after the same reports */
KV_API int32_t KV_CALL kv_suche_orte(const char *section, const char *entry, const char *filename,
                                     kv_place_function visit, void *user) KV_NOEXCEPT;

KV_END_DECLS

#endif

/* SPDX-License-Identifier: MIT */
/* Tables of profiles (cross-sections) and of mats: reading, stepping forwards and backwards, searching.
 *
 * A table is a text file (CR LF or LF; it ends at a Ctrl-Z). Its first line, which needs a line end, names
 * the columns, with blanks or tabs between them. Each further line is an entry: two fields that are its
 * name, such as a type and a size, then one field for each further column:
 *
 *     Typ Groesse  h    b    A      Iy
 *     HEB 100      100  100  26.04  449.5
 *     HEB 200      200  200  78.08  nil
 *
 * A value is a number as convert_stod() reads it, so that a text which is none is 0, or "nil" for a missing
 * value, which is -1. Of a field the first 79 characters count. An entry is to have as many fields as the
 * header has names: the reader counts fields, not lines, so that a missing or an additional one shifts all
 * that follows. Profile tables have the extension ".pro", mat tables ".mtt"; nothing else tells them apart.
 *
 * The application says with a list of names which columns it wants. Their values come in the order of that
 * list, in an array with one element for each name; what a call has no value for is -1 there. A full name,
 * the first two fields with one blank between them, needs a buffer of PROFIL_NAME_SIZE bytes; it is only
 * written when an entry was found.
 *
 * A handle stands before the first entry when it is opened. profil_next() gives the entry after the one
 * last read, profil_prev() the one before it; after a search both go on from the entry found.
 *
 * Nothing here reports; results tell all, though kv_suche_datei() may report that there is no main
 * configuration file. A handle belongs to one thread at a time, the profile directory to the process. */
#ifndef KV_PROFILES_H
#define KV_PROFILES_H

#include "kv/types.h"

KV_BEGIN_DECLS

/** An open table. */
typedef struct PROFIL PROFIL;

enum {
    PROFIL_FIELD_SIZE = 80, /**< of the text of a field, with its terminator */
    PROFIL_NAME_SIZE = 160, /**< of a full name, with its terminator */
    PROFIL_PART_SIZE = 81   /**< of the parts that profil_convert_result() writes */
};

/* ---- Opening
 *
 * A table's name is converted to lower case. With neither a drive nor a directory it is in the directory
 * of its family: for profiles the one of profil_path(), or else the entry "Profile", for mats the entry
 * "Matten", in section "System" of the main configuration file (kv_suche_datei()). Without such an entry it
 * is in the current directory. A path that begins with "." or "\" is relative to the current directory.
 * A name without a "." after its directory gets the extension. Names and directories count with their
 * first 255 characters; a path that becomes longer than that names no file. */

/** Sets the directory of the profile tables for this process.
 *
 *  @param path  the directory; blanks around it do not count. NIL or empty: the entry "Profile" is read
 *               now, and if there is none, again for each table */
KV_API void KV_CALL profil_path(const char *path) KV_NOEXCEPT;

/** Opens a table of profiles.
 *
 *  @param path     the table's name
 *  @param names    the wanted columns, NIL at the end. Upper and lower case are different. A name that is
 *                  not in the header keeps -1, and so do those of the first two columns; of a name that is
 *                  there twice, the last one gets the values
 *  @param factors  what the values are multiplied by, one for each name; NIL for 1
 *  @return the handle, which the caller closes with profil_close(). NIL when the file cannot be opened,
 *          its first line has no name or no line end, or the heap is exhausted */
KV_API PROFIL *KV_CALL profil_open(const char *path, const char *const *names,
                                   const double *factors) KV_NOEXCEPT;

/** Opens a table of mats; without factors, and else as profil_open(). */
KV_API PROFIL *KV_CALL matte_open(const char *path, const char *const *names) KV_NOEXCEPT;

/** Closes a table and frees its handle; NIL is allowed.
 *
 *  @retval 0  always */
KV_API int32_t KV_CALL profil_close(PROFIL *table) KV_NOEXCEPT;

/** The same as profil_close(). */
KV_API int32_t KV_CALL matte_close(PROFIL *table) KV_NOEXCEPT;

/** Returns to before the first entry and drops the conditions of searches.
 *
 *  @param names    the columns that are wanted from now on, as for profil_open(), and with them the size of
 *                  the arrays; NIL to keep those that are set
 *  @param factors  as for profil_open(); not read when names is NIL
 *  @retval 0  always; also for NIL */
KV_API int32_t KV_CALL profil_reset(PROFIL *table, const char *const *names,
                                    const double *factors) KV_NOEXCEPT;

/** @return the names of all columns in the order of the header, each with a zero byte at its end, and one
 *          more zero byte after the last one; the handle's own, valid until it is closed. NIL for NIL */
KV_API const char *KV_CALL profil_get_all_items(PROFIL *table) KV_NOEXCEPT;

/* ---- One entry after the other */

/** Reads the next entry.
 *
 *  @param values  receives the values of the wanted columns
 *  @param name    receives the full name
 *  @retval 0   done
 *  @retval -1  the table is at its end, and all values are -1; or NIL handle */
KV_API int32_t KV_CALL profil_next(PROFIL *table, double *values, char *name) KV_NOEXCEPT;

/** The same as profil_next(). */
KV_API int32_t KV_CALL matte_next(PROFIL *table, double *values, char *name) KV_NOEXCEPT;

/** Reads the entry before the one last read.
 *
 *  Lines are counted, in blocks of 16. So the way back wants one entry in a line, ended by its last field:
 *  with empty lines between the entries, blanks at the ends of lines or a wrong number of fields it may
 *  meet an entry again, or leave one out.
 *
 *  @param values  receives the values of the wanted columns
 *  @param name    receives the full name
 *  @retval 0   done
 *  @retval -1  there is none, and all values are -1: the handle stands before the first entry again; or NIL
 *              handle */
KV_API int32_t KV_CALL profil_prev(PROFIL *table, double *values, char *name) KV_NOEXCEPT;

/* ---- Searching
 *
 * A pattern says which names are wanted; blanks and tabs in it do not count, and NIL is an empty pattern.
 *
 * It begins with the letters of a type, which must be the whole first field, in either case; without
 * letters any type will do. Then follow the dimensions, which are compared with the second field: numbers
 * with one of the separators x X / , - between them, the very same one standing at the same place there. A
 * number is a lower bound; in parentheses, alone or several with their separators, it is exact. Where the
 * field has a number and the pattern none, any number will do. What the field has after the last dimension
 * compared does not count, nor does what the pattern has from a second "(" on. A second field that begins
 * with no number matches no pattern.
 *
 *     HEB200       the first HEB of 200 or more           L100x10     of at least 100 by at least 10
 *     HEB(200)     HEB 200 only                           L(100x10)   L 100x10 only
 *     200          any type, of 200 or more               Lx10        any L that is at least 10 thick
 *
 * A number is digits, a point and digits, and "e" with an exponent; "e3" is 1000. Digits before the point
 * are a 32-bit number, which overflows silently. */

/** Finds the first entry of the table that matches.
 *
 *  @param pattern  what its name is to be
 *  @param values   receives the values of the wanted columns
 *  @param name     receives the full name
 *  @retval 0   found
 *  @retval -1  there is none, and all values are -1; NIL handle; or the heap is exhausted */
KV_API int32_t KV_CALL profil_get(PROFIL *table, const char *pattern, double *values,
                                  char *name) KV_NOEXCEPT;

/** Finds the first entry whose name has exactly the numbers of the pattern: as profil_get(), with
 *  parentheses around every number of the pattern that begins with a digit or a point, and around nothing
 *  else. The pattern counts with its first 255 characters. */
KV_API int32_t KV_CALL profil_get_exact(PROFIL *table, const char *pattern, double *values,
                                        char *name) KV_NOEXCEPT;

/** Finds the first entry that matches and gives its fields as they stand in the table.
 *
 *  @param texts  receives the texts of the wanted columns; the empty text for a column without one
 *  @retval 0   found
 *  @retval -1  there is none, and all texts are empty; NIL handle; or the heap is exhausted */
KV_API int32_t KV_CALL profil_get_strings(PROFIL *table, const char *pattern,
                                          char (*texts)[PROFIL_FIELD_SIZE], char *name) KV_NOEXCEPT;

/** A condition for the value of a column, its factor applied. */
typedef struct PROFIL_CONDITION {
    const char *name; /**< of the column; a condition on a column that is not there always holds, and so
                           does one on the first two */
    char *op;         /**< ">", "<", ">=", "<="; "=" or "==": less than 1e-15 off; "!=" or "<>": not that.
                           Blanks and tabs are removed from the text where it stands. Any other text is a
                           condition that always holds */
    double value;
} PROFIL_CONDITION;

/** Finds the first entry of the table that matches and meets all conditions.
 *
 *  @param conditions  count of them; the handle keeps them for profil_search_next(). NIL or a count below
 *                     1 for none
 *  @param values      receives the values of the wanted columns; when there is none, it may hold values of
 *                     entries that were rejected
 *  @retval 0   found
 *  @retval -1  there is none; NIL handle; or the heap is exhausted */
KV_API int32_t KV_CALL profil_search(PROFIL *table, const PROFIL_CONDITION *conditions, int32_t count,
                                     const char *pattern, double *values, char *name) KV_NOEXCEPT;

/** As profil_search(), but goes on after the entry last read.
 *
 *  @param conditions  NIL: those of the last search stay */
KV_API int32_t KV_CALL profil_search_next(PROFIL *table, const PROFIL_CONDITION *conditions, int32_t count,
                                          const char *pattern, double *values, char *name) KV_NOEXCEPT;

/** Gets the values of the wanted columns; the entry is accepted unless it returns 0. */
typedef int32_t(KV_CALL *profil_filter_function)(double *values);

/** Finds the next entry, after the one last read, that matches and that a filter accepts. Conditions do
 * not count.
 *
 *  @param filter  NIL accepts every entry
 *  @param values  receives the values of the wanted columns; when none is accepted, those of the last entry
 *                 that matched
 *  @retval 0   found
 *  @retval -1  there is none; NIL handle; or the heap is exhausted */
KV_API int32_t KV_CALL profil_search_f(PROFIL *table, profil_filter_function filter, const char *pattern,
                                       double *values, char *name) KV_NOEXCEPT;

/** Finds the tables (*.pro) of the profile directory that have an entry, as profil_get_exact() finds it.
 *
 *  @param count  receives their number
 *  @param list   receives an array of their names, without what is after the first ".", in the order of
 *                fio_listdir(); the caller frees it with heap_free(). NIL if there are none
 *  @retval 1  done
 *  @retval 0  the directory cannot be listed, it has no tables, or the heap is exhausted; 0 and NIL are
 *             stored */
KV_API int32_t KV_CALL profil_findfiles(const char *pattern, int32_t *count,
                                        char (**list)[PROFIL_FIELD_SIZE]) KV_NOEXCEPT;

/* ---- Names and units */

/** Splits a full name, of which the first 80 characters count, at its first blank.
 *
 *  @param type  receives what is before it, or all; PROFIL_PART_SIZE bytes
 *  @param size  receives what is after it, or the empty text; PROFIL_PART_SIZE bytes */
KV_API void KV_CALL profil_convert_result(const char *name, char *type, char *size) KV_NOEXCEPT;

/** Gives the factors that convert columns to metres and their powers, by the units that tables have:
 *
 *     mm:              b D a h s t r e r1
 *     cm:              iy iz ys ym zs zm ip im izg ez ey
 *     cm^2:            A AQ       cm^3: Wy Sy Wz Wt       cm^4: Iy Iz It       cm^6: Cm
 *
 *  Any other name, and Styp, Ktyp and n, have the factor 1.
 *
 *  @param names    columns, NIL at the end; upper and lower case are different
 *  @param factors  receives one factor for each name */
KV_API void KV_CALL profil_get_factors(const char *const *names, double *factors) KV_NOEXCEPT;

KV_END_DECLS

#endif

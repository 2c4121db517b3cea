/* File I/O: file handles with binary records, paths and names, file system operations, free space.
 *
 * Files are named by a directory and a name (and sometimes a base before them), which fio_makepath()
 * joins; any part may be NIL or empty. Every path buffer has 256 bytes. A path that would have more than
 * 255 characters is never cut, so that it cannot come to name another file: where it is written to a
 * buffer the result is the empty text, and a function that was to work on it fails.
 *
 * A path is a drive (a letter and a colon), a directory and a file name with its extension; all of these
 * may be missing. "\" and "/" both separate. What the drives are on POSIX is said in kv.h; there the
 * current drive is Z: at the start, and the current directory reads as Z:\home\me\work. The drive and the
 * directory belong to the whole process; on POSIX the current directory of Z: is the process's own. */
#ifndef KV_FIO_H
#define KV_FIO_H

#include "kv/types.h"

KV_BEGIN_DECLS

/* ---- Paths */

/** Joins a base, a directory and a name, with "\" as the separator.
 *
 *  Only a drive makes a part absolute: the parts before one that has a drive are left out, but a name
 *  that begins with "\" still goes below the directory. A separator at the end is removed, except that of
 *  a root and that behind a directory name of one character alone ("C:\", "a\").
 *
 *  @param out   256 bytes, which may be one of the parts; the empty text when the path is too long
 *  @param base  each part may be NIL or empty
 *  @return out; NIL when out is NIL */
KV_API char *fio_makepath(char *out, const char *base, const char *dir, const char *name) KV_NOEXCEPT;

/** Takes a path apart. No argument may be NIL.
 *
 *  @param drive  3 bytes: the letter and the colon, as they are written; empty without a drive
 *  @param dir    256 bytes: the directory with its final separator
 *  @param name   256 bytes: the file name with its extension. Of a directory or a name of more than 255
 *                characters the first 255 are copied */
KV_API void fio_divide(const char *path, char *drive, char *dir, char *name) KV_NOEXCEPT;

/** Joins three parts as fio_makepath() and makes the path absolute: one without a drive gets the current
 *  drive, a relative one the current directory of its drive. "." and ".." stay as they are; a separator
 *  at the end is removed, except that of a root.
 *
 *  @param out  256 bytes; the empty text when the path is too long or relative on a drive that is not
 *              there
 *  @return out; NIL when out is NIL */
KV_API char *fio_make_fullpath(char *out, const char *base, const char *dir, const char *name) KV_NOEXCEPT;

/** @return the index of the last "." in the name, directories included; -1 when there is none but at index
 *          0, and for NIL */
KV_API int32_t fio_get_extention_pos(const char *name) KV_NOEXCEPT;

/** Tests a name, without a directory, against the rules for DOS names: up to 8 characters, and up to 3
 *  behind a ".". A blank and the characters " + , / : ; < = > [ \ ] ^ | are not allowed.
 *
 *  @retval 0  a valid name
 *  @retval 1  not a valid name, or empty, or NIL
 *  @retval 2  valid, and with a wildcard "*" or "?" */
KV_API int32_t fio_test_filename(const char *name) KV_NOEXCEPT;

/* ---- What is there */

/** @retval 1  the joined path is a file or a directory
 *  @retval 0  there is no such thing */
KV_API int32_t fio_exist(const char *dir, const char *name) KV_NOEXCEPT;

/** Asks for the right of access.
 *
 *  @param mode  0 existence, 2 writing, 4 reading, 6 both
 *  @retval 1  the joined path allows it
 *  @retval 0  it does not, or there is no such thing */
KV_API int32_t fio_access(const char *dir, const char *name, int32_t mode) KV_NOEXCEPT;

/** @retval 1  the path names an existing directory
 *  @retval 0  it names something else or nothing */
KV_API int32_t fio_ispath(const char *name) KV_NOEXCEPT;

/* ---- The current directory and the current drive, called the host */

/** Makes a directory the current one. If it is on another drive, that drive becomes the current one;
 *  otherwise the drives' own directories stay.
 *
 *  @retval 0   done, or nothing to do because dir is NIL or empty
 *  @retval -1  there is no such directory, it may not be entered, or on a drive other than Z: its path
 *              has more than 255 characters; nothing has changed */
KV_API int32_t fio_chdir(const char *dir) KV_NOEXCEPT;

/** Reads the current directory, with its drive.
 *
 *  @param size  bytes of buf
 *  @return buf; NIL, with buf as it was, when the text does not fit or cannot be read */
KV_API char *fio_getcwd(char *buf, int32_t size) KV_NOEXCEPT;

/** Reads the current drive: a capital letter and a colon.
 *
 *  @param size  bytes of buf
 *  @retval 0   done
 *  @retval -1  the size is less than 3; buf is as it was */
KV_API int32_t fio_gethostname(char *buf, int32_t size) KV_NOEXCEPT;

/** Changes the current drive.
 *
 *  @param name  its first character behind blanks is the drive's letter, in either case
 *  @retval 0   done, or nothing to do because the name is NIL or blank
 *  @retval -1  there is no such drive; the current one stays */
KV_API int32_t fio_sethostname(const char *name) KV_NOEXCEPT;

/** Tells whether a drive could be made the current one.
 *
 *  @param name  as for fio_sethostname()
 *  @retval 1  it could. On POSIX a drive other than C: is there when its directory is
 *  @retval 0  there is no such drive, or the name is NIL or blank */
KV_API int32_t fio_host_exist(const char *name) KV_NOEXCEPT;

/** Reads the current directory of a drive. The current drive stays the same throughout.
 *
 *  @param host  its first character behind blanks is the drive's letter, in either case; NIL or blank for
 *               fio_getcwd(buf, size)
 *  @param size  bytes of buf
 *  @return buf; it is the empty text when there is no such drive or the directory does not fit */
KV_API char *fio_get_host_cwd(const char *host, char *buf, int32_t size) KV_NOEXCEPT;

/* ---- The switch for an application's checks of free space: the entry "aktiv" in the section "getdiskfree"
 * of the main configuration file. Nothing in the library consults it. */

/** Reads the switch.
 *
 *  @retval 1  it says yes: a number 1, "yes", "true" or "ja" in either case, blanks around it ignored; or
 *             there is no such entry, no main configuration file, or a value of more than 80 characters
 *  @retval 0  it says anything else */
KV_API int32_t fio_getdiskfree_aktiv(void) KV_NOEXCEPT;

/** Writes the switch: 1 for yes, 0 for no.
 *
 *  @return the status of ini_write_long(NIL, "getdiskfree", "aktiv", value); INI_FAILED (-1) also when
 * there is no main configuration file */
KV_API int32_t fio_setdiskfree_aktiv(int32_t value) KV_NOEXCEPT;

KV_END_DECLS

#endif

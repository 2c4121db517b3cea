/* SPDX-License-Identifier: MIT */
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
 * directory belong to the whole process; on POSIX the current directory of Z: is the process's own.
 *
 * A handle belongs to one thread at a time; distinct handles are independent. */
#ifndef KV_FIO_H
#define KV_FIO_H

#include <stdio.h>

#include "kv/types.h"

KV_BEGIN_DECLS

/* ---- File handles and binary records
 *
 * Where nothing else is said, 0 means done and -1 that it failed; a NIL handle gives -1, and nothing is
 * reported. docs/record-files.md describes the files.
 *
 * Text handles translate: a line feed is CR LF on disk, a carriage return directly before a line feed is
 * dropped when read, and reading ends at a Ctrl-Z (26). Offsets are always bytes on disk. Between
 * reading and writing on one handle there must be a positioning call. */

/** An open file. */
typedef struct FIO FIO;

/** How fio_open() opens: exactly one of read, write, append, and any of the others. */
enum {
    FIO_READ = 1,    /**< for reading; the file must exist */
    FIO_WRITE = 2,   /**< for writing; the file is made, or emptied */
    FIO_APPEND = 4,  /**< for writing at the end, wherever the position is; the file is made if missing */
    FIO_UPDATE = 8,  /**< the other direction too */
    FIO_TEXT = 16,   /**< text; else binary */
    FIO_HEADER = 32, /**< the file has the identification header; without effect with text or append */
};

/** The byte order of a file's values, as the header tells it. */
enum {
    FIO_INTEL = 0,     /**< little-endian; also every file that was not opened for its header */
    FIO_MOTOROLA = 1,  /**< big-endian */
    FIO_NOHEADER = -1, /**< opened for its header, but there is none */
};

/** Opens a file.
 *
 *  With FIO_WRITE and FIO_HEADER the header is written; whether that succeeded shows with later writes
 *  and fio_close(). With FIO_READ and FIO_HEADER it is read: it is one if its first 8 bytes, up to the
 *  first zero byte, have "@kv" or "1.1" anywhere; if not, reading begins at offset 0.
 *
 *  @param dir    directory, with or without a drive; NIL or empty for the current one
 *  @param name   file name; a drive in it overrides dir
 *  @param flags  FIO_ flags
 *  @return the handle, at offset 16 after a header and else at 0; the caller closes it with fio_close().
 *          NIL, without a report, for a wrong combination of flags, when the file cannot be opened or is
 *          a directory, when the path has more than 255 characters (errno is ENAMETOOLONG), and when the
 *          heap is exhausted */
KV_API FIO *KV_CALL fio_open(const char *dir, const char *name, uint32_t flags) KV_NOEXCEPT;

/** Writes what is buffered, closes the file and frees the handle, also when that fails.
 *
 *  @retval 0   done; also for NIL
 *  @retval -1  what was buffered could not be written, or the file not be closed */
KV_API int32_t KV_CALL fio_close(FIO *handle) KV_NOEXCEPT;

/** The stream of the C library below a handle. What is written and read through it is translated like
 *  everything else on the handle. It must not be closed.
 *
 *  @param handle  not NIL
 *  @return the stream, valid until fio_close() */
KV_API FILE *KV_CALL fio_fp(FIO *handle) KV_NOEXCEPT;

/** @return the joined path of the file, valid until fio_close(); "????" if there was no memory for it;
 *          NIL for a NIL handle */
KV_API const char *KV_CALL fio_filename(FIO *handle) KV_NOEXCEPT;

/** Writes 8 bytes, little-endian.
 *
 *  @retval 0   done
 *  @retval -1  write error, NIL handle, or a text handle, on which nothing is written */
KV_API int32_t KV_CALL fio_putdouble(FIO *handle, double value) KV_NOEXCEPT;

/** Writes 4 bytes, little-endian. Reports "HPUX/AIX - not yet implemented" on a handle whose byte order
 *  is not FIO_INTEL. Text handles are not refused.
 *
 *  @retval 0   done
 *  @retval -1  write error, NIL handle, or refused, with nothing written */
KV_API int32_t KV_CALL fio_putfloat(FIO *handle, float value) KV_NOEXCEPT;

/** Writes 4 bytes, little-endian. Results as for fio_putdouble(). */
KV_API int32_t KV_CALL fio_putlong(FIO *handle, int32_t value) KV_NOEXCEPT;

/** Writes 2 bytes, little-endian. Refusals and results as for fio_putfloat(). */
KV_API int32_t KV_CALL fio_putshort(FIO *handle, int16_t value) KV_NOEXCEPT;

/** Writes one character.
 *
 *  @retval 0   done
 *  @retval -1  write error or NIL handle */
KV_API int32_t KV_CALL fio_putchar(FIO *handle, char c) KV_NOEXCEPT;

/** Writes a text as a field of a fixed width, cut or padded with blanks to it. No terminator is written.
 *
 *  @param text   the text; NIL is an empty one
 *  @param width  bytes to write; 0: as many as the text has; negative: the whole text, without padding
 *  @retval 0   done, also when there was nothing to write, whatever the handle is open for
 *  @retval -1  write error, where the writing has stopped, or NIL handle */
KV_API int32_t KV_CALL fio_putstring(FIO *handle, const char *text, int32_t width) KV_NOEXCEPT;

/** Reads 8 bytes, in the byte order of the file.
 *
 *  @param out  gets the value; of no meaning after a failure
 *  @retval 0   done
 *  @retval -1  fewer than 8 bytes were left, NIL handle, or a text handle, on which nothing is read */
KV_API int32_t KV_CALL fio_getdouble(FIO *handle, double *out) KV_NOEXCEPT;

/** Reads 4 bytes, little-endian. Reports "HPUX/AIX - not yet implemented" on a handle whose byte order is
 *  not FIO_INTEL; FIO_NOHEADER is refused too. Text handles are not refused.
 *
 *  @param out  gets the value; of no meaning after a failure
 *  @retval 0   done
 *  @retval -1  fewer than 4 bytes were left, NIL handle, or refused, with nothing read */
KV_API int32_t KV_CALL fio_getfloat(FIO *handle, float *out) KV_NOEXCEPT;

/** Reads 4 bytes, in the byte order of the file. Results as for fio_getdouble(). */
KV_API int32_t KV_CALL fio_getlong(FIO *handle, int32_t *out) KV_NOEXCEPT;

/** Reads 2 bytes, little-endian. Refusals and results as for fio_getfloat(). */
KV_API int32_t KV_CALL fio_getshort(FIO *handle, int16_t *out) KV_NOEXCEPT;

/** Reads one character.
 *
 *  @param out  gets the character, and is untouched at the end of the file; or NIL
 *  @return 0, or with out NIL the character's code, 0 to 255; -1 at the end of the file and for a NIL
 *          handle */
KV_API int32_t KV_CALL fio_getchar(FIO *handle, char *out) KV_NOEXCEPT;

/** Reads a line: up to a line feed or a zero byte, which is taken but not stored, or to the end of the
 *  file, or until max characters are stored, where the rest of the line stays unread. A carriage return
 *  is a character like others; text handles have dropped those of the line ends.
 *
 *  @param max  the most characters to store
 *  @param buf  max + 1 bytes; the text is terminated
 *  @retval 0   done; the line may be empty
 *  @retval -1  at the end of the file, with buf the empty text; when max <= 0 or for a NIL handle, with
 *              nothing read and buf untouched */
KV_API int32_t KV_CALL fio_getstring(FIO *handle, int32_t max, char *buf) KV_NOEXCEPT;

/** Reads as fio_getstring() does, but ends also after the first character that is in delims, which is
 *  stored as the last one.
 *
 *  @param delims  the characters that end the text; NIL or empty for none
 *  @retval 0   done
 *  @retval -1  at the end of the file or when max <= 0, with buf the empty text; for a NIL handle, with
 *              buf untouched */
KV_API int32_t KV_CALL fio_getstringdel(FIO *handle, int32_t max, const char *delims,
                                        char *buf) KV_NOEXCEPT;

/** Reads items as fread() does; no bytes are swapped.
 *
 *  @param buf    size * count bytes
 *  @param size   bytes of an item
 *  @param count  the most items to read
 *  @return the number of whole items read; 0 when buf or handle is NIL or size or count is 0 */
KV_API uint32_t KV_CALL fio_fread(void *buf, uint32_t size, uint32_t count, FIO *handle) KV_NOEXCEPT;

/** Writes items as fwrite() does; no bytes are swapped.
 *
 *  @return the number of whole items written; 0 when buf or handle is NIL or size or count is 0 */
KV_API uint32_t KV_CALL fio_fwrite(const void *buf, uint32_t size, uint32_t count, FIO *handle) KV_NOEXCEPT;

/** Moves to an offset in the file, where the header counts.
 *
 *  @param offset  bytes on disk, also in text files
 *  @param origin  from where: 0 the beginning, 1 the current position, anything else the end
 *  @retval 0   done
 *  @retval -1  the file has no positions, or the place would lie before its beginning; NIL handle */
KV_API int32_t KV_CALL fio_seek(FIO *handle, int32_t offset, int32_t origin) KV_NOEXCEPT;

/** @return the current offset in the file, in bytes on disk; -1 if there is none or if it is beyond
 *          INT32_MAX, and for a NIL handle */
KV_API int32_t KV_CALL fio_tell(FIO *handle) KV_NOEXCEPT;

/** Hands what is buffered to the system.
 *
 *  @retval 0   done
 *  @retval -1  write error or NIL handle */
KV_API int32_t KV_CALL fio_flush(FIO *handle) KV_NOEXCEPT;

/** @return the file's length in bytes on disk, with what is buffered; -1 if it has none or if it is beyond
 *          INT32_MAX, and for a NIL handle. The position stays. */
KV_API int32_t KV_CALL fio_length(FIO *handle) KV_NOEXCEPT;

/* ---- Paths */

/** Joins a base, a directory and a name, with "\" as the separator.
 *
 *  Only a drive makes a part absolute: the parts before one that has a drive are left out, but a name
 *  that begins with "\" still goes below the directory. A separator at the end is removed, except that of
 *  a root and that after a directory name of one character alone ("C:\", "a\").
 *
 *  @param out   256 bytes, which may be one of the parts; the empty text when the path is too long
 *  @param base  each part may be NIL or empty
 *  @return out; NIL when out is NIL */
KV_API char *KV_CALL fio_makepath(char *out, const char *base, const char *dir,
                                  const char *name) KV_NOEXCEPT;

/** Takes a path apart. No argument may be NIL.
 *
 *  @param drive  3 bytes: the letter and the colon, as they are written; empty without a drive
 *  @param dir    256 bytes: the directory with its final separator
 *  @param name   256 bytes: the file name with its extension. Of a directory or a name of more than 255
 *                characters the first 255 are copied */
KV_API void KV_CALL fio_divide(const char *path, char *drive, char *dir, char *name) KV_NOEXCEPT;

/** Joins three parts as fio_makepath() and makes the path absolute: one without a drive gets the current
 *  drive, a relative one the current directory of its drive. "." and ".." stay as they are; a separator
 *  at the end is removed, except that of a root. On Windows a share, "\\server\share", stands in place of a
 *  drive where the current directory or the path is on one.
 *
 *  @param out  256 bytes; the empty text when the path is too long or relative on a drive that is not
 *              there
 *  @return out; NIL when out is NIL */
KV_API char *KV_CALL fio_make_fullpath(char *out, const char *base, const char *dir,
                                       const char *name) KV_NOEXCEPT;

/** @return the index of the last "." in the name, directories included; -1 when there is none but at index
 *          0, and for NIL */
KV_API int32_t KV_CALL fio_get_extention_pos(const char *name) KV_NOEXCEPT;

/** Tests a name, without a directory, against the rules for DOS names: up to 8 characters, and up to 3
 *  after a ".". A blank and the characters " + , / : ; < = > [ \ ] ^ | are not allowed.
 *
 *  @retval 0  a valid name
 *  @retval 1  not a valid name, or empty, or NIL
 *  @retval 2  valid, and with a wildcard "*" or "?" */
KV_API int32_t KV_CALL fio_test_filename(const char *name) KV_NOEXCEPT;

/* ---- What is there */

/** @retval 1  the joined path is a file or a directory
 *  @retval 0  there is no such thing */
KV_API int32_t KV_CALL fio_exist(const char *dir, const char *name) KV_NOEXCEPT;

/** Asks for the right of access.
 *
 *  @param mode  0 existence, 2 writing, 4 reading, 6 both
 *  @retval 1  the joined path allows it
 *  @retval 0  it does not, or there is no such thing */
KV_API int32_t KV_CALL fio_access(const char *dir, const char *name, int32_t mode) KV_NOEXCEPT;

/** @retval 1  the path names an existing directory
 *  @retval 0  it names something else or nothing */
KV_API int32_t KV_CALL fio_ispath(const char *name) KV_NOEXCEPT;

/* ---- The current directory and the current drive, called the host */

/** Makes a directory the current one. If it is on another drive, that drive becomes the current one;
 *  otherwise the drives' own directories stay.
 *
 *  @retval 0   done, or nothing to do because dir is NIL or empty
 *  @retval -1  there is no such directory, it may not be entered, or on a drive other than Z: its path
 *              has more than 255 characters; nothing has changed */
KV_API int32_t KV_CALL fio_chdir(const char *dir) KV_NOEXCEPT;

/** Reads the current directory, with its drive or, on Windows, its share ("\\server\share\work").
 *
 *  @param size  bytes of buf
 *  @return buf; NIL, with buf as it was, when the text does not fit or cannot be read */
KV_API char *KV_CALL fio_getcwd(char *buf, int32_t size) KV_NOEXCEPT;

/** Reads the current drive: a capital letter and a colon.
 *
 *  @param size  bytes of buf
 *  @retval 0   done
 *  @retval -1  the size is less than 3, or the current directory is on no drive but on a share; buf is as
 * it was */
KV_API int32_t KV_CALL fio_gethostname(char *buf, int32_t size) KV_NOEXCEPT;

/** Changes the current drive.
 *
 *  @param name  its first character after blanks is the drive's letter, in either case
 *  @retval 0   done, or nothing to do because the name is NIL or blank
 *  @retval -1  there is no such drive; the current one stays */
KV_API int32_t KV_CALL fio_sethostname(const char *name) KV_NOEXCEPT;

/** Tells whether a drive could be made the current one.
 *
 *  @param name  as for fio_sethostname()
 *  @retval 1  it could. On POSIX a drive other than C: is there when its directory is
 *  @retval 0  there is no such drive, or the name is NIL or blank */
KV_API int32_t KV_CALL fio_host_exist(const char *name) KV_NOEXCEPT;

/** Reads the current directory of a drive. The current drive stays the same throughout.
 *
 *  @param host  its first character after blanks is the drive's letter, in either case; NIL or blank for
 *               fio_getcwd(buf, size)
 *  @param size  bytes of buf
 *  @return buf; it is the empty text when there is no such drive or the directory does not fit */
KV_API char *KV_CALL fio_get_host_cwd(const char *host, char *buf, int32_t size) KV_NOEXCEPT;

/* ---- Files and directories as a whole. They are named as everywhere in this family; a drive C: that has
 * no directory yet gets one when something is made there. */

/** Results of fio_copy(). */
enum {
    FIO_COPY_DONE = 0,           /**< copied */
    FIO_COPY_NO_SOURCE = 1,      /**< the source could not be opened; nothing has changed */
    FIO_COPY_NO_DESTINATION = 2, /**< the destination could not be created; nothing has changed */
    FIO_COPY_SHORT_WRITE = 3     /**< not everything could be read and written */
};

/** Copies a file, byte for byte. An existing destination is overwritten in place; after
 *  FIO_COPY_SHORT_WRITE it has the beginning of the source. A file copied onto itself stays as it is.
 *
 *  @return one of the FIO_COPY_ results */
KV_API int32_t KV_CALL fio_copy(const char *srcdir, const char *srcname, const char *dstdir,
                                const char *dstname) KV_NOEXCEPT;

/** Not there yet: reports "Not yet implemented" (kv_error). The arguments are not read.
 *
 *  @retval -1  always */
KV_API int32_t KV_CALL fio_move(const char *srcdir, const char *srcname, const char *dstdir,
                                const char *dstname) KV_NOEXCEPT;

/** Renames a file or a directory; both names are joined with dir. The case of a name can be changed.
 *
 *  @retval 0   done
 *  @retval -1  failed, also when the new name is taken; nothing has changed */
KV_API int32_t KV_CALL fio_rename(const char *dir, const char *oldname, const char *newname) KV_NOEXCEPT;

/** The same as fio_purge_ex(dir, name, 0). */
KV_API int32_t KV_CALL fio_purge(const char *dir, const char *name) KV_NOEXCEPT;

/** Deletes a file.
 *
 *  @param recycle  0 to remove it; otherwise, on kv_get_win32() >= 4, it is put where the user can restore
 *                  it: the recycle bin, on POSIX the desktop's trash
 *  @retval 0   done; with recycle also when there is no such file
 *  @retval -1  failed, also for a directory, and with recycle for a path of 255 characters; the file is
 *              still there */
KV_API int32_t KV_CALL fio_purge_ex(const char *dir, const char *name, int32_t recycle) KV_NOEXCEPT;

/** Makes a directory, inside one that exists.
 *
 *  @retval 0   done
 *  @retval -1  failed, also when there is something of that name */
KV_API int32_t KV_CALL fio_mkdir(const char *dir) KV_NOEXCEPT;

/** The same as fio_rmdir_ex(dir, 0). */
KV_API int32_t KV_CALL fio_rmdir(const char *dir) KV_NOEXCEPT;

/** Removes a directory.
 *
 *  @param recycle  as for fio_purge_ex(); with it the directory goes with all that is in it, without it
 *                  only an empty one
 *  @retval 0   done; with recycle also when there is nothing of that name
 *  @retval -1  failed; the directory is still there */
KV_API int32_t KV_CALL fio_rmdir_ex(const char *dir, int32_t recycle) KV_NOEXCEPT;

/** Results of fio_lock(). */
enum {
    FIO_LOCK_DONE = 0,      /**< locked */
    FIO_LOCK_DENIED = -1,   /**< somebody else has locked it */
    FIO_LOCK_BAD_FILE = -4, /**< the handle is NIL, or its file is none */
    FIO_LOCK_FAILED = -5    /**< anything else, for example a file without positions */
};

/** Writes what is in the handle's buffer and locks the bytes that the file has then against other processes
 * and other handles, without waiting. The lock lasts until fio_unlock() or fio_close(); the position stays.
 * An empty file has no bytes to lock.
 *
 *  On POSIX the lock keeps away only those who ask for it; handles that only read share it on a file that
 *  the process may not write.
 *
 *  @return one of the FIO_LOCK_ results */
KV_API int32_t KV_CALL fio_lock(FIO *handle) KV_NOEXCEPT;

/** Ends the lock of fio_lock(); the position stays.
 *
 *  @retval 0   unlocked; on POSIX also when it was not locked
 *  @retval -1  the handle is NIL, or its file is none or has no positions
 *  @retval -2  anything else */
KV_API int32_t KV_CALL fio_unlock(FIO *handle) KV_NOEXCEPT;

/** Not there yet: reports "Not yet implemented" (kv_error). The argument is not read.
 *
 *  @retval -1  always */
KV_API int32_t KV_CALL fio_islock(FIO *handle) KV_NOEXCEPT;

/** What a directory entry is. */
enum {
    FIO_ATTR_FILE = 1,     /**< not a directory */
    FIO_ATTR_DIR = 2,      /**< a directory */
    FIO_ATTR_RDONLY = 8,   /**< may not be written; on POSIX: nobody has the permission */
    FIO_ATTR_HIDDEN = 64,  /**< on POSIX: the name begins with a point, and is not "." or ".." */
    FIO_ATTR_SYSTEM = 128, /**< never on POSIX */
    FIO_ATTR_ARCHIVE = 512 /**< changed since the last backup; on POSIX every file that is no directory */
};

/** One entry of a directory. */
typedef struct FIO_DIRENTRY {
    char name[80];     /**< with its extension; of a longer name the first 79 characters */
    uint32_t attrib;   /**< FIO_ATTR_ flags; the caller may use them as marks */
    uint32_t size;     /**< in bytes, 0 for a directory, UINT32_MAX for more than that */
    int32_t time;      /**< the last change, as clock_makevalue() gives it; 315529200 (the beginning of
                            1980) if it is not known or 32 bits do not hold it */
    uint32_t reserved; /**< not used */
} FIO_DIRENTRY;

/** Lists a directory, in the order in which the system gives the entries; "." and ".." are entries like
 *  any other. On POSIX a link is listed as what it leads to.
 *
 *  @param dir      NIL or empty for the current directory
 *  @param pattern  what the names are to match, without regard to case: "*" is any characters, "?" any one;
 *                  NIL, empty, "*" and "*.*" are every name, "*." every name without an extension
 *  @param option   not read
 *  @param entries  receives an array that the caller frees with heap_free(), or NIL
 *  @param count    receives the number of its records
 *  @retval 0   done; with NIL and 0 if the heap was exhausted from the start
 *  @retval -1  there is no such directory, nothing matches, the path is too long or the heap is exhausted;
 *              NIL and 0 are stored */
KV_API int32_t KV_CALL fio_listdir(const char *dir, const char *pattern, int32_t option,
                                   FIO_DIRENTRY **entries, int32_t *count) KV_NOEXCEPT;

/** Operations of fio_group_operation(). */
enum { FIO_GROUP_COPY = 0, FIO_GROUP_MOVE = 1, FIO_GROUP_DELETE = 2 };

/** Copies, moves or deletes a group of files and directories with all that is in them, through the shell
 *  of the system. Files that exist at the new place are replaced, directories there are filled, and
 *  directories that are missing above it are made. What is deleted goes where the user can restore it,
 *  as for fio_purge_ex(). On POSIX links are copied, moved and deleted as links, and nothing is shown.
 *
 *  A name may be a pattern, for the entries that match it; the new name then says the directory for them.
 *
 *  @param fromnames  joined with fromdir each; NIL at the end
 *  @param tonames    joined with todir each, one for each of fromnames, NIL at the end; NIL to keep the
 *                    names. Not read for deleting
 *  @param filesonly  not 0: patterns stand for files only, and directories may not be named
 *  @param title      the title of a window that shows the progress, or NIL for none
 *  @param hwnd       the window that owns it, or NIL
 *  @retval 0  done
 *  @retval 1  the user has aborted it
 *  @retval 2  failed, for example because a source is missing, a directory would be copied into itself, or
 *             after one of the kv_message() "Bad fioOperation", "pFrom == NIL!", "Wrong 'from' names" and
 *             "Wrong 'to' names" (an empty or too long path, or an exhausted heap). If a source or its new
 *             place is wrong, nothing has changed; what fails later leaves what was done before */
KV_API int32_t KV_CALL fio_group_operation(const char *fromdir, const char *const *fromnames,
                                           const char *todir, const char *const *tonames, int32_t operation,
                                           int32_t filesonly, const char *title, void *hwnd) KV_NOEXCEPT;

/** Makes up the path of a temporary file that does not exist. It is not created.
 *
 *  The path is in the directory that the environment variable TMP names, if that exists, else in the
 *  current directory; the name begins with "kv_". No path is given twice to a process.
 *
 *  @param out  receives the path, 257 bytes; may be NIL
 *  @return the library's own buffer with the path, overwritten by the next call, not to be freed; NIL, with
 *          both buffers empty, after a kv_error ("Failed _tempnam call", "Too long TmpName"). When the
 *          current directory cannot be read ("Failed fio_getcwd call") "." is used */
KV_API char *KV_CALL fio_tmpnam(char *out) KV_NOEXCEPT;

/** The free space of a drive. Writes the line "GetDiskFreeSpaceEx:" to standard output, an empty
 *  line before it, when it succeeds.
 *
 *  @param drive  its first character is the drive's letter, in either case
 *  @return the bytes that the caller may still write there; 0.0 when there is no such drive, the
 *          system does not tell, or drive is NIL */
KV_API double KV_CALL fio_getdiskfree(const char *drive) KV_NOEXCEPT;

/* ---- The switch for an application's checks of free space: the entry "aktiv" in the section
 * "getdiskfree" of the main configuration file. Nothing in the library consults it. */

/** Reads the switch.
 *
 *  @retval 1  it says yes: a number 1, "yes", "true" or "ja" in either case, blanks around it ignored; or
 *             there is no such entry, no main configuration file, or a value of more than 80 characters
 *  @retval 0  it says anything else */
KV_API int32_t KV_CALL fio_getdiskfree_aktiv(void) KV_NOEXCEPT;

/** Writes the switch: 1 for yes, 0 for no.
 *
 *  @return the status of ini_write_long(NIL, "getdiskfree", "aktiv", value); INI_FAILED (-1) also
 *          when there is no main configuration file */
KV_API int32_t KV_CALL fio_setdiskfree_aktiv(int32_t value) KV_NOEXCEPT;

KV_END_DECLS

#endif

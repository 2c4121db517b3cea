/* SPDX-License-Identifier: MIT */
/* Runtime frame: reports with a call trace, exit handlers, and small process helpers.
 *
 * Reports go to the log file "c:\kv.err", which holds the reports of one calendar day: the first
 * report of a later day empties it. Every report names the reporting source file and its line. A
 * report never fails visibly: where the log cannot be opened it writes nothing and goes on. It leaves errno
 * alone (on Windows GetLastError() too), does not wait, and raises no signal: what a pipe, a terminal or a
 * full disk in the place of the log or the debugger does not take at once is lost. Only a message box
 * waits.
 *
 * Reports of several threads never interleave in the log, and a traceback has whole names, also while
 * another thread changes the trace; the call trace, the error-output setting, the application name and the
 * exit handlers are process-wide and meant for one thread. The child of a fork may report.
 *
 * On POSIX the drive C is a directory (see kv.h); what goes to the debugger is appended to the file that
 * the environment variable KV_DEBUG_OUTPUT names ("stderr" for standard error); a message box is its
 * caption and text on standard error, which waits for Enter where a person sits at a terminal. */
#ifndef KV_FRAME_H
#define KV_FRAME_H

#include "kv/types.h"

KV_BEGIN_DECLS

/** Enters a function in the call trace.
 *
 *  Call it first in each function that is to appear in tracebacks, and kv_end() before every return
 *  from it. Entering the same name twice in a row counts it instead of adding an entry.
 *
 *  @param name  the function's name; its first 79 characters are kept (copied). NIL counts as "".
 *
 *  The trace holds 20 entries. One more is reported once with kv_error ("kv_begin: runtime stack
 *  overflow") and switches the trace off for the rest of the process. */
KV_API void KV_CALL kv_begin(const char *name) KV_NOEXCEPT;

/** Leaves the innermost function of the call trace.
 *
 *  Without a matching kv_begin() it shows a message box ("  END without BEGIN!") and logs the mismatch;
 *  the trace stays empty. Does nothing once the trace is switched off. */
KV_API void KV_CALL kv_end(void) KV_NOEXCEPT;

/** Reports an error: a timestamp, the application's name, file and line, the texts and the traceback go
 *  to the log (unless kv_error_onoff(0) is in force); file, line and texts go to the debugger always.
 *
 *  @param text1,text2,text3  the texts, each may be NIL; not kept
 *  @param file               the reporting source file, usually __FILE__
 *  @param line               the line in it, usually __LINE__ */
KV_API void KV_CALL kv_error(const char *text1, const char *text2, const char *text3, const char *file,
                             int32_t line) KV_NOEXCEPT;

/** Reports a notice: as kv_error(), but without traceback and debugger output, and whatever
 *  kv_error_onoff() says. */
KV_API void KV_CALL kv_message(const char *text1, const char *text2, const char *text3, const char *file,
                               int32_t line) KV_NOEXCEPT;

/** Ends the process with exit code 0 after a fatal failure.
 *
 *  Shows a message box with the texts joined (their first 255 characters) and the caption "EXIT :",
 *  logs them with the traceback, and runs kv_atexit(). Arguments as for kv_error(). Does not return. */
KV_API void KV_CALL kv_exit(const char *text1, const char *text2, const char *text3, const char *file,
                            int32_t line) KV_NOEXCEPT KV_NORETURN;

/** Reports a value that a switch did not expect, with the traceback.
 *
 *  @param value  the unexpected value */
KV_API void KV_CALL kv_switch_error(int32_t value, const char *file, int32_t line) KV_NOEXCEPT;

/** Switches the log entries of kv_error() on or off.
 *
 *  @param mode  0 off, 1 on; any other value only asks
 *  @return      the setting before the call: 0 or 1 (1 at the start) */
KV_API int32_t KV_CALL kv_error_onoff(int32_t mode) KV_NOEXCEPT;

/** Sets the application's name, which the header lines of reports show ("Unknown Application" at the
 *  start).
 *
 *  @param name  the name, not NIL; its first 20 characters are copied
 *  @return      the library's own field with the name, overwritten by the next call; not to be freed */
KV_API char *KV_CALL kv_error_setname(const char *name) KV_NOEXCEPT;

/** A function to run before the process ends. */
typedef void(KV_CALL *kv_exit_function)(void);

/** Modes of endprog_fkt(). */
enum {
    KV_ENDPROG_REGISTER = 0, /**< append a function to the list */
    KV_ENDPROG_RUN_ALL = 1,  /**< call every registered function, in the order of registration */
    KV_ENDPROG_RUN_ONE = 2,  /**< call one registered function; it stays registered */
    KV_ENDPROG_FREE = 3      /**< empty the list */
};

/** Registers, runs or frees exit functions.
 *
 *  The same function may be registered several times and then runs as often. Functions that are
 *  registered while the list runs are run too.
 *
 *  @param mode  one of the KV_ENDPROG_ modes
 *  @param fn    the function for the modes 0 and 2; ignored by 1 and 3
 *  @retval 0   done
 *  @retval -1  fn is NIL (modes 0 and 2), fn is not registered (mode 2), the heap is exhausted (mode 0,
 *              after a kv_error; the list is unchanged), or the mode is unknown */
KV_API int32_t KV_CALL endprog_fkt(int32_t mode, kv_exit_function fn) KV_NOEXCEPT;

/** Runs every registered exit function and empties the list. An application that ends normally calls
 *  it itself; kv_exit() calls it.
 *
 *  Called from inside an exit function, it runs the functions that have not started yet, so that an
 *  exit function may call kv_exit().
 *
 *  @retval 0  done */
KV_API int32_t KV_CALL kv_atexit(void) KV_NOEXCEPT;

/** The value of an environment variable of the process.
 *
 *  @param name           the variable
 *  @param default_value  the result when it is not set; may be NIL
 *  @return the value inside the process environment (valid until the variable changes, not to be
 *          freed), or default_value itself */
KV_API const char *KV_CALL kv_getenv(const char *name, const char *default_value) KV_NOEXCEPT;

/** Sets an environment variable of the process.
 *
 *  @param setting  "name=value", copied. "name=" removes the variable.
 *  @retval 0   done
 *  @retval -1  no "=" in the setting, an empty name, or an exhausted heap; nothing is changed */
KV_API int32_t KV_CALL kv_putenv(const char *setting) KV_NOEXCEPT;

/** Gives the simple beep of the system; on POSIX a BEL on the controlling terminal, if there is one. */
KV_API void KV_CALL kv_beep(void) KV_NOEXCEPT;

/** The same as kv_beep(). */
KV_API void KV_CALL kv_tone(void) KV_NOEXCEPT;

/** Does nothing; kept for the applications that call it. */
KV_API void KV_CALL kv_wait(void) KV_NOEXCEPT;

/** Does nothing; kept for the applications that call it. */
KV_API void KV_CALL kv_pause(void) KV_NOEXCEPT;

/** The kind of platform, computed once.
 *
 *  @retval 0  unknown
 *  @retval 2  Win32s
 *  @retval 3  Windows NT up to major version 3
 *  @retval 4  Windows 95 family
 *  @retval 5  Windows NT from major version 4 on, and every POSIX system */
KV_API int32_t KV_CALL kv_get_win32(void) KV_NOEXCEPT;

KV_END_DECLS

#endif

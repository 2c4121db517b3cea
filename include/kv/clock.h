/* SPDX-License-Identifier: MIT */
/* Clock and timers: the time, German date and time texts, time records, and stop-watch timers.
 *
 * A time is the number of seconds since 1 January 1970, 00:00 UTC, in 32 bits: it reaches from 1970 to
 * January 2038. Where a function takes a time, 0 means now, and a negative number is no time. Conversions
 * use the local time zone of the process (on POSIX the variable TZ, looked at anew by every call); its
 * rules alone say whether daylight saving holds.
 *
 * The timers and the texts that clock_date() and clock_time() return are process-wide and meant for one
 * thread. Nothing here reports anything. */
#ifndef KV_CLOCK_H
#define KV_CLOCK_H

#include "kv/types.h"

KV_BEGIN_DECLS

/** A point in local time. */
typedef struct CLOCK_RECORD {
    int32_t sec;  /**< seconds, 0 to 59 */
    int32_t min;  /**< minutes, 0 to 59 */
    int32_t hour; /**< hours, 0 to 23 */
    int32_t mday; /**< day of the month, 1 to 31 */
    int32_t mon;  /**< month, 0 (January) to 11 */
    int32_t year; /**< years since 1900 */
    int32_t wday; /**< day of the week, 0 (Sunday) to 6 */
    int32_t yday; /**< day of the year, 0 to 365 */
} CLOCK_RECORD;

/** @return the current time; -1 when it does not fit into 32 bits any more */
KV_API int32_t KV_CALL clock_value(void) KV_NOEXCEPT;

/** A date as text: "18.11.26" or "18. November 2026". The months are named Januar, Februar, Maerz, April,
 *  Mai, Juni, Juli, August, September, Oktober, November, Dezember.
 *
 *  @param time  the time, 0 for now
 *  @param form  0 for the short form, any other value for the long one
 *  @return the library's own buffer with the text, overwritten by the next call, not to be freed; "???" for
 *          a time that cannot be converted */
KV_API char *KV_CALL clock_date(int32_t time, int32_t form) KV_NOEXCEPT;

/** A time of day as text: "07:04" or "07:04:09".
 *
 *  @param time     the time, 0 for now
 *  @param seconds  0 to leave the seconds out, any other value to show them
 *  @return as for clock_date(), in a buffer of its own */
KV_API char *KV_CALL clock_time(int32_t time, int32_t seconds) KV_NOEXCEPT;

/** Takes a time apart.
 *
 *  @param time    the time, 0 for now
 *  @param record  receives all eight fields; all of them 0 when the time cannot be converted */
KV_API void KV_CALL clock_makestruct(int32_t time, CLOCK_RECORD *record) KV_NOEXCEPT;

/** Puts a time together.
 *
 *  @param record  the fields from sec to year are read; they may lie outside their ranges (32 January is
 *                 1 February) and stay as they are. wday and yday receive those of the resulting date.
 *  @return the time. Of the two times that a record can mean in the hour that the end of daylight saving
 *          repeats, it is always the first, which is still one of daylight saving; a time in the hour that
 *          its beginning leaves out is taken as one of daylight saving too, so that 02:30 means 01:30. -1
 * when the time lies before 1970 or does not fit into 32 bits: wday and yday are unchanged then. */
KV_API int32_t KV_CALL clock_makevalue(CLOCK_RECORD *record) KV_NOEXCEPT;

/* ---- Timers: stop-watches that add up the time between each start and stop. They live until the process
 * ends. Where a timer is passed, NIL is ignored. */

/** The most timers that a process can open. */
#define CLOCK_MOST_TIMERS 100

/** A timer. It belongs to the library; its fields may be read. */
typedef struct CLOCK_TIMER {
    char name[80];     /**< at most 79 characters */
    int32_t start_sec; /**< the last start: seconds since 1970 */
    int32_t start_ms;  /**< its milliseconds, 0 to 999 */
    int32_t total_ms;  /**< milliseconds added up so far, wrapping around after 2^32 */
    int32_t starts;    /**< the number of stops */
} CLOCK_TIMER;

/** Opens a timer that stands at 0.
 *
 *  @param name  its name in the report; the first 79 characters are copied. Names need not differ.
 *  @return the timer, which cannot be closed; NIL when CLOCK_MOST_TIMERS are open or the heap is
 *          exhausted */
KV_API CLOCK_TIMER *KV_CALL clock_timeropen(const char *name) KV_NOEXCEPT;

/** Sets everything but the name to 0. */
KV_API void KV_CALL clock_timerreset(CLOCK_TIMER *timer) KV_NOEXCEPT;

/** Notes the current time as the timer's start. */
KV_API void KV_CALL clock_timerstart(CLOCK_TIMER *timer) KV_NOEXCEPT;

/** Adds the time since the last start (up to 24 days come out right) and counts the pair. The start is
 *  kept: a further stop adds the time since the same start again. */
KV_API void KV_CALL clock_timerstop(CLOCK_TIMER *timer) KV_NOEXCEPT;

/** @return the milliseconds added up so far; 0 for NIL */
KV_API int32_t KV_CALL clock_timerget(const CLOCK_TIMER *timer) KV_NOEXCEPT;

/** Modes of clock_timertable(). */
enum { CLOCK_TABLE_OVERWRITE = 0, CLOCK_TABLE_APPEND = 1 };

/** Writes a report of all timers, in the order of opening, for people to read: in German, with the
 *  platform's own line ends. Names longer than 15 characters push the columns of their line to the right;
 *  times are seconds with three decimals, up to 2^32 milliseconds. Without timers the report says "keine
 *  Timer vorhanden.".
 *
 *  @param file_name  the file; nothing happens when it cannot be opened
 *  @param mode       CLOCK_TABLE_APPEND to append; any other value replaces the file's content */
KV_API void KV_CALL clock_timertable(const char *file_name, int32_t mode) KV_NOEXCEPT;

KV_END_DECLS

#endif

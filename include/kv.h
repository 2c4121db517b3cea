/* SPDX-License-Identifier: MIT */
/* kv: the one header that an application includes.
 *
 * Conventions that hold everywhere, so that a function's description states only what is its own:
 *
 * NIL        is the null pointer. Where NIL is accepted, the function says so; elsewhere a NIL argument is
 *            an error of the caller.
 * Texts      are 8-bit and zero-terminated, in the application's single-byte code page; lengths and sizes
 *            are in bytes. A buffer needs room for the terminating zero.
 * Numbers    are 32-bit signed, real numbers IEEE 754 binary64. Their texts are those of the "C" locale,
 *            whatever the application's locale is.
 * Ownership  A function copies the texts it keeps. Texts and blocks that it hands over are freed with
 *            heap_free(); where a result stays the library's, the function says how long it is valid.
 * Failures   are return values; nothing throws, and nothing but kv_exit() ends the process. A function
 *            that detects misuse or an exhausted heap reports it with kv_error() or kv_message() first.
 * Threads    The library is meant for one thread at a time, except where a family's header says more. The
 *            child of a fork may go on using it: fork() waits until other threads are outside of the
 *            library's locks, for a second at the most; what a thread that stays inside works on is of no
 *            use to the child.
 * Files      are named as on Windows: a drive letter, "\" or "/", names without regard to case. On POSIX
 *            Z: is the root directory and the drive at the start, so native paths work; C: is the
 *            directory that the variable KV_DRIVE_C names, else kv/drive_c in the user's data directory;
 *            KV_DRIVE_A to KV_DRIVE_Y name further drives. */
#ifndef KV_H
#define KV_H

#include "kv/calc.h"
#include "kv/clock.h"
#include "kv/config.h"
#include "kv/containers.h"
#include "kv/env.h"
#include "kv/fio.h"
#include "kv/frame.h"
#include "kv/ini.h"
#include "kv/memory.h"
#include "kv/mini.h"
#include "kv/numeric.h"
#include "kv/profiles.h"
#include "kv/scan.h"
#include "kv/serial.h"
#include "kv/sort.h"
#include "kv/strings.h"
#include "kv/types.h"
#include "kv/version.h"

#endif

/* SPDX-License-Identifier: MIT */
/* Types and macros that every family's header uses. */
#ifndef KV_TYPES_H
#define KV_TYPES_H

#include <stdint.h>

#ifdef __cplusplus
#define KV_NOEXCEPT noexcept
#define KV_BEGIN_DECLS extern "C" {
#define KV_END_DECLS }
#else
#define KV_NOEXCEPT
#define KV_BEGIN_DECLS
#define KV_END_DECLS
#endif

/* Marks an exported function. Where libraries are not ELF files, the list of exported names does it. */
#if defined(__ELF__)
#define KV_API __attribute__((visibility("default")))
#else
#define KV_API
#endif

/* The calling convention of all functions here, and of those that the application hands over, whatever its
 * compiler takes by default. */
#if defined(_WIN32)
#define KV_CALL __cdecl
#else
#define KV_CALL
#endif

/* Let the compiler check the arguments of a call, and know where none returns. */
#if defined(__GNUC__)
#define KV_PRINTF(text, first) __attribute__((format(printf, text, first)))
#define KV_SENTINEL __attribute__((sentinel))
#define KV_NORETURN __attribute__((noreturn))
#else
#define KV_PRINTF(text, first)
#define KV_SENTINEL
#define KV_NORETURN
#endif

/** A number or a pointer, as stacks, queues, hash tables and list keys hold them: 32 bits where
 *  pointers have 32 bits, and always wide enough for a pointer. */
typedef intptr_t kv_value;

#endif

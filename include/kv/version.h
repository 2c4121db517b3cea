/* SPDX-License-Identifier: MIT */
/* The version of the library.
 *
 * What a change of each number promises to applications: CONTRIBUTING.md. An application that was built
 * with one version runs with every later one of the same KV_VERSION_MAJOR. */
#ifndef KV_VERSION_H
#define KV_VERSION_H

#include "kv/types.h"

/* The version of these headers. It stands here alone: the build takes it from these lines. */
#define KV_VERSION_MAJOR 1
#define KV_VERSION_MINOR 1
#define KV_VERSION_PATCH 0

/** The version as one number, to compare: 10203 is version 1.2.3. */
#define KV_VERSION_NUMBER (KV_VERSION_MAJOR * 10000 + KV_VERSION_MINOR * 100 + KV_VERSION_PATCH)

#define KV_VERSION_QUOTE(text) #text
#define KV_VERSION_TEXT(major, minor, patch) \
    KV_VERSION_QUOTE(major) "." KV_VERSION_QUOTE(minor) "." KV_VERSION_QUOTE(patch)
/** The version as a text, "1.2.3". */
#define KV_VERSION KV_VERSION_TEXT(KV_VERSION_MAJOR, KV_VERSION_MINOR, KV_VERSION_PATCH)

KV_BEGIN_DECLS

/** Tells the version of the library that is running, which may be later than that of the headers.
 *
 *  @return  its version as KV_VERSION writes it, "1.2.3"; a constant of the library, valid as long as it is
 * loaded. From any thread. Since version 1.1 */
KV_API const char *KV_CALL kv_version(void) KV_NOEXCEPT;

KV_END_DECLS

#endif

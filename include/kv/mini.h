/* In-memory INI: the sections of one INI file kept in memory. */
#ifndef KV_MINI_H
#define KV_MINI_H

#include "kv/types.h"

KV_BEGIN_DECLS

KV_END_DECLS

#endif

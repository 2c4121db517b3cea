/* INI files: read and rewritten directly on disk. */
#ifndef KV_INI_H
#define KV_INI_H

#include "kv/types.h"

KV_BEGIN_DECLS

KV_END_DECLS

#endif

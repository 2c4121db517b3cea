/* Configuration search: the main configuration file and the files that it names. */
#ifndef KV_CONFIG_H
#define KV_CONFIG_H

#include "kv/types.h"

KV_BEGIN_DECLS

KV_END_DECLS

#endif

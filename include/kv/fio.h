/* File I/O: file handles with binary records, paths and names, file system operations, free space. */
#ifndef KV_FIO_H
#define KV_FIO_H

#include "kv/types.h"

KV_BEGIN_DECLS

KV_END_DECLS

#endif

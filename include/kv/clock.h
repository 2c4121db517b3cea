/* Clock and timers: the time, German date and time texts, time records, and stop-watch timers. */
#ifndef KV_CLOCK_H
#define KV_CLOCK_H

#include "kv/types.h"

KV_BEGIN_DECLS

KV_END_DECLS

#endif

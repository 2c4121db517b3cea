// SPDX-License-Identifier: MIT
#include "kv/version.h"

const char *kv_version(void) noexcept {
    return KV_VERSION;
}

/* SPDX-License-Identifier: MIT */
/* An application in C, found by pkg-config. */
#include <kv.h>
#include <stdio.h>

int main(void) {
    ENV *env = env_open(1, NULL);
    double value = 0;
    int32_t from =
        env_put(env, "axis", "limit", "12.5") == 0 ? env_get_double(env, "axis", "limit", 1, &value) : -1;
    printf("%d %g\n", (int)from, value);
    return env_close(env, 0) == 0 && from == 1 && value == 12.5 ? 0 : 1;
}

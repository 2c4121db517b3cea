/* SPDX-License-Identifier: MIT */
/* Prints the travel limits of a machine's axes: those that the site has set where it has set any, those of
 * the machine's maker elsewhere.
 *
 *     limits MACHINE-FILE [SITE-FILE]
 *
 * Both files become environments; the machine's is the default of the site's. So every value is asked for
 * once, in one place, and the answer tells where it came from. */
#include <stdio.h>
#include <stdlib.h>

#include "kv.h"

enum { MACHINE, SITE };

static const char *const origins[] = {"machine", "site"};

/* A real number of the n-th axis; ends the program if neither file has it. */
static double axis_value(ENV *env, int axis, const char *name, int32_t *origin) {
    char path[64];
    double value = 0;
    snprintf(path, sizeof path, "axis@%d@limits@%s", axis, name);
    *origin = env_get_double(env, "machine", path, 1, &value);
    if (*origin < 0) {
        fprintf(stderr, "axis %d: no number for the limit \"%s\"\n", axis, name);
        exit(EXIT_FAILURE);
    }
    return value;
}

static void print_axis(ENV *env, int axis) {
    char path[64];
    char name[32] = "?";
    int32_t from = 0;
    int32_t to = 0;
    const double minimum = axis_value(env, axis, "min", &from);
    const double maximum = axis_value(env, axis, "max", &to);
    snprintf(path, sizeof path, "axis@%d@name", axis);
    env_get(env, "machine", path, 1, sizeof name, name);
    printf("%-3s %9.2f (%s) to %9.2f (%s) mm\n", name, minimum, origins[from], maximum, origins[to]);
}

static void read_or_exit(const char *file, ENV *env) {
    if (env_read_file(file, env) == ENV_OK) return;
    fprintf(stderr, "%s cannot be read\n", file);
    exit(EXIT_FAILURE);
}

int main(int argc, char **argv) {
    ENV *machine = NULL;
    ENV *site = NULL;
    int32_t axes = 0;
    if (argc < 2 || argc > 3) {
        fputs("usage: limits MACHINE-FILE [SITE-FILE]\n", stderr);
        return EXIT_FAILURE;
    }
    machine = env_open(MACHINE, NULL);
    site = env_open(SITE, machine);
    if (machine == NULL || site == NULL) return EXIT_FAILURE;
    read_or_exit(argv[1], machine);
    if (argc == 3) read_or_exit(argv[2], site);

    axes = env_count_path(machine, "machine", "axis", 1);
    for (int axis = 1; axis <= axes; ++axis) print_axis(site, axis);
    return env_close(site, 1) == ENV_OK ? EXIT_SUCCESS : EXIT_FAILURE;
}

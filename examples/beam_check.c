/* SPDX-License-Identifier: MIT */
/* Finds the lightest profile for the girder of a crane, and prints the check of its bending and deflection.
 *
 *     beam_check MACHINE-FILE
 *
 * Loads, span and steel come from the environment of the machine. How the required section modulus and
 * moment of inertia follow from them is said by the formulas of section "Nachweis" in the main
 * configuration file, in which {path} stands for a value of the environment; its section "System" says
 * where the tables of profiles are. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "kv.h"

enum { TEXT_SIZE = 1024 };
enum { AREA, MODULUS, INERTIA, HEIGHT, COLUMNS };

static const char *const columns[] = {"A", "Wy", "Iy", "h", NULL}; /* in the units of the tables */

typedef struct {
    char table[PROFIL_FIELD_SIZE];
    char name[PROFIL_NAME_SIZE];
    double values[COLUMNS];
} Profile;

static void fail(const char *what, const char *name) {
    fprintf(stderr, "beam_check: %s: %s\n", what, name);
    exit(EXIT_FAILURE);
}

/* Copies a formula, and puts the machine's values in place of the paths in braces. */
static void fill_in(ENV *machine, const char *formula, char *expression) {
    char path[TEXT_SIZE];
    while (*formula != '\0') {
        const char *end = *formula == '{' ? strchr(formula, '}') : NULL;
        double value = 0;
        if (end == NULL) {
            *expression++ = *formula++;
            continue;
        }
        str_ncpy(path, formula + 1, (int32_t)(end - formula) - 1);
        if (env_get_double(machine, "crane", path, 1, &value) < 0)
            fail("no number in the machine's file", path);
        expression += sprintf(expression, "(%.15g)", value);
        formula = end + 1;
    }
    *expression = '\0';
}

/* The value of a formula of the main configuration file. */
static double evaluate(ENV *machine, const char *name) {
    char formula[TEXT_SIZE / 4];
    char expression[8 * TEXT_SIZE]; /* a value takes no more than eight times the room of "{x}" */
    char message[TEXT_SIZE];
    int32_t size = sizeof formula - 1;
    int32_t code = 0;
    int32_t line = 0;
    int32_t column = 0;
    double value = 0;
    char ok = 0;
    if (ini_read_string(NULL, "Nachweis", name, formula, &size) != INI_OK) fail("no formula", name);
    fill_in(machine, formula, expression);
    if (calc_expression(expression, &value, &ok) == 1) return value;
    calc_error(&code, &line, &column, message);
    fail(message, expression);
    return 0;
}

/* Keeps the lightest entry of a table that meets the conditions, if it is lighter than the best one so far.
 */
static void search_table(const char *table, const PROFIL_CONDITION *conditions, Profile *best) {
    Profile found;
    PROFIL *profiles = profil_open(table, columns, NULL);
    int32_t result = profil_search(profiles, conditions, 2, "", found.values, found.name);
    for (; result == 0; result = profil_search_next(profiles, NULL, 0, "", found.values, found.name)) {
        if (best->name[0] != '\0' && best->values[AREA] <= found.values[AREA]) continue;
        str_cpy(found.table, table);
        *best = found;
    }
    profil_close(profiles);
}

static Profile find_lightest(double modulus, double inertia) {
    char at_least[] = ">=";
    const PROFIL_CONDITION conditions[] = {{"Wy", at_least, modulus}, {"Iy", at_least, inertia}};
    Profile best = {0};
    char(*tables)[PROFIL_FIELD_SIZE] = NULL;
    int32_t count = 0;
    if (profil_findfiles("", &count, &tables) == 0 || count == 0) fail("no tables", "[System] Profile");
    for (int32_t i = 0; i < count; ++i) search_table(tables[i], conditions, &best);
    heap_free(tables);
    return best;
}

static void print_check(const char *what, double required, double actual, const char *unit) {
    printf("  %-4s required %10.1f   there %10.1f %s   used %5.1f %%\n", what, required, actual, unit,
           100 * required / actual);
}

int main(int argc, char **argv) {
    char name[TEXT_SIZE] = "?";
    ENV *machine = env_open(0, NULL);
    if (argc != 2) {
        fputs("usage: beam_check MACHINE-FILE\n", stderr);
        return EXIT_FAILURE;
    }
    if (machine == NULL || env_read_file(argv[1], machine) != ENV_OK) fail("cannot be read", argv[1]);
    env_get(machine, "crane", "name", 1, sizeof name, name);

    const double moment = evaluate(machine, "Moment");
    const double modulus = evaluate(machine, "Wy");
    const double inertia = evaluate(machine, "Iy");
    const Profile best = find_lightest(modulus, inertia);
    if (best.name[0] == '\0') fail("no profile is enough for", name);
    printf("%s\n  design moment %.1f kNm\n  profile %s (table %s), %.0f mm high, %.1f kg/m\n", name, moment,
           best.name, best.table, best.values[HEIGHT], best.values[AREA] * 0.785);
    print_check("Wy", modulus, best.values[MODULUS], "cm3");
    print_check("Iy", inertia, best.values[INERTIA], "cm4");
    return env_close(machine, 0) == ENV_OK ? EXIT_SUCCESS : EXIT_FAILURE;
}

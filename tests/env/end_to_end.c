/* SPDX-License-Identifier: MIT */
/* What an application does with environments, in plain C. */
#include <stdio.h>
#include <string.h>

#include "kv.h"

static int failures = 0;

static void expect_number(int line, double got, double want) {
    if (got == want) return;
    ++failures;
    printf("line %d: %g instead of %g\n", line, got, want);
}

static void expect_text(int line, const char *got, const char *want) {
    if (got != NULL && strcmp(got, want) == 0) return;
    ++failures;
    printf("line %d: \"%s\" instead of \"%s\"\n", line, got != NULL ? got : "(NIL)", want);
}

#define NUMBER(got, want) expect_number(__LINE__, (double)(got), (double)(want))
#define TEXT(got, want) expect_text(__LINE__, (got), (want))

static void collect(ENV *subenv, const char *section, const char *path, void *user) {
    char text[32] = "";
    NUMBER(env_get(subenv, NULL, NULL, 1, (int32_t)sizeof text, text), 1);
    strcat(strcat(strcat(strcat(strcat(strcat(user, section), ":"), path), "="), text), ";");
}

int main(void) {
    char text[128] = "", path[32] = "", name[16] = "", value[16] = "";
    char *written;
    int32_t line = 0, id = -1, count = 4, whole = 0;
    double numbers[4] = {0};
    const double limits[] = {0.5, 250, -1e10};
    void *external = NULL;
    ENV *base = env_open(2, NULL), *env = env_open(1, base), *sub;

    NUMBER(env_get_error(&line, NULL, 0, NULL), ENV_NOT_FOUND);
    NUMBER(env_put(env, "press", "name", "Press 4"), ENV_OK);
    NUMBER(env_create_path((int32_t)sizeof path, path, "axis", "2", "speed", (char *)NULL), ENV_OK);
    NUMBER(env_put_long(env, "press", path, 120), ENV_OK);
    NUMBER(env_put_doubles(env, "press", "limits", 3, limits), ENV_OK);
    NUMBER(env_put_external(env, "press", "window", &count), ENV_OK);
    NUMBER(env_put_format(base, "press", "unit", "%s/%d", "mm", 10), ENV_OK);

    NUMBER(env_get_long(env, "press", "axis@2@speed", 1, &whole), 1);
    NUMBER(whole, 120);
    NUMBER(env_get_doubles(env, "press", "limits", 1, &count, numbers), 1);
    NUMBER(numbers[2], -1e10);
    NUMBER(env_get(env, "press", "unit", 1, (int32_t)sizeof text, text), 2);
    TEXT(text, "mm/10");
    NUMBER(env_get_external(env, "press", "window", 1, &external), 1);
    NUMBER(external == &count, 1);
    NUMBER(env_get_first(env, "press", NULL, 1, &id, 16, name, 16, value, &external), ENV_DATA);
    NUMBER(env_get_next(16, name, 16, value, &external), ENV_DATA);
    TEXT(name, "axis");

    sub = env_open_subenv(env, "press", "axis@2", 1);
    NUMBER(env_put(sub, NULL, "drive", "left"), ENV_OK);
    NUMBER(env_close(env, 0), ENV_IN_USE);
    NUMBER(env_close(sub, 0), ENV_OK);
    NUMBER(env_delete(env, "press", "window"), ENV_OK);
    written = env_write_to_string(env);
    TEXT(written,
         "[press]\r\n  name =Press 4\r\n  axis =\r\n  axis ={\r\n    speed =120\r\n"
         "    drive =left\r\n  }\r\n  limits =0.5,250,-1e+10\r\n");
    heap_free(written);
    text[0] = '\0';
    NUMBER(env_traverse_leafs(env, collect, text), ENV_OK);
    TEXT(text,
         "press:name@1=Press 4;press:axis@1=;press:axis@2@speed@1=120;press:axis@2@drive@1=left;"
         "press:limits@1=0.5,250,-1e+10;");
    NUMBER(env_read_from_string("[s]\r\n  a =1\r\n[t]\r\n  }\r\n", env), ENV_SYNTAX);
    NUMBER(env_get_error(&line, NULL, (int32_t)sizeof text, text), ENV_OK);
    NUMBER(line, 4);
    TEXT(text, "Section waited");
    NUMBER(env_close(env, 1), ENV_OK);
    return failures == 0 ? 0 : 1;
}

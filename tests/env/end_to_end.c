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
    char *all = user;
    char text[32] = "";
    NUMBER(env_get(subenv, NULL, NULL, 1, (int32_t)sizeof text, text), 1);
    strcat(strcat(strcat(strcat(strcat(all, section), ":"), path), "="), text);
    strcat(all, ";");
}

int main(void) {
    char text[128] = "", path[32] = "", name[16] = "", value[16] = "";
    char *written;
    int32_t line = 0, column = 0, id = -1, count = 4, whole = 0;
    double numbers[4] = {0}, real = 0;
    const double limits[] = {0.5, 250, -1e10};
    const char *const parts[] = {"limit", "2", NULL};
    void *external = NULL;
    ENV *base = env_open(2, NULL), *env = env_open(1, base), *sub;

    NUMBER(env_get_error(&line, &column, (int32_t)sizeof text, text), ENV_NOT_FOUND);

    NUMBER(env_put(env, "press", "name", "Press 4"), ENV_OK);
    NUMBER(env_put_long(env, "press", "axis@2@speed", 120), ENV_OK);
    NUMBER(env_put_doubles(env, "press", "limits", 3, limits), ENV_OK);
    NUMBER(env_put_external(env, "press", "window", &count), ENV_OK);
    NUMBER(env_put_format(base, "press", "unit", "%s/%d", "mm", 10), ENV_OK);

    NUMBER(env_get_long(env, "press", "axis@2@speed", 1, &whole), 1);
    NUMBER(whole, 120);
    NUMBER(env_get_double(env, "press", "speed", 0, &real), 1);
    NUMBER(real, 120);
    NUMBER(env_get_doubles(env, "press", "limits", 1, &count, numbers), 1);
    NUMBER(count, 3);
    NUMBER(numbers[2], -1e10);
    NUMBER(env_get(env, "press", "unit", 1, (int32_t)sizeof text, text), 2);
    TEXT(text, "mm/10");
    NUMBER(env_get_external(env, "press", "window", 1, &external), 1);
    NUMBER(external == &count, 1);

    NUMBER(env_create_path((int32_t)sizeof path, path, "axis", "2", "speed", (char *)NULL), ENV_OK);
    TEXT(path, "axis@2@speed");
    NUMBER(env_exist_data(env, "press", path, 1), 1);
    NUMBER(env_create_array_path((int32_t)sizeof path, path, parts), ENV_OK);
    TEXT(path, "limit@2");

    NUMBER(env_get_first(env, "press", NULL, 1, &id, 16, name, 16, value, &external), ENV_DATA);
    NUMBER(env_get_next(16, name, 16, value, &external), ENV_DATA);
    TEXT(name, "axis");
    NUMBER(env_get_next(16, name, 16, value, &external), ENV_BLOCK);

    sub = env_open_subenv(env, "press", "axis@2", 1);
    NUMBER(env_put(sub, NULL, "drive", "left"), ENV_OK);
    NUMBER(env_close(env, 0), ENV_IN_USE);
    NUMBER(env_close(sub, 0), ENV_OK);
    NUMBER(env_delete(env, "press", "window"), ENV_OK);

    written = env_write_to_string(env);
    TEXT(written,
         "[press]\r\n  name =Press 4\r\n  axis =\r\n  axis ={\r\n    speed =120\r\n"
         "    drive =left\r\n  }\r\n  limits =0.5,250,-1e+10\r\n");
    sub = env_open(0, NULL);
    NUMBER(env_read_from_string(written, sub), ENV_OK);
    heap_free(written);
    NUMBER(env_sink(sub, env, ENV_SINK_UPDATE), ENV_OK);
    NUMBER(env_close(sub, 0), ENV_OK);

    NUMBER(env_delete(env, "press", "limits"), ENV_OK);
    text[0] = '\0';
    NUMBER(env_traverse_leafs(env, collect, text), ENV_OK);
    TEXT(text, "press:name@1=Press 4;press:axis@1=;press:axis@2@speed@1=120;press:axis@2@drive@1=left;");

    NUMBER(env_read_from_string("[s]\r\n  a =1\r\n[t]\r\n  }\r\n", env), ENV_SYNTAX);
    NUMBER(env_get_error(&line, &column, (int32_t)sizeof text, text), ENV_OK);
    NUMBER(line, 4);
    NUMBER(column, 3);
    TEXT(text, "Section waited");
    NUMBER(env_close(env, 1), ENV_OK);

    if (failures == 0) printf("done\n");
    return failures == 0 ? 0 : 1;
}

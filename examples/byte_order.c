/* SPDX-License-Identifier: MIT */
/* Writes the strokes of a press, a record file of either byte order, in the byte order that is asked for.
 *
 *     byte_order big|little FROM TO
 *
 * The library reads both orders and writes little-endian values. A control that wants big-endian ones gets
 * them from here: the header as a text, and each number as the bytes that the program puts in order. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "kv.h"

enum { DIE_WIDTH = 12 };

/* A record: time of day in s, number of the stroke, peak force in kN, position of the ram in mm, die. */
typedef struct {
    double time;
    int32_t number;
    double force;
    double position;
    char die[DIE_WIDTH];
} Stroke;

typedef int32_t WriteStroke(FIO *to, const Stroke *stroke);

/* All of these give 0, or -1 when reading or writing fails, as the library's functions do. */

static int32_t read_stroke(FIO *from, Stroke *stroke) {
    if (fio_getdouble(from, &stroke->time) != 0 || fio_getlong(from, &stroke->number) != 0 ||
        fio_getdouble(from, &stroke->force) != 0 || fio_getdouble(from, &stroke->position) != 0)
        return -1;
    return fio_fread(stroke->die, 1, DIE_WIDTH, from) == DIE_WIDTH ? 0 : -1;
}

static int32_t write_die(FIO *to, const Stroke *stroke) {
    return fio_fwrite(stroke->die, 1, DIE_WIDTH, to) == DIE_WIDTH ? 0 : -1;
}

static int32_t write_little(FIO *to, const Stroke *stroke) {
    if (fio_putdouble(to, stroke->time) != 0 || fio_putlong(to, stroke->number) != 0 ||
        fio_putdouble(to, stroke->force) != 0 || fio_putdouble(to, stroke->position) != 0)
        return -1;
    return write_die(to, stroke);
}

/* The lower bytes of a number, the highest of them first. */
static int32_t put_big(FIO *to, uint64_t number, int bytes) {
    for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8)
        if (fio_putchar(to, (char)(number >> shift & 0xff)) != 0) return -1;
    return 0;
}

static int32_t put_big_double(FIO *to, double value) {
    uint64_t bits = 0;
    memcpy(&bits, &value, sizeof bits);
    return put_big(to, bits, sizeof bits);
}

static int32_t write_big(FIO *to, const Stroke *stroke) {
    if (put_big_double(to, stroke->time) != 0 || put_big(to, (uint32_t)stroke->number, 4) != 0 ||
        put_big_double(to, stroke->force) != 0 || put_big_double(to, stroke->position) != 0)
        return -1;
    return write_die(to, stroke);
}

/* Copies the strokes, and counts them. */
static int32_t copy(FIO *from, FIO *to, WriteStroke *write_stroke, int32_t *count) {
    const int32_t end = fio_length(from);
    Stroke stroke;
    for (*count = 0; fio_tell(from) < end; ++*count)
        if (read_stroke(from, &stroke) != 0 || write_stroke(to, &stroke) != 0) return -1;
    return 0;
}

static int fail(const char *what, const char *name) {
    fprintf(stderr, "byte_order: %s: %s\n", what, name);
    return EXIT_FAILURE;
}

int main(int argc, char **argv) {
    const int big = argc == 4 && strcmp(argv[1], "big") == 0;
    if (argc != 4 || (!big && strcmp(argv[1], "little") != 0)) {
        fputs("usage: byte_order big|little FROM TO\n", stderr);
        return EXIT_FAILURE;
    }
    FIO *from = fio_open(NULL, argv[2], FIO_READ | FIO_HEADER);
    if (from == NULL) return fail("cannot be read", argv[2]);
    /* With FIO_HEADER the library writes the header of its own byte order. */
    FIO *to = fio_open(NULL, argv[3], big ? FIO_WRITE : FIO_WRITE | FIO_HEADER);
    if (to == NULL) {
        fio_close(from);
        return fail("cannot be written", argv[3]);
    }

    int32_t count = 0;
    int32_t result = big ? fio_putstring(to, "1.1  @kvMOTOROLA", 0) : 0;
    if (result == 0) result = copy(from, to, big ? write_big : write_little, &count);
    fio_close(from);
    /* What is still buffered shows only now whether it can be written. */
    if (fio_close(to) != 0) result = -1;
    if (result != 0) {
        fio_purge(NULL, argv[3]);
        return fail("not all strokes could be copied", argv[2]);
    }
    printf("%d strokes, %s-endian: %s\n", (int)count, argv[1], argv[3]);
    return EXIT_SUCCESS;
}

/* SPDX-License-Identifier: MIT */
/* Environment tree: sections, blocks, text values and application pointers, addressed by paths.
 *
 * The tree. A root environment holds an ordered list of sections. A section is a block; a block holds
 * an ordered list of elements; an element has a name and is a data element (a text), a block, or an
 * external (a pointer of the application, kept in the tree but never written, copied or freed). Names
 * are compared byte for byte. They need not be unique: the n-th element of a name in its list has the
 * occurrence index n, counted from 1.
 *
 * Addresses. An element is addressed by a section and a path: the names from the section down to the
 * element, separated by the delimiter ("@" at the start, see env_set_delimiter()). A name that is
 * followed by an element of decimal digits carries that occurrence index; without one it is the first.
 * So "axis@2@limit" names the element "limit" of the second "axis". The index 0 means the first element
 * of the list whatever its name. Runs of delimiters count as one; a path has at most 1023 characters
 * and 97 delimiters. Without a path (NIL) the section itself is addressed. A sub-environment is a handle
 * on one element of another environment: its functions ignore `section`, and paths start at that
 * element.
 *
 * Resolution. With `exact` not 0 each name of the path is looked for in the block that the names before
 * it lead to. With `exact` 0 each name is looked for in the whole tree below, breadth first: the match
 * nearest to the start wins. Storing is always exact.
 *
 * Default chains. An environment may name a default environment. A getter that finds nothing asks it,
 * and so on along the chain; it then returns the id of the environment that had the element.
 *
 * Results. Unless a function says otherwise it returns one of the codes below; getters return the id (0
 * or greater) of the environment that supplied the value. The codes that several functions share:
 * ENV_NOT_FOUND: no such section or element, in the default chain neither. ENV_BAD_PATH: the path is
 * empty, too long or has too many elements (after a kv_error). ENV_ERROR: the environment is NIL, the
 * section is NIL where one is needed, or the heap is exhausted (each after a kv_error); or another
 * misuse, as stated. Whenever a function fails, the tree and the caller's variables are as they were,
 * unless it says otherwise.
 *
 * Open sub-environments. A change that would free elements on which, or below which, a sub-environment
 * is open is refused with ENV_IN_USE and changes nothing.
 *
 * Writing. The character function of env_write() may call every function, on the environment that is being
 * written too. An element is being written until its last character is out, and so is every block around
 * it up to its "}". Storing over it, deleting it, reading into the environment and closing it are refused
 * with ENV_IN_USE and change nothing meanwhile. Elements beside it may be changed, and blocks around it may
 * receive new ones: what the writing has not come to yet is written as it is then.
 *
 * Threads. One recursive lock per process serialises the functions, callbacks included. The iteration
 * of env_get_first() and env_get_next() is one per process. */
#ifndef KV_ENV_H
#define KV_ENV_H

#include "kv/types.h"

KV_BEGIN_DECLS

/** An environment or a sub-environment. Released by env_close() only. */
typedef struct ENV ENV;

/** Result codes. */
enum {
    ENV_OK = 0,         /**< done */
    ENV_DATA = -1,      /**< the element exists and is a data element */
    ENV_BLOCK = -2,     /**< the element exists and is a block (a section counts as one) */
    ENV_EXTERNAL = -3,  /**< the element exists and is an external */
    ENV_NOT_FOUND = -4, /**< no such section or element */
    ENV_SYNTAX = -5,    /**< a text or a stored value does not follow its grammar */
    ENV_BAD_PATH = -6,  /**< the path was rejected: empty, too long, too many elements */
    ENV_TOO_SMALL = -7, /**< a buffer or an array is too small, or a count is out of range */
    ENV_IN_USE = -8,    /**< sub-environments are open on it, it is another's default, or it is
                             being written */
    ENV_ERROR = -10     /**< NIL environment, misuse, exhausted heap, or another reported error */
};

/** Element types. */
enum { ENV_TYPE_EXTERNAL = 0, ENV_TYPE_DATA = 1, ENV_TYPE_BLOCK = 2 };

/** Merge modes of env_sink() and env_copy_block(). */
enum {
    ENV_SINK_ADD = 0,     /**< store what the destination does not have */
    ENV_SINK_APPEND = 1,  /**< store as a new occurrence behind the elements of the same name */
    ENV_SINK_REPLACE = 2, /**< store, replacing or creating */
    ENV_SINK_UPDATE = 3   /**< store only over what the destination has already */
};

/* ---- Handles ------------------------------------------------------------------------------------ */

/** Opens a new, empty root environment.
 *
 *  @param id           the number that getters report when they find something here; 0 or greater
 *  @param default_env  the next environment of the default chain, or NIL; it cannot be closed while it
 *                      is linked here
 *  @return the environment, to be closed with env_close(); NIL when the heap is exhausted (after a
 *          kv_error) */
KV_API ENV *KV_CALL env_open(int32_t id, ENV *default_env) KV_NOEXCEPT;

/** Closes an environment or a sub-environment. A root environment's tree is freed (externals are not
 *  touched); a sub-environment's elements stay where they are.
 *
 *  @param close_defaults  not 0: after a root environment, its default chain is closed too, link by link
 *                         as far as each has no other users
 *  @retval ENV_OK      closed
 *  @retval ENV_IN_USE  sub-environments are open on it, it is another environment's default, or it is
 *                      just being read, written or traversed; nothing changes. With close_defaults also
 *                      when a default is in use: what stood before it in the chain is closed then.
 *  @retval ENV_ERROR   env is NIL (reported) */
KV_API int32_t KV_CALL env_close(ENV *env, int32_t close_defaults) KV_NOEXCEPT;

/** Opens a sub-environment on an existing element of any type (without a path: on the section).
 *
 *  It has the id, the default and the modification time that env has now. While it is open, env cannot
 *  be closed.
 *
 *  @return the sub-environment; NIL if there is no such element, the path is bad, env is NIL or the
 *          heap is exhausted (the last three after a kv_error) */
KV_API ENV *KV_CALL env_open_subenv(ENV *env, const char *section, const char *path,
                                    int32_t exact) KV_NOEXCEPT;

/** Opens a sub-environment as env_open_subenv() with exact resolution, and creates the element if it is
 *  missing: as an external holding NIL, which becomes a block when something is stored below it. */
KV_API ENV *KV_CALL env_create_subenv(ENV *env, const char *section, const char *path) KV_NOEXCEPT;

/* ---- Storing ------------------------------------------------------------------------------------- */

/* Every function here creates what the address lacks: the section, the blocks on the way, and as many
 * empty data elements as an occurrence index needs before its element. An element that has to become a
 * block loses its text or its pointer; an element that is replaced loses its text, its pointer or its
 * whole subtree. A text buffer of the tree is reused when the new text is not longer.
 *
 * Common results:
 *   ENV_OK      stored; also when the path was rejected (after a kv_error; nothing is stored then except
 *               a section that was missing), and when a section of a root environment is addressed
 *               without a path, which creates the section if need be and changes nothing else
 *   ENV_IN_USE  the element is a block with an open sub-environment below it, or it is being written and
 *               would be replaced or become a block; nothing is changed
 *   ENV_ERROR   env or section is NIL; the heap is exhausted; an occurrence index of 0 where there is no
 *               element to stand for it, or one that is more than 1000000 beyond the elements that there
 *               are (each after a kv_error); nothing is changed */

/** Stores a text or an external; every other storing function is made of this one.
 *
 *  @param value     the text, copied; NIL to store an external
 *  @param external  the pointer of an external, when value is NIL; stays the application's */
KV_API int32_t KV_CALL env_put_core(ENV *env, const char *section, const char *path, const char *value,
                                    void *external) KV_NOEXCEPT;

/** Stores a text (copied). ENV_ERROR without a report if value is NIL. */
KV_API int32_t KV_CALL env_put(ENV *env, const char *section, const char *path,
                               const char *value) KV_NOEXCEPT;

/** The same as env_put(). */
KV_API int32_t KV_CALL env_put_string(ENV *env, const char *section, const char *path,
                                      const char *value) KV_NOEXCEPT;

/** Stores a whole number as "%ld" writes it. */
KV_API int32_t KV_CALL env_put_long(ENV *env, const char *section, const char *path,
                                    int32_t value) KV_NOEXCEPT;

/** Stores a real number as "%g" writes it: six significant digits, a decimal point in every locale. */
KV_API int32_t KV_CALL env_put_double(ENV *env, const char *section, const char *path,
                                      double value) KV_NOEXCEPT;

/** Stores whole numbers as one text, separated by commas.
 *
 *  @param count   at least 1
 *  @param values  count numbers
 *  ENV_ERROR without a report if count is below 1 or values is NIL. */
KV_API int32_t KV_CALL env_put_longs(ENV *env, const char *section, const char *path, int32_t count,
                                     const int32_t *values) KV_NOEXCEPT;

/** Stores real numbers, each as env_put_double() writes it; otherwise as env_put_longs(). */
KV_API int32_t KV_CALL env_put_doubles(ENV *env, const char *section, const char *path, int32_t count,
                                       const double *values) KV_NOEXCEPT;

/** Stores texts as one text, separated by commas. Nothing is escaped: a text with a comma comes back as
 *  two.
 *
 *  @param values  count texts
 *  ENV_ERROR without a report if count is below 1, or values or one of its entries is NIL. */
KV_API int32_t KV_CALL env_put_strings(ENV *env, const char *section, const char *path, int32_t count,
                                       const char *const *values) KV_NOEXCEPT;

/** Stores a text that printf would write, with a decimal point in every locale. ENV_ERROR without a
 *  report if the text has 1024 characters or more. */
KV_API int32_t KV_CALL env_put_format(ENV *env, const char *section, const char *path, const char *format,
                                      ...) KV_NOEXCEPT KV_PRINTF(4, 5);

/** Stores an external: a pointer that stays the application's (may be NIL). */
KV_API int32_t KV_CALL env_put_external(ENV *env, const char *section, const char *path,
                                        void *external) KV_NOEXCEPT;

/* ---- Getting ------------------------------------------------------------------------------------- */

/** Looks an element up, by address and position; every getter is made of this one.
 *
 *  @param pos           0: the addressed element; from 1 on: that element of the addressed block, or, with
 *                       section NIL on a root environment, that section
 *  @param id_out        receives the id of the environment that has the element
 *  @param name_out      receives the element's name
 *  @param value_out     receives the text of a data element
 *  @param external_out  receives the pointer of an external
 *
 *  Each of the four may be NIL; what does not apply is untouched. The texts are the tree's own, valid
 *  until the element is changed or deleted.
 *
 *  @retval ENV_DATA,ENV_BLOCK,ENV_EXTERNAL  found, by type
 *  @retval ENV_NOT_FOUND  nothing there, in the default chain neither
 *  @retval ENV_BAD_PATH   the path was rejected (reported). On a root environment with a pos above 0 it
 *                         counts as not found.
 *  @retval ENV_ERROR      env is NIL, or section is NIL where one is needed (reported, but for section
 *                         NIL with pos 0 on a root environment) */
KV_API int32_t KV_CALL env_get_core(ENV *env, const char *section, const char *path, int32_t exact,
                                    int32_t pos, int32_t *id_out, const char **name_out,
                                    const char **value_out, void **external_out) KV_NOEXCEPT;

/** Copies the text of a data element.
 *
 *  @param size    bytes of buffer
 *  @param buffer  receives the text with its terminating zero
 *  @return the id of the environment that has the element
 *  @retval ENV_DATA       the element is not a data element
 *  @retval ENV_NOT_FOUND,ENV_BAD_PATH,ENV_ERROR  as env_get_core()
 *  @retval ENV_TOO_SMALL  the text has size characters or more */
KV_API int32_t KV_CALL env_get(ENV *env, const char *section, const char *path, int32_t exact, int32_t size,
                               char *buffer) KV_NOEXCEPT;

/** The same as env_get(). */
KV_API int32_t KV_CALL env_get_string(ENV *env, const char *section, const char *path, int32_t exact,
                                      int32_t size, char *buffer) KV_NOEXCEPT;

/** Gets the tree's own text of a data element, without a copy.
 *
 *  @param ref  receives the text: the tree's, valid until the element is changed or deleted
 *  @return as env_get(), never ENV_TOO_SMALL */
KV_API int32_t KV_CALL env_get_reference(ENV *env, const char *section, const char *path, int32_t exact,
                                         const char **ref) KV_NOEXCEPT;

/** The length of a data element's text in characters; 0 for anything else, errors included. */
KV_API int32_t KV_CALL env_data_length(ENV *env, const char *section, const char *path,
                                       int32_t exact) KV_NOEXCEPT;

/* The number getters read texts of this form, and no other. Blanks (spaces and tabs) may stand before and
 * after each number; a carriage return or line feed ends the text. A whole number is an optional sign
 * and digits; beyond 32 bits it becomes the nearest 32-bit number. A real number is an optional sign,
 * digits with an optional point among, before or after them, and optionally E, e, D or d with an
 * optional power of ten. A list is one number or more, separated by commas. */

/** Gets a whole number.
 *
 *  @return the id of the environment that has the element
 *  @retval ENV_DATA       the element is not a data element
 *  @retval ENV_NOT_FOUND,ENV_BAD_PATH,ENV_ERROR  as env_get_core()
 *  @retval ENV_SYNTAX     the text is not one whole number */
KV_API int32_t KV_CALL env_get_long(ENV *env, const char *section, const char *path, int32_t exact,
                                    int32_t *value) KV_NOEXCEPT;

/** Gets a real number; otherwise as env_get_long(). */
KV_API int32_t KV_CALL env_get_double(ENV *env, const char *section, const char *path, int32_t exact,
                                      double *value) KV_NOEXCEPT;

/** Gets a list of whole numbers.
 *
 *  @param count   in: the room of values; out: the numbers stored, 0 after every failure
 *  @param values  receives the numbers; after ENV_SYNTAX and ENV_TOO_SMALL its content is undefined
 *  @return the id of the environment that has the element
 *  @retval ENV_DATA       the element is not a data element
 *  @retval ENV_NOT_FOUND,ENV_BAD_PATH,ENV_ERROR  as env_get_core()
 *  @retval ENV_SYNTAX     the text is not a list of whole numbers (an empty text is none)
 *  @retval ENV_TOO_SMALL  it has more numbers than values has room */
KV_API int32_t KV_CALL env_get_longs(ENV *env, const char *section, const char *path, int32_t exact,
                                     int32_t *count, int32_t *values) KV_NOEXCEPT;

/** Gets a list of real numbers; otherwise as env_get_longs(). */
KV_API int32_t KV_CALL env_get_doubles(ENV *env, const char *section, const char *path, int32_t exact,
                                       int32_t *count, double *values) KV_NOEXCEPT;

/** Gets the parts of a text between its commas, as they stand. An empty text is one empty part.
 *
 *  @param count   in: the entries of values; out: the parts stored; unchanged after every failure
 *  @param size    bytes of each buffer
 *  @param values  buffers of size bytes each; those of the parts before a failure are filled
 *  @return the id of the environment that has the element
 *  @retval ENV_DATA       the element is not a data element
 *  @retval ENV_NOT_FOUND,ENV_BAD_PATH,ENV_ERROR  as env_get_core(); ENV_ERROR, without a report, also if
 *                         count or values or a needed entry is NIL, or *count or size is below 1
 *  @retval ENV_TOO_SMALL  a part has size characters or more, or there are more parts than entries */
KV_API int32_t KV_CALL env_get_strings(ENV *env, const char *section, const char *path, int32_t exact,
                                       int32_t *count, int32_t size, char *const *values) KV_NOEXCEPT;

/** Gets the size of a comma-separated text, for env_get_strings() with buffers of *longest + 1 bytes.
 *
 *  @param count    receives the number of parts, 0 on failure; may be NIL
 *  @param longest  receives the characters of the longest part, 0 on failure; may be NIL
 *  @return as env_get_reference() */
KV_API int32_t KV_CALL env_get_array_size(ENV *env, const char *section, const char *path, int32_t exact,
                                          int32_t *count, int32_t *longest) KV_NOEXCEPT;

/** Gets an external.
 *
 *  @param external  receives the pointer
 *  @return the id of the environment that has the element
 *  @retval ENV_EXTERNAL  the element is not an external
 *  @retval ENV_NOT_FOUND,ENV_BAD_PATH,ENV_ERROR  as env_get_core() */
KV_API int32_t KV_CALL env_get_external(ENV *env, const char *section, const char *path, int32_t exact,
                                        void **external) KV_NOEXCEPT;

/* ---- Positions and iteration --------------------------------------------------------------------- */

/** Gets an element by its position in the addressed block, or, with section NIL on a root environment, a
 *  section.
 *
 *  @param pos         from 1 on
 *  @param id          receives the id of the environment that has the element
 *  @param name_size   bytes of name
 *  @param name        receives the name
 *  @param value_size  bytes of value
 *  @param value       receives the text of a data element; otherwise untouched
 *  @param external    receives the pointer of an external; otherwise untouched
 *  @retval ENV_DATA,ENV_BLOCK,ENV_EXTERNAL  found, by type
 *  @retval ENV_NOT_FOUND,ENV_BAD_PATH,ENV_ERROR  as env_get_core(); ENV_NOT_FOUND also if pos is below 1
 *  @retval ENV_TOO_SMALL  the name or the text does not fit; the one that fits is copied */
KV_API int32_t KV_CALL env_get_pos(ENV *env, const char *section, const char *path, int32_t exact,
                                   int32_t pos, int32_t *id, int32_t name_size, char *name,
                                   int32_t value_size, char *value, void **external) KV_NOEXCEPT;

/** Starts the iteration over the addressed block, or, with section NIL on a root environment, over the
 *  sections: gets the first element as env_get_pos() does. The arguments are copied. A block that only a
 *  default has is iterated there. */
KV_API int32_t KV_CALL env_get_first(ENV *env, const char *section, const char *path, int32_t exact,
                                     int32_t *id, int32_t name_size, char *name, int32_t value_size,
                                     char *value, void **external) KV_NOEXCEPT;

/** Gets the next element of the iteration as env_get_pos() does.
 *
 *  @retval ENV_NOT_FOUND  no more elements in the environment that the first one came from, no iteration,
 *                         or its environment was closed
 *
 *  Every result but the three types ends the iteration, except that after an environment's own elements
 *  it stays where it is when a default has more. */
KV_API int32_t KV_CALL env_get_next(int32_t name_size, char *name, int32_t value_size, char *value,
                                    void **external) KV_NOEXCEPT;

/* ---- Existence and counting (the environment's own tree, never its defaults) ---------------------- */

/** The type of an element.
 *
 *  @retval ENV_DATA,ENV_BLOCK,ENV_EXTERNAL  by type. Without a path an existing section gives ENV_BLOCK;
 *                         section NIL on a root environment gives ENV_BLOCK if there is any section.
 *  @retval ENV_NOT_FOUND  no such element, the path was rejected, or (sub-environment without a path) the
 *                         element is a block without elements
 *  @retval ENV_ERROR      env is NIL */
KV_API int32_t KV_CALL env_check(ENV *env, const char *section, const char *path,
                                 int32_t exact) KV_NOEXCEPT;

/** 1 if env_check() finds an element of any type, else 0. */
KV_API int32_t KV_CALL env_exist(ENV *env, const char *section, const char *path,
                                 int32_t exact) KV_NOEXCEPT;
/** 1 if env_check() finds a data element, else 0. */
KV_API int32_t KV_CALL env_exist_data(ENV *env, const char *section, const char *path,
                                      int32_t exact) KV_NOEXCEPT;
/** 1 if env_check() finds a block, else 0. */
KV_API int32_t KV_CALL env_exist_block(ENV *env, const char *section, const char *path,
                                       int32_t exact) KV_NOEXCEPT;
/** 1 if env_check() finds an external, else 0. */
KV_API int32_t KV_CALL env_exist_external(ENV *env, const char *section, const char *path,
                                          int32_t exact) KV_NOEXCEPT;

/** The number of elements of the addressed block (section NIL on a root environment: of sections).
 *
 *  @return the number; 0 if it is missing or no block
 *  @retval ENV_ERROR  env is NIL */
KV_API int32_t KV_CALL env_count_elements(ENV *env, const char *section, const char *path,
                                          int32_t exact) KV_NOEXCEPT;

/** The number of elements that have the last name of the path, in the list that holds the addressed
 *  element. The last name is what follows the last occurrence of the delimiter's first character, so a
 *  path should not end in an index.
 *
 *  @return the number; 0 if the element is missing
 *  @retval ENV_BAD_PATH,ENV_ERROR  as env_get_core(); ENV_ERROR also if path is NIL (reported) */
KV_API int32_t KV_CALL env_count_path(ENV *env, const char *section, const char *path,
                                      int32_t exact) KV_NOEXCEPT;

/** Lists the names of a block's elements, or, with section NIL on a root environment, of the sections:
 *  "a;b;a;" for the elements a, b, a and the separator ";", the separator alone for an empty block.
 *  Positions after the environment's own elements are looked up in the default chain.
 *
 *  @param separator  the character after each name
 *  @param size       bytes of names
 *  @param names      receives the list; the empty text after every failure. Section and path may stand in
 *                    it.
 *  @retval ENV_OK         done
 *  @retval ENV_BLOCK      the addressed element is not a block, or missing in the environment itself; a
 *                         sub-environment's own empty block counts as missing
 *  @retval ENV_TOO_SMALL  the list does not fit
 *  @retval ENV_BAD_PATH,ENV_ERROR  as env_get_core() */
KV_API int32_t KV_CALL env_list_elem_names(ENV *env, const char *section, const char *path, int32_t exact,
                                           char separator, int32_t size, char *names) KV_NOEXCEPT;

/* ---- Editing ------------------------------------------------------------------------------------- */

/** Inserts a new element in front of the addressed one: an external holding NIL, to be filled by a put.
 *  Without a path, on a root environment: inserts an empty section in front of the section.
 *
 *  @param name  the new element's name, copied
 *  @retval ENV_OK         inserted
 *  @retval ENV_NOT_FOUND  the addressed element does not exist
 *  @retval ENV_ERROR      env, section or name is NIL, the path was rejected, the heap is exhausted, or a
 *                         sub-environment on a section is used without a path (reported) */
KV_API int32_t KV_CALL env_insert_before(ENV *env, const char *section, const char *path,
                                         const char *name) KV_NOEXCEPT;

/** Deletes an element with its subtree; without a path a section; without a section too all sections.
 *
 *  @retval ENV_OK         deleted
 *  @retval ENV_NOT_FOUND  the addressed element does not exist
 *  @retval ENV_BAD_PATH   the path was rejected (reported)
 *  @retval ENV_IN_USE     a sub-environment is open on it or below it, or it is being written
 *  @retval ENV_ERROR      env is NIL, or a sub-environment is used without a path (reported, but for
 *                         section not NIL) */
KV_API int32_t KV_CALL env_delete(ENV *env, const char *section, const char *path) KV_NOEXCEPT;

/* ---- Traversal and merging ------------------------------------------------------------------------ */

/** Called for one element of a traversal.
 *
 *  @param subenv   a sub-environment on the element, closed by the traversal after the call
 *  @param section  the element's section
 *  @param path     its path with occurrence indices; NIL for a section. Valid during the call.
 *  @param user     the pointer given to the traversal
 *
 *  It may call every environment function, on the same environment too. It cannot delete the element that
 *  it visits; the traversal goes on with the element that follows it then. */
typedef void(KV_CALL *env_callback)(ENV *subenv, const char *section, const char *path, void *user);

/** Calls `callback` for every element of the addressed block, or, with section NIL on a root environment,
 *  for every section.
 *
 *  The path given is `path` (if not NIL), then the element's name and occurrence index, joined with the
 *  delimiter.
 *
 *  @retval ENV_OK     done, or a root environment without sections
 *  @retval ENV_BLOCK  the block is missing or has no elements
 *  @retval ENV_BAD_PATH,ENV_ERROR  as env_get_core(); ENV_ERROR also when the heap is exhausted on the way
 *                     (reported) */
KV_API int32_t KV_CALL env_traverse(ENV *env, const char *section, const char *path, int32_t exact,
                                    env_callback callback, void *user) KV_NOEXCEPT;

/** Calls `callback` for every data element and external, depth first, in the order of the lists. Each name
 *  of the path carries its occurrence index, as in "frame@1@axis@2".
 *
 *  @retval ENV_OK     done
 *  @retval ENV_ERROR  env is NIL, a sub-environment without elements, or an exhausted heap */
KV_API int32_t KV_CALL env_traverse_leafs(ENV *env, env_callback callback, void *user) KV_NOEXCEPT;

/** Merges the data elements of `source` into `destination`; externals are passed over. A data element lands
 *  at the address that it has in the source, every name with its occurrence index (with ENV_SINK_APPEND:
 *  as a new last occurrence). Works at any nesting depth and between parts of one tree.
 *
 *  @param mode  one of the ENV_SINK_ modes
 *  @retval ENV_OK     done
 *  @retval ENV_ERROR  an environment is NIL, `source` is a sub-environment without elements, the mode is
 *                     unknown, an element that would have to be freed is in use, or the heap is exhausted;
 *                     elements merged before the failure stay merged */
KV_API int32_t KV_CALL env_sink(ENV *destination, ENV *source, int32_t mode) KV_NOEXCEPT;

/** Merges one block of `source` into the block with the same address in `destination`, which is created if
 *  need be, as env_sink() does.
 *
 *  @retval ENV_OK     done
 *  @retval ENV_ERROR  as env_sink(); also if the source has no such block or it has no elements */
KV_API int32_t KV_CALL env_copy_block(ENV *destination, ENV *source, const char *section, const char *path,
                                      int32_t mode) KV_NOEXCEPT;

/* ---- Default chains -------------------------------------------------------------------------------- */

/** Makes `new_default` the last environment of env's default chain.
 *
 *  NIL is reported with kv_message and ignored; an environment that would close the chain to a ring is
 *  reported with kv_error and refused. */
KV_API void KV_CALL env_attach_as_last_default(ENV *env, ENV *new_default) KV_NOEXCEPT;

/** Takes env's default from it. The rest of the chain stays behind the detached environment, which the
 *  application closes itself. */
KV_API void KV_CALL env_detach_default_chain(ENV *env) KV_NOEXCEPT;

/* ---- Text ------------------------------------------------------------------------------------------ */

/** Gives the next character of a text, 0 to 255, or -1 at its end. */
typedef int32_t(KV_CALL *env_getc)(void *stream);
/** Takes one character, 0 to 255. */
typedef void(KV_CALL *env_putc)(int32_t c, void *stream);

/** Writes a root environment as text, line ends as line feeds. Externals are not written. An environment
 *  that is NIL or a sub-environment is reported and nothing is written.
 *
 *  Not everything survives being read again: a text cannot begin with a blank or "{", hold a line end or
 *  end with blanks; an element's name cannot be empty, hold "=" or begin with a blank, "[" or "}"; a
 *  section's name cannot hold "]". */
KV_API void KV_CALL env_write(env_putc put_character, void *stream, ENV *env) KV_NOEXCEPT;

/** Replaces the content of a root environment by what a text says, line ends as line feeds.
 *
 *  @retval ENV_OK      done. Also when the heap has no room for a section's list of elements: that is
 *                      reported ("Was really error"), and the sections before that one are there
 *  @retval ENV_SYNTAX  the text breaks the format (after a kv_error; env_get_error() tells where); the
 *                      sections before the one with the error are there
 *  @retval ENV_IN_USE  env is being written; nothing is read
 *  @retval ENV_ERROR   env is NIL, a sub-environment, or has open sub-environments; or the heap is
 *                      exhausted elsewhere (each reported; the environment is as it was)
 *
 *  Bytes 0 inside a name or a text, which no text can hold, are left out; that is reported once per text
 *  with kv_message. */
KV_API int32_t KV_CALL env_read(env_getc get_character, void *stream, ENV *env) KV_NOEXCEPT;

/** Reads a text file as env_read() does, and keeps the file's modification time. Lines may end in CR LF or
 *  LF; a Ctrl-Z (26) ends the text.
 *
 *  @return as env_read(); ENV_ERROR also if the file cannot be opened or read (reported, the environment
 *          is unchanged) */
KV_API int32_t KV_CALL env_read_file(const char *file_name, ENV *env) KV_NOEXCEPT;

/** Writes a text file as env_write() does, with CR LF at the line ends, instead of an old one. A NIL
 *  environment or a sub-environment leaves an empty file.
 *
 *  The file holds either its old content or all of the new one, and keeps its owner, permissions and
 *  attributes; which files may lose that when the process is killed, because they are written in place, and
 *  how processes wait for each other, is said in kv/ini.h. A file that cannot be written, or is in use for
 *  as long as one waits, is reported ("cann't open to write:", "cann't write:") and unchanged. */
KV_API void KV_CALL env_write_file(const char *file_name, ENV *env) KV_NOEXCEPT;

/** Does the same as env_write_file(), and says what came of it. Since 1.1.
 *
 *  @retval ENV_OK     the file holds the new content
 *  @retval ENV_ERROR  it is unchanged, and the reason is reported */
KV_API int32_t KV_CALL env_save_file(const char *file_name, ENV *env) KV_NOEXCEPT;

/** Reads a zero-terminated text as env_read() does; carriage returns in it are skipped. */
KV_API int32_t KV_CALL env_read_from_string(const char *text, ENV *env) KV_NOEXCEPT;

/** Writes a text as env_write() does, with CR LF at the line ends.
 *
 *  @return the zero-terminated text, which the caller frees with heap_free(); the empty text for a NIL
 *          environment or a sub-environment (reported); NIL when the heap is exhausted (reported) */
KV_API char *KV_CALL env_write_to_string(ENV *env) KV_NOEXCEPT;

/** The modification time of the file that env_read_file() read last into the environment, in seconds since
 *  1970. -10 if there was none, for a sub-environment, and for NIL. */
KV_API int32_t KV_CALL env_get_file_mtime(ENV *env) KV_NOEXCEPT;

/* ---- Paths ----------------------------------------------------------------------------------------- */

/** Sets the delimiter of all paths in the process.
 *
 *  @param delimiter  its characters (at most 254 are used); a path is split at each of them, and made with
 *                    them. NIL only asks. The empty text is reported with kv_error and changes nothing.
 *  @return the delimiter before the call, in a field of the library that the next call overwrites; it may
 * be that call's argument, as what env_get_delimiter() returns may */
KV_API char *KV_CALL env_set_delimiter(const char *delimiter) KV_NOEXCEPT;

/** The delimiter: the library's own field. */
KV_API const char *KV_CALL env_get_delimiter(void) KV_NOEXCEPT;

/** Joins texts to a path with the delimiter's first character.
 *
 *  @param size  bytes of out
 *  @param out   receives the path
 *  @param ...   the texts, ended by NIL
 *  @retval ENV_OK         done; without a text `out` is untouched
 *  @retval ENV_TOO_SMALL  the path does not fit: `out` is untouched if the first text alone does not, else
 *                         it is the empty text */
KV_API int32_t KV_CALL env_create_path(int32_t size, char *out, ...) KV_NOEXCEPT KV_SENTINEL;

/** Joins an array of texts, ended by NIL, to a path with the delimiter's first character.
 *
 *  @retval ENV_OK         done; without a name `out` is the empty text
 *  @retval ENV_TOO_SMALL  the path does not fit (`out` is the empty text), size is below 1 or out is NIL */
KV_API int32_t KV_CALL env_create_array_path(int32_t size, char *out, const char *const *names) KV_NOEXCEPT;

/* ---- Addition --------------------------------------------------------------------------------------- */

/* The interface of old ends here; what follows is an addition. */

/** Tells about the last syntax error that env_read(), env_read_file(), env_read_from_string() or
 *  env_edit_file() reported in this process.
 *
 *  @param line    receives the line, from 1; may be NIL
 *  @param column  receives the column in bytes, from 1; may be NIL
 *  @param size    bytes of text
 *  @param text    receives the text of the report; may be NIL
 *  @retval ENV_OK         done
 *  @retval ENV_NOT_FOUND  no syntax error yet; nothing is stored
 *  @retval ENV_TOO_SMALL  the text has size characters or more and is not stored; line and column are */
KV_API int32_t KV_CALL env_get_error(int32_t *line, int32_t *column, int32_t size, char *text) KV_NOEXCEPT;

/* ---- Addition: editing a file ------------------------------------------------------------------------ */

/** What an ENV_EDIT does. Sections and paths are those of the functions named here. */
enum {
    /** env_put(): stores text. Without a path: makes the section if there is none. */
    ENV_EDIT_PUT = 0,
    /** Makes an empty block, as env_put() makes a text; a block that is there stays as it is. Without a
     *  path: as ENV_EDIT_PUT. */
    ENV_EDIT_MAKE_BLOCK = 1,
    /** env_delete(). */
    ENV_EDIT_DELETE = 2,
    /** env_insert_before() with name, and stores text (NIL: the empty text) in the new element. Without a
     *  path: an empty section. */
    ENV_EDIT_INSERT = 3,
    /** env_sink() from source with mode; with a section, env_copy_block() of source's block there. Other
     *  than with these, nothing is made where no text is stored, and a text becomes a block only in the
     *  mode ENV_SINK_REPLACE. */
    ENV_EDIT_MERGE = 4
};

/** One of several edits. What an edit does not use is not read. */
typedef struct ENV_EDIT {
    int32_t operation; /**< one of the ENV_EDIT_ operations */
    const char *section;
    const char *path;
    const char *text;
    const char *name;
    ENV *source;  /**< of ENV_EDIT_MERGE: a root environment, or with a section any environment */
    int32_t mode; /**< of ENV_EDIT_MERGE: one of the ENV_SINK_ modes */
} ENV_EDIT;

/** Edits the text of a file: makes the changes of a tree in it, and leaves every byte as it is that is not
 *  part of what they change. An addition of this library's own.
 *
 *  Reading the file then gives the tree that the functions which the edits stand for make of the tree that
 *  was in the file. Comments, blank lines, indentation, the order, line ends, continued lines, what stands
 *  before the first section and after a Ctrl-Z stay. An edit that stores what is there already changes
 *  nothing.
 *
 *  A new element stands after the element before it, a new last section at the end of the file. It has the
 *  indentation of its neighbours, else two blanks more than its block, and the line end of the file's first
 *  line; long lines are broken as env_write_file() does. A deleted element takes its lines with it where
 *  nothing else stands on them; the comments above it stay.
 *
 *  All edits are made, in their order, or none. The file is read and written once, with its lock held, as
 *  ini_edit() does: edits by several processes or threads at once are made one after the other, also those
 *  of one file under several names. The file holds either its old content or all of the new one. Other
 *  environments can be used by other threads while this one waits for the file; while the edits are made,
 *  they wait. Time and memory grow with the size of the file and of the edits.
 *
 *  @param file_name  the file. It need not exist if the first edit is ENV_EDIT_PUT or ENV_EDIT_MAKE_BLOCK.
 *  @param edits      count edits; may be NIL if there are none, and then the file is read, and stays
 *  @param count      the number of edits; 0 and less: none
 *  @param reached    receives the index of the edit that failed, or count when all of them could be made;
 *                    may be NIL
 *  @retval ENV_OK         done. With every other code the file is unchanged.
 *  @retval ENV_SYNTAX     the file breaks the format (reported; env_get_error() tells where); *reached is 0
 *  @retval ENV_NOT_FOUND  there is no such element: to delete, to insert before, or in the source
 *  @retval ENV_BAD_PATH   the path was rejected (reported)
 *  @retval ENV_DATA       ENV_EDIT_MERGE: the source has a text below what is a text in the file
 *  @retval ENV_ERROR      each of these is reported. With *reached less than count: the file cannot be
 *                         read; the operation or the mode is unknown; something that is needed is NIL;
 *                         env_put() would fail; or a text or a name cannot stand in a file: one with a line
 *                         end or the byte 26, or with blanks around it, a text that begins with "{", an
 *                         element's name that is empty, has a "=" or begins with "[" or "}", a section's
 *                         name with a "]". With *reached equal to count: the file cannot be written or is
 *                         in use. With either: the heap is exhausted. */
KV_API int32_t KV_CALL env_edit_file(const char *file_name, const ENV_EDIT *edits, int32_t count,
                                     int32_t *reached) KV_NOEXCEPT;

KV_END_DECLS

#endif

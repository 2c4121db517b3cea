/* SPDX-License-Identifier: MIT */
/* Scanner: splits a stream of characters into tokens.
 *
 * The characters come from a function of the caller, one at a time; a scanner looks one character ahead.
 * Lines and columns are counted from 0, a tab counting as one column. Codes 1 to 31 other than the line
 * feed (10) are read as blanks; so are carriage returns. The code 0 or -1 is the end of the input, after
 * which the source is not called again.
 *
 * All scanners together belong to one thread; calls on several of them may alternate. Nothing here
 * reports anything. */
#ifndef KV_SCAN_H
#define KV_SCAN_H

#include "kv/types.h"

KV_BEGIN_DECLS

typedef struct SCANNER SCANNER;

/** Gives the next character, 0 to 255; 0 or -1 at the end. Other codes start no token (SCAN_VOID). */
typedef int32_t(KV_CALL *scan_source)(void);

/** Options of scan_open(). */
enum {
    SCAN_EOL_TOKENS = 0x1,        /**< a newline is a token instead of a blank */
    SCAN_BLOCK_COMMENTS = 0x2,    /**< "/ *" (without the blank) to "* /" is a comment */
    SCAN_LINE_COMMENTS = 0x4,     /**< "//" to the end of the line is a comment */
    SCAN_BANG_COMMENTS = 0x8,     /**< "!" to the end of the line is a comment */
    SCAN_SIGNED_NUMBERS = 0x10,   /**< a sign directly before a digit, or before "." and a digit,
                                       belongs to the number */
    SCAN_COMPARE_PAIRS = 0x20,    /**< two adjacent ones of "<", ">" and "=" are one token */
    SCAN_FOLD_LOWER = 0x40,       /**< letters are read as small letters */
    SCAN_FOLD_UPPER = 0x80,       /**< letters are read as capitals, unless SCAN_FOLD_LOWER is set */
    SCAN_CONTINUATION = 0x100,    /**< a backslash, blanks and a newline join two lines */
    SCAN_HASH_MODE = 0x200,       /**< "#" to the end of the line is a comment; "`" to "'" is a quoted
                                       text; the double quote is a symbol */
    SCAN_UMLAUTS = 0x400,         /**< the German letters of code pages 437 and 850 are letters */
    SCAN_TRACE = 0x8000,          /**< every token is written to the file "trc" */
    SCAN_STARSTAR_POWER = 0x10000 /**< "**" is read as "^" */
};

/** Kinds of tokens, and of characters. */
enum {
    SCAN_VOID = 0,       /**< a character that starts no token */
    SCAN_LETTER = 1,     /**< scan_character() only */
    SCAN_DIGIT = 2,      /**< scan_character() only */
    SCAN_OTHER = 3,      /**< scan_character() only: what else has a code of 32 or more */
    SCAN_BLANK = 4,      /**< scan_character() only */
    SCAN_KEYWORD = 5,    /**< an identifier of the keyword table */
    SCAN_IDENTIFIER = 6, /**< letters, digits and "_", not beginning with a digit */
    SCAN_LONG = 7,       /**< a whole number */
    SCAN_DOUBLE = 8,     /**< a number with a point or an exponent */
    SCAN_CHAR = 9,       /**< a character literal: 'a', or behind a backslash a letter, octal
                              digits, or x and hexadecimal digits */
    SCAN_STRING = 10,    /**< a text in double quotes */
    SCAN_QUOTED = 11,    /**< a text between "`" and "'" */
    SCAN_EQ = 12,        /**< = == */
    SCAN_NE = 13,        /**< # <> >< */
    SCAN_COMMA = 14,
    SCAN_SEMICOLON = 15,
    SCAN_DOT = 16,
    SCAN_COLON = 17,
    SCAN_PLUS = 18,
    SCAN_MINUS = 19,
    SCAN_STAR = 20,
    SCAN_SLASH = 21,
    SCAN_CARET = 22, /**< ^ */
    SCAN_LT = 23,    /**< < << */
    SCAN_GT = 24,    /**< > >> */
    SCAN_LE = 25,    /**< <= =< */
    SCAN_GE = 26,    /**< >= => */
    SCAN_LPAREN = 27,
    SCAN_RPAREN = 28,
    SCAN_LBRACE = 29,
    SCAN_RBRACE = 30,
    SCAN_LBRACKET = 31,
    SCAN_RBRACKET = 32,
    SCAN_DOLLAR = 33,
    SCAN_AT = 34,
    SCAN_PERCENT = 35,
    SCAN_AMPERSAND = 36,
    SCAN_QUESTION = 37,
    SCAN_BANG = 38,
    SCAN_BAR = 39,
    SCAN_BACKSLASH = 40,
    SCAN_TILDE = 41,
    SCAN_DQUOTE = 42, /**< the double quote as a symbol */
    SCAN_EOL = 43,    /**< the end of a line; its text is a blank */
    SCAN_EOF = 44     /**< the end of the input; its text is a blank */
};

/** Errors of scan_token(). */
enum {
    SCAN_OK = 0,
    SCAN_LONG_IDENTIFIER = 1, /**< an identifier of more than 255 characters was cut */
    SCAN_LONG_STRING = 2,     /**< a string or quoted text of more than 255 characters was cut */
    SCAN_OPEN_CHAR = 3,       /**< a character literal has no closing quote where one was expected */
    SCAN_OPEN_STRING = 4,     /**< a string or quoted text ends with its line or the input */
    SCAN_NO_FRACTION = 5,     /**< no digit behind a leading point */
    SCAN_NO_EXPONENT = 6,     /**< an exponent without a digit; the number is what stands before it */
    SCAN_UNKNOWN_ESCAPE = 7   /**< an unknown escape in a character literal, which counts as 32 */
};

/** A token. */
typedef struct SCAN_TOKEN {
    char text[256]; /**< as written, at most 255 characters, zero-terminated; a string without its
                         quotes and with its escapes as they are */
    double dval;    /**< the value of a SCAN_DOUBLE; else 0 */
    int32_t lval;   /**< the value of a SCAN_LONG, the code of a SCAN_CHAR, the index of a SCAN_KEYWORD in
                         the caller's table, the number of characters in the text of an identifier,
                         string or quoted text; else 0 */
    int32_t line;   /**< of the token's first character */
    int32_t column; /**< of the token's first character */
} SCAN_TOKEN;

/** Opens a scanner.
 *
 *  @param source    gives the characters; called only by scan_token() and scan_character()
 *  @param flags     SCAN_ options
 *  @param keywords  pointers to the keywords, a NIL after the last one; not copied, it must outlive the
 *                   scanner. Where letters are folded, it holds the folded spelling. NIL: no keywords.
 *  @return the scanner, released with scan_close(); NIL when the heap is exhausted
 *
 *  With SCAN_TRACE the file "trc" in the current directory is emptied if no other scanner traces already.
 *  Where it cannot be written, there is no trace. */
KV_API SCANNER *KV_CALL scan_open(scan_source source, int32_t flags,
                                  const char *const *keywords) KV_NOEXCEPT;

/** Releases a scanner. The trace file is closed with the last scanner that traces. */
KV_API void KV_CALL scan_close(SCANNER *scanner) KV_NOEXCEPT;

/** Puts a scanner back to its start, line 0. The caller rewinds the source. */
KV_API void KV_CALL scan_reset(SCANNER *scanner) KV_NOEXCEPT;

/** Reads the next token.
 *
 *  A token is delivered in every case, also with an error; at the end of the input SCAN_EOF, again and
 *  again. Text beyond what the record holds is read and dropped; the value of a longer number is right all
 *  the same. A whole number beyond 32 bits gives the nearest one.
 *
 *  With SCAN_SIGNED_NUMBERS, "+." and "-." without a digit after them are two tokens; for the second, the
 *  "line" and "column" of the record stay as they are.
 *
 *  @param kind   receives the kind
 *  @param token  receives the token
 *  @return SCAN_OK or the last error met in the token */
KV_API int32_t KV_CALL scan_token(SCANNER *scanner, int32_t *kind, SCAN_TOKEN *token) KV_NOEXCEPT;

/** Takes the next character, the one after the last token, and reads one further.
 *
 *  @param kind  receives SCAN_LETTER, SCAN_DIGIT, SCAN_OTHER, SCAN_BLANK, SCAN_EOL, SCAN_EOF or SCAN_VOID
 *  @param ch    receives the character, folded as the options say; 0 at the end */
KV_API void KV_CALL scan_character(SCANNER *scanner, int32_t *kind, char *ch) KV_NOEXCEPT;

KV_END_DECLS

#endif

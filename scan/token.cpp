// SPDX-License-Identifier: MIT
// Tokens: the first character decides what is read.
//
// The reader of a call stays in registers as long as its address does not leave scan_token(); that is why
// the functions here are inline.
#include "scan/number.hpp"
#include "scan/reader.hpp"
#include "scan/state.hpp"

// A call that takes the reader's address would put it into memory.
#define KV_FORCE_INLINE [[gnu::always_inline]] inline

namespace kv::scan {

namespace {

constexpr std::int32_t kAgain = -1;  // no token yet: a comment or a continued line was read

// The kind of two characters out of "<", ">" and "=".
std::int32_t pair_kind(std::int32_t first, char second) {
    switch (first) {
        case SCAN_LT:
            return second == '<' ? SCAN_LT : second == '>' ? SCAN_NE : SCAN_LE;
        case SCAN_GT:
            return second == '<' ? SCAN_NE : second == '>' ? SCAN_GT : SCAN_GE;
        default:
            return second == '<' ? SCAN_LE : second == '>' ? SCAN_GE : SCAN_EQ;
    }
}

bool is_comparison(std::int32_t kind) {
    return kind == SCAN_LT || kind == SCAN_GT || kind == SCAN_EQ;
}

// What stood before the digits of a number.
struct Prefix {
    bool number = true;  // what stood there may belong to a number
    bool minus = false;
    bool point = false;
};

class TokenReader {
  public:
    TokenReader(SCANNER &scanner, SCAN_TOKEN &token) : scanner_(scanner), token_(token), reader_(scanner) {}

    /// Fills the token; its kind is returned.
    KV_FORCE_INLINE std::int32_t next() {
        std::int32_t kind = kAgain;
        while (kind == kAgain) {
            while (reader_.is(' ') || (reader_.is('\n') && !scanner_.has(SCAN_EOL_TOKENS)))
                reader_.advance();
            token_.line = reader_.line();
            token_.column = reader_.column();
            kind = read();
        }
        reader_.store(scanner_);
        return kind;
    }
    std::int32_t error() const { return error_; }

  private:
    KV_FORCE_INLINE std::int32_t read() {
        if (reader_.begins_identifier()) return read_identifier();
        Prefix prefix;
        if (!reader_.is_digit()) {
            switch (reader_.current()) {
                case '.':
                case '+':
                case '-': {
                    const std::int32_t first = reader_.current();
                    prefix = read_prefix();
                    if (prefix.number && reader_.is_digit()) break;
                    scanner_.pending_dot = first != '.' && prefix.point;
                    return symbol(kSymbols[static_cast<std::size_t>(first)], first);
                }
                case '\'':
                    return quoted(read_character_literal(reader_, token_), SCAN_CHAR);
                case '#':
                case '`':
                case '"':
                case '/':
                case '*':
                case '!':
                case '\\':
                    return read_by_options();
                default:
                    return read_symbol();
            }
        }
        return read_number(prefix);
    }

    KV_FORCE_INLINE std::int32_t quoted(const Quoted &token, std::int32_t kind) {
        reader_ = token.reader;
        error_ = token.error;
        return kind;
    }

    KV_FORCE_INLINE std::int32_t read_identifier() {
        Text text(token_);
        do {
            if (!text.add(reader_.current())) error_ = SCAN_LONG_IDENTIFIER;
            reader_.advance();
        } while (reader_.continues_identifier());
        text.end();
        token_.lval = text.length();
        if (scanner_.keywords == nullptr) return SCAN_IDENTIFIER;
        const std::int32_t keyword = find_keyword(scanner_, token_.text);
        if (keyword < 0) return SCAN_IDENTIFIER;
        token_.lval = keyword;
        return SCAN_KEYWORD;
    }

    // At the first digit.
    KV_FORCE_INLINE std::int32_t read_number(Prefix prefix) {
        Text text(token_);
        Number::Digits digits;
        Number number(prefix.minus, digits);
        if (prefix.minus) text.add('-');
        if (prefix.point) text.add('.');
        read_digits(text, number, prefix.point);
        bool real = prefix.point;
        if (!real && reader_.is('.')) {
            real = true;
            text.add('.');
            reader_.advance();
            read_digits(text, number, true);
        }
        if (reader_.is('e') || reader_.is('E')) {
            real = true;
            read_exponent(text, number);
        }
        text.end();
        if (real) {
            token_.dval = number.real();
        } else {
            token_.lval = number.whole();
        }
        return real ? SCAN_DOUBLE : SCAN_LONG;
    }

    KV_FORCE_INLINE void read_digits(Text &text, Number &number, bool after_point) {
        for (; reader_.is_digit(); reader_.advance()) {
            text.add(reader_.current());
            number.add_digit(reader_.current(), after_point);
        }
    }

    KV_FORCE_INLINE void read_exponent(Text &text, Number &number) {
        text.add('e');
        reader_.advance();
        const bool negative = reader_.is('-');
        if (reader_.is('+') || negative) {
            text.add(reader_.current());
            reader_.advance();
        }
        if (!reader_.is_digit()) error_ = SCAN_NO_EXPONENT;
        std::int64_t exponent = 0;
        for (; reader_.is_digit(); reader_.advance()) {
            text.add(reader_.current());
            exponent = std::min(exponent * 10 + (reader_.current() - '0'), Number::kFar);
        }
        number.add_exponent(negative ? -exponent : exponent);
    }

    // A point, or a sign and perhaps a point after it.
    KV_FORCE_INLINE Prefix read_prefix() {
        Prefix prefix;
        const std::int32_t first = reader_.current();
        reader_.advance();
        prefix.number = first == '.' || scanner_.has(SCAN_SIGNED_NUMBERS);
        prefix.minus = first == '-';
        prefix.point = first == '.' || (prefix.number && reader_.take('.'));
        return prefix;
    }

    // Characters that mean different things by the options.
    KV_FORCE_INLINE std::int32_t read_by_options() {
        const std::int32_t first = reader_.current();
        const bool hash_mode = scanner_.has(SCAN_HASH_MODE);
        if (first == '"' && !hash_mode) return quoted(read_quoted(reader_, '"', token_), SCAN_STRING);
        if (first == '`' && hash_mode) return quoted(read_quoted(reader_, '\'', token_), SCAN_QUOTED);
        reader_.advance();
        switch (first) {
            case '#':
                if (hash_mode) return skip_line();
                break;
            case '!':
                if (scanner_.has(SCAN_BANG_COMMENTS)) return skip_line();
                break;
            case '/':
                if (reader_.is('*') && scanner_.has(SCAN_BLOCK_COMMENTS)) return skip_block();
                if (reader_.is('/') && scanner_.has(SCAN_LINE_COMMENTS)) return skip_line();
                break;
            case '*':
                if (scanner_.has(SCAN_STARSTAR_POWER) && reader_.take('*')) return symbol(SCAN_CARET, '^');
                break;
            case '\\':
                while (reader_.is(' ')) reader_.advance();
                if (scanner_.has(SCAN_CONTINUATION) && reader_.take('\n')) return kAgain;
                break;
            default:
                break;
        }
        return symbol(kSymbols[static_cast<std::size_t>(first)], first);
    }

    KV_FORCE_INLINE std::int32_t symbol(std::int32_t kind, std::int32_t c) {
        token_.text[0] = static_cast<char>(c);
        token_.text[1] = '\0';
        return kind;
    }

    KV_FORCE_INLINE std::int32_t skip_line() {
        while (!reader_.is('\n') && !reader_.at_end()) reader_.advance();
        return kAgain;
    }

    // The star that opens it may close it too.
    KV_FORCE_INLINE std::int32_t skip_block() {
        while (!reader_.at_end()) {
            const bool star = reader_.take('*');
            if (star && reader_.take('/')) break;
            if (!star) reader_.advance();
        }
        return kAgain;
    }

    KV_FORCE_INLINE std::int32_t read_symbol() {
        const std::int32_t c = reader_.current();
        const std::int32_t kind =
            c >= 0 && c < 128 ? kSymbols[static_cast<std::size_t>(c)] : std::uint8_t{SCAN_VOID};
        symbol(kind, c < ' ' ? ' ' : c);
        reader_.advance();
        if (!is_comparison(kind) || !scanner_.has(SCAN_COMPARE_PAIRS)) return kind;
        if (!reader_.is('<') && !reader_.is('>') && !reader_.is('=')) return kind;
        const char second = static_cast<char>(reader_.current());
        token_.text[1] = second;
        token_.text[2] = '\0';
        reader_.advance();
        return pair_kind(kind, second);
    }

    SCANNER &scanner_;
    SCAN_TOKEN &token_;
    Reader reader_;
    std::int32_t error_ = SCAN_OK;
};

}  // namespace

}  // namespace kv::scan

int32_t scan_token(SCANNER *scanner, int32_t *kind, SCAN_TOKEN *token) noexcept {
    token->text[0] = '\0';
    token->dval = 0;
    token->lval = 0;
    if (scanner->pending_dot) {
        scanner->pending_dot = false;
        token->text[0] = '.';
        token->text[1] = '\0';
        *kind = SCAN_DOT;
        return SCAN_OK;
    }
    kv::scan::TokenReader reader(*scanner, *token);
    *kind = reader.next();
    if (scanner->has(SCAN_TRACE)) kv::scan::trace(*scanner, *kind, *token);
    return reader.error();
}

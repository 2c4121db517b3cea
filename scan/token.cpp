// Tokens: what a character begins decides what is read.
#include "scan/literals.hpp"
#include "scan/state.hpp"

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

class TokenReader {
  public:
    TokenReader(SCANNER &scanner, SCAN_TOKEN &token) : scanner_(scanner), token_(token), reader_(scanner) {}

    Outcome next() {
        for (;;) {
            while (reader_.is(' ') || (reader_.is('\n') && !scanner_.has(SCAN_EOL_TOKENS)))
                reader_.advance();
            token_.line = reader_.line();
            token_.column = reader_.column();
            const Outcome outcome = dispatch();
            if (outcome.kind != kAgain) return outcome;
        }
    }

  private:
    Outcome dispatch() {
        if (reader_.begins_identifier()) return read_identifier(reader_, scanner_, token_);
        if (reader_.is_digit()) return read_number(reader_, {}, token_);
        switch (reader_.current()) {
            case '.':
                reader_.advance();
                if (reader_.is_digit()) return read_number(reader_, {.point = true}, token_);
                return symbol(SCAN_DOT, '.');
            case '+':
            case '-':
                return sign();
            case '\'':
                return read_character_literal(reader_, token_);
            case '#':
                if (scanner_.has(SCAN_HASH_MODE)) return line_comment();
                break;
            case '`':
                if (scanner_.has(SCAN_HASH_MODE)) return read_quoted(reader_, '\'', SCAN_QUOTED, token_);
                break;
            case '"':
                if (!scanner_.has(SCAN_HASH_MODE)) return read_quoted(reader_, '"', SCAN_STRING, token_);
                break;
            case '/':
                return slash();
            case '*':
                reader_.advance();
                if (scanner_.has(SCAN_STARSTAR_POWER) && reader_.take('*')) return symbol(SCAN_CARET, '^');
                return symbol(SCAN_STAR, '*');
            case '!':
                reader_.advance();
                return scanner_.has(SCAN_BANG_COMMENTS) ? line_comment() : symbol(SCAN_BANG, '!');
            case '\\':
                return backslash();
            default:
                break;
        }
        return other();
    }

    Outcome symbol(std::int32_t kind, char c) {
        token_.text[0] = c;
        token_.text[1] = '\0';
        return {kind};
    }

    Outcome line_comment() {
        reader_.skip_line();
        return {kAgain};
    }

    // A sign that belongs to a number is not a token of its own.
    Outcome sign() {
        const bool minus = reader_.is('-');
        reader_.advance();
        if (scanner_.has(SCAN_SIGNED_NUMBERS)) {
            if (reader_.is_digit()) return read_number(reader_, {.minus = minus}, token_);
            if (reader_.take('.')) {
                if (reader_.is_digit())
                    return read_number(reader_, {.minus = minus, .point = true}, token_);
                scanner_.pending_dot = true;
            }
        }
        return minus ? symbol(SCAN_MINUS, '-') : symbol(SCAN_PLUS, '+');
    }

    Outcome slash() {
        reader_.advance();
        if (reader_.is('*') && scanner_.has(SCAN_BLOCK_COMMENTS)) return block_comment();
        if (reader_.is('/') && scanner_.has(SCAN_LINE_COMMENTS)) return line_comment();
        return symbol(SCAN_SLASH, '/');
    }

    // The star that opens it may close it too.
    Outcome block_comment() {
        while (!reader_.at_end()) {
            const bool star = reader_.take('*');
            if (star && reader_.take('/')) break;
            if (!star) reader_.advance();
        }
        return {kAgain};
    }

    Outcome backslash() {
        reader_.advance();
        while (reader_.is(' ')) reader_.advance();
        if (scanner_.has(SCAN_CONTINUATION) && reader_.take('\n')) return {kAgain};
        return symbol(SCAN_BACKSLASH, '\\');
    }

    Outcome other() {
        const std::int32_t c = reader_.current();
        std::int32_t kind =
            c >= 0 && c < 128 ? kSymbols[static_cast<std::size_t>(c)] : std::uint8_t{SCAN_VOID};
        symbol(kind, c < ' ' ? ' ' : static_cast<char>(c));
        reader_.advance();
        const bool comparison = kind == SCAN_LT || kind == SCAN_GT || kind == SCAN_EQ;
        if (comparison && scanner_.has(SCAN_COMPARE_PAIRS) &&
            (reader_.is('<') || reader_.is('>') || reader_.is('='))) {
            const char second = static_cast<char>(reader_.current());
            token_.text[1] = second;
            token_.text[2] = '\0';
            kind = pair_kind(kind, second);
            reader_.advance();
        }
        return {kind};
    }

    SCANNER &scanner_;
    SCAN_TOKEN &token_;
    Reader reader_;
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
    const kv::scan::Outcome outcome = kv::scan::TokenReader(*scanner, *token).next();
    *kind = outcome.kind;
    if (scanner->has(SCAN_TRACE)) kv::scan::trace(*scanner, outcome.kind, *token);
    return outcome.error;
}

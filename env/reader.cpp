#include "env/reader.hpp"

#include <string_view>
#include <utility>

#include "env/characters.hpp"
#include "env/handle.hpp"
#include "env/list.hpp"
#include "env/report.hpp"
#include "env/state.hpp"
#include "env/writer.hpp"
#include "memory/owned.hpp"

namespace kv::env {

namespace {

enum class Token { name, equals, section, close, end };

// Parses sections into a list of their own, so that a failure leaves the environment alone. Nested blocks
// need no stack: a list knows the block that owns it.
class Parser {
  public:
    explicit Parser(Source &source) : characters_(source) {}
    ~Parser() { clear_list(sections_); }
    Parser(const Parser &) = delete;
    Parser &operator=(const Parser &) = delete;

    /// ENV_OK or ENV_SYNTAX; the complete sections are in sections() either way.
    std::int32_t parse();
    List &sections() { return sections_; }
    bool has_zero_bytes() const { return characters_.has_zero_bytes(); }

  private:
    void advance();
    bool parse_section();
    bool parse_elements(Element &section);
    Element *parse_element(List &list);
    bool fail(const char *text, Place place);

    Characters characters_;
    List sections_;
    Token token_ = Token::end;
    Place token_place_{1, 1};
    memory::String name_;  // of the token, when it is a name
    memory::String value_;
    std::int32_t status_ = ENV_OK;
};

std::int32_t Parser::parse() {
    int c = characters_.next();
    while (c != '[' && c != Characters::kEnd) c = characters_.next();
    characters_.push_back(c);
    advance();
    while (token_ != Token::end && parse_section()) {
    }
    return status_;
}

bool Parser::fail(const char *text, Place place) {
    state.syntax_error = {place.line, place.column, text};
    report(text);
    status_ = ENV_SYNTAX;
    return false;
}

void Parser::advance() {
    int c = characters_.skip_blanks();
    while (c == '\n') c = characters_.skip_blanks();
    token_place_ = characters_.place();
    switch (c) {
        case '=':
            token_ = Token::equals;
            return;
        case '[':
            token_ = Token::section;
            return;
        case '}':
            token_ = Token::close;
            return;
        case Characters::kEnd:
            token_ = Token::end;
            return;
        default:
            token_ = Token::name;
            characters_.push_back(characters_.collect(c, '=', name_));
    }
}

// One section, appended when it is complete. False if the reading ends here.
bool Parser::parse_section() {
    if (token_ != Token::section) return fail("Section waited", token_place_);
    characters_.collect(characters_.skip_blanks(), ']', name_);
    ElementPointer section = make_block(name_);
    if (!make_list(*section)) {
        report("Was really error");
        return false;
    }
    advance();
    if (!parse_elements(*section)) return false;
    append(sections_, std::move(section));
    return true;
}

// The elements of a section with all that is nested in them.
bool Parser::parse_elements(Element &section) {
    for (Element *block = &section;;) {
        if (token_ == Token::name) {
            Element *inner = parse_element(*block->children);
            if (status_ != ENV_OK) return false;
            if (inner != nullptr) block = inner;
            continue;
        }
        if (block == &section) return true;
        if (token_ != Token::close) return fail("Cbracesymbol waited", token_place_);
        block = block->parent->owner;
        advance();
    }
}

// Appends one element; the block if it opens one, else null.
Element *Parser::parse_element(List &list) {
    const Place place = token_place_;
    if (characters_.next() != '=') {
        fail("Equal sign waited", place);
        return nullptr;
    }
    const int c = characters_.skip_blanks();
    if (c == '{') {
        ElementPointer block = make_block(name_);
        if (!make_list(*block)) throw std::bad_alloc();
        append(list, std::move(block));
        advance();
        return list.last;
    }
    characters_.collect(c, '\n', value_);
    append(list, make_data(name_, value_));
    advance();
    return nullptr;
}

}  // namespace

std::int32_t read_text(Source &source, ENV *env) {
    if (env->is_subenv()) {
        report("can not read subenv");
        return ENV_ERROR;
    }
    if (being_written(env)) return ENV_IN_USE;
    if (has_pinned_elements(env)) {
        report("can not read: sub-environments are open");
        return ENV_ERROR;
    }
    Parser parser(source);
    std::int32_t status;
    {
        const Use use(env);
        status = parser.parse();
    }
    if (parser.has_zero_bytes()) {
        kv_message("zero bytes in the text were left out", nullptr, nullptr, kCore, __LINE__);
    }
    if (!source.complete()) return ENV_ERROR;
    if (has_pinned_elements(env)) {  // opened by the character source meanwhile
        report("can not read: sub-environments are open");
        return ENV_ERROR;
    }
    clear_list(env->sections);
    splice(env->sections, parser.sections());
    return status;
}

}  // namespace kv::env

// SPDX-License-Identifier: MIT
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
    /// With `spans`, what the elements' places are is noted there.
    Parser(Source &source, Spans *spans) : text_(source.position), characters_(source), spans_(spans) {}
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

    // Notes about places, if there are to be any.
    void note_token();
    std::uint32_t note_section();
    std::uint32_t note_element(int first);
    void note_header_end(const Element &section, int terminator);
    void note_text_end(const Element &data, int terminator);
    void note_block_end(const Element &block);
    void note_section_end(const Element &section);
    std::uint32_t add_span(std::uint32_t value);
    Span &span(const Element &element) { return spans_->elements[element.span()]; }
    std::uint32_t line_end(std::uint32_t feed) const;

    const char *text_;
    Characters characters_;
    Spans *spans_;
    List sections_;
    Token token_ = Token::end;
    Place token_place_{1, 1};
    std::uint32_t token_line_ = 0;  // the offset of the token's line, and its own
    std::uint32_t token_begin_ = 0;
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
    if (spans_ != nullptr) spans_->last_line = characters_.line_offset();
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
    note_token();
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
    const std::uint32_t number = note_section();
    const int terminator = characters_.collect(characters_.skip_blanks(), ']', name_);
    ElementPointer section = make_block(name_, number);
    if (!make_list(*section)) {
        if (spans_ != nullptr) throw std::bad_alloc();
        report("Was really error");
        return false;
    }
    note_header_end(*section, terminator);
    advance();
    if (!parse_elements(*section)) return false;
    note_section_end(*section);
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
        note_block_end(*block);
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
    const std::uint32_t number = note_element(c);
    if (c == '{') {
        ElementPointer block = make_block(name_, number);
        if (!make_list(*block)) throw std::bad_alloc();
        append(list, std::move(block));
        advance();
        return list.last;
    }
    const int terminator = characters_.collect(c, '\n', value_);
    append(list, make_data(name_, value_, number));
    note_text_end(*list.last, terminator);
    advance();
    return nullptr;
}

void Parser::note_token() {
    if (spans_ == nullptr) return;
    token_line_ = characters_.line_offset();
    token_begin_ = characters_.offset();
}

// Of both, the number of the span. The section begins, or the element's name stands, at the token.
std::uint32_t Parser::note_section() {
    return spans_ != nullptr ? add_span(0) : kNoSpan;
}

// What follows the "=" begins with `first`, which was just read.
std::uint32_t Parser::note_element(int first) {
    if (spans_ == nullptr) return kNoSpan;
    const std::uint32_t at = characters_.offset();
    return add_span(first == '\n' ? line_end(at) : at);
}

std::uint32_t Parser::add_span(std::uint32_t value) {
    const auto number = static_cast<std::uint32_t>(spans_->elements.size());
    spans_->elements.push_back({token_line_, token_begin_, value, 0, 0, number + 1});
    return number;
}

// Where a line end begins whose line feed is at an offset.
std::uint32_t Parser::line_end(std::uint32_t feed) const {
    return feed > 0 && text_[feed - 1] == '\r' ? feed - 1 : feed;
}

void Parser::note_header_end(const Element &section, int terminator) {
    if (spans_ == nullptr) return;
    std::uint32_t end = characters_.offset();
    if (terminator == Characters::kEnd) {
        // A comment at the end is not in the name.
        const std::uint32_t line = characters_.line_offset();
        spans_->unclosed = line < end && text_[line] == ';' ? line : end;
    } else {
        ++end;
    }
    Span &noted = span(section);
    noted.value = noted.tail = noted.end = end;
}

void Parser::note_text_end(const Element &data, int terminator) {
    if (spans_ == nullptr) return;
    Span &noted = span(data);
    const std::uint32_t at = characters_.offset();
    const bool line_ended = terminator == '\n';
    noted.tail = line_ended ? line_end(at) : at;
    noted.end = line_ended ? at + 1 : at;
}

void Parser::note_block_end(const Element &block) {
    if (spans_ == nullptr) return;
    Span &noted = span(block);
    noted.tail = noted.end = token_begin_ + 1;
    noted.next = static_cast<std::uint32_t>(spans_->elements.size());
}

void Parser::note_section_end(const Element &section) {
    if (spans_ == nullptr) return;
    Span &noted = span(section);
    if (const Element *last = section.children->last; last != nullptr) {
        noted.tail = span(*last).tail;
        noted.end = span(*last).end;
    }
    noted.next = static_cast<std::uint32_t>(spans_->elements.size());
}

}  // namespace

std::int32_t read_text(Source &source, ENV *env, Spans *spans) {
    if (env->is_subenv()) {
        report("can not read subenv");
        return ENV_ERROR;
    }
    if (being_written(env)) return ENV_IN_USE;
    if (has_pinned_elements(env)) {
        report("can not read: sub-environments are open");
        return ENV_ERROR;
    }
    Parser parser(source, spans);
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

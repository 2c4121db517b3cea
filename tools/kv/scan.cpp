// SPDX-License-Identifier: MIT
// `kv scan`: a file as a table of tokens.
#include "kv/scan.h"

#include <exception>
#include <iomanip>
#include <iostream>
#include <iterator>
#include <memory>
#include <optional>
#include <vector>

#include "tools/kv/failure.hpp"
#include "tools/kv/files.hpp"
#include "tools/kv/json.hpp"
#include "tools/kv/subcommands.hpp"
#include "tools/kv/terminal.hpp"

namespace kvtool {

namespace {

constexpr char kCommand[] = "kv scan";

constexpr Option kOptions[] = {
    {"--eol-tokens", "", "a newline is a token"},
    {"--block-comments", "", "/* to */ is a comment"},
    {"--line-comments", "", "// to the end of the line is a comment"},
    {"--bang-comments", "", "! to the end of the line is a comment"},
    {"--signed-numbers", "", "a sign before a digit belongs to the number"},
    {"--compare-pairs", "", "two of < > = are one token"},
    {"--fold-lower", "", "read letters as small letters"},
    {"--fold-upper", "", "read letters as capitals"},
    {"--continuation", "", "a backslash at the end of a line joins it to the next"},
    {"--hash-mode", "", "# begins a comment, ` a quoted text, the double quote is a symbol"},
    {"--umlauts", "", "the German letters of code pages 437 and 850 are letters"},
    {"--trace", "", "write every token to the file trc"},
    {"--starstar-power", "", "read ** as ^"},
    {"--keywords", "FILE", "the keywords, one on each line of FILE"},
    kJsonOption,
};

// Of the options at the same places.
constexpr std::int32_t kFlags[] = {
    SCAN_EOL_TOKENS,    SCAN_BLOCK_COMMENTS, SCAN_LINE_COMMENTS, SCAN_BANG_COMMENTS, SCAN_SIGNED_NUMBERS,
    SCAN_COMPARE_PAIRS, SCAN_FOLD_LOWER,     SCAN_FOLD_UPPER,    SCAN_CONTINUATION,  SCAN_HASH_MODE,
    SCAN_UMLAUTS,       SCAN_TRACE,          SCAN_STARSTAR_POWER};

constexpr const char *kKindNames[] = {
    "void",      "letter",   "digit",  "other",  "blank",     "keyword",  "identifier", "long", "double",
    "char",      "string",   "quoted", "eq",     "ne",        "comma",    "semicolon",  "dot",  "colon",
    "plus",      "minus",    "star",   "slash",  "caret",     "lt",       "gt",         "le",   "ge",
    "lparen",    "rparen",   "lbrace", "rbrace", "lbracket",  "rbracket", "dollar",     "at",   "percent",
    "ampersand", "question", "bang",   "bar",    "backslash", "tilde",    "dquote",     "eol",  "eof"};
static_assert(std::size(kKindNames) == SCAN_EOF + 1);

constexpr const char *kErrors[] = {"",
                                   "identifier cut to 255 characters",
                                   "text cut to 255 characters",
                                   "no closing quote",
                                   "text is not closed",
                                   "no digit behind the point",
                                   "exponent without a digit",
                                   "unknown escape"};

// What is scanned; the library's source function has no argument. A failure of it may not pass the
// library's frames: it ends the text, and is told then.
Input *g_input = nullptr;
std::exception_ptr g_failure;

std::int32_t next_character() {
    try {
        return g_input->get();
    } catch (...) {
        g_failure = std::current_exception();
        return -1;
    }
}

// One on each line; the texts must outlive the pointers.
std::vector<std::string> read_lines(const std::string &name) {
    std::vector<std::string> lines;
    Input input(name);
    for (std::string line; input.line(line);) {
        if (!line.empty()) lines.push_back(line);
    }
    return lines;
}

std::string as_json(std::int32_t kind, std::int32_t error, const SCAN_TOKEN &token) {
    JsonObject object;
    object.add("line", std::to_string(token.line + 1)).add("column", std::to_string(token.column + 1));
    object.add("kind", json_string(kKindNames[kind]));
    if (kind < SCAN_EOL) object.add("text", json_string(token.text));
    if (kind == SCAN_DOUBLE) object.add("value", json_number(token.dval));
    if (kind == SCAN_LONG || kind == SCAN_CHAR || kind == SCAN_KEYWORD) {
        object.add("value", std::to_string(token.lval));
    }
    if (error != SCAN_OK) object.add("error", json_string(kErrors[error]));
    return object.text();
}

struct CloseScanner {
    void operator()(SCANNER *scanner) const { scan_close(scanner); }
};

void print(std::int32_t kind, std::int32_t error, const SCAN_TOKEN &token) {
    std::cout << std::right << std::setw(6) << token.line + 1 << ' ' << std::setw(5) << token.column + 1
              << "  ";
    const bool has_text = kind < SCAN_EOL;
    std::cout << std::left << std::setw(has_text ? 12 : 0) << kKindNames[kind];
    if (has_text) std::cout << for_terminal(token.text);
    if (kind == SCAN_DOUBLE) std::cout << "  = " << token.dval;
    if (kind == SCAN_LONG || kind == SCAN_CHAR || kind == SCAN_KEYWORD) std::cout << "  = " << token.lval;
    if (error != SCAN_OK) std::cout << "  ! " << kErrors[error];
    std::cout << '\n';
}

int run_scan(std::string_view, const Arguments &arguments) {
    std::int32_t flags = 0;
    for (std::size_t i = 0; i < std::size(kFlags); ++i) {
        if (arguments.has(kOptions[i].name)) flags |= kFlags[i];
    }
    const std::string keyword_file = arguments.value("--keywords", "");
    if (is_standard(keyword_file) && is_standard(arguments.operands()[0]))
        fail_usage(kCommand, "standard input cannot be both the text and the keywords");
    std::vector<std::string> keywords;
    if (arguments.has("--keywords")) keywords = read_lines(keyword_file);
    std::vector<const char *> table;
    table.reserve(keywords.size() + 1);
    for (const std::string &keyword : keywords) table.push_back(keyword.c_str());
    table.push_back(nullptr);

    Input input(arguments.operands()[0], true);
    g_input = &input;
    g_failure = nullptr;
    const std::unique_ptr<SCANNER, CloseScanner> scanner(scan_open(next_character, flags, table.data()));
    if (scanner == nullptr) throw std::bad_alloc();
    std::cout << std::setprecision(17);
    std::optional<JsonArray> array;
    if (arguments.has("--json")) array.emplace(std::cout);
    int code = kDone;
    std::int32_t kind = SCAN_VOID;
    SCAN_TOKEN token{};
    while (kind != SCAN_EOF) {
        const std::int32_t error = scan_token(scanner.get(), &kind, &token);
        if (g_failure != nullptr) std::rethrow_exception(g_failure);
        array ? array->add(as_json(kind, error, token)) : print(kind, error, token);
        if (error != SCAN_OK) code = kNotFound;
    }
    return code;
}

constexpr Action kScan = {
    "",
    "FILE",
    "show the tokens of a file",
    R"(Splits a text file into tokens and prints them as a table: line and column, from 1, the kind, the
text, and the value of a number, a character or a keyword. With --json an array of objects with
these as "line", "column", "kind", "text" and "value", and "error" for a faulty token.

A faulty token is shown with what is wrong. Exit codes: 0 every token is sound; 1 one is not; 2
wrong usage; 3 a file cannot be read.
)",
    kOptions,
    1,
    1,
    run_scan,
};

}  // namespace

const ActionTable &scan_table() {
    static const Action *const actions[] = {&kScan};
    static const ActionTable table{"kv scan", kScan.summary, actions};
    return table;
}

}  // namespace kvtool

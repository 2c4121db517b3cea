// `kv scan`: a file as a table of tokens.
#include "kv/scan.h"

#include <algorithm>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <iterator>
#include <memory>
#include <vector>

#include "tools/kv/arguments.hpp"
#include "tools/kv/failure.hpp"
#include "tools/kv/subcommands.hpp"

namespace kvtool {

namespace {

constexpr char kCommand[] = "kv scan";

struct Flag {
    Option option;
    std::int32_t flag;
};

constexpr Flag kFlags[] = {
    {{"--eol-tokens", "", "a newline is a token"}, SCAN_EOL_TOKENS},
    {{"--block-comments", "", "/* to */ is a comment"}, SCAN_BLOCK_COMMENTS},
    {{"--line-comments", "", "// to the end of the line is a comment"}, SCAN_LINE_COMMENTS},
    {{"--bang-comments", "", "! to the end of the line is a comment"}, SCAN_BANG_COMMENTS},
    {{"--signed-numbers", "", "a sign before a digit belongs to the number"}, SCAN_SIGNED_NUMBERS},
    {{"--compare-pairs", "", "two of < > = are one token"}, SCAN_COMPARE_PAIRS},
    {{"--fold-lower", "", "read letters as small letters"}, SCAN_FOLD_LOWER},
    {{"--fold-upper", "", "read letters as capitals"}, SCAN_FOLD_UPPER},
    {{"--continuation", "", "a backslash at the end of a line joins it to the next"}, SCAN_CONTINUATION},
    {{"--hash-mode", "", "# begins a comment, ` a quoted text, the double quote is a symbol"},
     SCAN_HASH_MODE},
    {{"--umlauts", "", "the German letters of code pages 437 and 850 are letters"}, SCAN_UMLAUTS},
    {{"--trace", "", "write every token to the file trc"}, SCAN_TRACE},
    {{"--starstar-power", "", "read ** as ^"}, SCAN_STARSTAR_POWER},
};

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

std::vector<Option> options() {
    std::vector<Option> all;
    for (const Flag &flag : kFlags) all.push_back(flag.option);
    all.push_back({"--keywords", "FILE", "the keywords, one on each line of FILE"});
    all.push_back({"--help", "", "this text"});
    return all;
}

void print_help() {
    std::cout << R"(Usage: kv scan FILE [OPTION...]

Splits a text file (- for standard input) into tokens and prints them as a table: line and column,
from 1, the kind, the text, and the value of a number, a character or a keyword.

Options:
)";
    for (const Option &option : options()) {
        const std::string left =
            std::string(option.name) + (option.value.empty() ? "" : " ") + std::string(option.value);
        std::cout << "  " << std::left << std::setw(20) << left << ' ' << option.help << '\n';
    }
    std::cout << R"(
A faulty token is shown with what is wrong. Exit codes: 0 every token is sound; 1 one is not; 2
wrong usage; 3 a file cannot be read.
)";
}

std::string read_file(const std::string &name) {
    std::ifstream file;
    if (name != "-") file.open(name, std::ios::binary);
    std::istream &input = name != "-" ? static_cast<std::istream &>(file) : std::cin;
    std::string text{std::istreambuf_iterator<char>(input), {}};
    if (name != "-" && (!file.is_open() || file.bad()))
        throw Failure{kFile, std::string(kCommand) + ": " + name + " cannot be read"};
    return text;
}

// The text that is scanned; the library's source function has no argument.
std::string g_text;
std::size_t g_position = 0;

std::int32_t next_character() {
    return g_position < g_text.size() ? static_cast<unsigned char>(g_text[g_position++]) : -1;
}

// Line by line; the texts must outlive the pointers.
std::vector<std::string> read_lines(const std::string &name) {
    std::vector<std::string> lines;
    const std::string text = read_file(name);
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        std::string line = text.substr(start, end - start);
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (!line.empty()) lines.push_back(line);
        start = end + 1;
    }
    return lines;
}

struct CloseScanner {
    void operator()(SCANNER *scanner) const { scan_close(scanner); }
};

void print(std::int32_t kind, std::int32_t error, const SCAN_TOKEN &token) {
    std::cout << std::right << std::setw(6) << token.line + 1 << ' ' << std::setw(5) << token.column + 1
              << "  ";
    const bool has_text = kind < SCAN_EOL;
    std::cout << std::left << std::setw(has_text ? 12 : 0) << kKindNames[kind];
    if (has_text) std::cout << token.text;
    if (kind == SCAN_DOUBLE) std::cout << "  = " << token.dval;
    if (kind == SCAN_LONG || kind == SCAN_CHAR || kind == SCAN_KEYWORD) std::cout << "  = " << token.lval;
    if (error != SCAN_OK) std::cout << "  ! " << kErrors[error];
    std::cout << '\n';
}

}  // namespace

int run_scan(std::span<const char *const> words) {
    const std::vector<Option> known = options();
    const Arguments arguments = Arguments::parse(kCommand, words, known);
    if (arguments.has("--help")) {
        print_help();
        return kDone;
    }
    if (arguments.operands().size() != 1) fail_usage(kCommand, "wants one FILE");
    std::int32_t flags = 0;
    for (const Flag &flag : kFlags) {
        if (arguments.has(flag.option.name)) flags |= flag.flag;
    }
    std::vector<std::string> keywords;
    if (arguments.has("--keywords")) keywords = read_lines(arguments.value("--keywords", ""));
    std::vector<const char *> table;
    table.reserve(keywords.size() + 1);
    for (const std::string &keyword : keywords) table.push_back(keyword.c_str());
    table.push_back(nullptr);
    g_text = read_file(arguments.operands().front());

    const std::unique_ptr<SCANNER, CloseScanner> scanner(scan_open(next_character, flags, table.data()));
    if (scanner == nullptr) throw std::bad_alloc();
    std::cout << std::setprecision(17);
    int code = kDone;
    std::int32_t kind = SCAN_VOID;
    SCAN_TOKEN token{};
    while (kind != SCAN_EOF) {
        const std::int32_t error = scan_token(scanner.get(), &kind, &token);
        print(kind, error, token);
        if (error != SCAN_OK) code = kNotFound;
    }
    return code;
}

}  // namespace kvtool

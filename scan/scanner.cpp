// SPDX-License-Identifier: MIT
// Scanners: opening, closing, and single characters.
#include "scan/scanner.hpp"

#include "scan/reader.hpp"
#include "scan/state.hpp"

SCANNER *scan_open(scan_source source, int32_t flags, const char *const *keywords) noexcept {
    auto scanner = kv::memory::make_owned<SCANNER>(SCANNER{.source = source, .flags = flags});
    if (scanner == nullptr) return nullptr;
    scanner->folding = &kv::scan::folding_of(flags);
    scanner->classes = &kv::scan::classes_of(flags);
    while (keywords != nullptr && keywords[scanner->keyword_count] != nullptr) ++scanner->keyword_count;
    if (scanner->keyword_count > 0) {
        scanner->keywords = keywords;
        if (!kv::scan::order_keywords(*scanner)) return nullptr;
    }
    if (scanner->has(SCAN_TRACE)) scanner->trace_number = kv::scan::start_trace();
    return scanner.release();
}

void scan_close(SCANNER *scanner) noexcept {
    if (scanner->has(SCAN_TRACE)) kv::scan::end_trace();
    heap_free(scanner->keyword_order);
    heap_free(scanner);
}

void scan_reset(SCANNER *scanner) noexcept {
    scanner->lookahead = ' ';
    scanner->pending_dot = false;
    scanner->line = 0;
    scanner->column = -1;
}

void scan_character(SCANNER *scanner, int32_t *kind, char *ch) noexcept {
    kv::scan::Reader reader(*scanner);
    *ch = static_cast<char>(reader.current());
    if (reader.is_letter()) {
        *kind = SCAN_LETTER;
    } else if (reader.is_digit()) {
        *kind = SCAN_DIGIT;
    } else if (reader.is(' ')) {
        *kind = SCAN_BLANK;
    } else if (reader.is('\n')) {
        *kind = SCAN_EOL;
    } else if (reader.at_end()) {
        *kind = SCAN_EOF;
    } else {
        *kind = reader.current() >= ' ' ? SCAN_OTHER : SCAN_VOID;
    }
    reader.advance();
    reader.store(*scanner);
}

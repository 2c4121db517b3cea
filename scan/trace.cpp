// SPDX-License-Identifier: MIT
// The trace of tokens in the file "trc".
#include <cstdarg>
#include <cstdio>

#include "scan/scanner.hpp"
#include "scan/state.hpp"

namespace kv::scan {

namespace {

const char *name_of(std::int32_t kind) {
    switch (kind) {
        case SCAN_VOID:
            return "** void **";
        case SCAN_KEYWORD:
            return "keyword";
        case SCAN_IDENTIFIER:
            return "identifier";
        case SCAN_LONG:
            return "long";
        case SCAN_DOUBLE:
            return "double";
        case SCAN_CHAR:
            return "char";
        case SCAN_STRING:
            return "string";
        case SCAN_EOL:
            return "eol";
        case SCAN_EOF:
            return "eof";
        default:
            return "symbol";
    }
}

// A line holds a token's text and, of a real number, up to 309 digits before the point.
KV_PRINTF(1, 2)
void write(const char *format, ...) {
    char line[1024];
    std::va_list arguments;
    va_start(arguments, format);
    const int length = platform::format(line, sizeof line, format, arguments);
    va_end(arguments);
    if (length > 0) state.trace->write({line, static_cast<std::size_t>(length)});
}

}  // namespace

std::int32_t start_trace() {
    if (state.trace == nullptr) {
        auto file = memory::make_owned<platform::ReportFile>();
        if (file != nullptr && file->open("trc", true)) state.trace = file.release();
    }
    return ++state.tracing;
}

void end_trace() {
    if (--state.tracing > 0) return;
    memory::Owned<platform::ReportFile>{state.trace}.reset();
    state.trace = nullptr;
}

void trace(const SCANNER &scanner, std::int32_t kind, const SCAN_TOKEN &token) {
    if (state.trace == nullptr) return;
    const char *name = name_of(kind);
    switch (kind) {
        case SCAN_KEYWORD:
            return write("S%-3d[%2d:%2d]\t%-10s <%s> #%d\n", scanner.trace_number, token.line, token.column,
                         name, token.text, token.lval);
        case SCAN_DOUBLE:
            return write("S%-3d[%2d:%2d]\t%-10s <%s>  %f\n", scanner.trace_number, token.line, token.column,
                         name, token.text, token.dval);
        case SCAN_LONG:
            return write("S%-3d[%2d:%2d]\t%-10s <%s>  %d\n", scanner.trace_number, token.line, token.column,
                         name, token.text, token.lval);
        default:
            return write("S%-3d[%2d:%2d]\t%-10s <%s>\n", scanner.trace_number, token.line, token.column,
                         name, token.text);
    }
}

}  // namespace kv::scan

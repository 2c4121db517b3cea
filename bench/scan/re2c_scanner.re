#include <cstdlib>

#include "bench/scan/peers.hpp"

std::size_t kvbench::scan_with_re2c(const char *text, SCAN_TOKEN &token) {
    const char *cursor = text;
    const char *marker = nullptr;
    const char *line_start = text;
    std::int32_t line = 0;
    std::size_t count = 0;
    for (;;) {
        const char *start = cursor;
        const auto take = [&] {
            fill(token, start, static_cast<std::size_t>(cursor - start), line, static_cast<std::int32_t>(start - line_start));
            ++count;
        };
        /*!re2c
            re2c:define:YYCTYPE = "unsigned char";
            re2c:define:YYCURSOR = cursor;
            re2c:define:YYMARKER = marker;
            re2c:yyfill:enable = 0;

            "\x00"                               { return count; }
            [ \t\r]+                             { continue; }
            "\n"                                 { ++line; line_start = cursor; continue; }
            [A-Za-z_][A-Za-z0-9_]*               { take(); token.lval = static_cast<std::int32_t>(cursor - start); continue; }
            [0-9]+                               { take(); token.lval = std::atoi(token.text); continue; }
            [0-9]+ "." [0-9]* ([eE][+-]?[0-9]+)? { take(); token.dval = std::atof(token.text); continue; }
            [0-9]+ [eE][+-]?[0-9]+               { take(); token.dval = std::atof(token.text); continue; }
            ["] ([^"\\\n\x00] | "\\" [^\x00])* ["] { take(); token.lval = static_cast<std::int32_t>(cursor - start) - 2; continue; }
            *                                    { take(); continue; }
        */
    }
}

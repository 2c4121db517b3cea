// SPDX-License-Identifier: MIT
// `kv calc` and `kv scan`.
#include "tests/tools/program.hpp"

namespace kvtest {

namespace {

using Calc = ProgramTest;
using Scan = ProgramTest;

TEST_F(Calc, Values) {
    expect_run({"calc", "1/3", "500*2000", "1e15", "1e16", "1e-5", "9e-6"}, 0,
               "0.3333333333333333\n1000000\n1000000000000000\n1e+16\n0.00001\n9e-06\n", "");
    expect_run({"calc", "--places", "2", "4.35", "0.125", "-0.125", "-0.001", "5", "1e15", "2e15"}, 0,
               "4.35\n0.13\n-0.12\n0.00\n5.00\n1000000000000000.00\n2e+15\n", "");
    expect_run({"calc", "--places", "20", "0.1", "1/3"}, 0,
               "0.10000000000000000000\n0.33333333333333330000\n", "");
    expect_run({"calc", "--places", "0", "2.5", "-2.5"}, 0, "3\n-2\n", "");
    expect_run({"calc", "--places", "-1", "1235", "-5", "--", "-(10+2)"}, 0, "1240\n0\n-10\n", "");
}

TEST_F(Calc, NamesAndFiles) {
    write("site.env", "[m]\r\n a ={\r\n  b =2.5\r\n }\r\n");
    write("all.env", "[m]\r\n a ={\r\n  c =-3\r\n }\r\n");
    write("x.ini", "[S]\r\nk = 1e3\r\nt=2,5\r\n");
    write("sheet", "; sheet\r\nl = { a@b } ; m\r\n\r\nb_2 = l*{a@c}^2;kN\r\nl = 7/0\r\nl\r\nans");
    expect_run({"calc", "--env", "site.env", "--env", "all.env", "--section", "m", "--file", "sheet",
                "--echo", "b_2+2*ans", "ans = b_2"},
               1, "; sheet\nl = { a@b } = 2.5   ; m\n\nb_2 = l*{a@c}^2 = 22.5   ;kN\n",
               "kv calc: sheet:5: division by zero (error 16)\n  l = 7/0\n         ^\n"
               "kv calc: sheet:6: 'l' is not known\n  l\n  ^\n"
               "kv calc: sheet:7: there is no last value\n  ans\n  ^\n"
               "kv calc: there is no last value\n  b_2+2*ans\n        ^\n"
               "kv calc: ans is the last value, and no name to assign to\n  ans = b_2\n  ^\n");
    expect_run({"calc", "--ini", "x.ini", "\xc3\xa4 = {ini:S/k}", "\xc3\xa4 == 1e3", "(\xc3\xa4) = 2", "--",
                "-\xc3\xa4^2"},
               0, "1\n0\n1000000\n", "");
    const Outcome outcome = run({"calc", "--echo"}, {.input = path("sheet").string()});
    EXPECT_EQ(outcome.err.substr(0, 61), "kv calc: line 2: there is no file to ask; name one with --env");
    for (const char *option : {"--file=", "--env=", "--ini=", "--section=", "--places=x", ";"})
        EXPECT_EQ(run({"calc", option, "1"}).code, 2) << option;
    EXPECT_EQ(run({"calc", "--env", "all.env", "{a@c}"}).code, 2);
}

TEST_F(Calc, ShowsThePlaceOfAnError) {
    const std::string many(1000, '(');
    const std::pair<std::string, std::string> cases[] = {
        {"1+", "an operand or an operator was expected (error 1)\n  1+\n    ^\n"},
        {"1 +\n\t \"x\"", "an operand or an operator was expected (error 1)\n  \t \"x\"\n  \t ^\n"},
        {"SIN a", "( is missing behind the name of a function (error 2)\n  SIN a\n      ^\n"},
        {"\xc3\xa4 = a*(a+a ; end", ") is missing (error 3)\n  \xc3\xa4 = a*(a+a ; end\n             ^\n"},
        {"1 ? 2", ": is missing (error 7)\n  1 ? 2\n       ^\n"},
        {"(-a)^(1/3) + 1",
         "a negative number to a power that is no whole number (error 14)\n"
         "  (-a)^(1/3) + 1\n             ^\n"},
        {"0^-1", "the power is not finite (error 15)\n  0^-1\n      ^\n"},
        {"SQRT(-a)", "the square root of a negative number (error 17)\n  SQRT(-a)\n          ^\n"},
        {"a+MAX(1,LGT(-a))", "the value is not a number\n  a+MAX(1,LGT(-a))\n          ^\n"},
        {"a*1e300*1e300", "the value is infinite\n  a*1e300*1e300\n  ^\n"},
        {"a+A", "'A' is not known; did you mean 'a'?\n  a+A\n    ^\n"},
        {"2*3e+a", "the exponent has no digit\n  2*3e+a\n     ^\n"},
        {"a+{x\n}", "} is missing\n  a+{x\n    ^\n"},
        {"{ini:S/t}", "[S] t is no number\n  {ini:S/t}\n  ^\n"},
        {"{a}", "[m] a is a block, not a number\n  {a}\n  ^\n"},
        {many, "an operand or an operator was expected (error 1)\n  " + std::string(60, '(') + "\n  " +
                   std::string(60, ' ') + "^\n"},
    };
    write("x.ini", "[S]\r\nt=2,5\r\n");
    write("x.env", "[m]\r\n a ={\r\n }\r\n");
    for (const auto &[formula, text] : cases)
        expect_run({"calc", "--ini", "x.ini", "--env", "x.env", "--section", "m", "a=8", "--", formula}, 1,
                   "", "kv calc: " + text);
}

TEST_F(Scan, PrintsATable) {
    write("text", "if x1 -7\n'a' 1.5e");
    write("words", "then\r\nif\r\n");
    expect_run({"scan", "text", "--keywords", "words", "--signed-numbers", "--eol-tokens"}, 1,
               "     1     1  keyword     if  = 1\n"
               "     1     4  identifier  x1\n"
               "     1     7  long        -7  = -7\n"
               "     1     9  eol\n"
               "     2     1  char        a  = 97\n"
               "     2     5  double      1.5e  = 1.5  ! exponent without a digit\n"
               "     2     9  eof\n");
    expect_run({"scan", "-", "--json"}, 1,
               "[\n{\"line\": 1, \"column\": 1, \"kind\": \"identifier\", \"text\": \"a\"},\n"
               "{\"line\": 1, \"column\": 3, \"kind\": \"double\", \"text\": \"1e\", \"value\": 1, "
               "\"error\": \"exponent without a digit\"},\n"
               "{\"line\": 1, \"column\": 5, \"kind\": \"eof\"}\n]\n",
               "", "a 1e");
}

}  // namespace

}  // namespace kvtest

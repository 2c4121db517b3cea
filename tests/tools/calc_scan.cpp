// `kv calc` and `kv scan`.
#include "tests/tools/program.hpp"

namespace kvtest {

namespace {

class Calc : public ProgramTest {
  protected:
    void expect_run(const std::vector<std::string> &words, int code, const std::string &out,
                    const std::string &err) const {
        const Outcome outcome = run(words);
        EXPECT_EQ(outcome.code, code) << words.back();
        EXPECT_EQ(outcome.out, out) << words.back();
        EXPECT_EQ(outcome.err, err) << words.back();
    }
};

TEST_F(Calc, Values) {
    expect_run({"calc", "2*SIN(30)+MAX(1,4,2)", "1/3", "2^0.5 > 1 ? 10 : 20"}, 0,
               "5\n0.3333333333333333\n10\n", "");
    expect_run({"calc", "500*2000", "1e15", "1e16", "1e-5", "9e-6"}, 0,
               "1000000\n1000000000000000\n1e+16\n0.00001\n9e-06\n", "");
    expect_run({"calc", "--places", "2", "--echo", "2/3"}, 0, "2/3 = 0.67\n", "");
    expect_run({"calc", "--places", "2", "4.35", "0.125", "-0.125", "-0.001", "5", "1e15", "2e15"}, 0,
               "4.35\n0.13\n-0.12\n0.00\n5.00\n1000000000000000.00\n2e+15\n", "");
    expect_run({"calc", "--places", "20", "0.1", "1/3"}, 0,
               "0.10000000000000000000\n0.33333333333333330000\n", "");
    expect_run({"calc", "--places", "0", "2.5", "-2.5"}, 0, "3\n-2\n", "");
    expect_run({"calc", "--places", "-1", "1235", "-5"}, 0, "1240\n0\n", "");
    expect_run({"calc", "--", "-(1+2)"}, 0, "-3\n", "");
}

TEST_F(Calc, ShowsThePlaceOfAnError) {
    expect_run({"calc", "1+", "7/0", "2"}, 1, "2\n",
               "kv calc: an operand or an operator was expected (error 1)\n  1+\n    ^\n"
               "kv calc: division by zero (error 16)\n  7/0\n     ^\n");
    expect_run({"calc", "1 +\n\t x"}, 1, "",
               "kv calc: an operand or an operator was expected (error 1)\n  \t x\n  \t ^\n");
    const std::string many(1000, '(');
    expect_run({"calc", many}, 1, "",
               "kv calc: an operand or an operator was expected (error 1)\n  " + std::string(60, '(') +
                   "\n  " + std::string(60, ' ') + "^\n");
    EXPECT_EQ(run({"calc", "--places", "x", "1"}).code, 2);
    EXPECT_EQ(run({"calc", "--unknown", "1"}).code, 2);
}

TEST_F(Calc, SaysWhatIsWrong) {
    const std::pair<const char *, const char *> cases[] = {
        {"SIN 30", "( is missing behind the name of a function (error 2)"},
        {"(1+2", ") is missing (error 3)"},
        {"1 ? 2", ": is missing (error 7)"},
        {"(-8)^(1/3)", "a negative number to a power that is no whole number (error 14)"},
        {"0^-1", "the power is not finite (error 15)"},
        {"SQRT(-4)", "the square root of a negative number (error 17)"},
        {"1+LGT(-1)", "the value is not a number"},
        {"EXP(1000)", "the value is infinite"},
    };
    for (const auto &[expression, text] : cases) {
        const Outcome outcome = run({"calc", "--", expression});
        EXPECT_EQ(outcome.code, 1);
        EXPECT_TRUE(outcome.err.starts_with(std::string("kv calc: ") + text + "\n")) << outcome.err;
    }
}

TEST_F(Calc, ReadsLines) {
    write("sheet", "; a beam\r\n2*3\r\n\r\n1/0\n4");
    const Outcome outcome = run({"calc", "--echo"}, {.input = path("sheet").string()});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.out, "2*3 = 6\n4 = 4\n");
}

class Scan : public Calc {};

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
               "     2     9  eof\n",
               "");
    EXPECT_EQ(run({"scan", "none"}).code, 3);
    EXPECT_EQ(run({"scan", "text", "--keywords", "none"}).code, 3);
    EXPECT_EQ(run({"scan"}).code, 2);
    EXPECT_EQ(run({"scan", "--help"}).code, 0);
}

}  // namespace

}  // namespace kvtest

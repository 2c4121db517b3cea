// SPDX-License-Identifier: MIT
// `kv plot`.
#include "tests/serial/win_ini.hpp"
#include "tests/support/pseudo_terminal.hpp"
#include "tests/tools/program.hpp"

namespace kvtest {

namespace {

class PlotProgram : public ProgramTest {
  protected:
    PlotProgram() { write("a.plt", plot_); }
    ~PlotProgram() override { unsetenv("KV_COM_TIMEOUT"); }

    const std::string plot_ = long_plot();
};

TEST_F(PlotProgram, SendsAFile) {
    const struct {
        const char *entry;
        std::vector<std::string> words;
        int code;
        const char *err;
    } cases[] = {
        {"9600,n,8,1,p", {"a.plt", "COM1"}, 0, ""},
        {"9600,n,8,1.5,p", {"A.PLT", "COM1"}, 3, "does not take all of '9600,n,8,1.5,p'"},
        {"9600,n,8,1.5,p", {"--anyway", "-", "COM1"}, 0, ""},
        {"quickly", {"--anyway", "a.plt", "COM1"}, 3, "its entry 'quickly' is not valid"},
    };
    for (const auto &row : cases) {
        set_entry(row.entry);
        PseudoTerminal terminal;
        terminal.read();
        std::vector<std::string> words{"plot"};
        words.insert(words.end(), row.words.begin(), row.words.end());
        const Outcome outcome = run(words, {.input = path("a.plt").string()});
        EXPECT_EQ(outcome.code, row.code) << outcome.err;
        EXPECT_EQ(outcome.out, row.code == 0 ? "70000 bytes sent to COM1\n" : "");
        EXPECT_NE(outcome.err.find(row.err), std::string::npos) << outcome.err;
        EXPECT_TRUE(terminal.received() == (row.code == 0 ? plot_ : ""))
            << row.entry << ", " << row.code << ": " << terminal.received().size();
    }
    EXPECT_NE(run({"plot", "a.plt", "none"}).err.find("'none' cannot be opened"), std::string::npos);
}

TEST_F(PlotProgram, ShowsABarAtATerminal) {
    set_entry("9600,n,8,1,p");
    PseudoTerminal screen;
    screen.read();
    PseudoTerminal terminal;
    terminal.read();
    const Outcome outcome = run({"plot", "a.plt", "COM1"}, {.error = screen.name()});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.out, "");
    const std::string &shown = screen.received();
    EXPECT_EQ(shown.find("\r[" + std::string(40, '.') + "] 0 %, 0 bytes\r["), 0U) << shown;
    const std::string end = "\r[" + std::string(40, '#') + "] 100 %, 70000 bytes\r\n";
    EXPECT_EQ(shown.substr(shown.size() - std::min(shown.size(), end.size())), end);
}

TEST_F(PlotProgram, FailsWithThePort) {
    set_entry("9600,n,8,1,p");
    setenv("KV_COM_TIMEOUT", "0.3", 1);
    PseudoTerminal terminal;
    terminal.read([](const std::string &received) { return received.size() > 20000; });
    const Outcome outcome = run({"plot", "a.plt", "COM1"});
    EXPECT_EQ(outcome.code, 3);
    EXPECT_NE(outcome.err.find("'COM1' has stopped after "), std::string::npos) << outcome.err;
}

}  // namespace

}  // namespace kvtest

// SPDX-License-Identifier: MIT
// What holds for every action of the program: how command lines are read, what is said about wrong ones,
// the exit codes.
#include <algorithm>
#include <map>
#include <random>

#include "tests/support/support.hpp"
#include "tests/tools/program.hpp"
#include "tools/kv/actions.hpp"

namespace kvtest {

namespace {

using kvtool::Action;
using kvtool::ActionTable;
using kvtool::Option;

using Words = std::vector<std::string>;

class Habits : public ProgramTest {
  protected:
    Habits() { write("press.env", kPress); }

    void expect_call(const Words &words, int code, const std::string &err) const {
        SCOPED_TRACE(testing::PrintToString(words));
        const Outcome outcome = run(words);
        EXPECT_EQ(outcome.code, code) << outcome.err;
        EXPECT_NE(outcome.err.find(err), std::string::npos)
            << "wanted: " << err << "\ngot: " << outcome.err;
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), err.empty() ? 0 : 1);
        EXPECT_TRUE(code != 2 || outcome.err.find(" --help'") != std::string::npos) << outcome.err;
    }
    // Calls `check` with each action, and the words that name it.
    template <typename Check>
    static void for_each_action(Check check) {
        for (const ActionTable *table : kvtool::subcommands()) {
            for (const Action *action : table->actions) {
                Words words{std::string(table->name())};
                if (!action->name.empty()) words.emplace_back(action->name);
                check(*table, *action, words);
            }
        }
    }
};

// The words of a line, with blanks between them.
Words split(std::string_view line) {
    Words words;
    for (const std::string_view word : kvtool::words_of(line)) words.emplace_back(word);
    return words;
}

// Lines with semicolons between them.
std::vector<Words> lines_of(std::string_view text) {
    std::vector<Words> lines;
    for (std::size_t end = 0; !text.empty(); text.remove_prefix(std::min(end + 1, text.size()))) {
        end = std::min(text.find(';'), text.size());
        lines.push_back(split(text.substr(0, end)));
    }
    return lines;
}

Words with(Words words, const Words &more) {
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

TEST_F(Habits, EveryWrongCommandLineIsSaid) {
    expect_call({}, 2, "kv: which subcommand?");
    expect_call({"envv", "get"}, 2, "no subcommand 'envv'; did you mean 'env'?");
    expect_call({"help", "env", "gte"}, 2, "no action 'gte'; did you mean 'get'?");
    expect_call({"--delimiter", "env"}, 2, "which subcommand is '--delimiter' for?");
    for_each_action([&](const ActionTable &table, const Action &action, const Words &words) {
        if (!action.name.empty()) {
            expect_call({words[0]}, 2, "which action?");
            expect_call({words[0], "x" + words[1]}, 2, "did you mean '" + words[1] + "'?");
        }
        expect_call(with(words, {"--hepl"}), 2, "there is no option '--hepl'; did you mean '--help'?");
        expect_call(with(words, {"-#"}), 2, "there is no option '-#'");
        if (action.least > 0) {
            expect_call(with(words, Words(action.least - 1, "x")), 2,
                        " is missing; the form is 'kv " + words[0]);
        }
        if (action.most < 10)
            expect_call(with(words, Words(action.most + 1, "x")), 2, "'x' is a word too many; the form is");
        for (const auto &options : {action.options, table.options, kvtool::common_options()}) {
            for (const Option &option : options) {
                const std::string name(option.name);
                if (option.value.empty()) {
                    if (name != "--help" && name != "--version")
                        expect_call(with(words, {name + "=x"}), 2, name + " takes no value");
                } else {
                    expect_call(with(words, {name}), 2, name + " needs " + std::string(option.value));
                }
                if (!option.choices.empty()) {
                    const std::string choice(kvtool::words_of(option.choices).front());
                    expect_call(with(words, {name, choice + "x"}), 2, "did you mean '" + choice + "'?");
                }
            }
        }
    });
}

TEST_F(Habits, HelpCompletionAndManualTellTheSame) {
    std::string manual = run({"manual"}).out;
    for (std::size_t at = 0; (at = manual.find("\\-", at)) != manual.npos; ++at) manual.erase(at, 1);
    std::map<std::string, std::string> forms;  // an option's letter and whether it has a value
    for_each_action([&](const ActionTable &table, const Action &action, const Words &words) {
        SCOPED_TRACE(testing::PrintToString(words));
        const std::string help = run(with(words, {"-h"})).out;
        EXPECT_EQ(help, run(with({"help"}, words)).out);
        EXPECT_EQ(help, run(with({"--help"}, words)).out);
        EXPECT_EQ(help.find("Usage: " + table.command_of(action) + ' '), 0U);
        EXPECT_NE(manual.find(".SS " + table.command_of(action).substr(3) + '\n'), std::string::npos);
        const Words before(words.begin(), words.end() - 1);
        EXPECT_NE(run(with(with({"complete"}, before), {words.back()})).out.find(words.back() + '\t'),
                  std::string::npos);
        const std::string offered = run(with(with({"complete"}, words), {"--"})).out;
        for (const auto &options : {action.options, table.options}) {
            for (const Option &option : options) {
                const std::string name(option.name);
                EXPECT_NE(help.find(' ' + name), std::string::npos) << name;
                EXPECT_NE(offered.find(name + '\t' + std::string(option.help)), std::string::npos) << name;
                EXPECT_NE(manual.find(name), std::string::npos) << name;
                const std::string form = std::string(1, option.letter) + (option.value.empty() ? '-' : '=');
                EXPECT_EQ(forms.emplace(name, form).first->second, form) << name << " differs elsewhere";
            }
        }
    });
    std::map<char, std::string> letters;
    for (const auto &[name, form] : forms) {
        EXPECT_TRUE(form[0] == '\0' || letters.emplace(form[0], name).first->second == name) << name;
    }
}

TEST_F(Habits, OptionsStandAnywhere) {
    for (const Words &words :
         lines_of("env get press.env press speed --type double;--type=double env get press.env press speed;"
                  "env -tdouble get press.env press speed;env get -t=double press.env -- press speed;"
                  "env get press.env -qt double press speed --type text;calc 120.5;calc -- 120.5;calc -q "
                  "120.5")) {
        const Outcome outcome = run(words);
        EXPECT_EQ(outcome.code, 0) << outcome.err;
        EXPECT_EQ(outcome.out, "120.5\n");
    }
    EXPECT_EQ(run({"calc", "-5", "-.5", "--", "-(1)"}).out, "-5\n-0.5\n-1\n");
    EXPECT_EQ(run({"env", "-V", "get"}).out.substr(0, 3), "kv ");
    expect_call({"env", "get", "press.env", "press", "x", "-q"}, 1, "");
    expect_call({"env", "get", "-q"}, 2, "FILE is missing");
}

// What reads a file says why it cannot.
TEST_F(Habits, UnreadableFilesAreSaid) {
    write("a.pro", "");
    std::filesystem::create_directory(path("dir"));
    const std::string_view lines =
        "calc --file FILE;calc --env FILE --section s {a};calc --ini FILE {ini:s/a};env show FILE;"
        "env get FILE s a;env get press.env s a --default FILE;env names FILE;env count FILE;env set FILE "
        "s a 1;"
        "env delete FILE s;env insert FILE s t;env edit FILE -e delete;env merge FILE press.env;"
        "env merge press.env FILE;env check FILE;ini get FILE s a;ini sections --file FILE;ini keys FILE s;"
        "ini list -f FILE;ini set FILE s a 1;ini delete s -fFILE;ini rename FILE s a b;record dump FILE l;"
        "scan FILE;scan press.env --keywords FILE;plot FILE COM1;ls FILE *;ls FILE/*;profile list --dir "
        "FILE;"
        "mat get R1 --dir FILE";
    for (const auto &[file, reason] :
         {std::pair("gone", "No such file or directory"), std::pair("dir", "Is a directory")}) {
        for (Words words : lines_of(lines)) {
            const bool of_directory = words[0] == "ls" || words[0] == "profile" || words[0] == "mat";
            if (of_directory && std::string(file) == "dir") continue;
            for (std::string &word : words) {
                const std::size_t at = word.find("FILE");
                if (at != word.npos) word.replace(at, 4, file);
            }
            expect_call(words, 3, reason);
        }
    }
    EXPECT_FALSE(std::filesystem::exists(path("gone")));
    for (const Words &words :
         lines_of("env merge - -;env get - s a --default -;calc --env - --section s")) {
        expect_call(words, 2, "standard input can be one of the files only");
    }
    EXPECT_EQ(content("press.env"), kPress);
}

TEST_F(Habits, FilesThatCannotBeSavedAreSaid) {
    std::filesystem::create_directory(path("dir"));
    write("t.ini", "[s]\r\na=1\r\n");
    for (const auto &[file, reason] :
         {std::pair("gone/x", "No such file or directory"), std::pair("dir", "Is a directory")}) {
        for (Words words :
             lines_of("env set press.env s -o FILE;env merge press.env press.env -o FILE;"
                      "ini set t.ini s a 2 --output FILE;record write FILE l 1;timer report FILE false;"
                      "env set FILE s a 1 --create;ini set s a 1 -f FILE --create")) {
            std::replace(words.begin(), words.end(), std::string("FILE"), std::string(file));
            expect_call(words, 3, std::string(": ") + reason);
        }
    }
}

TEST_F(Habits, NoCommandLineEndsAbnormally) {
    write("t.ini", "[s]\r\na=1\r\n");
    write("a.rec", "1.1  @kvINTEL   12345678");
    write("a.pro", "Profil;h;b\nI 10;1;2\n");
    std::filesystem::create_directory(path("dir"));
    Words pool = split(
        "press.env t.ini a.rec a.pro dir gone - -- press s axis@2 name a l d 1 -5 1e99 1+(2 A>1 x=y -x @ 7 "
        "NUL: C:\\x "
        "* -tx -q -e 99999999999999999999 none");
    for (const char *word :
         {"", "d h2", "b = 300", "I 10", "\x80", "\xff", "\"", "\n", "'", "set s a 1", "delete s"})
        pool.emplace_back(word);
    Words subcommands;
    for_each_action([&](const ActionTable &table, const Action &action, const Words &) {
        if (table.name() == "timer") return;  // it would run the words
        subcommands.emplace_back(table.name());
        pool.emplace_back(action.name);
        for (const Option &option : action.options) {
            if (option.name == "--trace") continue;  // to a file that later calls append to
            pool.emplace_back(option.name);
            for (const std::string_view choice : kvtool::words_of(option.choices))
                pool.emplace_back(choice);
        }
    });
    clear_log();
    std::mt19937 random(20);  // NOLINT: the same lines each time
    const auto one_of = [&](const Words &words) { return words[random() % words.size()]; };
    for (int i = 0; i < 5000; ++i) {
        Words words{one_of(subcommands)};
        const ActionTable *table = kvtool::find_subcommand(words[0]);
        if (random() % 8 != 0) words.emplace_back(table->actions[random() % table->actions.size()]->name);
        if (words.back().empty()) words.pop_back();
        for (std::size_t count = random() % 6; count > 0; --count) words.push_back(one_of(pool));
        if (random() % 16 == 0) words.insert(words.begin(), one_of({"complete", "help"}));
        SCOPED_TRACE(testing::PrintToString(words));
        const Outcome outcome = run(words);
        ASSERT_TRUE(outcome.code >= 0 && outcome.code <= 3);
        const bool quiet = std::find_if(words.begin(), words.end(), [](const std::string &word) {
                               return word.starts_with("-q") || word == "--quiet";
                           }) != words.end();
        ASSERT_TRUE(outcome.code == 0 || quiet || !outcome.err.empty());
    }
    EXPECT_EQ(read_log(), "");
}

}  // namespace

}  // namespace kvtest

// SPDX-License-Identifier: MIT
// `kv profile` and `kv mat`, on the tables of the examples and on a small one.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <sstream>
#include <tuple>

#include "tests/tools/program.hpp"

namespace kvtest {

namespace {

class Profile : public ProgramTest {
  protected:
    Profile() {
        std::filesystem::create_directories(path("t"));
        write("t/ab.pro", "T S A Iy q\r\nAB 1 2 30 nil\r\nAB 2 4 -1 5\r\n");
        write("t/Cd.PRO", "T S A z\r\nCD 1x2 7 8\r\nAB 2A 9 9\r\n");
        write("t/broken.pro", "no table");
        write("t/m.mtt", "T S A m\r\nQ 1A 3 4\r\n");
    }
    // With the small tables where the words, with blanks between them and ~ for a blank, name no others.
    Outcome run_in(const std::string &words) const {
        std::istringstream rest(words);
        std::vector<std::string> all;
        for (std::string word; rest >> word; all.push_back(word))
            std::replace(word.begin(), word.end(), '~', ' ');
        if (words.find("--dir") == words.npos) all.insert(all.end(), {"--dir", "t"});
        return run(all);
    }
    void expect_outputs(const std::vector<std::array<std::string, 2>> &cases) const {
        for (const auto &[words, out] : cases) {
            const Outcome outcome = run_in(words);
            EXPECT_EQ(outcome.out, out) << words;
            EXPECT_EQ(outcome.err, "") << words;
            EXPECT_EQ(outcome.code, 0) << words;
        }
    }
};

TEST_F(Profile, ListsGetsAndFinds) {
    expect_outputs({
        {"profile list --json",
         "[\n{\"table\": \"Cd\", \"entries\": 2, \"columns\": [\"A\", \"z\"]},\n"
         "{\"table\": \"ab\", \"entries\": 2, \"columns\": [\"A\", \"Iy\", \"q\"]}\n]\n"},
        {"profile list --table Cd",
         "name      A      m  z\n        cm2   kg/m\nCD 1x2    7  5.495  8\nAB 2A     9  7.065  9\n"},
        {"profile list --all --columns z,~A",
         "name    table    z    A\n                    cm2\nCD 1x2  Cd       8    7\nAB 2A   Cd       9    "
         "9\n"
         "AB 1    ab     nil    2\nAB 2    ab     nil    4\n"},
        {"profile get ab~2", "AB 2\nA = 4 cm2\nm = 3.14 kg/m\nIy = nil cm4\nq = 5\n"},
        {"profile get AB1 --columns Iy,q,A --si", "AB 1\nIy = 3e-07 m4\nq = nil\nA = 0.0002 m2\n"},
        {"profile get AB1 --columns Iy,m,A --units mm",
         "AB 1\nIy = 300000 mm4\nm = 1.57 kg/m\nA = 200 mm2\n"},
        {"profile get AB2 --table Cd --columns A", "AB 2A\nA = 9 cm2\n"},
        {"profile get 1 --json --columns z,m",
         "[\n{\"name\": \"CD 1x2\", \"table\": \"Cd\", \"values\": {\"z\": 8, \"m\": 5.495}}\n]\n"},
        {"profile find A~>~2.0e-4 --type ab --si --columns q", "name  q\n\nAB 2  5\n"},
        {"profile find z=8 --type CD(1x2) --columns A", "name      A\n        cm2\nCD 1x2    7\n"},
        {"profile find m<=7.065 m!=5.495 --all-files --columns z,A --sort q --limit 2",
         "name   table    z    A\n                   cm2\nAB 2   ab     nil    4\nAB 2A  Cd       9    "
         "9\n"},
        {"profile find m=1.57 --columns m --units cm --all-files",
         "name  table     m\n             kg/m\nAB 1  ab     1.57\n"},
        {"profile compare AB1 CD1x2 --columns Iy,A,z,m --units mm",
         "            AB 1  CD 1x2\nIy  mm4   300000     nil\nA   mm2      200     700\nz            nil   "
         " "
         "   8\nm   kg/m    1.57   5.495\n"},
        {"mat find A>2", "name    A      m\n      cm2  kg/m2\nQ 1A    3      4\n"},
    });
}

TEST_F(Profile, Refuses) {
    const std::pair<int, const char *> cases[] = {
        {1,
         "get AB3|get AB2B|get AB2 --columns Q|list --columns Q|find A>8 --type CD(1x2)|find A>1 --type EF|"
         "find A>1 z>1 q>1 --all-files|find Q>1 --all-files|find --all-files --sort Q|draw AB1|draw XY1|"
         "compare AB1 AB3|compare AB1 AB2 --output -"},
        {2,
         "|nothing|get|get ~|get AB|get AB2 --columns A,|get AB2 --table ~|get AB2 --units inch|"
         "get AB2 --si --units mm|draw ab|compare AB1|compare AB1 ~|find A>1|find A>1 --type ~|"
         "find --all-files ~|find A>>1 --all-files|find A> --all-files|find >1 --all-files|"
         "find A>1x --all-files|find A>1 --all-files --limit 0"},
        {3,
         "get AB1 --table none|get AB1 --table broken|list --dir nowhere|list --dir t/ab.pro|"
         "draw HEB200 --output /nowhere/p.svg --dir " KV_TEST_EXAMPLES "/profiles"},
    };
    for (const auto &[code, all] : cases) {
        std::istringstream rest(all);
        for (std::string words; std::getline(rest, words, '|');) {
            const Outcome outcome = run_in("profile " + words);
            EXPECT_EQ(outcome.code, code) << words << outcome.err;
            EXPECT_TRUE(outcome.out.empty() && !outcome.err.empty()) << words;
        }
    }
    EXPECT_EQ(run_in("mat draw Q1A").code, 2);
}

TEST_F(Profile, DirectoryOfTheConfiguration) {
    write("kv3.ini", "[System]\r\nProfile=.\\t\r\nMatten=" + path("t").string() + "\r\n");
    EXPECT_EQ(run({"profile", "get", "AB1", "--columns", "A"}).out, "AB 1\nA = 2 cm2\n");
    EXPECT_EQ(run({"mat", "get", "Q1A", "--columns", "A"}).out, "Q 1A\nA = 3 cm2\n");
}

// The area of the section that a plot file draws first, in cm2 on paper.
double plotted_area(const std::string &plot) {
    double sum = 0;
    double x = 0;
    double y = 0;
    int outlines = 0;
    std::istringstream lines(plot.substr(0, plot.find("SP2")));
    for (std::string line; std::getline(lines, line);) {
        const double sign = outlines > 1 ? -1 : 1;
        double to_x = 0;
        double to_y = 0;
        double turn = 0;
        if (std::sscanf(line.c_str(), "PD;AA%lf,%lf,%lf", &to_x, &to_y, &turn) == 3) {  // its chord follows
            turn *= std::acos(-1) / 180;
            sum += sign * (std::pow(to_x - x, 2) + std::pow(to_y - y, 2)) * (turn - std::sin(turn)) / 2;
        } else if (std::sscanf(line.c_str(), "P%*1[UD]%lf,%lf", &to_x, &to_y) == 2) {
            if (line[1] == 'U') ++outlines;
            if (line[1] == 'D') sum += sign * (x * to_y - to_x * y) / 2;
            x = to_x;
            y = to_y;
        }
    }
    return sum / 160000;
}

TEST_F(Profile, Draws) {
    const std::tuple<const char *, double, double> cases[] = {
        // the scale, and the area in cm2
        {"HEB 200", 0.5, 78.1},      {"IPN 200", 0.5, 33.43}, {"UPN 200", 0.5, 32.2},
        {"UPN 400", 0.2, 91.5},      {"UPE 200", 0.5, 29.01}, {"L 100x10", 1, 19.2},
        {"L 150x75x10", 0.5, 21.65}, {"T 80", 1, 13.64},      {"RHS 200x100x8", 0.5, 44.75},
        {"CHS 114.3x5", 1, 17.17}};
    for (const auto &[name, scale, area] : cases) {
        const Outcome plot =
            run({"profile", "draw", name, "--hpgl", "--dir", KV_TEST_EXAMPLES "/profiles"});
        EXPECT_EQ(plot.err, "");
        EXPECT_EQ(plot.out.substr(0, 7), "IN;PA;\n");
        EXPECT_NE(plot.out.find(std::string("LB") + name), std::string::npos);
        EXPECT_NEAR(plotted_area(plot.out) / scale / scale, area, 0.005 * area) << name;
    }
    write("t/bad.pro",
          "T S h b s t r r1 slope\r\nI 1 100 50 60 5 5 0 0\r\nL 2 99 50 5 5 60 0 0\r\n"
          "U 3 0 1 1 1 1 0 0\r\nZ 4 99 50 5 5 0 0 0\r\nT 5 99 50 5 5 0 0 20\r\nH 6 99 50 5 8 0 0 70\r\n");
    for (const char *name : {"I1", "L2", "U3", "Z4", "T5", "H6"})
        EXPECT_EQ(run_in(std::string("profile draw ") + name).code, 1) << name;
}

}  // namespace

}  // namespace kvtest

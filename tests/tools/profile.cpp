// `kv profile` and `kv mat`, on the tables of the examples and on a small one.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <sstream>

#include "tests/tools/program.hpp"

namespace kvtest {

namespace {

const std::string kTables = KV_TEST_EXAMPLES "/profiles";

class Profile : public ProgramTest {
  protected:
    Profile() {
        std::filesystem::create_directories(path("t"));
        write("t/ab.pro", "T S A Iy q\r\nAB 1 2 30 nil\r\nAB 2 4 -1 5\r\n");
        write("t/Cd.PRO", "T S A z\r\nCD 1x2 7 8\r\nAB 2A 9 9\r\n");
        write("t/broken.pro", "no table");
        write("t/m.mtt", "T S A\r\nQ 1A 3\r\n");
    }
    // With the small tables where the words, with blanks between them and ~ for a blank, name no others.
    Outcome run_in(const std::string &words, const std::string &directory = "t") const {
        std::istringstream rest(words);
        std::vector<std::string> all;
        for (std::string word; rest >> word; all.push_back(word))
            std::replace(word.begin(), word.end(), '~', ' ');
        if (words.find("--dir") == words.npos) all.insert(all.end(), {"--dir", directory});
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
        {"profile list", "Cd: 2 entries; A z\nab: 2 entries; A Iy q\n"},
        {"profile list --json",
         "[\n{\"table\": \"Cd\", \"entries\": 2, \"columns\": [\"A\", \"z\"]},\n"
         "{\"table\": \"ab\", \"entries\": 2, \"columns\": [\"A\", \"Iy\", \"q\"]}\n]\n"},
        {"profile list --table ab",
         "name    A   Iy    q\n      cm2  cm4\nAB 1    2   30  nil\nAB 2    4  nil    5\n"},
        {"profile list --all --columns ~A --json",
         "[\n{\"name\": \"CD 1x2\", \"table\": \"Cd\", \"values\": {\"A\": 7}},\n"
         "{\"name\": \"AB 2A\", \"table\": \"Cd\", \"values\": {\"A\": 9}},\n"
         "{\"name\": \"AB 1\", \"table\": \"ab\", \"values\": {\"A\": 2}},\n"
         "{\"name\": \"AB 2\", \"table\": \"ab\", \"values\": {\"A\": 4}}\n]\n"},
        {"profile get ab~2", "AB 2\nA = 4 cm2\nIy = nil cm4\nq = 5\n"},
        {"profile get AB2 --columns Iy,q,A --si", "AB 2\nIy = nil m4\nq = 5\nA = 0.0004 m2\n"},
        {"profile get AB2 --table Cd", "AB 2A\nA = 9 cm2\nz = 9\n"},
        {"profile get 1 --json",
         "[\n{\"name\": \"CD 1x2\", \"table\": \"Cd\", \"values\": {\"A\": 7, \"z\": 8}}\n]\n"},
        {"profile find A~>~2 --type AB", "name    A   Iy  q\n      cm2  cm4\nAB 2    4  nil  5\n"},
        {"profile find A>2.0e-4 --type ab --si --columns A", "name       A\n          m2\nAB 2  0.0004\n"},
        {"profile find z=8 --all-files --columns A,z", "name      A  z\n        cm2\nCD 1x2    7  8\n"},
        {"profile find z=8 --type CD(1x2) --columns A", "name      A\n        cm2\nCD 1x2    7\n"},
        {"profile find --all-files --columns z,A --sort q --limit 1",
         "name  table    z    A\n                  cm2\nAB 2  ab     nil    4\n"},
        {"profile find --all-files --sort A --limit 2 --columns A",
         "name  table    A\n             cm2\nAB 1  ab       2\nAB 2  ab       4\n"},
        {"mat list", "m: 1 entries; A\n"},
        {"mat get Q1A --si", "Q 1A\nA = 0.0003 m2\n"},
        {"mat find A>2", "name    A\n      cm2\nQ 1A    3\n"},
    });
    for (const char *action : {"list", "get", "find", "draw"}) {
        EXPECT_NE(run({"profile", action, "--help"}).out.find(std::string("Usage: kv profile ") + action),
                  std::string::npos);
    }
    EXPECT_NE(run({"mat", "--help"}).out.find("*.mtt"), std::string::npos);
}

TEST_F(Profile, Refuses) {
    const std::pair<int, std::vector<std::string>> cases[] = {
        {1,
         {"get AB3", "get AB2B", "get AB2 --columns Q", "list --columns Q", "find A>8 --type CD(1x2)",
          "find A>1 --type EF", "find A>1 z>1 q>1 --all-files", "find Q>1 --all-files",
          "find --all-files --sort Q", "draw AB1", "draw XY1"}},
        {2,
         {"", "nothing", "get", "get ~", "get AB", "get AB2 --columns A,", "get AB2 --table ~", "draw ab",
          "find A>1", "find A>1 --type ~", "find --all-files ~", "find A>>1 --all-files",
          "find A> --all-files", "find >1 --all-files", "find A>1x --all-files",
          "find A>1 --all-files --limit 0"}},
        {3,
         {"get AB1 --table none", "get AB1 --table broken", "list --dir nowhere", "list --dir t/ab.pro"}},
    };
    for (const auto &[code, all] : cases) {
        for (const std::string &words : all) {
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
    EXPECT_EQ(run({"profile", "get", "AB1", "--table", path("t/ab.pro").string(), "--columns", "A"}).out,
              "AB 1\nA = 2 cm2\n");
}

// The area inside the outline that a plot file draws first, in cm2 on paper.
double plotted_area(const std::string &plot) {
    double area = 0;
    std::vector<std::pair<double, double>> points;
    const std::string outline = plot.substr(0, plot.find("SP2"));
    for (std::size_t at = 0; (at = outline.find('P', at)) != outline.npos; ++at) {
        int x = 0;
        int y = 0;
        if (std::sscanf(outline.c_str() + at + 2, "%d,%d", &x, &y) == 2) points.emplace_back(x, y);
    }
    for (std::size_t i = 1; i < points.size(); ++i) {
        area += points[i - 1].first * points[i].second - points[i].first * points[i - 1].second;
    }
    EXPECT_EQ(points.front(), points.back());
    return area / 2 / 400 / 400;
}

TEST_F(Profile, Draws) {
    const struct {
        const char *name;
        double scale;
        double area;  // in cm2, with straight lines in place of the arcs
    } cases[] = {
        {"HEB 200", 0.5, 81.8}, {"IPE 300", 0.4, 56.4}, {"UPN 200", 0.5, 32.6}, {"L 100x10", 1, 19.3}};
    for (const auto &row : cases) {
        const Outcome plot = run({"profile", "draw", row.name, "--hpgl", "--dir", kTables});
        EXPECT_EQ(plot.code, 0) << plot.err;
        EXPECT_EQ(plot.out.substr(0, 7), "IN;PA;\n");
        EXPECT_NEAR(plotted_area(plot.out) / row.scale / row.scale, row.area, 0.01 * row.area) << row.name;
        EXPECT_NE(plot.out.find(std::string("LB") + row.name), std::string::npos);
        const Outcome picture =
            run({"profile", "draw", row.name, "--output", path("p.svg").string(), "--dir", kTables});
        EXPECT_EQ(picture.code, 0) << picture.err;
        const std::string svg = content("p.svg");
        EXPECT_EQ(svg.substr(0, 5), "<svg ");
        EXPECT_EQ(svg.substr(svg.size() - 7), "</svg>\n");
        EXPECT_NE(svg.find(std::string(">") + row.name + " "), std::string::npos);
    }
    EXPECT_EQ(run_in("profile draw HEB200 --output /nowhere/p.svg", kTables).code, 3);
    write("t/bad.pro", "T S h b s t r\r\nX 1 100 50 60 5 5\r\nX 2 100 50 5 5 60\r\nX 3 0 1 1 1 1\r\n");
    for (const char *name : {"X1", "X2", "X3"})
        EXPECT_EQ(run_in(std::string("profile draw ") + name).code, 1) << name;
}

}  // namespace

}  // namespace kvtest

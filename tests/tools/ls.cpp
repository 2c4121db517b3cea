// SPDX-License-Identifier: MIT
// `kv ls`.
#include "tests/support/support.hpp"
#include "tests/tools/program.hpp"

namespace kvtest {

namespace {

class Ls : public ProgramTest {
  protected:
    Ls() {
        use_time_zone_of_berlin();
        std::filesystem::create_directories(path("d/Sub"));
        for (const char *name : {"d/b.env", "d/A.ENV", "d/read only"}) write(name, "12345");
        std::filesystem::permissions(path("d/read only"), std::filesystem::perms{0444});
        for (const char *name : {"d/b.env", "d/A.ENV", "d/read only", "d/Sub"}) {
            kvtest::set_modified(path(name), 1000000000);
        }
    }
};

TEST_F(Ls, Lists) {
    const std::string a = "----a          5 2001-09-09 03:46:40 A.ENV\n";
    const std::string b = "----a          5 2001-09-09 03:46:40 b.env\n";
    const std::string all = a + "d----          0 2001-09-09 03:46:40 Sub\n" + b +
                            "-r--a          5 2001-09-09 03:46:40 read only\n";
    const struct {
        std::vector<std::string> words;
        int code;
        std::string out;
    } cases[] = {
        {{"d"}, 0, all},
        {{"D", "*.*"}, 0, all},
        {{"d", "*.Env"}, 0, a + b},
        {{"d/?.env"}, 0, a + b},
        {{"d/b.env"}, 0, b},
        {{"d\\sub"}, 0, ""},
        {{"d", "*.none"}, 1, ""},
        {{"d/none"}, 1, ""},
        {{"d/b.env", "*"}, 3, ""},
        {{"q:\\"}, 3, ""},
        {{"d/Sub", "--json"}, 0, "[\n]\n"},
        {{"d", "r*", "--json"},
         0,
         "[\n{\"name\": \"read only\", \"attributes\": [\"read-only\", \"archive\"], \"size\": 5, "
         "\"time\": \"2001-09-09T03:46:40\"}\n]\n"},
    };
    for (const auto &row : cases) {
        std::vector<std::string> words{"ls"};
        words.insert(words.end(), row.words.begin(), row.words.end());
        expect_run(words, row.code, row.out, row.code == 0 ? "" : "kv ls: ");
    }
    EXPECT_NE(run({"ls"}).out.find(" d\n"), std::string::npos);
}

TEST_F(Ls, PathsThatAreTooLong) {
    const std::string place = "d/" + std::string(100, '/') + "Sub/" + std::string(200, 'x');
    for (const std::vector<std::string> &words :
         std::vector<std::vector<std::string>>{{"ls", place},
                                               {"ls", "d", place},
                                               {"record", "dump", place, "d"},
                                               {"record", "write", place, "d"}}) {
        expect_run(words, 3, "", "the path has more than 255 characters");
    }
    EXPECT_EQ(content("d/Sub/" + place.substr(106)), "");
}

}  // namespace

}  // namespace kvtest

#include "tests/tools/program.hpp"

#include "tests/support/support.hpp"

namespace kvtest {

const std::string kPress =
    "[press]\r\n"
    "  name =Press 4\r\n"
    "  speed =120.5\r\n"
    "  limits ={\r\n"
    "    min =0\r\n"
    "    max =250\r\n"
    "  }\r\n"
    "  axes =1,2,3\r\n"
    "  axis ={\r\n"
    "    name =X\r\n"
    "  }\r\n"
    "  axis ={\r\n"
    "    name =Y\r\n"
    "    travel ={\r\n"
    "      far =7\r\n"
    "    }\r\n"
    "  }\r\n"
    "[spare]\r\n";

ProgramTest::ProgramTest()
    : directory_(make_directory(std::filesystem::temp_directory_path() / "kv-tools-")) {}

ProgramTest::~ProgramTest() {
    remove_directory(directory_);
}

std::string ProgramTest::content(const std::string &name) const {
    return read_file(path(name));
}

void ProgramTest::write(const std::string &name, const std::string &content) const {
    write_file(path(name), content);
}

void ProgramTest::expect(const std::vector<std::string> &words, int code, const std::string &out,
                         const std::string &err) const {
    std::string line = "kv env";
    for (const std::string &word : words) line += " '" + word.substr(0, 100) + "'";
    SCOPED_TRACE(line);
    std::vector<std::string> all{"env"};
    all.insert(all.end(), words.begin(), words.end());
    const Outcome outcome = run(all);
    EXPECT_EQ(outcome.code, code) << outcome.err;
    EXPECT_EQ(outcome.out, out);
    if (err.empty()) {
        EXPECT_EQ(outcome.err, "");
    } else {
        EXPECT_NE(outcome.err.find(err), std::string::npos)
            << "wanted: " << err << "\ngot: " << outcome.err;
    }
}

}  // namespace kvtest

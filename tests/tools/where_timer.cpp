// `kv where` and `kv timer`.
#include "tests/support/support.hpp"
#include "tests/tools/program.hpp"

namespace kvtest {

namespace {

class WhereAndTimer : public ProgramTest {
  protected:
    WhereAndTimer() {
        remove_variable("KV");
        std::filesystem::remove(drive_c() / "kv3.ini");
    }
    ~WhereAndTimer() override { remove_variable("KV"); }
    void expect_run(const std::vector<std::string> &words, int code, const std::string &out) const {
        const Outcome outcome = run(words);
        EXPECT_EQ(outcome.code, code) << outcome.err;
        EXPECT_EQ(outcome.out, out);
        EXPECT_EQ(outcome.err.empty(), code == 0) << outcome.err;
    }
    // The path as the library shows it.
    std::string shown(const std::string &name) const {
        std::string text = path(name).string();
        if (text[1] != ':') text = "Z:" + text;
        for (char &c : text) c = c == '/' ? '\\' : c;
        return text;
    }
};

TEST_F(WhereAndTimer, TellsThePlaces) {
    const std::string nowhere = "not found  current directory  " + shown("kv3.ini") + "\n" +
                                "not found  KV                 (not set)\n" +
                                "not found  drive C            C:\\kv3.ini\n";
    expect_run({"where"}, 1, nowhere + "not found  registry           (no entry)\n");
    const RegistryValue value("Software\\kv Software AG\\kv3.ini", "C:\\gone.ini");
    expect_run({"where"}, 1, nowhere + "not found  registry           C:\\gone.ini\n");
    write("kv3.ini", "[Pfade]\nVorlagen=C:\\nowhere;C:\\\n");
    expect_run({"where"}, 0, "found      current directory  " + shown("kv3.ini") + "\n");
    expect_run({"where", "--path"}, 0, shown("kv3.ini") + "\n");
    set_variable("KV", "C:\\");
    write_file(drive_c() / "x.txt", "");
    expect_run({"where", "x.txt", "--path"}, 0, "C:\\x.txt\n");
    remove_variable("KV");
    expect_run({"where", "x.txt", "--section", "Pfade", "--entry", "Vorlagen"}, 0,
               "not found  current directory  " + shown("x.txt") + "\n" +
                   "not found  KV                 (not set)\n" + "found      current directory  " +
                   shown("kv3.ini") + "\n" + "not found  listed directory   C:\\nowhere\\x.txt\n" +
                   "found      listed directory   C:\\x.txt\n");
    expect_run({"where", "y.txt", "--path"}, 0, shown("kv3.ini") + "\n");
    expect_run({"where", "y.txt", "--section=Pfade", "--entry=Vorlagen", "--path"}, 1, "");
    expect_run({"where", "y.txt", "--section=Pfade"}, 2, "");
    expect_run({"where", "--section=Pfade", "--entry=Vorlagen"}, 2, "");
    EXPECT_EQ(run({"where", "--help"}).out.find("Usage: kv where"), 0U);
}

}  // namespace

}  // namespace kvtest

// SPDX-License-Identifier: MIT
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
    expect_run({"where"}, 1, nowhere + "not found  registry           (no entry)\n",
               "'kv3.ini' is not found");
    const std::string json = run({"where", "--json"}).out;
    EXPECT_EQ(
        json.find("[\n{\"place\": \"current directory\", \"path\": \"" + shown("kv3.ini").substr(0, 2)),
        0U);
    EXPECT_NE(json.find("{\"place\": \"registry\", \"path\": null, \"found\": false}\n]\n"), json.npos)
        << json;
    const RegistryValue value("Software\\kv Software AG\\kv3.ini", "C:\\gone.ini");
    expect_run({"where"}, 1, nowhere + "not found  registry           C:\\gone.ini\n", "not found");
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
    expect_run({"where", "y.txt", "--section=Pfade", "--entry=Vorlagen", "--path"}, 1, "",
               "'y.txt' is not found");
    expect_run({"where", "y.txt", "--section=Pfade"}, 2, "", "belong together");
    expect_run({"where", "--section=Pfade", "--entry=Vorlagen"}, 2, "", "needs a NAME");
}

}  // namespace

}  // namespace kvtest

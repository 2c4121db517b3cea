// SPDX-License-Identifier: MIT
// The configuration search: the order of the places, the reports, and what a hostile file can do.
#include <filesystem>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

#include "kv/config.h"
#include "kv/fio.h"
#include "kv/frame.h"

#include "tests/support/support.hpp"

namespace {

constexpr char kUntouched[] = "untouched";

// Directories on drive C: "work" is the current one, "kv" the one that KV names, "a" and "b" are listed.
class Search : public testing::Test {
  protected:
    Search() {
        kvtest::empty_drive_c();
        for (const char *name : {"work", "kv", "a", "b"}) {
            std::filesystem::create_directories(kvtest::drive_c() / name);
        }
        kv_putenv("kv=");  // on Windows the same as KV
        kv_putenv("KV=C:\\kv");
        EXPECT_EQ(fio_chdir("C:\\work"), 0);
    }
    ~Search() override { fio_chdir("Z:\\"); }

    static void write(const std::string &name, const std::string &content = "") {
        kvtest::write_file(kvtest::drive_c() / name, content);
    }
    static void remove(const std::string &name) { std::filesystem::remove(kvtest::drive_c() / name); }
    // Makes `path` the registry's default value for the file.
    void write_registry(const std::string &filename, const std::string &path) {
        value_.emplace("Software\\kv Software AG\\" + filename, path);
    }
    // The path found; "untouched" for none.
    static std::string find(const char *section, const char *entry, const char *filename) {
        char out[256] = "untouched";
        const int32_t result = kv_suche_datei(section, entry, filename, out);
        EXPECT_EQ(result, std::string(out) == kUntouched ? -1 : 0);
        return out;
    }
    static std::string path_setting(const char *section, const char *entry) {
        char out[256] = "untouched";
        const int32_t result = kv_suche_pfad(section, entry, out);
        EXPECT_EQ(result, std::string(out) == kUntouched ? -1 : 0);
        return out;
    }
    static void expect_reports(const std::vector<std::string> &texts) {
        for (const std::string &text : texts)
            EXPECT_EQ(kvtest::count_in_log("  " + text + "!\n"), 1) << text;
        EXPECT_EQ(kvtest::count_in_log("\"Kv\""), static_cast<int>(texts.size())) << kvtest::read_log();
        kvtest::clear_log();
    }
    struct Step {
        const char *change;  // "-" and a file to be removed, or a variable's setting
        const char *entry;   // of the section "System" in the main file
        const char *file, *found;
        std::vector<std::string> reports = {};
    };
    static void expect(const std::vector<Step> &steps) {
        for (const Step &step : steps) {
            if (step.change[0] == '-') {
                remove(step.change + 1);
            } else {
                kv_putenv(step.change);
            }
            EXPECT_EQ(find(step.entry != nullptr ? "System" : nullptr, step.entry, step.file), step.found)
                << step.change;
            expect_reports(step.reports);
        }
    }

  private:
    std::optional<kvtest::RegistryValue> value_;
};

TEST_F(Search, MainFileInOrder) {
    for (const char *name : {"work/kv3.ini", "kv/kv3.ini", "kv3.ini", "a/other.ini"}) write(name);
    write_registry("kv3.ini", "C:\\a\\other.ini");
    expect({
        {"", nullptr, nullptr, "C:\\work\\kv3.ini"},
        {"-work/kv3.ini", nullptr, nullptr, "C:\\kv\\kv3.ini"},
        {"KV=", nullptr, nullptr, "C:\\kv3.ini"},
        {"KV=C:/kv/", nullptr, nullptr, "C:\\kv\\kv3.ini"},
        {"-kv/kv3.ini", nullptr, nullptr, "C:\\kv3.ini"},
        {"-kv3.ini", nullptr, nullptr, "C:\\a\\other.ini"},
        {"-a/other.ini", nullptr, nullptr, kUntouched, {"File C:\\kv3.ini not found"}},
    });
}

TEST_F(Search, OtherFilesInOrder) {
    write("kv/kv3.ini", "[System]\nProfile=C:\\a;;C:\\missing;C:/b/\nLeer=\n");
    for (const char *name : {"work/x.pro", "kv/x.pro", "a/x.pro", "b/x.pro"}) write(name);
    expect({
        {"", "Profile", "x.pro", "C:\\work\\x.pro"},
        {"", nullptr, "C:/b/x.pro", "C:\\b\\x.pro"},
        {"", nullptr, "\\b/x.pro", "C:\\b\\x.pro"},  // absolute but without a drive
        {"", nullptr, "..\\b\\x.pro", "C:\\work\\..\\b\\x.pro"},
        {"-work/x.pro", "Profile", "x.pro", "C:\\kv\\x.pro"},
        {"-kv/x.pro", "Profile", "x.pro", "C:\\a\\x.pro"},
        {"-a/x.pro", "Profile", "x.pro", "C:\\b\\x.pro"},
        {"", "Nichts", "", kUntouched},  // a directory is not a file without a name
        // Without an entry to look into, the main file itself.
        {"", nullptr, "x.pro", "C:\\kv\\kv3.ini"},
        {"", "", "x.pro", "C:\\kv\\kv3.ini"},
    });
    EXPECT_EQ(find("", "Profile", "x.pro"), "C:\\kv\\kv3.ini");
    write_registry("x.pro", "C:\\b\\x.pro");
    expect({
        {"", "Matten", "x.pro", "C:\\b\\x.pro"},  // no such entry: the registry
        {"-b/x.pro", "Matten", "x.pro", kUntouched},
        {"", "Profile", "x.pro", kUntouched, {"File x.pro in C:\\a;;C:\\missing;C:/b/ not found"}},
        {"", "Leer", "x.pro", kUntouched, {"File x.pro in  not found"}},
    });
    write("b/x.pro");
    expect({{"-kv/kv3.ini", "Profile", "x.pro", "C:\\b\\x.pro", {"File C:\\kv3.ini not found"}}});
}

TEST_F(Search, PathSettings) {
    write("work/kv3.ini", "Ohne=C:\\o\n[Pfade]\nDaten=d:/data/\nLeer=\nWurzel=C:\\\n");
    EXPECT_EQ(path_setting("Pfade", "Daten"), "d:\\data");
    EXPECT_EQ(path_setting("Pfade", "Leer"), "");
    EXPECT_EQ(path_setting("Pfade", "Wurzel"), "C:\\");
    EXPECT_EQ(path_setting(nullptr, "Ohne"), "C:\\o");
    expect_reports({});
    EXPECT_EQ(path_setting("Pfade", "Fehlt"), kUntouched);
    expect_reports({"Section Pfade or Entry Fehlt in C:\\work\\kv3.ini not found"});
    EXPECT_EQ(path_setting(nullptr, nullptr), kUntouched);
    expect_reports({"Section  or Entry  in C:\\work\\kv3.ini not found"});
    remove("work/kv3.ini");
    EXPECT_EQ(path_setting("Pfade", "Daten"), kUntouched);
    expect_reports({"File C:\\kv3.ini not found", "File kv3.ini  not found"});
}

TEST_F(Search, IniPaths) {
    kv_putenv("KV=");
    write("work/kv3.ini", "[Pfade]\ncalc=C:\\wrong\n");  // not searched
    EXPECT_STREQ(kv_getinipath("kv"), "c:\\kv3.ini");
    EXPECT_STREQ(kv_getinipath("calc"), "c:\\calc.ini");
    write("kv3.ini", "[Pfade]\ncalc=C:\\a\\rechner.ini\n");
    EXPECT_STREQ(kv_getinipath("calc"), "C:\\a\\rechner.ini");
    write("a/main.ini", "[Pfade]\ncalc=C:/b/\nkv=C:\\wrong\n");
    kv_putenv("kv=C:\\a\\main.ini");
    EXPECT_STREQ(kv_getinipath("kv"), "C:\\a\\main.ini");
    const char *path = kv_getinipath("calc");
    EXPECT_STREQ(path, "C:/b/");
    EXPECT_EQ(kv_getinipath("KV"), path);  // the one buffer
    EXPECT_STREQ(path, "c:\\KV.ini");
    expect_reports({});
}

// Buffers have 256 bytes: the sanitizer sees one too many, and the fuzz target tries other values.
TEST_F(Search, LongValues) {
    kv_putenv("KV=");
    const std::string longest = "C:\\" + std::string(252, 'x');
    const std::string list256 = "C:\\missing;" + std::string(240, ' ') + ";C:\\b";
    write("kv3.ini", "[Pfade]\n255=" + longest + "\n256=" + longest + "y\nlist=" + list256 +
                         "\nlist257=" + list256 + ";\nend=" + longest + "\\\n");
    EXPECT_EQ(kv_getinipath("255"), longest);
    EXPECT_STREQ(kv_getinipath("256"), "c:\\256.ini");
    EXPECT_EQ(kv_getinipath(std::string(248, 'n').c_str()), "c:\\" + std::string(248, 'n') + ".ini");
    EXPECT_STREQ(kv_getinipath(std::string(249, 'n').c_str()), "");
    EXPECT_EQ(path_setting("Pfade", "255"), longest);
    EXPECT_EQ(path_setting("Pfade", "end"), longest);
    EXPECT_EQ(path_setting("Pfade", "256"), kUntouched);
    write("b/x.pro");
    EXPECT_EQ(find("Pfade", "list", "x.pro"), "C:\\b\\x.pro");
    EXPECT_EQ(find("Pfade", "list257", "x.pro"), kUntouched);
    const std::string deep(120, 'd');
    std::filesystem::create_directories(kvtest::drive_c() / deep / deep);
    write(deep + '/' + deep + "/xxxxxx.ini");
    const std::string path = "C:\\" + deep + '\\' + deep + "\\xxxxxx.ini";
    ASSERT_EQ(path.size(), 255U);
    write_registry("y.pro", path);
    EXPECT_EQ(find("Pfade", "none", "y.pro"), path);
}

TEST_F(Search, TellsThePlaces) {
    write("kv/kv3.ini", "[System]\nMatten=C:\\a;C:\\b\n");
    write("b/x.mat");
    std::string places;
    const kv_place_function visit = [](int32_t place, const char *path, int32_t found, void *user) {
        *static_cast<std::string *>(user) +=
            std::to_string(place) + (found == 1 ? "+" : "-") + (path != nullptr ? path : "NIL") + "\n";
    };
    EXPECT_EQ(kv_suche_orte("System", "Matten", "x.mat", visit, &places), 0);
    EXPECT_EQ(places,
              "1-C:\\work\\x.mat\n2-C:\\kv\\x.mat\n1-C:\\work\\kv3.ini\n2+C:\\kv\\kv3.ini\n"
              "5-C:\\a\\x.mat\n5+C:\\b\\x.mat\n");
    places.clear();
    EXPECT_EQ(kv_suche_orte(nullptr, nullptr, "x.mat", visit, &places), 0);
    EXPECT_EQ(places.substr(places.find("6")), "6+C:\\kv\\kv3.ini\n");
    places.clear();
    remove("kv/kv3.ini");
    kv_putenv("KV=");
    write_registry("kv3.ini", "C:\\nowhere");
    EXPECT_EQ(kv_suche_orte(nullptr, nullptr, nullptr, visit, &places), -1);
    EXPECT_EQ(places, "1-C:\\work\\kv3.ini\n2-NIL\n3-C:\\kv3.ini\n4-C:\\nowhere\n");
    kvtest::clear_log();
}

}  // namespace

// The configuration search: the order of the places, the reports, and what a hostile file can do.
#include <filesystem>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

#include "kv/config.h"
#include "kv/fio.h"
#include "kv/frame.h"
#include "kv/ini.h"

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
    static std::string find_main() { return find(nullptr, nullptr, nullptr); }
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

  private:
    std::optional<kvtest::RegistryValue> value_;
};

TEST_F(Search, MainFileInOrder) {
    write("work/kv3.ini");
    write("kv/kv3.ini");
    write("kv3.ini");
    write("a/other.ini");
    write_registry("kv3.ini", "C:\\a\\other.ini");
    EXPECT_EQ(find_main(), "C:\\work\\kv3.ini");
    remove("work/kv3.ini");
    EXPECT_EQ(find_main(), "C:\\kv\\kv3.ini");
    kv_putenv("KV=C:/kv/");
    EXPECT_EQ(find_main(), "C:\\kv\\kv3.ini");
    kv_putenv("KV=");
    EXPECT_EQ(find_main(), "C:\\kv3.ini");
    kv_putenv("KV=C:\\kv");
    remove("kv/kv3.ini");
    EXPECT_EQ(find_main(), "C:\\kv3.ini");
    remove("kv3.ini");
    EXPECT_EQ(find_main(), "C:\\a\\other.ini");
    expect_reports({});
    remove("a/other.ini");
    EXPECT_EQ(find_main(), kUntouched);
    expect_reports({"File C:\\kv3.ini not found"});
}

TEST_F(Search, OtherFilesInOrder) {
    write("kv/kv3.ini", "[System]\nProfile=C:\\a;;C:\\missing;C:/b/\nLeer=\n");
    for (const char *name : {"work/x.pro", "kv/x.pro", "a/x.pro", "b/x.pro"}) write(name);
    EXPECT_EQ(find("System", "Profile", "x.pro"), "C:\\work\\x.pro");
    EXPECT_EQ(find(nullptr, nullptr, "C:/b/x.pro"), "C:\\b\\x.pro");
    // Absolute but without a drive: the path has to lead to the file.
    EXPECT_EQ(find(nullptr, nullptr, "\\b/x.pro"), "C:\\b\\x.pro");
    EXPECT_EQ(find(nullptr, nullptr, "..\\b\\x.pro"), "C:\\work\\..\\b\\x.pro");
    remove("work/x.pro");
    EXPECT_EQ(find("System", "Profile", "x.pro"), "C:\\kv\\x.pro");
    remove("kv/x.pro");
    EXPECT_EQ(find("System", "Profile", "x.pro"), "C:\\a\\x.pro");
    remove("a/x.pro");
    EXPECT_EQ(find("System", "Profile", "x.pro"), "C:\\b\\x.pro");
    EXPECT_EQ(find("System", "Nichts", ""), kUntouched);  // a directory is not a file without a name
    // Without an entry to look into, the main file itself.
    for (const char *nothing : {static_cast<const char *>(nullptr), ""}) {
        EXPECT_EQ(find(nothing, "Profile", "x.pro"), "C:\\kv\\kv3.ini");
        EXPECT_EQ(find("System", nothing, "x.pro"), "C:\\kv\\kv3.ini");
    }
    expect_reports({});
    write_registry("x.pro", "C:\\b\\x.pro");
    EXPECT_EQ(find("System", "Matten", "x.pro"), "C:\\b\\x.pro");  // no such entry: the registry
    expect_reports({});
    remove("b/x.pro");
    EXPECT_EQ(find("System", "Matten", "x.pro"), kUntouched);
    expect_reports({});
    EXPECT_EQ(find("System", "Profile", "x.pro"), kUntouched);
    expect_reports({"File x.pro in C:\\a;;C:\\missing;C:/b/ not found"});
    EXPECT_EQ(find("System", "Leer", "x.pro"), kUntouched);
    expect_reports({"File x.pro in  not found"});
    write("b/x.pro");
    remove("kv/kv3.ini");
    EXPECT_EQ(find("System", "Profile", "x.pro"), "C:\\b\\x.pro");
    expect_reports({"File C:\\kv3.ini not found"});
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

// Buffers have 256 bytes: the sanitizer sees one too many.
TEST_F(Search, LongValues) {
    kv_putenv("KV=");
    const std::string longest = "C:\\" + std::string(252, 'x');
    const std::string value256 = longest + "y";
    const std::string value600(600, 'z');
    const std::string list256 = "C:\\missing;" + std::string(240, ' ') + ";C:\\b";
    write("kv3.ini", "[Pfade]\n255=" + longest + "\n256=" + value256 + "\n600=" + value600 +
                         "\nlist=" + list256 + "\nlist257=" + list256 + ";\nend=" + longest + "\\\n");
    EXPECT_EQ(kv_getinipath("255"), longest);
    EXPECT_STREQ(kv_getinipath("256"), "c:\\256.ini");
    EXPECT_STREQ(kv_getinipath("600"), "c:\\600.ini");
    EXPECT_EQ(kv_getinipath(std::string(248, 'n').c_str()), "c:\\" + std::string(248, 'n') + ".ini");
    EXPECT_STREQ(kv_getinipath(std::string(249, 'n').c_str()), "");
    EXPECT_EQ(path_setting("Pfade", "255"), longest);
    EXPECT_EQ(path_setting("Pfade", "end"), longest);
    EXPECT_EQ(path_setting("Pfade", "256"), kUntouched);
    EXPECT_EQ(path_setting("Pfade", "600"), kUntouched);
    ASSERT_EQ(list256.size(), 256U);
    write("b/x.pro");
    EXPECT_EQ(find("Pfade", "list", "x.pro"), "C:\\b\\x.pro");
    EXPECT_EQ(find("Pfade", "list257", "x.pro"), kUntouched);
    for (const std::size_t size : {247U, 248U, 1000U, 5000U}) {
        EXPECT_EQ(find("Pfade", "list", std::string(size, 'n').c_str()), kUntouched) << size;
    }
    for (const std::string &value : {longest, value256, value600, std::string(9000, '@'), std::string()}) {
        write_registry("y.pro", value);
        EXPECT_EQ(find("Pfade", "none", "y.pro"), kUntouched) << value.size();
    }
    const std::string deep = std::string(120, 'd') + "\\" + std::string(120, 'd') + "\\xxxxxx.ini";
    std::string host = deep;
    host[120] = host[241] = '/';
    std::filesystem::create_directories((kvtest::drive_c() / host).parent_path());
    write(host);
    const std::string path = "C:\\" + deep;
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

TEST_F(Search, IniFilesWithoutAPath) {
    write("kv/kv3.ini", "[s]\nkey=found\n");
    char buffer[80] = "";
    int32_t size = 79;
    EXPECT_EQ(ini_read_string(nullptr, "s", "key", buffer, &size), INI_OK);
    EXPECT_STREQ(buffer, "found");
    EXPECT_EQ(ini_write_string("", "s", "key", "changed"), INI_OK);
    EXPECT_EQ(kvtest::read_file(kvtest::drive_c() / "kv/kv3.ini"), "[s]\r\nkey=changed\r\n");
    remove("kv/kv3.ini");
    EXPECT_EQ(ini_read_string("", "s", "key", buffer, &size), INI_FAILED);
    expect_reports({"File C:\\kv3.ini not found"});
}

}  // namespace

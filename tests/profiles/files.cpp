// SPDX-License-Identifier: MIT
// Where tables are: names, directories, the configuration, and the search over all files.
#include <cstring>
#include <filesystem>
#include <set>

#include "tests/profiles/tables.hpp"

namespace {

// Tables that tell by their only entry where they are.
class ProfilesFiles : public testing::Test {
  protected:
    ProfilesFiles() {
        kvtest::empty_drive_c();
        for (const char *file : {"p/heb.pro", "m/q188.mtt", "w/here.pro", "w/d/deep.pro", "w/heb.dat",
                                 "top.pro", "p/Case.PRO", "w/d.x/dotted.pro", "w/.hidden", "w/.pro"}) {
            write(file, std::string("T S A\nx 1 1\n") + file + " 2 3\n");
        }
        kv_putenv("KV=");
        EXPECT_EQ(fio_chdir("C:\\w"), 0);
        write("kv3.ini", "[System]\nProfile=C:\\p\nMatten=c:/m/\n");
        profil_path(nullptr);
    }
    ~ProfilesFiles() override {
        fio_chdir("Z:\\");
        kvtest::clear_log();
    }

    static void write(const std::string &name, const std::string &content) {
        std::filesystem::create_directories((kvtest::drive_c() / name).parent_path());
        kvtest::write_file(kvtest::drive_c() / name, content);
    }
    static std::string place(PROFIL *handle) {
        const kvtest::Table table(handle);
        char name[PROFIL_NAME_SIZE];
        if (table == nullptr || profil_get(table.get(), "2", nullptr, name) != 0) return "-";
        return std::string(name, std::strlen(name) - 2);
    }
    static std::string profile(const std::string &name) {
        return place(profil_open(name.c_str(), kNone, nullptr));
    }
    static std::string mat(const char *name) { return place(matte_open(name, kNone)); }

    static constexpr const char *kNone[] = {nullptr};
};

TEST_F(ProfilesFiles, Names) {
    using Row = std::pair<const char *, const char *>;
    for (const auto &[name, file] :
         {Row{"heb", "p/heb.pro"}, Row{"HEB", "p/heb.pro"}, Row{"heb.pro", "p/heb.pro"},
          Row{"case", "p/Case.PRO"}, Row{"heb ", "-"}, Row{"here", "-"}, Row{"", "-"}, Row{"none", "-"},
          Row{"c:\\w\\heb.DAT", "w/heb.dat"}, Row{"c:\\w\\heb", "-"}, Row{"c:/p/heb", "p/heb.pro"},
          // With a directory.
          Row{".\\here", "w/here.pro"}, Row{"./here", "w/here.pro"}, Row{"..\\top", "top.pro"},
          Row{".\\..\\top", "top.pro"}, Row{"..\\..\\..\\top", "top.pro"}, Row{"..\\p\\heb", "p/heb.pro"},
          Row{"../p/heb", "p/heb.pro"}, Row{"\\top", "top.pro"}, Row{"/top", "top.pro"},
          Row{"d\\deep", "w/d/deep.pro"}, Row{"d/deep", "w/d/deep.pro"},
          Row{".\\d.x\\dotted", "w/d.x/dotted.pro"}, Row{".\\.hidden", "w/.hidden"}, Row{"c:top", "-"},
          Row{"c:here", "w/here.pro"}}) {
        EXPECT_EQ(profile(name), file) << name;
    }
    EXPECT_EQ(mat("q188"), "m/q188.mtt");
    EXPECT_EQ(mat("c:\\m\\Q188"), "m/q188.mtt");
    EXPECT_EQ(mat("heb"), "-");
    for (const std::size_t size : {247U, 255U, 256U, 300U, 5000U}) {
        EXPECT_EQ(profile(std::string(size, 'n')) + profile("c:\\" + std::string(size, 'n')), "--");
    }
}

TEST_F(ProfilesFiles, Directories) {
    profil_path("  C:\\w\\d ");
    EXPECT_EQ(profile("deep"), "w/d/deep.pro");
    EXPECT_EQ(mat("q188"), "m/q188.mtt");
    profil_path("..");
    EXPECT_EQ(profile("top"), "top.pro");
    profil_path(".\\d");
    EXPECT_EQ(profile("deep"), "w/d/deep.pro");
    profil_path("   ");
    EXPECT_EQ(profile("heb"), "p/heb.pro");
    write("kv3.ini", "[System]\n");
    EXPECT_EQ(profile("heb"), "p/heb.pro");  // as read by profil_path()
    EXPECT_EQ(mat("q188"), "-");
    profil_path("");
    EXPECT_EQ(profile("here"), "w/here.pro");  // the current directory
    write("kv3.ini", "[System]\nProfile=C:\\p\nMatten=" + std::string(300, 'm') + "\n");
    EXPECT_EQ(profile("heb"), "p/heb.pro");  // read each time
    EXPECT_EQ(mat("q188"), "-");
    profil_path(std::string(300, 'd').c_str());
    EXPECT_EQ(profile("heb"), "-");
    EXPECT_EQ(kvtest::read_log(), "");
}

TEST_F(ProfilesFiles, FindFiles) {
    const auto find = [](const char *pattern) {
        int32_t count = 77;
        char(*list)[PROFIL_FIELD_SIZE] = nullptr;
        const int32_t result = profil_findfiles(pattern, &count, &list);
        std::set<std::string> names(list, list + count);
        EXPECT_EQ(list == nullptr, count == 0);
        heap_free(list);
        std::string found = std::to_string(result) + ":";
        for (const std::string &name : names) found += " " + name;
        return found;
    };
    write("p/a.b.PRO", "T S A\nHEB 200 1\n");
    write("p/b.pro", "T S A\nHEB 300 1\nheb 200.0 1\n");
    write("p/none.pro", "no table");
    write("p/c.txt", "T S A\nHEB 200 1\n");
    std::filesystem::create_directories(kvtest::drive_c() / "p/dir.pro");
    EXPECT_EQ(find("HEB200"), "1: a b");
    EXPECT_EQ(find(" HEB 2\t00 "), "1: a b");
    EXPECT_EQ(find("HEB300"), "1: b");
    EXPECT_EQ(find("HEB301"), "1:");
    EXPECT_EQ(find(""), "1: Case a b heb");
    profil_path("C:\\m");
    EXPECT_EQ(find(""), "0:");
    profil_path("C:\\missing");
    EXPECT_EQ(find(""), "0:");
    profil_path("..\\p");
    EXPECT_EQ(find("HEB300"), "1: b");
}

}  // namespace

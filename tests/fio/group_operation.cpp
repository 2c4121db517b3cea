// Groups of files and directories; the trash.
#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <regex>
#include <stdlib.h>
#include <string>
#include <unistd.h>

#include "kv/fio.h"

#include "tests/support/support.hpp"

namespace {

namespace fs = std::filesystem;

class Groups : public testing::Test {
  protected:
    void SetUp() override {
        fs::create_directories(root() / "Src/deep/er");
        fs::create_directories(root() / "data");
        kvtest::write_file(root() / "Src/a.txt", "a");
        kvtest::write_file(root() / "Src/b.txt", "b");
        kvtest::write_file(root() / "Src/deep/er/c.txt", "c");
        fs::create_symlink("../a.txt", root() / "Src/deep/link");
        fs::create_directories(root() / "kept");
        kvtest::write_file(root() / "kept/file", "kept");
        fs::create_directory_symlink(root() / "kept", root() / "Src/deep/dirlink");
        setenv("XDG_DATA_HOME", (root() / "data").c_str(), 1);
    }
    void TearDown() override {
        unsetenv("XDG_DATA_HOME");
        fs::remove_all(root());
    }

    static fs::path root() { return kvtest::drive_c() / "g"; }
    static std::string at(const char *name) { return kvtest::read_file(root() / name); }
    static bool exists(const char *name) { return fs::exists(fs::symlink_status(root() / name)); }
};

int32_t run(int32_t operation, std::initializer_list<const char *> from, const char *todir,
            std::initializer_list<const char *> to = {}, int32_t files_only = 0) {
    std::vector<const char *> names(from);
    names.push_back(nullptr);
    std::vector<const char *> new_names(to);
    new_names.push_back(nullptr);
    return fio_group_operation("c:\\g\\src", names.data(), todir,
                               to.size() > 0 ? new_names.data() : nullptr, operation, files_only, nullptr,
                               nullptr);
}

TEST_F(Groups, CopyUnderOldAndNewNames) {
    EXPECT_EQ(run(FIO_GROUP_COPY, {"A.TXT", "deep"}, "c:\\g\\new\\place"), 0);
    EXPECT_EQ(at("new/place/a.txt"), "");  // the copy has the name that was given
    EXPECT_EQ(at("new/place/A.TXT"), "a");
    EXPECT_EQ(at("new/place/deep/er/c.txt"), "c");
    EXPECT_EQ(fs::read_symlink(root() / "new/place/deep/link"), "../a.txt");
    EXPECT_TRUE(fs::is_symlink(root() / "new/place/deep/dirlink"));
    EXPECT_EQ(run(FIO_GROUP_COPY, {"a.txt", "b.txt"}, "c:\\g", {"one", "two"}), 0);
    EXPECT_EQ(at("one") + at("two"), "ab");
    EXPECT_EQ(run(FIO_GROUP_COPY, {"a.txt"}, "c:\\g", {"two"}), 0);  // replaces
    EXPECT_EQ(at("two"), "a");
    EXPECT_EQ(run(FIO_GROUP_COPY, {"b.txt"}, "c:\\g", {"kept"}), 0);  // into the directory
    EXPECT_EQ(at("kept/b.txt"), "b");
}

TEST_F(Groups, PatternsStandForWhatMatches) {
    EXPECT_EQ(run(FIO_GROUP_COPY, {"*.*"}, "c:\\g\\files", {}, 1), 0);
    EXPECT_EQ(at("files/a.txt") + at("files/b.txt"), "ab");
    EXPECT_FALSE(exists("files/deep"));
    EXPECT_EQ(run(FIO_GROUP_COPY, {"*"}, "c:\\g\\all"), 0);
    EXPECT_EQ(at("all/deep/er/c.txt"), "c");
    EXPECT_EQ(run(FIO_GROUP_DELETE, {"?.txt"}, nullptr), 0);
    EXPECT_FALSE(exists("Src/a.txt"));
    EXPECT_TRUE(exists("Src/deep"));
    EXPECT_EQ(run(FIO_GROUP_DELETE, {"?.txt"}, nullptr), 2);
}

TEST_F(Groups, Move) {
    EXPECT_EQ(run(FIO_GROUP_MOVE, {"a.txt", "deep"}, "c:\\g\\new"), 0);
    EXPECT_EQ(at("new/a.txt"), "a");
    EXPECT_EQ(at("new/deep/er/c.txt"), "c");
    EXPECT_FALSE(exists("Src/a.txt") || exists("Src/deep"));
    EXPECT_EQ(run(FIO_GROUP_MOVE, {"b.txt"}, "c:\\g\\src", {"B.TXT"}), 0);
    EXPECT_EQ(at("Src/B.TXT"), "b");
    fs::create_directories(root() / "Src/deep");
    kvtest::write_file(root() / "Src/deep/d.txt", "d");
    EXPECT_EQ(run(FIO_GROUP_MOVE, {"deep"}, "c:\\g\\new"), 0);  // fills the directory that is there
    EXPECT_EQ(at("new/deep/er/c.txt") + at("new/deep/d.txt"), "cd");
    EXPECT_FALSE(exists("Src/deep"));
}

TEST_F(Groups, WhatCannotBeDoneChangesNothing) {
    EXPECT_EQ(run(FIO_GROUP_COPY, {"deep"}, "c:\\g\\src\\deep\\er"), 2);
    EXPECT_EQ(run(FIO_GROUP_MOVE, {"deep"}, "c:\\g\\src\\deep\\er"), 2);
    EXPECT_EQ(run(FIO_GROUP_COPY, {"a.txt"}, "c:\\g\\src"), 2);
    EXPECT_EQ(run(FIO_GROUP_MOVE, {"a.txt"}, "c:\\g\\src"), 2);
    EXPECT_EQ(run(FIO_GROUP_COPY, {"a.txt", "none"}, "c:\\g\\new"), 2);
    EXPECT_EQ(run(FIO_GROUP_COPY, {"a.txt", "b.txt"}, "c:\\g\\new", {"one"}), 2);
    EXPECT_EQ(run(FIO_GROUP_DELETE, {"a.txt", "deep"}, nullptr, {}, 1), 2);
    EXPECT_FALSE(exists("new"));
    EXPECT_EQ(at("Src/a.txt") + at("Src/deep/er/c.txt"), "ac");
    EXPECT_EQ(run(FIO_GROUP_COPY, {"deep"}, "c:\\g\\src", {"a.txt"}), 2);
    EXPECT_EQ(at("Src/a.txt"), "a");
    EXPECT_EQ(run(FIO_GROUP_COPY, {}, "c:\\g\\new"), 0);  // nothing to do
}

TEST_F(Groups, MisuseIsReported) {
    kvtest::clear_log();
    EXPECT_EQ(run(3, {"a.txt"}, "c:\\g"), 2);
    EXPECT_EQ(fio_group_operation("c:\\g", nullptr, "c:\\", nullptr, 0, 0, nullptr, nullptr), 2);
    const std::string long_name(300, 'n');
    EXPECT_EQ(run(FIO_GROUP_DELETE, {"a.txt", long_name.c_str()}, nullptr), 2);
    EXPECT_EQ(run(FIO_GROUP_COPY, {"a.txt"}, "c:\\g", {long_name.c_str()}), 2);
    for (const char *text :
         {"Bad fioOperation", "pFrom == NIL!", "Wrong 'from' names", "Wrong 'to' names"}) {
        EXPECT_EQ(kvtest::count_in_log(text), 1) << text;
    }
    EXPECT_EQ(at("Src/a.txt"), "a");
}

TEST_F(Groups, DeepTreesCostNoStack) {
    fs::path deep = root() / "Src/tower";
    for (int level = 0; level < 700; ++level) deep /= "d";
    fs::create_directories(deep);
    EXPECT_EQ(run(FIO_GROUP_COPY, {"tower"}, "c:\\g\\new"), 0);
    EXPECT_TRUE(fs::exists(root() / "new" / deep.lexically_relative(root() / "Src")));
}

TEST_F(Groups, TheTrashKeepsWhatIsDeleted) {
    const std::regex info(
        "\\[Trash Info\\]\nPath=(.*)\nDeletionDate=\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\n");
    const std::string odd = "50% \xC3\xA4 [x].txt";
    kvtest::write_file(root() / "Src" / odd, "odd");
    EXPECT_EQ(fio_purge_ex("c:\\g\\src", odd.c_str(), 1), 0);
    EXPECT_FALSE(exists(("Src/" + odd).c_str()));
    EXPECT_EQ(at(("data/Trash/files/" + odd).c_str()), "odd");
    std::smatch match;
    const std::string text = at(("data/Trash/info/" + odd + ".trashinfo").c_str());
    ASSERT_TRUE(std::regex_match(text, match, info)) << text;
    EXPECT_EQ(match[1], fs::canonical(root()).string() + "/Src/50%25%20%C3%A4%20%5Bx%5D.txt");

    for (const char *content : {"1", "2", "3"}) {  // the same name again and again
        kvtest::write_file(root() / "Src/a.txt", content);
        EXPECT_EQ(run(FIO_GROUP_DELETE, {"a.txt"}, nullptr), 0);
    }
    EXPECT_EQ(
        at("data/Trash/files/a.txt") + at("data/Trash/files/a.txt.2") + at("data/Trash/files/a.txt.3"),
        "123");
    kvtest::write_file(root() / "data/Trash/files/b.txt", "somebody else's");
    EXPECT_EQ(run(FIO_GROUP_DELETE, {"b.txt"}, nullptr), 0);
    EXPECT_EQ(at("data/Trash/files/b.txt.2"), "b");
    EXPECT_FALSE(exists("data/Trash/info/b.txt.trashinfo"));

    EXPECT_EQ(fio_purge_ex("c:\\g\\src", "deep", 1), -1);
    EXPECT_EQ(fio_rmdir_ex("c:\\g\\src\\deep", 1), 0);
    EXPECT_EQ(at("data/Trash/files/deep/er/c.txt"), "c");
    EXPECT_EQ(at("kept/file"), "kept");
    EXPECT_FALSE(exists("Src/deep"));
    EXPECT_EQ(fio_rmdir_ex("c:\\g", 1), -1);  // the trash itself lies in it
    EXPECT_EQ(at("kept/file"), "kept");

    const std::string longest(250, 'n');
    kvtest::write_file(root() / "Src" / longest, "long");
    EXPECT_EQ(fio_chdir("c:\\g\\src"), 0);  // the path alone would be too long
    EXPECT_EQ(fio_purge_ex(nullptr, longest.c_str(), 1), 0);
    EXPECT_EQ(fio_chdir("c:\\"), 0);
    EXPECT_EQ(fio_sethostname("z"), 0);
    EXPECT_EQ(at(("data/Trash/files/" + longest.substr(0, 245)).c_str()), "long");
}

TEST_F(Groups, FilesOfAnotherFileSystemStayRestorable) {
    char name[] = "/dev/shm/kv-trash-XXXXXX";
    ASSERT_NE(mkdtemp(name), nullptr);
    const fs::path shm = name;
    kvtest::write_file(shm / "f.txt", "shm");
    EXPECT_EQ(fio_purge_ex(name, "f.txt", 1), 0);
    EXPECT_FALSE(fs::exists(shm / "f.txt"));
    const fs::path top = "/dev/shm/.Trash-" + std::to_string(geteuid());
    if (fs::exists(top)) {
        std::string info;
        for (const auto &entry : fs::directory_iterator(top / "info")) {
            const std::string text = kvtest::read_file(entry.path());
            if (text.find("Path=" + shm.filename().string() + "/f.txt\n") == std::string::npos) continue;
            info = entry.path().stem().string();
            fs::remove(entry.path());
        }
        EXPECT_EQ(kvtest::read_file(top / "files" / info), "shm");
        fs::remove(top / "files" / info);
        fs::remove(top / "files");
        fs::remove(top / "info");
        fs::remove(top);
    } else {
        EXPECT_EQ(at("data/Trash/files/f.txt"), "shm");
    }
    fs::remove_all(shm);
}

TEST_F(Groups, AnExhaustedHeapLosesNothing) {
    kvtest::sweep_allocation_failures([](int64_t) {
        const int32_t copied = run(FIO_GROUP_COPY, {"deep", "*.txt"}, "c:\\g\\swept");
        const bool whole = at("swept/a.txt") == "a" && at("swept/deep/er/c.txt") == "c";
        EXPECT_TRUE(copied != 0 || whole);
        fs::remove_all(root() / "swept");
    });
    kvtest::sweep_allocation_failures([](int64_t) {
        const int32_t moved = run(FIO_GROUP_DELETE, {"a.txt"}, nullptr);
        const std::string kept = at("data/Trash/files/a.txt");
        EXPECT_EQ(moved == 0 ? kept : at("Src/a.txt"), "a");
        fs::remove_all(root() / "data/Trash");
        kvtest::write_file(root() / "Src/a.txt", "a");
    });
    EXPECT_EQ(at("Src/deep/er/c.txt"), "c");
}

}  // namespace

// SPDX-License-Identifier: MIT
// Groups of files where links, the desktop's trash and long paths come in: as POSIX has them.
#include <cstdlib>
#include <regex>
#include <unistd.h>

#include "tests/fio/groups.hpp"

namespace {

namespace fs = std::filesystem;
using kvtest::run;

class GroupsOnPosix : public kvtest::Groups {
  protected:
    void SetUp() override {
        Groups::SetUp();
        fs::create_directories(root() / "data");
        fs::create_symlink("../a.txt", root() / "Src/deep/link");
        fs::create_directory_symlink(root() / "kept", root() / "Src/deep/dirlink");
        setenv("XDG_DATA_HOME", (root() / "data").c_str(), 1);
    }
    void TearDown() override {
        unsetenv("XDG_DATA_HOME");
        Groups::TearDown();
    }
};

TEST_F(GroupsOnPosix, LinksAreCopiedAsLinks) {
    EXPECT_EQ(run(FIO_GROUP_COPY, {"deep"}, "c:\\g\\new\\place"), 0);
    EXPECT_EQ(fs::read_symlink(root() / "new/place/deep/link"), "../a.txt");
    EXPECT_TRUE(fs::is_symlink(root() / "new/place/deep/dirlink"));
}

TEST_F(GroupsOnPosix, DeepTreesCostNoStack) {
    fs::path deep = root() / "Src/tower";
    for (int level = 0; level < 700; ++level) deep /= "d";
    fs::create_directories(deep);
    EXPECT_EQ(run(FIO_GROUP_COPY, {"tower"}, "c:\\g\\new"), 0);
    EXPECT_TRUE(fs::exists(root() / "new" / deep.lexically_relative(root() / "Src")));
}

TEST_F(GroupsOnPosix, TheTrashKeepsWhatIsDeleted) {
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

TEST_F(GroupsOnPosix, FilesOfAnotherFileSystemStayRestorable) {
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

TEST_F(GroupsOnPosix, AnExhaustedHeapLosesNothing) {
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

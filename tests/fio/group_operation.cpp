// SPDX-License-Identifier: MIT
// Groups of files and directories; the trash.
#include "tests/fio/groups.hpp"

namespace {

using kvtest::Groups;
using kvtest::run;

namespace fs = std::filesystem;

TEST_F(Groups, CopyUnderOldAndNewNames) {
    EXPECT_EQ(run(FIO_GROUP_COPY, {"A.TXT", "deep"}, "c:\\g\\new\\place"), 0);
    EXPECT_TRUE(kvtest::has_entry(root() / "new/place", "A.TXT"));  // the copy has the name that was given
    EXPECT_EQ(at("new/place/A.TXT"), "a");
    EXPECT_EQ(at("new/place/deep/er/c.txt"), "c");
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

}  // namespace

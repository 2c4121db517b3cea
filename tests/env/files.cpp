// SPDX-License-Identifier: MIT
// Files and strings: line ends, times, and what happens to a file that cannot be read or written.
#include "platform/failpoint.hpp"
#include "tests/env/trees.hpp"

namespace {

using namespace kvtest;
namespace fs = std::filesystem;

fs::path host(const char *name) {
    return drive_c() / name;
}

class Files : public testing::Test {
  protected:
    void TearDown() override { empty_drive_c(); }
};

TEST_F(Files, Reading) {
    const struct {
        std::string content;
        int32_t result;
        const char *tree;
    } cases[] = {
        {"[s]\r\n  a =1\r\n", 0, "[s] a=1"},
        {"[s]\n  a =1\n  b =2", 0, "[s] a=1 b=2"},
        {"[s]\r\n  a =x\\\r\ny\r\n", 0, "[s] a=xy"},
        {"[s]\n  a =x\ry\n", 0, "[s] a=x\ry"},
        {"[s]\n  a =1\n\x1a[t]\n  b =2\n", 0, "[s] a=1"},
        {"\x1a[t]\n", 0, ""},
        {"", 0, ""},
        {"[s]\n  a =\xff\xfe\n", 0, "[s] a=\xff\xfe"},
        {"[s]\n  a =1\n[t]\n  name", ENV_SYNTAX, "[s] a=1"},
        {"[s]\n  a =" + std::string(70'000, 'y') + "\r\n[t]\r\n", 0, nullptr},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.content.substr(0, 60));
        write_file(host("t.env"), row.content);
        set_modified(host("t.env"), 1234567890);
        const Env env = open_env();
        EXPECT_EQ(env_get_file_mtime(env.get()), -10);
        EXPECT_EQ(env_read_file("c:\\t.env", env.get()), row.result);
        EXPECT_EQ(env_get_file_mtime(env.get()), 1234567890);
        if (row.tree != nullptr) {
            EXPECT_EQ(dump(env.get()), row.tree);
        } else {
            EXPECT_EQ(env_data_length(env.get(), "s", "a", 1), 70'000);
            EXPECT_EQ(env_exist(env.get(), "t", nullptr, 1), 1);
        }
    }
}

TEST_F(Files, Times) {
    write_file(host("t.env"), "[s]\n");
    const Env env = open_env();
    ASSERT_EQ(env_read_file("c:\\t.env", env.get()), ENV_OK);
    const int32_t read = env_get_file_mtime(env.get());
    EXPECT_GT(read, 1'500'000'000);
    const Env sub = open_sub(env.get(), "s", nullptr);
    EXPECT_EQ(env_get_file_mtime(sub.get()), -10);
    EXPECT_EQ(env_get_file_mtime(nullptr), -10);
    EXPECT_EQ(env_read_file("c:\\none.env", env.get()), ENV_ERROR);
    EXPECT_EQ(env_get_file_mtime(env.get()), read);
    EXPECT_EQ(reports("Try to call 'env_core_set_mtime' for subenv",
                      [&] { env_read_file("c:\\t.env", sub.get()); }),
              1);
}

// One call of the system fails, each in its turn, until there are no more.
TEST_F(Files, ThatFailOnTheWay) {
    const Env big = open_env();
    ASSERT_EQ(env_put(big.get(), "s", "v", std::string(40'000, 'x').c_str()), ENV_OK);
    env_write_file("c:\\t.env", big.get());
    const std::string text = read_file(host("t.env"));
    int untold = 0, unread = 0, unwritten = 0;
    bool failed = true;
    for (int successes = 0; failed && successes < 100; ++successes) {
        SCOPED_TRACE(successes);
        write_file(host("t.env"), text);
        const Env env = tree("[s]\n  a =1\n");
        clear_log();
        kv::platform::plan_io_failure(successes, false);
        const int32_t status = env_read_file("c:\\t.env", env.get());
        kv::platform::plan_io_failure(-1, false);
        // A file system that does not tell the time: the content is there.
        failed = status != ENV_OK || count_in_log("_fstat failed") > 0;
        unread += status == ENV_OK ? 0 : 1;
        untold += failed && status == ENV_OK ? 1 : 0;
        EXPECT_EQ(count_in_log(">ERROR"), status == ENV_OK ? 0 : 1);
        EXPECT_EQ(env_data_length(env.get(), "s", "v", 1), status == ENV_OK ? 40'000 : 0);
        EXPECT_EQ(env_exist(env.get(), "s", "a", 1), status == ENV_OK ? 0 : 1);

        write_file(host("t.env"), "[old]\r\n");
        clear_log();
        kv::platform::plan_io_failure(successes, false);
        const int32_t saved = env_save_file("c:\\t.env", big.get());
        kv::platform::plan_io_failure(-1, false);
        const std::string content = read_file(host("t.env"));
        EXPECT_EQ(saved, content == text ? ENV_OK : ENV_ERROR);
        EXPECT_TRUE(content == text || (content == "[old]\r\n" && count_in_log(">ERROR") > 0));
        unwritten += content == text ? 0 : 1;
        failed = failed || count_in_log(">ERROR") > 0;
    }
    EXPECT_FALSE(failed);
    EXPECT_EQ(untold, 1);
    EXPECT_GE(unread, 2);     // opening and reading
    EXPECT_GE(unwritten, 2);  // flushing and renaming; what cannot be written beside is written in place
}

TEST_F(Files, Writing) {
    const Env env = tree("[s]\n  a =\xff\n  b ={\n    c =x\\\\\n  }\n");
    ASSERT_EQ(env_put_external(env.get(), "s", "e", nullptr), ENV_OK);
    constexpr const char *kContent = "[s]\r\n  a =\xff\r\n  b ={\r\n    c =x\\\\\r\n  }\r\n";
    EXPECT_EQ(reports(">ERROR", [&] { env_write_file("c:\\T.ENV", env.get()); }), 0);
    EXPECT_EQ(read_file(host("T.ENV")), kContent);
    write_file(host("old.env"), std::string(100'000, 'o'));
    env_write_file("c:\\old.env", env.get());
    EXPECT_EQ(read_file(host("old.env")), kContent);
    EXPECT_EQ(entries_of_drive_c().size(), 2U);  // no temporary files are left

    const Env big = tree("[s]\n  v =" + std::string(200'000, 'x') + "\n  w =1\n"), back = open_env();
    env_write_file("c:\\big.env", big.get());
    EXPECT_EQ(env_read_file("c:\\big.env", back.get()), ENV_OK);
    EXPECT_TRUE(text_of(back.get()) == text_of(big.get()));

    const Env sub = open_sub(env.get(), "s", nullptr);
    EXPECT_EQ(reports("can not write subenv", [&] { env_write_file("c:\\old.env", sub.get()); }), 1);
    EXPECT_EQ(read_file(host("old.env")), "");
    EXPECT_EQ(reports("Nil parametr", [&] { env_write_file("c:\\T.ENV", nullptr); }), 1);
    EXPECT_EQ(read_file(host("T.ENV")), "");
    EXPECT_TRUE(fs::exists(host("T.ENV")));
}

TEST_F(Files, ThatCannotBeOpened) {
    const Env env = tree("[s]\n  a =1\n");
    fs::create_directory(host("dir"));
    for (const std::string name : {"c:\\none\\x.env", "c:\\dir", ""}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(reports("cann't open to read:",
                          [&] { EXPECT_EQ(env_read_file(name.c_str(), env.get()), ENV_ERROR); }),
                  1);
        EXPECT_GE(name.empty() ? 1 : count_in_log(name), 1);
        EXPECT_EQ(reports("cann't open to write:", [&] { env_write_file(name.c_str(), env.get()); }), 1);
    }
    EXPECT_EQ(dump(env.get()), "[s] a=1");
    EXPECT_TRUE(fs::is_empty(host("dir")));
}

TEST_F(Files, Strings) {
    const Env env = open_env();
    EXPECT_EQ(env_read_from_string("[s]\r\n  a\r =x\ry\xff\n", env.get()), ENV_OK);
    EXPECT_EQ(dump(env.get()), "[s] a=xy\xff");
    EXPECT_EQ(env_get_file_mtime(env.get()), -10);
    const auto written = [](ENV *from) {
        char *const text = env_write_to_string(from);
        const std::string copy = text != nullptr ? text : "NIL";
        heap_free(text);
        return copy;
    };
    EXPECT_EQ(written(env.get()), "[s]\r\n  a =xy\xff\r\n");
    for (const size_t length : {29'900u, 29'984u, 29'990u, 30'000u, 59'960u, 200'000u}) {
        const Env big = tree("[s]\n  v =" + std::string(length, 'x') + "\n"), back = open_env();
        EXPECT_EQ(env_read_from_string(written(big.get()).c_str(), back.get()), ENV_OK);
        EXPECT_EQ(env_data_length(back.get(), "s", "v", 1), static_cast<int32_t>(length));
    }
    EXPECT_EQ(written(open_sub(env.get(), "s", nullptr).get()), "");
    EXPECT_EQ(written(nullptr), "");
    EXPECT_EQ(written(open_env().get()), "");
}

}  // namespace

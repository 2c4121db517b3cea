// Files and strings: line ends, times, and what happens to a file that cannot be read or written.

#include "platform/failpoint.hpp"
#include "tests/env/trees.hpp"

namespace {

using namespace kvtest;
namespace fs = std::filesystem;

class Files : public testing::Test {
  protected:
    fs::path host(const char *name) const { return drive_c() / name; }
    void TearDown() override {
        for (const fs::path &entry : entries_of_drive_c()) {
            if (!entry.filename().string().starts_with("kv.err")) fs::remove_all(entry);
        }
    }
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
    EXPECT_EQ(env_get_file_mtime(nullptr), -10);
    write_file(host("t.env"), "[s]\n");
    const Env env = open_env();
    ASSERT_EQ(env_read_file("c:\\t.env", env.get()), ENV_OK);
    const int32_t read = env_get_file_mtime(env.get());
    EXPECT_GT(read, 1'500'000'000);
    const Env sub = open_sub(env.get(), "s", nullptr);
    EXPECT_EQ(env_get_file_mtime(sub.get()), -10);
    EXPECT_EQ(env_read_file("c:\\none.env", env.get()), ENV_ERROR);
    EXPECT_EQ(env_get_file_mtime(env.get()), read);
    EXPECT_EQ(reports("Try to call 'env_core_set_mtime' for subenv",
                      [&] { env_read_file("c:\\t.env", sub.get()); }),
              1);
    // A file system that does not tell: the content is there.
    int untold = 0;
    for (int successes = 0; successes < 10; ++successes) {
        const Env other = open_env();
        int32_t status = ENV_ERROR;
        kv::platform::plan_io_failure(successes, false);
        const int told =
            reports("_fstat failed", [&] { status = env_read_file("c:\\t.env", other.get()); });
        kv::platform::plan_io_failure(-1, false);
        if (told == 0) continue;
        EXPECT_EQ(status, ENV_OK);
        EXPECT_NE(dump(other.get()), "");
        EXPECT_EQ(env_get_file_mtime(other.get()), -10);
        untold += told;
    }
    EXPECT_EQ(untold, 1);
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

TEST_F(Files, ThatCannotBeRead) {
    const Env env = tree("[s]\n  a =1\n");
    fs::create_directory(host("dir"));
    for (const char *name : {"c:\\none.env", "c:\\none\\x.env", "c:\\dir", ""}) {
        SCOPED_TRACE(name);
        clear_log();
        EXPECT_EQ(env_read_file(name, env.get()), ENV_ERROR);
        EXPECT_EQ(count_in_log("cann't open to read:"), 1);
        if (*name != '\0') {
            EXPECT_GE(count_in_log(name), 1);
        }
        EXPECT_EQ(dump(env.get()), "[s] a=1");
    }
}

// What is read would take the place of what the sub-environment stands on.
TEST_F(Files, ThatOpenASubEnvironment) {
    const Env env = tree("[s]\n  a =1\n");
    struct Source {
        ENV *env;
        std::string_view rest;
        Env opened;
    } source{env.get(), "[t]\n  b =2\n", nullptr};
    const auto next = [](void *stream) -> int32_t {
        Source &self = *static_cast<Source *>(stream);
        if (self.opened == nullptr) self.opened = open_sub(self.env, "s", nullptr);
        if (self.rest.empty()) return -1;
        const char c = self.rest.front();
        self.rest.remove_prefix(1);
        return c;
    };
    EXPECT_EQ(env_read(next, &source, env.get()), ENV_ERROR);
    EXPECT_EQ(dump(env.get()), "[s] a=1");
    EXPECT_EQ(env_exist(source.opened.get(), nullptr, "a", 1), 1);
}

TEST_F(Files, ThatCannotBeWritten) {
    const Env env = tree("[s]\n  a =1\n");
    fs::create_directory(host("dir"));
    for (const char *name : {"c:\\dir", "c:\\none\\x.env", ""}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(reports("cann't open to write:", [&] { env_write_file(name, env.get()); }), 1);
    }
    EXPECT_TRUE(fs::is_empty(host("dir")));
}

TEST_F(Files, Strings) {
    const Env env = open_env();
    EXPECT_EQ(env_read_from_string("[s]\r\n  a =1\r\n", env.get()), ENV_OK);
    EXPECT_EQ(dump(env.get()), "[s] a=1");
    EXPECT_EQ(env_read_from_string("[s]\n  a\r =x\ry\xff\n", env.get()), ENV_OK);
    EXPECT_EQ(dump(env.get()), "[s] a=xy\xff");
    EXPECT_EQ(env_get_file_mtime(env.get()), -10);
    char *text = env_write_to_string(env.get());
    EXPECT_STREQ(text, "[s]\r\n  a =xy\xff\r\n");
    heap_free(text);
    for (const size_t length : {29'900u, 29'984u, 29'990u, 30'000u, 59'960u, 200'000u}) {
        const Env big = tree("[s]\n  v =" + std::string(length, 'x') + "\n"), back = open_env();
        text = env_write_to_string(big.get());
        ASSERT_NE(text, nullptr);
        EXPECT_EQ(env_read_from_string(text, back.get()), ENV_OK);
        EXPECT_EQ(env_data_length(back.get(), "s", "v", 1), static_cast<int32_t>(length));
        heap_free(text);
    }
    const Env sub = open_sub(env.get(), "s", nullptr);
    for (ENV *const refused : {sub.get(), static_cast<ENV *>(nullptr)}) {
        text = env_write_to_string(refused);
        EXPECT_STREQ(text, "");
        heap_free(text);
    }
    text = env_write_to_string(open_env().get());
    EXPECT_STREQ(text, "");
    heap_free(text);
}

}  // namespace

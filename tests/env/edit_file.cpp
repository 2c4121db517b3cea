// SPDX-License-Identifier: MIT
// Edits of files: the tree that is read then is the one that the functions make, and all else stays.
#include <random>

#include "tests/env/trees.hpp"

namespace {

using namespace kvtest;

// What the functions do that an edit stands for, on a tree.
int32_t apply(const ENV_EDIT &edit, ENV *env) {
    const char *const section = edit.section, *const path = edit.path;
    if (edit.operation == ENV_EDIT_DELETE) return env_delete(env, section, path);
    if (edit.operation == ENV_EDIT_MERGE) return env_sink(env, edit.source, edit.mode);
    if (edit.operation == ENV_EDIT_INSERT) {
        const int32_t status = env_insert_before(env, section, path, edit.name);
        if (status != ENV_OK || path == nullptr) return status;
        // The one external is the new element.
        const auto fill = [](ENV *element, const char *, const char *, void *text) {
            void *external;
            if (env_get_external(element, nullptr, nullptr, 1, &external) >= 0)
                env_put(element, nullptr, nullptr, static_cast<const char *>(text));
        };
        return env_traverse_leafs(env, fill, const_cast<char *>(edit.text));
    }
    if (path == nullptr) return env_put(env, section, nullptr, "");
    if (edit.operation == ENV_EDIT_PUT) return env_put(env, section, path, edit.text);
    if (env_exist_block(env, section, path, 1) != 0) return ENV_OK;
    const std::string inside = std::string(path) + "@x";
    const int32_t status = env_put(env, section, inside.c_str(), "");
    return status == ENV_OK ? env_delete(env, section, inside.c_str()) : status;
}

// A file written by hand, with all that the format allows, in pieces of which each one is unlike the
// others.
class Sample {
  public:
    explicit Sample(std::mt19937 &random) : random_(random) {
        line_end_ = dice(2) == 0 ? "\n" : "\r\n";
        mixed_ = dice(4) == 0;
        if (dice(3) == 0) text_ += pick({"title =1 }", "a \\", "; no [section]"}) + end();
        for (int sections = dice(4); sections > 0; --sections) {
            gap();
            last_.clear();
            text_ += pick({"[s]", "[s]", " [ t ]", "[s\\\n]", "[b;]"}) + pick({"", " ", end()});
            block(0, dice(6));
        }
        const size_t size = text_.size();
        gap();
        if (size == text_.size() && !last_.empty() && dice(2) == 0) {
            text_.pop_back();
        } else if (dice(9) == 0) {
            text_ += pick({"[open", "[open\\", "[open" + end() + "; x"});
        }
        if (dice(3) == 0) text_ += "\x1a" + pick({"", "[s] behind\r\n"});
    }

    const std::string &text() const { return text_; }
    /// The pieces that `edited` lacks, though the value that each of them goes with is in the tree; a
    /// comment goes with the value before it.
    std::string lost(const std::string &edited, const std::string &tree) const {
        std::string lost;
        size_t at = 0;
        for (const auto &[value, piece] : pieces_) {
            if (!value.empty() && tree.find(value) == tree.npos) continue;
            const size_t found = edited.find(piece, at);
            if (found == edited.npos) {
                lost += piece;
            } else {
                at = found + piece.size();
            }
        }
        return lost;
    }

  private:
    int dice(int sides) { return static_cast<int>(random_() % static_cast<unsigned>(sides)); }
    std::string pick(const std::vector<std::string> &from) { return from[random_() % from.size()]; }
    std::string end() { return mixed_ ? pick({"\n", "\r\n"}) : line_end_; }
    bool at_line_start() const { return text_.empty() || text_.back() == '\n'; }

    void gap() {
        while (dice(3) == 0) {
            if (at_line_start() && (text_.size() < 3 || text_.rfind('\\') + 4 < text_.size()) &&
                dice(2) == 0) {
                const std::string comment = numbered("; [c", ++count_) + "] =\\" + end();
                if (!last_.empty()) pieces_.emplace_back(last_, comment);
                text_ += comment;
            } else {
                text_ += pick({end(), " ", "\t", "\\ " + end()});
            }
        }
    }
    void block(int depth, int elements) {
        for (; elements > 0; --elements) {
            gap();
            text_ += pick({"  ", "    ", " ", ""});
            if (!at_line_start() && dice(4) == 0) text_ += ";";
            text_ += pick({"a", "a", "b", "c", "x y", "7", "a\\\nb", "l\n;\nm"});
            text_ += pick({" =", "=", " = ", "\t= ", "\\\n="});
            if (depth < 3 && dice(3) == 0) {
                text_ += "{" + pick({"", " ", end()});
                last_.clear();
                block(depth + 1, dice(4));
                gap();
                text_ += "}" + pick({"", "  ", end(), end()});
                last_.clear();
            } else {
                last_ = numbered("<", ++count_) + ">";
                const std::string value =
                    pick({"", "\\\n;", "c:\\"}) + last_ + pick({"", "\\\\", "\\\\\t", " ", "\r", "\\\n "});
                pieces_.emplace_back(last_, value);
                text_ += value + end();
            }
        }
    }

    std::mt19937 &random_;
    std::string line_end_, text_, last_;
    bool mixed_;
    int count_ = 0;
    std::vector<std::pair<std::string, std::string>> pieces_;  // of each data element the value; comments
};

const char *const kFile = "C:\\edited.env";

// Edits a file of this content; what it holds then.
std::string edit(const std::string &before, const std::vector<ENV_EDIT> &edits, int32_t status = ENV_OK,
                 int32_t reached = -1) {
    const auto file = drive_c() / "edited.env";
    write_file(file, before);
    int32_t number = -1;
    const auto count = static_cast<int32_t>(edits.size());
    EXPECT_EQ(env_edit_file(kFile, edits.data(), count, &number), status);
    EXPECT_EQ(number, reached >= 0 ? reached : count);
    return read_file(file);
}

ENV_EDIT put(const char *section, const char *path, const char *text) {
    return {ENV_EDIT_PUT, section, path, text, nullptr, nullptr, 0};
}
ENV_EDIT make_block(const char *section, const char *path) {
    return {ENV_EDIT_MAKE_BLOCK, section, path, nullptr, nullptr, nullptr, 0};
}
ENV_EDIT take(const char *section, const char *path = nullptr) {
    return {ENV_EDIT_DELETE, section, path, nullptr, nullptr, nullptr, 0};
}
ENV_EDIT insert(const char *section, const char *path, const char *name, const char *text = nullptr) {
    return {ENV_EDIT_INSERT, section, path, text, name, nullptr, 0};
}
ENV_EDIT merge(ENV *source, int32_t mode, const char *section = nullptr, const char *path = nullptr) {
    return {ENV_EDIT_MERGE, section, path, nullptr, nullptr, source, mode};
}

TEST(EnvEdit, Layout) {
    const std::string w(100, 'w');
    const Env from = tree("[s]\na =1\nb ={\nc ={\nd =2\n}\n}\ne ={\n}\n[t]\nx =3\n");
    const struct {
        const char *what;
        std::string before;
        std::vector<ENV_EDIT> edits;
        std::string after;
    } cases[] = {
        {"a text, and its line end",
         "; c\n[s]\r\n\ta\t= 1 \n;\n",
         {put("s", "a", "2")},
         "; c\n[s]\r\n\ta\t= 2\n;\n"},
        {"over continued lines", "[s]\na =1\\\n2\n", {put("s", "a", "3")}, "[s]\na =3\n"},
        {"the same text", "[s]\na =1\\\n2  \n", {put("s", "a", "12")}, "[s]\na =1\\\n2  \n"},
        {"a long text",
         "[s]\na = 1\n",
         {put("s", "a", w.c_str())},
         "[s]\na = " + w.substr(0, 85) + "\\\n" + w.substr(85) + "\n"},
        {"a backslash at the end", "[s]\na = 1  \n", {put("s", "a", "\\")}, "[s]\na = \\\\\n"},
        {"indented as those before",
         "[s]\n\ta=1\n; end\n",
         {put("s", "b", "2")},
         "[s]\n\ta=1\n\tb =2\n; end\n"},
        {"indented as what follows",
         "[s]\r\n; a\r\n    a =1\r\n",
         {insert("s", "a", "n", "0")},
         "[s]\r\n    n =0\r\n; a\r\n    a =1\r\n"},
        {"the line end of the file",
         "[s]\r\na =1\n",
         {put("s", "b@c", "2")},
         "[s]\r\na =1\nb ={\r\n  c =2\r\n}\r\n"},
        {"in an empty block",
         "[s]\n  b ={\n; none\n  }\n",
         {put("s", "b@x", "1"), put("s", "b@y", "2")},
         "[s]\n  b ={\n    x =1\n    y =2\n; none\n  }\n"},
        {"in a block on one line",
         "[s]\n b ={} c =2\n",
         {put("s", "b@x", "1")},
         "[s]\n b ={\n   x =1\n } c =2\n"},
        {"behind a block that shares its line",
         "[s]\n b ={ c ={\n}}\n",
         {put("s", "b@d", "1")},
         "[s]\n b ={ c ={\n}\n   d =1\n }\n"},
        {"no comment is made", "[s] ;b =1\n", {insert("s", ";b", ";a")}, "[s]\n  ;a =\n  ;b =1\n"},
        {"no comment is ended",
         "[s]\na ={ b =1\n};c =2\n; d =3",
         {take("s", "a"), put("t", nullptr, "")},
         "[s]\n ;c =2\n; d =3\n[t]\n"},
        {"a text becomes a block",
         "[s]\n a = 1\n;\n",
         {put("s", "a@b@c", "2")},
         "[s]\n a = {\n   b ={\n     c =2\n   }\n }\n;\n"},
        {"a block becomes a text",
         "[s]\n a ={ b ={\n;\n }} c =1\n",
         {put("s", "a@b", "2")},
         "[s]\n a ={ b =2\n } c =1\n"},
        {"which ends in a backslash",
         "[s]\na ={\n}  \nb =1",
         {put("s", "a", "\\"), put("s", "b", "\\\\")},
         "[s]\na =\\\\\nb =\\\\\t\n"},
        {"an empty block",
         "[s]\n a =1\n",
         {make_block("s", "a"), make_block("s", "b@c"), make_block("t", nullptr)},
         "[s]\n a ={\n }\n b ={\n   c ={\n   }\n }\n[t]\n"},
        {"lines go with what stands alone on them",
         "[s]\n; a\n a =1\\\n2\n\n b ={\n; c\n }  \n d =4\n",
         {take("s", "a"), take("s", "b")},
         "[s]\n; a\n\n d =4\n"},
        {"what shares its lines goes alone",
         "[s] a =1\n b ={ c =2\n } d ={} e =3\n",
         {take("s", "a"), take("s", "b@c"), take("s", "d")},
         "[s]\n b ={\n } e =3\n"},
        {"and leave the line end of what stays",
         "[s]\na ={ b ={} c ={}\n; d\n}\n",
         {take("s", "a@b"), take("s", "a@c")},
         "[s]\na ={\n; d\n}\n"},
        {"all that shares a line",
         "[s]\n  a ={} b =1\n; c\n d =2\n",
         {take("s", "a"), take("s", "b")},
         "[s]\n; c\n d =2\n"},
        {"a section",
         "title\n[s]\n a =1\n; t\n[t]\n b =1\n; u\n[u]\n",
         {take("t"), insert("u", nullptr, "v")},
         "title\n[s]\n a =1\n[v]\n; t\n; u\n[u]\n"},
        {"the first section",
         "title\n; s\n [s]\n",
         {insert("s", nullptr, "r"), put("r", "a", "1")},
         "title\n; s\n [r]\n   a =1\n [s]\n"},
        {"all sections", "title\n[s]\na =1\n;\n[t]\n", {take(nullptr)}, "title\n;\n"},
        {"behind text alone", "title \\", {put("s", "a", "1")}, "title \\\t\r\n[s]\r\n  a =1\r\n"},
        {"a last line without its end", "[s]\n a =1\\", {put("s", "b", "2")}, "[s]\n a =1\\\t\n b =2\n"},
        {"behind a Ctrl-Z",
         "[s]\n a =1\x1a[t]",
         {put("s", "a", "2"), put("u", nullptr, "")},
         "[s]\n a =2\n[u]\n\x1a[t]"},
        {"merged",
         "[s]\n b ={\n; c\n }\n",
         {merge(from.get(), ENV_SINK_ADD)},
         "[s]\n b ={\n   c ={\n     d =2\n   }\n; c\n }\n a =1\n[t]\n  x =3\n"},
        {"one block",
         "[s]\n b =1\n",
         {merge(from.get(), ENV_SINK_REPLACE, "s", "b@c")},
         "[s]\n b ={\n   c ={\n     d =2\n   }\n }\n"},
        {"nothing is made",
         "[s]\n",
         {merge(from.get(), ENV_SINK_UPDATE, "s", "b"), merge(from.get(), ENV_SINK_ADD, "s", "e")},
         "[s]\n"},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(edit(row.before, row.edits), row.after);
    }
}

TEST(EnvEdit, Refusals) {
    const std::string before = "; s\n[s]\na =1\nb ={\n}\n";
    const Env from = tree("[s]\na ={\nb =1\n}\n");
    const Env unfit = tree("[s]\n");
    EXPECT_EQ(env_put(unfit.get(), "s", "x", " blank"), ENV_OK);
    const struct {
        ENV_EDIT edit;
        int32_t status;
    } cases[] = {
        {take("s", "c"), ENV_NOT_FOUND},
        {take("t"), ENV_NOT_FOUND},
        {take("s", "@"), ENV_BAD_PATH},
        {insert("s", "c", "n"), ENV_NOT_FOUND},
        {insert("s", "@", "n"), ENV_BAD_PATH},
        {insert("s", "a", nullptr), ENV_ERROR},
        {insert("s", "a", "n="), ENV_ERROR},
        {insert("s", "a", ""), ENV_ERROR},
        {insert("s", "a", "n", "{"), ENV_ERROR},
        {insert("s", nullptr, "]"), ENV_ERROR},
        {put("s", "@@", "x"), ENV_BAD_PATH},
        {put("s", "a", nullptr), ENV_ERROR},
        {put(nullptr, "a", "x"), ENV_ERROR},
        {put("s", "a", " x"), ENV_ERROR},
        {put("s", "a", "x\t"), ENV_ERROR},
        {put("s", "a", "x\ry"), ENV_ERROR},
        {put("s", "b@c\nd", "x"), ENV_ERROR},
        {put("s", "b@}", "x"), ENV_ERROR},
        {put("s", "b@[", "x"), ENV_ERROR},
        {put("s", "b@\x1a", "x"), ENV_ERROR},
        {put("t]", nullptr, nullptr), ENV_ERROR},
        {put("s", "a@2000000", "x"), ENV_ERROR},
        {put("s", "b@x@0", "x"), ENV_ERROR},
        {merge(nullptr, ENV_SINK_ADD), ENV_ERROR},
        {merge(from.get(), 7), ENV_ERROR},
        {merge(unfit.get(), ENV_SINK_ADD), ENV_ERROR},
        {merge(from.get(), ENV_SINK_ADD), ENV_DATA},
        {merge(from.get(), ENV_SINK_APPEND, "s", "a"), ENV_DATA},
        {merge(from.get(), ENV_SINK_ADD, "s", "b"), ENV_NOT_FOUND},
        {{9, "s", "a", "x", nullptr, nullptr, 0}, ENV_ERROR},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(testing::Message()
                     << row.edit.operation << " " << (row.edit.path ? row.edit.path : "NIL"));
        const int reported = reports("ERROR", [&] {
            EXPECT_EQ(edit(before, {put("s", "a", "9"), row.edit}, row.status, 1), before);
        });
        EXPECT_EQ(reported > 0, row.status == ENV_ERROR || row.status == ENV_BAD_PATH);
    }
    EXPECT_EQ(edit("[s]\na =1\n  }\n", {put("s", "a", "2")}, ENV_SYNTAX, 0), "[s]\na =1\n  }\n");
    int32_t line = 0, column = 0, reached = 7;
    EXPECT_EQ(env_get_error(&line, &column, 0, nullptr), ENV_OK);
    EXPECT_EQ(line * 10 + column, 33);
    // A file that is not there, and one that cannot be made.
    const ENV_EDIT edits[] = {put("s", "a", "1"), take("s", "a")};
    EXPECT_EQ(env_edit_file("C:\\none.env", edits + 1, 1, &reached), ENV_ERROR);
    EXPECT_EQ(reached, 0);
    EXPECT_EQ(env_edit_file("C:\\none.env", edits, 1, nullptr), ENV_OK);
    EXPECT_EQ(read_file(drive_c() / "none.env"), "[s]\r\n  a =1\r\n");
    EXPECT_EQ(env_edit_file("C:\\none\\none.env", edits, 2, &reached), ENV_ERROR);
    EXPECT_EQ(reached, 2);
    EXPECT_EQ(env_edit_file(nullptr, edits, 2, nullptr), ENV_ERROR);
    std::filesystem::remove(drive_c() / "none.env");
}

// A tree whose depth no stack would hold, and as many edits as elements in a long block.
TEST(EnvEdit, DeepAndLong) {
    std::string deep = "[s]\n";
    for (int i = 0; i < 100000; ++i) deep += "b ={ ";
    deep += "x =1\n" + std::string(100000, '}');
    const Env from = tree(deep);
    on_small_stack([&] {
        EXPECT_EQ(edit(deep, {put("s", "c", "1")}), deep + "\nc =1\n");
        const std::string merged = edit("[s]\n", {merge(from.get(), ENV_SINK_ADD)});
        EXPECT_LT(merged.size(), 20000000u);
        EXPECT_EQ(env_read_from_string(merged.c_str(), tree("").get()), ENV_OK);
    });
    std::vector<std::string> paths, texts;
    std::vector<ENV_EDIT> edits;
    std::string before = "[s]\n", after = before;
    constexpr int kElements = 20000;
    for (int i = 0; i < kElements; ++i)
        paths.push_back(numbered("a@", i + 1)), texts.push_back(numbered("v", i));
    for (int i = 0; i < kElements; ++i) {
        before += "a =\n";
        after += "a =" + texts[static_cast<size_t>(i)] + "\n";
        edits.push_back(
            put("s", paths[static_cast<size_t>(i)].c_str(), texts[static_cast<size_t>(i)].c_str()));
    }
    EXPECT_EQ(edit(before, edits), after);
}

class EnvEdits : public testing::TestWithParam<unsigned> {};

TEST_P(EnvEdits, MakeTheTreeAndKeepTheRest) {
    kv_error_onoff(0);
    std::mt19937 random(GetParam());
    const auto pick = [&](const std::vector<const char *> &from) { return from[random() % from.size()]; };
    const Env source = tree("[s]\na =1\na ={\na =2\nb =3\n}\nb ={\n}\n[v]\nl\n\\\n;m =4\n");
    const std::string long_text = std::string(150, 'p') + "\\ \\\\" + std::string(80, 'q');
    int done = 0;
    for (int run = 0; run < 150 && !HasFailure(); ++run) {
        const Sample sample(random);
        const auto file = drive_c() / "edited.env";
        write_file(file, sample.text());
        std::vector<ENV_EDIT> edits;
        for (unsigned left = 1 + random() % 4; left > 0; --left) {
            edits.push_back(
                {static_cast<int32_t>(random() % 16) % 5, pick({"s", "s", "s", "t", "b;", "new", "open"}),
                 pick({"a", "a@2", "b", "c", ";a", "b@a", "a@b@a", "x y", "a@0", "b@2", "c@a@b", nullptr}),
                 pick({"", "new", ";", "\\", "\\\\", "a\\ ", long_text.c_str()}),
                 pick({"a", "b", ";n", "\\"}), source.get(), static_cast<int32_t>(random() % 4)});
            if (edits.back().operation == ENV_EDIT_MERGE) edits.back().section = nullptr;
            if (std::string_view(edits.back().text).ends_with(' ')) edits.back().text = "a\\";
        }
        const Env wanted = open_env();
        ASSERT_EQ(env_read_file(kFile, wanted.get()), ENV_OK) << sample.text();
        int32_t reached = -1;
        const int32_t status =
            env_edit_file(kFile, edits.data(), static_cast<int32_t>(edits.size()), &reached);
        const std::string edited = read_file(file);
        SCOPED_TRACE(testing::Message() << "seed " << GetParam() << ", run " << run << "\n"
                                        << sample.text() << "\n---- became\n"
                                        << edited);
        for (int32_t i = 0; i < reached; ++i)
            ASSERT_EQ(apply(edits[static_cast<size_t>(i)], wanted.get()), ENV_OK) << i;
        if (status != ENV_OK) {
            EXPECT_EQ(edited, sample.text());
            EXPECT_EQ(
                status == ENV_DATA ? ENV_DATA : apply(edits[static_cast<size_t>(reached)], wanted.get()),
                status);
            continue;
        }
        ++done;
        EXPECT_EQ(reached, static_cast<int32_t>(edits.size()));
        const Env got = open_env();
        EXPECT_EQ(env_read_file(kFile, got.get()), ENV_OK);
        EXPECT_EQ(text_of(got.get()), text_of(wanted.get()));
        EXPECT_EQ(sample.lost(edited, text_of(wanted.get())), "");
        const size_t behind = sample.text().find('\x1a');
        EXPECT_TRUE(behind == std::string::npos || edited.ends_with(sample.text().substr(behind)));
        // What is there already changes nothing.
        const char *value = "";
        if (env_get_reference(got.get(), "s", "a", 1, &value) != 0) continue;
        const ENV_EDIT same = {ENV_EDIT_PUT, "s", "a", value, nullptr, nullptr, 0};
        env_edit_file(kFile, &same, 1, nullptr);
        EXPECT_EQ(read_file(file), edited);
    }
    EXPECT_GT(done, 40);
    kv_error_onoff(1);
}

INSTANTIATE_TEST_SUITE_P(Seeds, EnvEdits, testing::Values(5u, 66u, 777u, 8888u));

}  // namespace

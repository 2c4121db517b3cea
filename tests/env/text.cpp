// SPDX-License-Identifier: MIT
// The text format: golden pairs, errors with their places, continuation, what survives, and large texts.
#include "tests/env/trees.hpp"

namespace {

using namespace kvtest;

constexpr const char *kExample = R"([press]
  name =Press 4
  speed =120.5
  axes =1,2,3
  limits ={
    min =0
    max =250
    inner ={
    }
  }
[spare]
)";

TEST(Text, CanonicalForm) {
    const auto xs = [](size_t n) { return std::string(n, 'x'); };
    const struct {
        std::string input, output;
    } cases[] = {
        {kExample, kExample},
        {"", ""},
        {"title = 1 }\n[s]\n", "[s]\n"},
        {"[s] ;x =1\n", "[s]\n  ;x =1\n"},
        {"[s]\nx =1\n;\n;\n\n\n\ty =2", "[s]\n  x =1\n  y =2\n"},
        // sections
        {"[  a b\t ] x =1\n[]\n[ ]y=2", "[a b]\n  x =1\n[]\n[]\n  y =2\n"},
        {"[a", "[a]\n"},
        {"[a\nb] x =1", "[a\nb]\n  x =1\n"},
        // data elements
        {"[s]\nname =\nn2 =  value \t \nn3=a=b\n", "[s]\n  name =\n  n2 =value\n  n3 =a=b\n"},
        {"[s]\n  x  \t=1 [t] }\n", "[s]\n  x =1 [t] }\n"},
        {"[s]\na\nb =1\n", "[s]\n  a\nb =1\n"},
        {"[s]\nx = }\ny = [\nz = ;\n", "[s]\n  x =}\n  y =[\n  z =;\n"},
        {"[s]\n{ =1\n]x =2\n", "[s]\n  { =1\n  ]x =2\n"},
        // blocks
        {"[s] b ={ x =1\n y ={} z =2\n} e =3\n",
         "[s]\n  b ={\n    x =1\n    y ={\n    }\n    z =2\n  }\n  e =3\n"},
        {"[s]\nb ={c ={d ={\n}}}\n", "[s]\n  b ={\n    c ={\n      d ={\n      }\n    }\n  }\n"},
        {"[s]\nx =a{\n", "[s]\n  x =a{\n"},
        // continuation
        {"[s]\nx =a\\   \n  b\n", "[s]\n  x =a  b\n"},
        {"[s]\nx =a\\\\ \nb\n", "[s]\n  x =ab\n"},
        {"[s]\nx =a\\\\\nb =2\n", "[s]\n  x =a\\\\\n  b =2\n"},
        {"[s]\nx =a\\\n;b\n", "[s]\n  x =a;b\n"},
        {"[s]\nna\\\nme =1\n[t\\\nu]\n", "[s]\n  name =1\n[tu]\n"},
        {"[s]\nx ={\\\n y =1\n\\\n}\n", "[s]\n  x ={\n    y =1\n  }\n"},
        {"[s]\nx =c:\\dir\\ file\n", "[s]\n  x =c:\\dir\\ file\n"},
        {"[s]\nx =a\\\t\n", "[s]\n  x =a\\\\\n"},
        {"[s]\nx =1\\", "[s]\n  x =1\\\\\n"},
        // line breaks of the writer
        {"[s]\nv =" + xs(85), "[s]\n  v =" + xs(84) + "\\\nx\n"},
        {"[s]\nv =" + xs(200), "[s]\n  v =" + xs(84) + "\\\n" + xs(90) + "\\\n" + xs(26) + "\n"},
        {"[s]\nb ={ v =" + xs(83) + "\n}", "[s]\n  b ={\n    v =" + xs(82) + "\\\nx\n  }\n"},
        {"[" + xs(200) + "]", "[" + xs(88) + "\\\n" + xs(90) + "\\\n" + xs(22) + "]\n"},
        {"[s]\n" + xs(87) + " ={\n}", "[s]\n  " + xs(87) + "\\\n ={\n  }\n"},
        // bytes
        {"[s]\nx =\xff\x01\x80\n", "[s]\n  x =\xff\x01\x80\n"},
        {"[s]\nx =a\rb\n", "[s]\n  x =a\rb\n"},
        {std::string("[s]\nx =a\0b\0\ny\0z =\0\n", 19), "[s]\n  x =ab\n  yz =\n"},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.input);
        clear_log();
        const Env env = tree(row.input);
        EXPECT_EQ(text_of(env.get()), row.output);
        EXPECT_EQ(count_in_log("> MESSAGE"), row.input.find('\0') < row.input.size() ? 1 : 0);
        EXPECT_EQ(text_of(tree(row.output).get()), row.output);
    }
}

TEST(Text, Errors) {
    constexpr const char *kSection = "Section waited", *kEqual = "Equal sign waited",
                         *kBrace = "Cbracesymbol waited";
    const struct {
        const char *input, *report;
        int32_t line, column;
        const char *kept;
    } cases[] = {
        {"[a]\n  =1\n", kSection, 2, 3, "[a]\n"},
        {"[a]\nx ={\n}}\n[b]\n", kSection, 3, 2, "[a]\n  x ={\n  }\n"},
        {"; c\n[a]\nv =1\\\n2\n  }\n", kSection, 5, 3, "[a]\n  v =12\n"},
        {"[a]\nx ={\n  y =1\n[b]\nz =2\n", kBrace, 4, 1, ""},
        {"[k]\nq =1\n[a]\nx ={\n\t =2\n}\n", kBrace, 5, 3, "[k]\n  q =1\n"},
        // the name that has no end; the end of the text
        {"[a]\nx =1\n[b]\nname", kEqual, 4, 1, "[a]\n  x =1\n"},
        {"[a]\nx =1\n[b]\ny =2\n  name  ", kEqual, 5, 3, "[a]\n  x =1\n"},
        {"[k]\n[a]\nx ={\n  y =1\n", kBrace, 5, 1, "[k]\n"},
        {"[k]\n[a]\nx ={\n  y =1", kBrace, 4, 7, "[k]\n"},
        {"[k]\n[a]\nx ={ y =1 }", kBrace, 3, 12, "[k]\n"},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.input);
        const Env env = tree("[old]\n  content =1\n");
        EXPECT_GE(reports(row.report, [&] { EXPECT_EQ(read_text(env.get(), row.input), ENV_SYNTAX); }), 1);
        EXPECT_EQ(text_of(env.get()), row.kept);
        int32_t line = 0, column = 0;
        char text[64] = "";
        EXPECT_EQ(env_get_error(&line, &column, 64, text), ENV_OK);
        EXPECT_EQ(line, row.line);
        EXPECT_EQ(column, row.column);
        EXPECT_STREQ(text, row.report);
    }
    // Within a block it stays the reason of the failure, though the block has no end then.
    const Env env = open_env();
    EXPECT_EQ(reports("Equal sign waited",
                      [&] { EXPECT_EQ(read_text(env.get(), "[a]\nx ={\nname"), ENV_SYNTAX); }),
              1);

    EXPECT_EQ(env_read_from_string("[a]\r\nx =1\r\n}", env.get()), ENV_SYNTAX);
    int32_t line = 0, column = 0;
    char text[15] = "?";
    EXPECT_EQ(env_get_error(&line, &column, 14, text), ENV_TOO_SMALL);
    EXPECT_STREQ(text, "?");
    EXPECT_EQ(line, 3);
    EXPECT_EQ(column, 1);
    EXPECT_EQ(env_get_error(nullptr, nullptr, 15, text), ENV_OK);
    EXPECT_STREQ(text, "Section waited");
    EXPECT_EQ(env_get_error(&line, nullptr, 0, nullptr), ENV_OK);
}

// The characters come from the application, which may use environments meanwhile, this one too.
TEST(Text, ReadingUsesEnvironments) {
    struct Stream {
        std::string_view rest;
        ENV *env;
        bool opens;
        Env opened = nullptr;

        static int32_t next(void *stream) {
            auto &from = *static_cast<Stream *>(stream);
            EXPECT_EQ(env_close(from.env, 0), ENV_IN_USE);
            EXPECT_EQ(dump(tree("[o]\n  x ={ y =\\\n1\n}\n").get()), "[o] x{y=1}");
            EXPECT_EQ(env_put(from.env, "s", "a", "1"), ENV_OK);
            if (from.opens && from.opened == nullptr) from.opened = open_sub(from.env, "s", nullptr);
            if (from.rest.empty()) return -1;
            const char c = from.rest.front();
            from.rest.remove_prefix(1);
            return c;
        }
    };
    for (const bool opens : {false, true}) {  // what is read would take the place of what is open then
        const Env env = tree("[s]\n  a =0\n");
        Stream in{"[s]\n  a =new\n", env.get(), opens};
        EXPECT_EQ(env_read(Stream::next, &in, env.get()), opens ? ENV_ERROR : ENV_OK);
        EXPECT_EQ(dump(env.get()), opens ? "[s] a=1" : "[s] a=new");
    }
    const Env env = tree("[s]\n  a =1\n");
    const Env sub = open_sub(env.get(), "s", nullptr);
    EXPECT_EQ(reports("can not read subenv", [&] { EXPECT_EQ(read_text(sub.get(), "[x]\n"), ENV_ERROR); }),
              1);
    EXPECT_EQ(reports("can not write subenv", [&] { EXPECT_EQ(text_of(sub.get()), ""); }), 1);
    EXPECT_EQ(reports("Nil parametr", [&] { EXPECT_EQ(text_of(nullptr), ""); }), 1);
    EXPECT_EQ(reports(">ERROR", [&] { EXPECT_EQ(read_text(env.get(), "[x]\n"), ENV_ERROR); }), 1);
}

// env_sink() tells of an element in use as of every other failure.
int32_t merge(ENV *env, std::string_view text) {
    return env_sink(env, tree(text).get(), ENV_SINK_REPLACE) == ENV_OK ? ENV_OK : ENV_IN_USE;
}

// The character function makes one change, at every character in turn: refused while the element is being
// written, written itself if it comes before that, and without effect on the text if it comes later.
TEST(Text, WritingKeepsWhatIsBeingWritten) {
    constexpr std::string_view kText = "[s]\n  a =1\n  b ={\n    c =2\n  }\n[t]\n  d =3\n";
    static const std::string kLong(1000, 'l');
    const struct {
        const char *name;
        std::function<int32_t(ENV *)> change;
        std::string_view first, behind;  // the lines from and before which it is refused
    } cases[] = {
        {"longer", [](ENV *e) { return env_put(e, "s", "a", kLong.c_str()); }, "  a", "  b"},
        {"shorter", [](ENV *e) { return env_put(e, "s", "a", ""); }, "  a", "  b"},
        {"to a block", [](ENV *e) { return env_put(e, "s", "a@x", "1"); }, "  a", "  b"},
        {"over a block", [](ENV *e) { return env_put(e, "s", "b", "x"); }, "  b", "[t"},
        {"delete", [](ENV *e) { return env_delete(e, "s", "b@c"); }, "    c", "  }"},
        {"delete a block", [](ENV *e) { return env_delete(e, "s", "b"); }, "  b", "[t"},
        {"delete a section", [](ENV *e) { return env_delete(e, "s", nullptr); }, "[s", "[t"},
        {"delete all", [](ENV *e) { return env_delete(e, nullptr, nullptr); }, "[s", ""},
        {"read", [](ENV *e) { return read_text(e, "[x]\n"); }, "[s", ""},
        {"append", [](ENV *e) { return env_put(e, "s", "b@n", "5"); }, "  }", "  }"},
        {"insert", [](ENV *e) { return env_insert_before(e, "t", nullptr, "n"); }, "[t", "[t"},
        {"merge", [](ENV *e) { return merge(e, "[t]\nd =4\n"); }, "  d", ""},
    };
    struct Sink {
        ENV *env;
        const std::function<int32_t(ENV *)> &change;
        size_t at, begin, end;
        std::string text;
        const Env other = tree("[o]\n");

        static void put(int32_t c, void *sink) {
            auto &self = *static_cast<Sink *>(sink);
            EXPECT_EQ(env_close(self.env, 0), ENV_IN_USE);
            if (self.text.size() == self.at) env_write(make_change, sink, self.other.get());
            self.text += static_cast<char>(c);
        }
        // From within a second writing.
        static void make_change(int32_t c, void *sink) {
            auto &self = *static_cast<Sink *>(sink);
            if (c != '[') return;
            const bool refused = self.begin <= self.at && self.at < self.end;
            EXPECT_EQ(self.change(self.env), refused ? ENV_IN_USE : ENV_OK);
        }
    };
    for (const auto &row : cases) {
        const size_t begin = kText.find(row.first),
                     end = row.behind.empty() ? kText.size() : kText.find(row.behind);
        const Env changed = tree(kText);
        EXPECT_EQ(row.change(changed.get()), ENV_OK);
        for (size_t at = 0; at < kText.size(); ++at) {
            SCOPED_TRACE(testing::Message() << row.name << " at " << at);
            const Env env = tree(kText);
            Sink sink{env.get(), row.change, at, begin, end, ""};
            env_write(Sink::put, &sink, env.get());
            EXPECT_EQ(sink.text, at < begin ? text_of(changed.get()) : kText);
            EXPECT_EQ(text_of(env.get()), at < begin || at >= end ? text_of(changed.get()) : kText);
        }
    }
}

// Every text of `letters` up to `length` characters.
std::vector<std::string> all_texts(std::string_view letters, size_t length) {
    std::vector<std::string> all{""};
    for (size_t begin = 0, n = 0; n < length; ++n) {
        const size_t end = all.size();
        for (; begin < end; ++begin) {
            for (const char c : letters) all.push_back(all[begin] + c);
        }
    }
    return all;
}

bool can_survive(const std::string &text) {  // what the format can hold
    return text.empty() || (std::string_view(" \t{").find(text.front()) == std::string_view::npos &&
                            std::string_view(" \t").find(text.back()) == std::string_view::npos);
}

// Backslashes, blanks and semicolons, in short texts and around the breaks of lines. Longer and random
// texts are for the model of the fuzz target.
std::vector<std::string> texts_to_survive() {
    std::vector<std::string> texts = all_texts("a\\ ", 6);
    for (const std::string &text : all_texts("a\\;\t =", 4)) texts.push_back(text);
    for (const std::string &text : all_texts("a\\ ;", 3)) {
        for (const size_t front : {77u, 80u, 81u, 82u, 83u, 84u, 85u, 86u, 87u, 171u, 173u, 174u}) {
            for (const char *back : {"", "y", "yyyyy"})
                texts.push_back(std::string(front, 'x').append(text).append(back));
        }
    }
    std::erase_if(texts, [](const std::string &text) { return !can_survive(text); });
    return texts;
}

// As values, and as names of sections, blocks and elements.
TEST(Text, WhatIsStoredSurvives) {
    const std::vector<std::string> texts = texts_to_survive();
    for (const int depth : {0, 9}) {
        const Env env = open_env(), back = open_env();
        std::string above;
        for (int level = 0; level < depth; ++level) above += "b@1@";
        const auto for_each = [&](auto act) {
            for (size_t i = 0; i < texts.size() && !testing::Test::HasFailure(); ++i) {
                act("s", above + numbered("v", i), texts[i]);
                const bool is_name = !texts[i].empty() && texts[i].size() < 180 &&
                                     texts[i].find_first_of("=[]}") == std::string::npos;
                if (is_name) act(texts[i].c_str(), above + texts[i] + "@b@" + texts[i], "1");
            }
        };
        for_each([&](const char *section, const std::string &path, const std::string &value) {
            ASSERT_EQ(env_put(env.get(), section, path.c_str(), value.c_str()), ENV_OK);
        });
        const std::string text = text_of(env.get());
        EXPECT_EQ(read_text(back.get(), text), ENV_OK);
        for_each([&](const char *section, const std::string &path, const std::string &value) {
            EXPECT_EQ(get(back.get(), section, path.c_str()), value) << section << ": " << path;
        });
        EXPECT_TRUE(text_of(back.get()) == text) << depth;
    }
}

std::string nested(size_t depth, const std::string &value) {
    std::string text = "[s]\nv =" + value + "\n";
    for (size_t i = 0; i < depth; ++i) text += "b ={";
    text += "\n";
    for (size_t i = 0; i < depth; ++i) text += "}";
    return text + "\nafter =1\n";
}

TEST(Text, DeepNestingAndLongLines) {
    on_small_stack([] {
        const Env env = open_env();
        const std::string value(300'000, 'x'), deep = nested(100'000, value);
        EXPECT_EQ(read_text(env.get(), nested(1'000, value)), ENV_OK);
        const std::string text = text_of(env.get());
        EXPECT_TRUE(text_of(tree(text).get()) == text);
        EXPECT_EQ(read_text(env.get(), deep), ENV_OK);
        EXPECT_TRUE(get(env.get(), "s", "v") == value);
        EXPECT_EQ(get(env.get(), "s", "after", 0), "1");
        EXPECT_EQ(get(env.get(), "s", "zz", 0), "-4");  // the whole tree is searched
        EXPECT_EQ(env_put(env.get(), "s", "b", "1"), ENV_OK);
        EXPECT_EQ(read_text(env.get(), deep), ENV_OK);
        EXPECT_EQ(env_delete(env.get(), "s", "b"), ENV_OK);
        EXPECT_EQ(env_count_elements(env.get(), "s", nullptr, 1), 2);
        EXPECT_EQ(read_text(env.get(), deep.substr(0, deep.size() - 50'000)), ENV_SYNTAX);
        EXPECT_EQ(text_of(env.get()), "");
        EXPECT_EQ(read_text(env.get(), deep), ENV_OK);
    });
}

}  // namespace

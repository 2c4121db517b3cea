// SPDX-License-Identifier: MIT
// The layer for C++ over the C interface.
#include <filesystem>
#include <gtest/gtest.h>
#include <ranges>
#include <string>
#include <string_view>
#include <vector>

#include "kv.hpp"

#include "tests/support/support.hpp"

namespace {

using namespace kvtest;
using namespace std::string_literals;
using namespace std::string_view_literals;

TEST(Text, ViewsAreTerminatedAndOthersHandedOn) {
    const std::string kept = "kept";
    EXPECT_EQ(kv::text(kept).c_str(), kept.c_str());
    EXPECT_EQ(kv::text(nullptr).c_str(), nullptr);
    for (const std::size_t size : {0U, 1U, 63U, 64U, 1000U}) {
        const std::string all(size + 1, 'x');
        EXPECT_EQ(kv::text(std::string_view(all).substr(1)).c_str(), all.substr(1)) << size;
    }
}

TEST(Environment, ValuesOfEveryType) {
    kv::env env(3);
    ASSERT_TRUE(env);
    int target = 0;
    EXPECT_EQ(env.put("limits", "axis@max", 1.5), ENV_OK);
    EXPECT_EQ(env.put("limits"sv, "count"s, 7), ENV_OK);
    EXPECT_EQ(env.put("limits", "name", "x,,y"), ENV_OK);
    EXPECT_EQ(env.put("limits", "view", "seen"sv.substr(0, 3)), ENV_OK);
    EXPECT_EQ(env.put("limits", "longs", std::vector<std::int32_t>{1, -2}), ENV_OK);
    EXPECT_EQ(env.put("limits", "doubles", std::vector<double>{0.5, 2}), ENV_OK);
    EXPECT_EQ(env.put("limits", "strings", std::vector{"a"s, ""s}), ENV_OK);
    EXPECT_EQ(env.put("limits", "large", std::int64_t{INT32_MAX}), ENV_OK);
    EXPECT_EQ(env.put("limits", "large", 4000000000U), ENV_ERROR);
    EXPECT_EQ(*env.get<std::int32_t>("limits", "large"), INT32_MAX);
    EXPECT_EQ(*env.get<std::string>("limits", "strings"), "a,");
    EXPECT_EQ(env.put("limits", "pointer", static_cast<void *>(&target)), ENV_OK);

    const auto limit = env.get<double>("limits", "axis@max");
    ASSERT_TRUE(limit);
    EXPECT_EQ(*limit, 1.5);
    EXPECT_EQ(limit.code(), 3);  // the environment that has it
    EXPECT_EQ(*env.get<std::int32_t>("limits", "count"), 7);
    EXPECT_EQ(*env.get<std::string>("limits", "view"), "see");
    EXPECT_EQ(*env.get<std::string_view>("limits", "name"), "x,,y");
    EXPECT_EQ(*env.get<std::vector<std::string>>("limits", "name"), (std::vector{"x"s, ""s, "y"s}));
    EXPECT_EQ(*env.get<std::vector<std::int32_t>>("limits", "longs"), (std::vector{1, -2}));
    EXPECT_EQ(*env.get<std::vector<double>>("limits", "doubles"), (std::vector{0.5, 2.0}));
    EXPECT_EQ(*env.get<void *>("limits", "pointer"), &target);

    EXPECT_EQ(env.get<double>("limits", "name").code(), ENV_SYNTAX);
    EXPECT_EQ(env.get<std::vector<double>>("limits", "name").code(), ENV_SYNTAX);
    EXPECT_EQ(env.get<std::vector<double>>("limits", "axis").code(), ENV_DATA);
    EXPECT_EQ(env.get<double>("limits", "none").code(), ENV_NOT_FOUND);
    EXPECT_EQ(env.get<std::int32_t>("limits", "none").value_or(4), 4);
}

TEST(Environment, WalksDefaultsAndSubEnvironments) {
    kv::env maker(1);
    ASSERT_EQ(maker.read("[axis]\nmax=1\nblock={\n a=2\n b={\n }\n}\nmax=3\n[other]\n"), ENV_OK);
    const kv::env site(2, maker.get());
    EXPECT_EQ(site.get<double>("axis", "max").code(), 1);

    std::string seen;
    for (const kv::element &element : maker.elements("axis")) {
        seen += std::string(element.name) + "=" + std::string(element.value) +
                (element.type == kv::element_type::block ? "{} " : " ");
    }
    EXPECT_EQ(seen, "max=1 block={} max=3 ");
    seen.clear();
    for (const kv::element &section : site.sections()) seen += std::string(section.name) + " ";
    EXPECT_EQ(seen, "axis other ");
    for (const kv::element &element : maker.elements("axis", "block@b")) ADD_FAILURE() << element.name;

    {
        const kv::env block = maker.subenv("axis", "block");
        ASSERT_TRUE(block);
        EXPECT_EQ(*block.get<std::int32_t>(nullptr, "a"), 2);
        EXPECT_EQ(maker.erase("axis", "block"), ENV_IN_USE);
    }
    EXPECT_FALSE(maker.subenv("nothing"));
    EXPECT_EQ(maker.erase("axis", "block"), ENV_OK);
    EXPECT_FALSE(maker.exists("axis", "block"));
    EXPECT_EQ(maker.count("axis"), 2);
    EXPECT_NE(maker.write().find("max =3"), std::string::npos);
    EXPECT_EQ(maker.write_file(std::filesystem::path(drive_c() / "layer.env")), ENV_OK);
    EXPECT_EQ(read_file(drive_c() / "layer.env"), maker.write());
    EXPECT_EQ(maker.write_file("C:\\no\\layer.env"), ENV_ERROR);
}

// A range of a temporary has its handle until its own end.
TEST(Environment, RangesAreViews) {
    kv::env tree(1);
    ASSERT_EQ(tree.put("s", "a@b", 1), ENV_OK);
    ASSERT_EQ(tree.put("s", "a@c", 2), ENV_OK);
    std::string seen;
    for (const kv::element &each : tree.subenv("s", "a").elements("")) {
        seen += each.name;
        EXPECT_EQ(tree.erase("s", "a"), ENV_IN_USE);
    }
    EXPECT_EQ(seen, "bc");
#ifndef __clang__  // its older versions do not compile the library's views
    const auto is_one = [](const kv::element &each) { return each.value == "1"; };
    for (const kv::element &each : tree.subenv("s", "a").elements("") | std::views::filter(is_one)) {
        EXPECT_EQ(each.name, "b");
    }
#endif
    EXPECT_EQ(tree.erase("s", "a"), ENV_OK);
}

TEST(Environment, EditsOfAFile) {
    write_file(drive_c() / "layer.env", "[s]\n; kept\n a =1\n b ={\n }\n");
    kv::env more;
    EXPECT_EQ(more.put("t", "x", "y"), ENV_OK);
    kv::edit edits;
    edits.put("s", "a", 2.5).put("s", "b@c", "text"sv).make_section("u"s).erase("s", "b@c");
    edits.insert_before("s", "a", "n", std::string(100, '7'))
        .merge(more, ENV_SINK_ADD)
        .make_block("u", "v");
    const kv::edit made = std::move(edits);
    EXPECT_EQ(made.save("C:\\layer.env"), ENV_OK);
    EXPECT_EQ(read_file(drive_c() / "layer.env"),
              "[s]\n n =" + std::string(85, '7') + "\\\n" + std::string(15, '7') +
                  "\n; kept\n a =2.5\n b ={\n }\n[u]\n  v ={\n  }\n[t]\n  x =y\n");
    std::int32_t reached = 7;
    EXPECT_EQ(kv::edit().erase("none").save("C:\\layer.env", &reached), ENV_NOT_FOUND);
    EXPECT_EQ(reached, 0);
}

TEST(Handles, MoveAndLeaveNilBehind) {
    kv::env first(1);
    first.put("s", "a", 1);
    const kv::env second = std::move(first);
    EXPECT_FALSE(first);  // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(*second.get<std::int32_t>("s", "a"), 1);

    kv::ini ini("C:\\moved.ini");
    ini.put("S", "a", 1);
    kv::ini other = std::move(ini);
    ini = kv::ini("C:\\second.ini");
    EXPECT_EQ(*other.get<std::int32_t>("S", "a"), 1);
    other = std::move(ini);  // and saves what it had
    EXPECT_EQ(read_file(drive_c() / "moved.ini"), "[S]\r\na=1");
}

TEST(Handles, PassBetweenTheLayers) {
    kv::env tree = kv::env::adopt(env_open(4, nullptr));
    {
        kv::env block = tree.create_subenv("axis", "limits");
        ASSERT_TRUE(block);
        EXPECT_EQ(block.put(nullptr, "max", 2.5), ENV_OK);
        EXPECT_EQ(tree.erase("axis", "limits"), ENV_IN_USE);
    }
    EXPECT_FALSE(tree.get<double>("axis", "max").has_value());
    ENV *const handle = tree.release();
    EXPECT_FALSE(tree);
    double value = 0;
    EXPECT_EQ(env_get_double(handle, "axis", "limits@max", 1, &value), 4);
    EXPECT_EQ(value, 2.5);
    EXPECT_EQ(env_close(handle, 0), ENV_OK);
}

TEST(Ini, ValuesKeysAndSaving) {
    write_file(drive_c() / "layer.ini", "[S]\r\n; kept\r\nold=1\r\n");
    {
        kv::ini ini("C:\\layer.ini");
        ASSERT_TRUE(ini);
        const std::string large(3000, 'v');
        EXPECT_EQ(ini.put("S", "new", 2.5), INI_OK);
        EXPECT_EQ(ini.put("S", "text", large), INI_OK);
        EXPECT_EQ(*ini.get<std::string>("S", "text"), large);
        EXPECT_EQ(*ini.get<double>("S", "new"), 2.5);
        EXPECT_EQ(*ini.keys("S"), (std::vector{"old"s, "new"s, "text"s}));
        EXPECT_EQ(ini.put("Long", std::string(9000, 'k'), ""), INI_OK);
        EXPECT_EQ(*ini.keys("Long"), std::vector{std::string(9000, 'k')});
        EXPECT_EQ(ini.erase("Long", std::string(9000, 'k')), INI_OK);
        EXPECT_EQ(ini.get<std::string>("S", "none").code(), INI_NO_ENTRY);
        EXPECT_EQ(ini.get<std::string>("S", nullptr).code(), INI_NO_ENTRY);
        EXPECT_EQ(ini.keys("T").code(), INI_NO_SECTION);
        EXPECT_EQ(ini.erase("S", "text"), INI_OK);
        EXPECT_TRUE(ini.save());
        EXPECT_EQ(ini.put("S", "old", "3"), INI_OK);
    }
    EXPECT_EQ(read_file(drive_c() / "layer.ini"), "[S]\r\n; kept\r\nold=3\r\nnew=2.5\r\n\r\n[Long]");
}

template <typename T>
constexpr bool kWritable = requires(kv::file file, T value) {
    file.write(value);
};

TEST(File, RecordsAndLines) {
    {
        kv::file file("C:\\layer.rec", FIO_WRITE | FIO_HEADER);
        ASSERT_TRUE(file);
        EXPECT_TRUE(file.write(1.25));
        EXPECT_TRUE(file.write(std::int32_t{-5}));
        EXPECT_TRUE(file.write('L'));
        EXPECT_TRUE(file.write_field("HEB"sv, 5));
        static_assert(!kWritable<std::uint16_t> && !kWritable<bool> && kWritable<float>);
        EXPECT_TRUE(file.close());
    }
    kv::file records("C:\\layer.rec", FIO_READ | FIO_HEADER);
    EXPECT_EQ(*records.read<double>(), 1.25);
    EXPECT_EQ(*records.read<std::int32_t>(), -5);
    EXPECT_EQ(*records.read<char>(), 'L');
    EXPECT_EQ(*records.read_field(5), "HEB");
    EXPECT_FALSE(records.read<std::int32_t>());

    write_file(drive_c() / "layer.txt", "one\r\ntwo three\r\n\r\nend");
    kv::file lines("C:\\layer.txt", FIO_READ | FIO_TEXT);
    std::string seen;
    for (const std::string_view line : lines.lines(6)) seen += std::string(line) + "|";
    EXPECT_EQ(seen, "one|two th|ree||end|");
    EXPECT_FALSE(kv::file("C:\\none.txt", FIO_READ));
}

TEST(Table, RowsAndSearches) {
    write_file(drive_c() / "layer.pro",
               "Typ Groesse A Iy\r\nHEB 100 26 450\r\nHEB 200 78.1 5700\r\nIPE 200 28.5 1943\r\n");
    kv::table table("C:\\layer.pro", {"A", "none"});
    ASSERT_TRUE(table);
    std::string seen;
    for (const kv::row &row : table.rows())
        seen += std::string(row.name) + " " + std::to_string(row.values[0]) + "|";
    EXPECT_EQ(seen, "HEB 100 26.000000|HEB 200 78.100000|IPE 200 28.500000|");
    EXPECT_EQ(table.previous()->name, "HEB 200");
    EXPECT_EQ(table.find("HEB150")->name, "HEB 200");
    EXPECT_EQ(table.find("UPN"), nullptr);
    const kv::row *const large = table.search({{"A", " > ", 27}});
    ASSERT_NE(large, nullptr);
    EXPECT_EQ(large->name, "HEB 200");
    EXPECT_EQ(large->values[1], -1);
    EXPECT_EQ(table.search_next()->name, "IPE 200");
    EXPECT_EQ(table.search_next(), nullptr);
    kv::table in_metres("C:\\layer.pro", {"A"}, true);
    EXPECT_DOUBLE_EQ(in_metres.next()->values[0], 26e-4);
    EXPECT_FALSE(kv::table("C:\\none.pro"));
    EXPECT_TRUE(kv::table::of_mats("C:\\layer.pro", {"A"}).next() != nullptr);
}

TEST(Scanner, TwoAtTheSameTime) {
    kv::scanner first("a if 1.5", 0, {"if"});
    kv::scanner second("x");
    std::string seen;
    for (const kv::token &token : first.tokens()) {
        seen += std::to_string(token.kind) + token.record.text + " ";
        if (const kv::token *other = second.next(); other != nullptr) seen += other->record.text + " "s;
    }
    EXPECT_EQ(seen, "6a x 5if 81.5 ");
    EXPECT_EQ(second.next(), nullptr);
}

TEST(Expressions, ValueOrError) {
    EXPECT_EQ(*kv::calculate("2*SIN(30)+4"), 5);
    const kv::calculation failed = kv::calculate("1+\n (2");
    EXPECT_TRUE(kv::calculate("1"));  // the error stays that of its own expression
    EXPECT_FALSE(failed);
    EXPECT_EQ(failed.code(), CALC_UNCLOSED);
    EXPECT_EQ(failed.line(), 1);
    EXPECT_EQ(failed.column(), 3);
    EXPECT_EQ(failed.message(), "Error in expression");
}

TEST(Trace, NamesTheFunctionInReports) {
    clear_log();
    {
        const kv::trace outer("outer_function");
        kv_error("inside", nullptr, nullptr, "layer", 1);
    }
    EXPECT_EQ(count_in_log("outer_function"), 1);
    kv_error("outside", nullptr, nullptr, "layer", 2);
    EXPECT_EQ(count_in_log("outer_function"), 1);
}

}  // namespace

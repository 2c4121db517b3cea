// SPDX-License-Identifier: MIT
// Caches in adverse conditions: long lists, an exhausted heap, failing file operations. What calls make of
// a cache and its file, the model of the fuzz target says.
#include <cstdint>
#include <thread>
#include <vector>

#include "config/mini_sections.hpp"
#include "memory/failpoint.hpp"
#include "platform/failpoint.hpp"
#include "tests/config/mini_caches.hpp"

namespace {

using namespace kvtest;

TEST(MiniLists, ManySections) {
    std::string file;
    for (int i = 0; i < 2000; ++i)
        file += "[s" + std::to_string(i % 1500) + "]\nk=" + std::to_string(i) + "\n";
    use_file(file);
    const Cache cache(MINI_READONLY | MINI_LOADALL);
    for (int i = 0; i < 1500; ++i) {
        const std::string name = "s" + std::to_string(i);
        ASSERT_EQ(value(cache, name.c_str(), "k"), std::to_string(i));
        ASSERT_EQ(mini_unload_one_section(cache, name.c_str()), INI_OK);
        if (i < 500) {
            ASSERT_EQ(value(cache, name.c_str(), "k"), std::to_string(i + 1500));
        }
    }
    for (int i = 0; i < 1500; ++i) {  // loaded anew, the unnamed one in front
        ASSERT_EQ(value(cache, ("s" + std::to_string(i)).c_str(), "k"),
                  std::to_string(i + (i < 500 ? 1500 : 0)));
    }
    EXPECT_EQ(keys(cache, ""), "");
}

TEST(MiniExhaustion, OpeningUpdatingRenaming) {
    std::string content = "[A]\na=1\nb=2\n[B]\nc=3\n";
    for (int i = 0; i < 20; ++i) content += "key" + std::to_string(i) + "=" + std::to_string(i) + "\n";
    const std::string before = crlf(content);
    std::string after;
    const int runs = sweep_allocation_failures([&](std::int64_t) {
        const std::int64_t left = kv::memory::allocations_until_failure;
        kv::memory::plan_failure(-1);
        write_file(cache_file(), before);
        kv::memory::plan_failure(left);
        MINI *cache = mini_open(nullptr, kCacheFile, MINI_LOADALL);
        if (cache == nullptr) return;
        // Without their index the entries are found all the same.
        for (int i = 0; i < 20; ++i) {
            int32_t number = -1;
            EXPECT_EQ(mini_read_long(cache, "B", ("key" + std::to_string(i)).c_str(), &number), INI_OK);
            EXPECT_EQ(number, i);
        }
        const int32_t renamed = mini_rename_entry(cache, "A", "a", "a name that is longer");
        EXPECT_TRUE(renamed == INI_OK || renamed == INI_FAILED) << renamed;
        const int32_t section = mini_rename_section(cache, "B", "a name that is longer");
        EXPECT_TRUE(section == INI_OK || section == INI_FAILED) << section;
        EXPECT_EQ(std::string(mini_get_string(cache, "A", renamed == INI_OK ? "a name that is longer" : "a",
                                              nullptr, nullptr)),
                  "1");
        const std::string in_file = read_file(cache_file());
        const int32_t updated = mini_update_file(cache);
        after = read_file(cache_file());
        if (updated == 0) {
            EXPECT_EQ(after, in_file);
        }
        mini_unload_all_sections(cache);
        const std::int64_t rest = kv::memory::allocations_until_failure;
        kv::memory::plan_failure(-1);
        mini_close(&cache);
        kv::memory::plan_failure(rest);
    });
    EXPECT_GT(runs, 20);
    EXPECT_NE(after.find("[a name that is longer]\r\nc=3"), std::string::npos) << after;
}

// Writes a new entry and reads it; the allocations that writing took.
std::int64_t write_entry(MINI *cache, int number, std::int64_t most) {
    const std::string key = "key" + std::to_string(number);
    kv::memory::plan_failure(most);
    mini_write_string(cache, "A", key.c_str(), std::to_string(number).c_str());
    const std::int64_t left = kv::memory::allocations_until_failure;
    kv::memory::plan_failure(-1);
    EXPECT_EQ(value(cache, "A", key.c_str()), std::to_string(number));
    return most - left;
}

// New entries do without the index when that finds no room to grow.
TEST(MiniExhaustion, AnIndexThatCannotGrow) {
    use_file("");
    constexpr std::int64_t kMany = 1000;
    constexpr int kIndexed = 15;  // by then the list has an index, which does not grow yet
    std::int64_t usual = 0;
    int growing = 0;  // the entry with which it grows
    {
        const Cache cache(MINI_READONLY);
        for (int i = 0; growing == 0; ++i) {
            ASSERT_LT(i, 1000);
            const std::int64_t taken = write_entry(cache, i, kMany);
            if (i == kIndexed) usual = taken;
            if (i > kIndexed && taken > usual) growing = i;
        }
    }
    const Cache cache(MINI_READONLY);
    for (int i = 0; i < growing; ++i) write_entry(cache, i, kMany);
    EXPECT_EQ(write_entry(cache, growing, usual), usual);
    for (int i = 0; i <= growing; ++i) {
        EXPECT_EQ(value(cache, "A", ("key" + std::to_string(i)).c_str()), std::to_string(i));
    }
}

// The numbers by which an index knows what comes first, at the ends of what they hold.
TEST(MiniLists, NumbersThatEnd) {
    const auto numbers_grow = [](const auto &list) {
        for (const kv::mini::Node *node = list.first(); node->next != nullptr; node = node->next) {
            if (node->order >= node->next->order) return false;
        }
        return true;
    };
    kv::mini::Sections sections;
    kv::mini::Section &section = sections.add(kv::mini::Sections::make("s"));
    kv::mini::Entry &first = section.append("twice", "1");
    for (int i = 0; i < 20; ++i) section.append(std::to_string(i), "");
    section.entries.find("19")->order = INT32_MAX;
    kv::mini::Entry &second = section.append("twice", "2");
    EXPECT_TRUE(numbers_grow(section.entries));
    EXPECT_EQ(section.entries.find("twice"), &first);
    section.entries.remove(first);
    EXPECT_EQ(section.entries.find("twice"), &second);

    section.order = INT32_MIN;
    const kv::mini::Section &unnamed = sections.add(kv::mini::Sections::make(""));
    EXPECT_EQ(sections.first(), &unnamed);
    EXPECT_TRUE(numbers_grow(sections));
}

std::size_t files_on_drive() {
    return entries_of_drive_c().size();
}

TEST(MiniFailures, AnUpdateIsWholeOrNothing) {
    const std::string before = crlf("[A]\na=1\n");
    const std::string after = crlf("[A]\na=2");
    for (const bool lasting : {false, true}) {
        int failures = 0;
        for (int successes = 0; successes < 100; ++successes) {
            use_file("[A]\na=1\n");
            const Cache cache;
            mini_write_string(cache, "A", "a", "2");
            const std::size_t files = files_on_drive();
            kv::platform::plan_io_failure(successes, lasting);
            const int32_t updated = mini_update_file(cache);
            const bool failed = kv::platform::calls_until_failure <= 0;
            kv::platform::plan_io_failure(-1, false);
            EXPECT_EQ(read_file(cache_file()), updated == 1 ? after : before) << successes;
            EXPECT_EQ(files_on_drive(), files) << successes;
            EXPECT_EQ(mini_update_file(cache), 1);
            EXPECT_EQ(read_file(cache_file()), after) << successes;
            failures += updated == 0 ? 1 : 0;
            if (!failed) break;
        }
        EXPECT_GE(failures, 3);
    }
}

// A reading that breaks off loads no half of a section, which the next update would make whole.
TEST(MiniFailures, NothingIsLoadedByHalf) {
    std::string content = "[A]\n";
    for (int i = 0; i < 5000; ++i) content += "key" + std::to_string(i) + "=1\n";
    use_file(content);
    for (int successes = 0; successes < 20; ++successes) {
        const Cache cache(MINI_READONLY);
        kv::platform::plan_io_failure(successes, false);
        const int32_t status = mini_write_string(cache, "A", "key1", "2");
        kv::platform::plan_io_failure(-1, false);
        EXPECT_TRUE(status == INI_OK || status == INI_FAILED) << status;
        EXPECT_EQ(value(cache, "A", "key4999"), "1") << successes;
    }
}

TEST(MiniTurns, NoChangeIsLost) {
    constexpr int kThreads = 4;
    constexpr int kChanges = 25;
    std::string content;
    for (int i = 0; i < kThreads; ++i)
        content += "[s" + std::to_string(i) + "]\n[cache" + std::to_string(i) + "]\n";
    use_file(content);
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([i] {
            const std::string section = std::to_string(i);
            const Cache cache;
            for (int k = 0; k < kChanges; ++k) {
                const std::string key = "k" + std::to_string(k);
                ini_write_long(kCacheFile, ("s" + section).c_str(), key.c_str(), k);
                mini_write_long(cache, ("cache" + section).c_str(), key.c_str(), k);
                mini_update_file(cache);
            }
        });
    }
    for (std::thread &thread : threads) thread.join();
    const Cache cache(MINI_READONLY | MINI_LOADALL);
    for (int i = 0; i < kThreads * kChanges; ++i) {
        const std::string section = std::to_string(i % kThreads);
        const std::string key = "k" + std::to_string(i / kThreads);
        EXPECT_EQ(value(cache, ("s" + section).c_str(), key.c_str()), std::to_string(i / kThreads));
        EXPECT_EQ(value(cache, ("cache" + section).c_str(), key.c_str()), std::to_string(i / kThreads));
    }
}

}  // namespace

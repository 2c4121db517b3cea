// SPDX-License-Identifier: MIT
#include "tests/support/support.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <limits>
#include <random>

#include "memory/failpoint.hpp"
#include "platform/platform.hpp"
#include "tests/support/host.hpp"

namespace kvtest {

namespace {

std::filesystem::path g_drive_c;
std::vector<std::filesystem::path> g_not_ours;  // on drive C at the start
unsigned long g_running = 0;                    // the process that has tests to run

// kv_exit() ends a process with 0, which would pass for success. Children that tests fork may do so.
void refuse_early_exit() {
    if (process_number() != g_running) return;
    std::fputs("A test has ended the process.\n", stderr);
    std::_Exit(1);
}

std::vector<std::filesystem::path> all_on_drive_c() {
    std::vector<std::filesystem::path> entries;
    for (const auto &entry : std::filesystem::directory_iterator(g_drive_c))
        entries.push_back(entry.path());
    return entries;
}

}  // namespace

const std::filesystem::path &drive_c() {
    return g_drive_c;
}

std::vector<std::filesystem::path> entries_of_drive_c() {
    std::vector<std::filesystem::path> entries = all_on_drive_c();
    std::erase_if(entries, [](const auto &entry) {
        return std::find(g_not_ours.begin(), g_not_ours.end(), entry) != g_not_ours.end();
    });
    return entries;
}

void empty_drive_c() {
    for (const auto &entry : entries_of_drive_c()) remove_directory(entry);
}

bool has_entry(const std::filesystem::path &directory, const std::string &name) {
    for (const auto &entry : std::filesystem::directory_iterator(directory)) {
        if (entry.path().filename().string() == name) return true;
    }
    return false;
}

void remove_directory(const std::filesystem::path &directory) {
    using std::filesystem::perms;
    if (std::filesystem::is_directory(std::filesystem::symlink_status(directory))) {
        for (const auto &entry : std::filesystem::recursive_directory_iterator(directory)) {
            if (entry.is_symlink()) continue;
            std::filesystem::permissions(entry, perms::owner_write, std::filesystem::perm_options::add);
        }
    }
    std::filesystem::remove_all(directory);
}

void set_variable(const char *name, const std::string &value) {
    EXPECT_TRUE(kv::platform::set_environment_variable(name, value.c_str())) << name;
}

std::filesystem::path make_directory(const std::filesystem::path &prefix) {
    std::random_device random;
    for (;;) {
        const std::filesystem::path path = prefix.string() + std::to_string(random());
        if (std::filesystem::create_directory(path)) return path;
    }
}

std::string read_file(const std::filesystem::path &path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void write_file(const std::filesystem::path &path, std::string_view content) {
    std::ofstream stream(path, std::ios::binary);
    stream.write(content.data(), static_cast<std::streamsize>(content.size()));
    ASSERT_TRUE(stream.flush().good()) << path;
}

std::string read_report(const std::filesystem::path &path) {
    std::ifstream stream(path);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::string read_log() {
    return read_report(g_drive_c / "kv.err");
}

void clear_log() {
    std::filesystem::remove(g_drive_c / "kv.err");
}

int count_in_log(std::string_view text) {
    const std::string log = read_log();
    int count = 0;
    for (auto at = log.find(text); at != std::string::npos; at = log.find(text, at + text.size())) ++count;
    return count;
}

int sweep_allocation_failures(const std::function<void(std::int64_t)> &attempt) {
    constexpr int kMostRuns = 100000;
    for (int run = 0; run < kMostRuns; ++run) {
        kv::memory::plan_failure(run);
        attempt(run);
        const bool failures_began = kv::memory::allocations_until_failure == 0;
        kv::memory::plan_failure(-1);
        if (!failures_began) return run + 1;
        if (testing::Test::HasFatalFailure()) return run + 1;
    }
    ADD_FAILURE() << "the sweep does not end";
    return kMostRuns;
}

}  // namespace kvtest

int kvtest::run_tests(int argc, char **argv) {
    testing::InitGoogleTest(&argc, argv);
    const Host host;
    if (host.root().empty()) return 1;
    g_drive_c = host.root();
    g_not_ours = all_on_drive_c();
    remove_variable("KV_DEBUG_OUTPUT");
    g_running = process_number();
    if (std::atexit(refuse_early_exit) != 0) return 1;
    const int result = RUN_ALL_TESTS();
    g_running = 0;
    empty_drive_c();
    return result;
}

#include "tests/support/support.hpp"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <limits>
#include <stdlib.h>

#include "memory/failpoint.hpp"

namespace kvtest {

namespace {
std::filesystem::path g_drive_c;
}

const std::filesystem::path &drive_c() {
    return g_drive_c;
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

std::string read_log() {
    return read_file(g_drive_c / "kv.err");
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

// Every test process has a drive C of its own, so that tests can run side by side.
int main(int argc, char **argv) {
    testing::InitGoogleTest(&argc, argv);
    std::string pattern = (std::filesystem::temp_directory_path() / "kv-test-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        perror("mkdtemp");
        return 1;
    }
    kvtest::g_drive_c = pattern;
    setenv("KV_DRIVE_C", pattern.c_str(), 1);
    unsetenv("KV_DEBUG_OUTPUT");
    const int result = RUN_ALL_TESTS();
    std::filesystem::remove_all(kvtest::g_drive_c);
    return result;
}

// SPDX-License-Identifier: MIT
#include <clocale>
#include <cstdio>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/support/host.hpp"
#include "tests/support/support.hpp"

namespace kvtest {

namespace {

std::filesystem::path new_directory(const char *name) {
    std::string pattern = (std::filesystem::temp_directory_path() / name).string();
    if (mkdtemp(pattern.data()) != nullptr) return pattern;
    perror("mkdtemp");
    return {};
}

}  // namespace

// The home is one of the test's own, too: what is deleted goes to the trash there, and no setting of the
// user counts.
Host::Host() : root_(new_directory("kv-test-XXXXXX")), home_(new_directory("kv-home-XXXXXX")) {
    if (home_.empty()) root_.clear();
    setenv("KV_DRIVE_C", root_.c_str(), 1);
    setenv("HOME", home_.c_str(), 1);
    for (const char *name :
         {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME", "XDG_CONFIG_DIRS"}) {
        unsetenv(name);
    }
}

Host::~Host() {
    for (const std::filesystem::path &directory : {root_, home_}) {
        if (!directory.empty()) std::filesystem::remove_all(directory);
    }
}

unsigned long process_number() {
    return static_cast<unsigned long>(getpid());
}

RegistryValue::RegistryValue(const std::string &key, const std::string &text) : key_(key) {
    const std::filesystem::path file = drive_c() / "registry.txt";
    write_file(file, "[" + key + "]\r\n@=" + text + "\r\n");
    setenv("KV_REGISTRY", file.c_str(), 1);
}

RegistryValue::~RegistryValue() {
    std::filesystem::remove(drive_c() / "registry.txt");
    unsetenv("KV_REGISTRY");
}

void use_time_zone_of_berlin() {
    setenv("TZ", "Europe/Berlin", 1);
}

bool use_german_locale(const char *locales) {
    setenv("LOCPATH", locales, 1);
    return std::setlocale(LC_ALL, "de_DE") != nullptr;
}

void set_modified(const std::filesystem::path &path, std::int64_t seconds) {
    timespec times[2] = {{}, {}};
    times[0].tv_nsec = UTIME_OMIT;
    times[1].tv_sec = static_cast<time_t>(seconds);
    EXPECT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0) << path;
}

std::filesystem::path use_drive_m() {
    const std::filesystem::path root = drive_c() / "drive_m";
    std::filesystem::remove_all(root);
    std::filesystem::create_directory(root);
    setenv("KV_DRIVE_M", root.c_str(), 1);
    return root;
}

}  // namespace kvtest

int main(int argc, char **argv) {
    return kvtest::run_tests(argc, argv);
}

// SPDX-License-Identifier: MIT
// Paths as the families write them, and the files that they reach.
#include "platform/posix/drives.hpp"

#include <filesystem>
#include <gtest/gtest.h>
#include <stdlib.h>

#include "tests/support/support.hpp"

namespace {

namespace fs = std::filesystem;
using kv::platform::posix::HostPath;
using kv::platform::posix::map_path;
using kv::platform::posix::Purpose;

std::string mapped(const std::string &path, Purpose purpose = Purpose::read) {
    HostPath host;
    return map_path(path.c_str(), purpose, host) ? host.text : "(none)";
}

TEST(Drives, PathsReachTheirFiles) {
    const std::string c = kvtest::drive_c().string();
    const std::string canonical = fs::canonical(c).string();
    fs::create_directories(kvtest::drive_c() / "Data/Sub");
    kvtest::write_file(kvtest::drive_c() / "Data/Press.ENV", "x");
    kvtest::write_file(kvtest::drive_c() / "Data/same", "x");
    kvtest::write_file(kvtest::drive_c() / "Data/SAME", "x");
    fs::create_directory_symlink("Data/Sub", kvtest::drive_c() / "Lnk");
    std::string backslashes = c + "/Data/Press.ENV";
    for (char &character : backslashes) character = character == '/' ? '\\' : character;
    const struct {
        std::string path, host;
    } cases[] = {
        {"c:\\Data\\Press.ENV", c + "/Data/Press.ENV"},
        {"C:/data/PRESS.env", c + "/Data/Press.ENV"},
        {"c:data\\press.env", c + "/Data/Press.ENV"},
        {"c:\\\\DATA//.\\Sub\\..\\press.env", c + "/Data/Press.ENV"},
        {"c:\\data\\new.Env", c + "/Data/new.Env"},
        {"c:\\data\\no\\New.env", c + "/Data/no/New.env"},
        {"c:\\data\\same", c + "/Data/same"},
        {"c:\\data\\SAME", c + "/Data/SAME"},
        {"c:\\data\\Same", c + "/Data/SAME"},
        {"c:\\..\\..\\data\\press.env", c + "/Data/Press.ENV"},
        {"c:\\", c + "/"},
        {"c:", c + "/"},
        {c + "/Data/press.env", c + "/Data/Press.ENV"},
        {"z:" + c + "/Data/Press.ENV", c + "/Data/Press.ENV"},
        {backslashes, c + "/Data/Press.ENV"},
        {"c:\\lnk\\..\\press.env", c + "/press.env"},
        {c + "/lnk/../press.env", canonical + "/Data/Press.ENV"},  // in the directory that Sub is in
        {c + "/LNK/../../no/../data/sub/../new.Env", canonical + "/Data/new.Env"},
        {"press.env", fs::current_path().string() + "/press.env"},
        {"z:press.env", fs::current_path().string() + "/press.env"},
        {"/", "/"},
        {"", "(none)"},
        {"q:\\file", "(none)"},
        {"/" + std::string(5000, 'a'), "(none)"},
    };
    for (const auto &[path, host] : cases) EXPECT_EQ(mapped(path), host) << path;
}

TEST(Drives, TheEnvironmentNamesFurtherDrives) {
    setenv("KV_DRIVE_M", (kvtest::drive_c().string() + "//").c_str(), 1);
    EXPECT_EQ(mapped("m:\\file"), kvtest::drive_c().string() + "/file");
    setenv("KV_DRIVE_M", "", 1);
    EXPECT_EQ(mapped("m:\\file"), "(none)");
    unsetenv("KV_DRIVE_M");
}

TEST(Drives, DriveCIsCreatedWhenFirstWrittenTo) {
    const std::string before = getenv("KV_DRIVE_C");
    const fs::path data = kvtest::drive_c() / "home/data";
    const auto check = [](const fs::path &drive) {
        EXPECT_EQ(mapped("c:\\file"), (drive / "file").string());
        EXPECT_FALSE(fs::exists(drive));
        EXPECT_EQ(mapped("c:\\file", Purpose::write), (drive / "file").string());
        EXPECT_TRUE(fs::is_directory(drive));
    };
    unsetenv("KV_DRIVE_C");
    setenv("XDG_DATA_HOME", data.c_str(), 1);
    check(data / "kv/drive_c");
    unsetenv("XDG_DATA_HOME");
    setenv("HOME", (kvtest::drive_c() / "home").c_str(), 1);
    check(kvtest::drive_c() / "home/.local/share/kv/drive_c");
    setenv("KV_DRIVE_C", before.c_str(), 1);
}

}  // namespace

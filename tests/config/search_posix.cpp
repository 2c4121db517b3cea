// SPDX-License-Identifier: MIT
// The configuration search where the system does not tell the current directory, which elsewhere cannot be
// removed, and the file that is the registry on POSIX.
#include <filesystem>
#include <gtest/gtest.h>
#include <string>

#include "kv/config.h"
#include "kv/frame.h"

#include "tests/support/support.hpp"

namespace {

TEST(SearchOnPosix, GoesOnWithoutACurrentDirectory) {
    namespace fs = std::filesystem;
    const fs::path before = fs::current_path();
    for (const char *name : {"gone", "kv"}) fs::create_directory(kvtest::drive_c() / name);
    kvtest::write_file(kvtest::drive_c() / "kv" / "x.pro", "");
    kv_putenv("KV=C:\\kv");
    fs::current_path(kvtest::drive_c() / "gone");
    fs::remove(kvtest::drive_c() / "gone");
    char out[256] = "";
    EXPECT_EQ(kv_suche_datei(nullptr, nullptr, "x.pro", out), 0);
    fs::current_path(before);
    EXPECT_STREQ(out, "C:\\kv\\x.pro");
}

int32_t find_main(std::string &path) {
    char out[256] = "";
    const int32_t result = kv_suche_datei(nullptr, nullptr, nullptr, out);
    path = out;
    return result;
}

TEST(RegistryFile, CommentsBlanksAndCase) {
    const std::string key = "[Software\\kv Software AG\\";
    kvtest::write_file(kvtest::drive_c() / "other.ini", "");
    kvtest::write_file(
        kvtest::drive_c() / "registry.txt",
        "; set up by hand\r\n" + key + "other.ini]\r\n@=C:\\b\r\n" +
            "[SOFTWARE\\KV software ag\\KV3.INI]\r\nName=C:\\b\r\n @ = C:\\other.ini \r\n@=C:\\b\r\n");
    kvtest::set_variable("KV_REGISTRY", (kvtest::drive_c() / "registry.txt").string());
    std::string path;
    EXPECT_EQ(find_main(path), 0);
    EXPECT_EQ(path, "C:\\other.ini");
    kvtest::set_variable("KV_REGISTRY", "/no such file");
    EXPECT_EQ(find_main(path), -1);
    kvtest::remove_variable("KV_REGISTRY");
}

}  // namespace

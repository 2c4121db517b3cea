// SPDX-License-Identifier: MIT
// The configuration search over any registry and any main configuration file: whatever they hold, a result
// is a file that is there, and no buffer of 256 bytes overflows.
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>
#include <unistd.h>

#include "kv/config.h"
#include "kv/fio.h"
#include "kv/frame.h"

#include "fuzz/support.hpp"

namespace {

struct Files {
    Files() {
        directory = "/dev/shm/kv-fuzz-search-" + std::to_string(getpid());
        std::filesystem::create_directories(directory + "/sub");
        kv_error_onoff(0);
        unsetenv("KV_DEBUG_OUTPUT");
        setenv("KV", directory.c_str(), 1);
        setenv("kv", (directory + "/kv3.ini").c_str(), 1);
        setenv("KV_REGISTRY", (directory + "/registry").c_str(), 1);
        setenv("KV_DRIVE_C", "/nonexistent", 1);
        KV_REQUIRE(chdir(directory.c_str()) == 0);
        std::filesystem::remove("kv3.ini");
        write("sub/there", "");
    }
    ~Files() { std::filesystem::remove_all(directory); }
    static void write(const char *name, std::string_view content) {
        std::FILE *file = std::fopen(name, "wb");
        KV_REQUIRE(file != nullptr);
        std::fwrite(content.data(), 1, content.size(), file);
        std::fclose(file);
    }
    std::string directory;
};

// A result has its size and exists; without one the buffer is as it was.
void search(const char *section, const char *entry, const char *name) {
    std::array<char, 256> out{};
    out.fill('#');
    if (kv_suche_datei(section, entry, name, out.data()) != 0) {
        for (const char c : out) KV_REQUIRE(c == '#');
        return;
    }
    KV_REQUIRE(std::memchr(out.data(), '\0', out.size()) != nullptr);
    KV_REQUIRE(fio_exist(nullptr, out.data()) == 1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static const Files files;
    const std::string_view input(static_cast<const char *>(static_cast<const void *>(data)), size);
    const std::size_t end = input.find('\x01');  // what stands before it is the registry
    Files::write("registry", input.substr(0, end));
    if (end != input.npos) {
        Files::write("kv3.ini", input.substr(end + 1));
    } else {
        std::remove("kv3.ini");
    }
    search(nullptr, nullptr, nullptr);
    search("s", "e", "there");
    std::array<char, 256> path{};
    kv_suche_pfad("s", "e", path.data());
    KV_REQUIRE(std::memchr(path.data(), '\0', path.size()) != nullptr);
    KV_REQUIRE(std::strlen(kv_getinipath("e")) < 256);
    return 0;
}

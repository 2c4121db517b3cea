// SPDX-License-Identifier: MIT
// Joining, splitting and full paths beside a plain model; every buffer has exactly the size that is
// promised. The lines of the input are the base, the directory and the name.
#include <cstring>
#include <memory>

#include "kv/fio.h"

#include "fuzz/fio/support.hpp"

namespace {

bool separates(char c) {
    return c == '/' || c == '\\';
}

std::string drive_of(const std::string &path) {
    const bool letter =
        !path.empty() && ((path[0] >= 'a' && path[0] <= 'z') || (path[0] >= 'A' && path[0] <= 'Z'));
    return letter && path.size() > 1 && path[1] == ':' ? path.substr(0, 2) : "";
}

std::string name_of(const std::string &path) {
    const std::string rest = path.substr(drive_of(path).size());
    return rest.substr(rest.find_last_of("/\\") + 1);
}

void put_before(std::string part, std::string &drive, std::string &result) {
    if (!drive.empty()) return;
    drive = drive_of(part);
    if (!result.empty() && !name_of(part).empty()) part += '\\';
    if (!part.empty() && !result.empty() && separates(part.back()) && separates(result[0]))
        result.erase(0, 1);
    result = part + result;
}

// Empty if the path is too long.
std::string joined(const std::string &base, const std::string &dir, const std::string &name) {
    std::string result = name;
    std::string drive = drive_of(name);
    put_before(dir, drive, result);
    put_before(base, drive, result);
    for (char &c : result) c = c == '/' ? '\\' : c;
    if (result.size() >= drive.size() + 3 && result.back() == '\\') result.pop_back();
    return result.size() <= 255 ? result : "";
}

void check_division(const std::string &path) {
    const std::unique_ptr<char[]> drive(new char[3]);
    const std::unique_ptr<char[]> dir(new char[256]);
    const std::unique_ptr<char[]> name(new char[256]);
    fio_divide(path.c_str(), drive.get(), dir.get(), name.get());
    KV_REQUIRE(drive_of(path) == drive.get());
    KV_REQUIRE(name_of(path).substr(0, 255) == name.get());
    if (path.size() <= 255) KV_REQUIRE(path == std::string(drive.get()) + dir.get() + name.get());
}

std::string full(const std::string &base, const std::string &dir, const std::string &name) {
    const std::unique_ptr<char[]> out(new char[256]);
    KV_REQUIRE(fio_make_fullpath(out.get(), base.c_str(), dir.c_str(), name.c_str()) == out.get());
    return out.get();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static const bool ready = [] {
        setenv("KV_DRIVE_C", "/dev/shm", 1);
        return fio_sethostname("c") == 0;
    }();
    KV_REQUIRE(ready);
    kvfuzz::Lines lines(data, size);
    const std::string base = lines.next();
    const std::string dir = lines.next();
    const std::string name = lines.next();
    for (const std::string &part : {base, dir, name}) {
        check_division(part);
        const std::size_t point = part.rfind('.');
        KV_REQUIRE(fio_get_extention_pos(part.c_str()) ==
                   (point != part.npos && point > 0 ? static_cast<int32_t>(point) : -1));
    }
    const std::unique_ptr<char[]> out(new char[256]);
    KV_REQUIRE(fio_makepath(out.get(), base.c_str(), dir.c_str(), name.c_str()) == out.get());
    const std::string path = out.get();
    KV_REQUIRE(path == joined(base, dir, name));

    const std::string absolute = full(base, dir, name);
    if (absolute.empty()) return 0;
    KV_REQUIRE(drive_of(absolute).size() == 2 && absolute.size() > 2 && absolute[2] == '\\');
    KV_REQUIRE(absolute.find('/') == absolute.npos);
    // Of several separators at the end each call takes some away.
    if (absolute.size() > 3 && absolute.back() == '\\') return 0;
    KV_REQUIRE(full("", "", absolute) == absolute);
    KV_REQUIRE(full(base, dir, absolute) == absolute);
    return 0;
}

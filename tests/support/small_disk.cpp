// SPDX-License-Identifier: MIT
#include "tests/support/small_disk.hpp"

#include <cstdlib>
#include <fstream>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/support.hpp"

namespace kvtest {

namespace {

// Mounts for this process alone; it goes with the process.
bool mount_small_disk(const std::filesystem::path &directory) {
    if (unshare(CLONE_NEWNS) != 0 && unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return false;
    if (mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return false;
    return mount("tmpfs", directory.c_str(), "tmpfs", 0, "size=64k") == 0;
}

}  // namespace

void SmallDisk::fill() const {
    std::ofstream stream(filler(), std::ios::binary);
    while (stream.put('x').flush().good()) {
    }
}

std::ptrdiff_t SmallDisk::files() const {
    std::ptrdiff_t count = 0;
    for (const auto &entry : std::filesystem::directory_iterator(directory_)) {
        count += entry.path() != filler() ? 1 : 0;
    }
    return count;
}

std::string on_small_disk(const std::function<std::string(const SmallDisk &)> &function) {
    const SmallDisk disk(drive_c() / "small");
    const std::filesystem::path answer = drive_c() / "answer";
    std::filesystem::create_directory(disk.directory());
    const pid_t child = fork();
    if (child == 0) {
        write_file(answer, mount_small_disk(disk.directory()) ? function(disk) : kNoSmallDisk);
        _exit(0);
    }
    int status = -1;
    const bool ended = child > 0 && waitpid(child, &status, 0) == child && status == 0;
    const std::string result = ended ? read_file(answer) : "the process failed";
    std::filesystem::remove(answer);
    std::filesystem::remove(disk.directory());
    return result;
}

}  // namespace kvtest

// SPDX-License-Identifier: MIT
// Processes times threads that change, read and kill each other on one file, for every kind of file that is
// saved in a way of its own. Afterwards nothing is lost, torn, seen by others or left behind.
//
//   kv_torture [--seconds N] DIRECTORY...    default: 10 seconds for each kind in each directory
//
// Each worker counts up an entry of its own, in two places of the file that have to agree; a reader
// compares the places, and a watcher without rights tries to open whatever name appears in the directory.
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <sys/inotify.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "kv.h"

#include "platform/failpoint.hpp"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr int kProcesses = 4;
constexpr int kThreads = 2;
constexpr int kWorkers = kProcesses * kThreads;
constexpr uid_t kNobody = 65534;

// How the file is saved, and what may happen to who saves it.
struct Kind {
    const char *name;
    bool kills;     // a change in place that is killed may be torn
    bool failures;  // calls of the system fail
    bool as_nobody;
    bool is_private;  // nobody else may see the content
};

constexpr Kind kKinds[] = {
    {"replaced", true, false, false, true},       {"failing", false, true, false, true},
    {"hard link", false, false, false, true},     {"hard link, failing", false, true, false, true},
    {"another owner", false, false, true, false}, {"mount point", false, false, false, true},
    {"symbolic link", true, false, false, true},
};

struct Shared {
    std::atomic<int> begun[kWorkers];  // the number that is being written
    std::atomic<int> done[kWorkers];   // the last one of which the status said that it is written
    std::atomic<int> watching, opened, names, torn, reads, kills, refused;
    std::atomic<bool> stop;
};

Shared *shared;
std::string file;
int faults = 0;

void complain(const std::string &kind, const std::string &what) {
    std::printf("FAILED %s: %s\n", kind.c_str(), what.c_str());
    ++faults;
}

std::string key(int worker) {
    return "w" + std::to_string(worker);
}

int32_t save(int worker, int number) {
    const std::string text = std::to_string(number);
    const std::string name = key(worker);
    const INI_EDIT edits[] = {{INI_EDIT_WRITE, "first", name.c_str(), text.c_str()},
                              {INI_EDIT_WRITE, "last", name.c_str(), text.c_str()}};
    return ini_edit(file.c_str(), edits, 2, nullptr);
}

int read_number(MINI *cache, const char *section, int worker) {
    int32_t number = -1;
    mini_read_long(cache, section, key(worker).c_str(), &number);
    return number;
}

// Counts up; what was there before goes on, since the worker before may have been killed at any moment.
void work(int worker, bool failures) {
    std::mt19937 random(static_cast<unsigned>(worker) + static_cast<unsigned>(getpid()));
    while (!shared->stop) {
        const int number = shared->begun[worker] + 1;
        shared->begun[worker] = number;
        if (failures) kv::platform::plan_io_failure(static_cast<std::int64_t>(random() % 40), false);
        if (save(worker, number) == INI_OK) {
            shared->done[worker] = number;
        } else if (!failures) {
            ++shared->refused;
        }
    }
}

void compare() {
    while (!shared->stop) {
        MINI *cache = mini_open(nullptr, file.c_str(), MINI_LOADALL | MINI_READONLY);
        for (int worker = 0; worker < kWorkers; ++worker) {
            if (cache == nullptr ||
                read_number(cache, "first", worker) != read_number(cache, "last", worker)) {
                ++shared->torn;
            }
        }
        mini_close(&cache);
        ++shared->reads;
    }
}

// A user without rights; the directory may be listed.
void watch(const fs::path &directory) {
    if (setgid(kNobody) != 0 || setuid(kNobody) != 0) _exit(0);
    const int watched = inotify_init1(IN_NONBLOCK);
    inotify_add_watch(watched, directory.c_str(), IN_CREATE | IN_MOVED_TO | IN_ATTRIB | IN_MODIFY);
    alignas(inotify_event) char events[65536];
    shared->watching = 1;
    while (!shared->stop) {
        const ssize_t size = read(watched, events, sizeof events);
        for (ssize_t at = 0; at < size;) {
            const auto *event = reinterpret_cast<const inotify_event *>(events + at);
            at += static_cast<ssize_t>(sizeof *event + event->len);
            ++shared->names;
            const int opened = event->len > 0 ? open((directory / event->name).c_str(), O_RDONLY) : -1;
            if (opened < 0) continue;
            ++shared->opened;
            close(opened);
        }
    }
    _exit(0);
}

pid_t start(const Kind &kind, int process) {
    const pid_t child = fork();
    if (child != 0) return child;
    if (kind.as_nobody && (setgid(kNobody) != 0 || setuid(kNobody) != 0)) _exit(1);
    std::vector<std::thread> threads;
    // Failures are planned for a whole process: it has one thread then.
    for (int i = 0; i < (kind.failures ? 1 : kThreads); ++i) {
        threads.emplace_back(work, process * kThreads + i, kind.failures);
    }
    if (process == 0 && !kind.failures) threads.emplace_back(compare);
    for (std::thread &thread : threads) thread.join();
    _exit(0);
}

// False if this user cannot make such a file here.
bool prepare(const Kind &kind, const fs::path &directory) {
    const bool root = geteuid() == 0;
    const std::string name = kind.name;
    file = (directory / "x.ini").string();
    std::ofstream out(file, std::ios::binary);
    out << "[first]\r\n[filler]\r\n";
    for (int i = 0; i < 400; ++i) out << "; a comment that stays, number " << i << "\r\n";
    out << "[last]\r\n";
    out.close();
    fs::permissions(file, kind.is_private ? fs::perms{0600} : fs::perms{0666});
    if (name.starts_with("hard link")) fs::create_hard_link(file, directory / "other.ini");
    if (name == "another owner") return root;
    if (name == "mount point") {
        fs::copy_file(file, directory / "other.ini");
        return root &&
               mount((directory / "other.ini").c_str(), file.c_str(), nullptr, MS_BIND, nullptr) == 0;
    }
    if (name == "symbolic link") {
        fs::create_directory(directory / "real");
        fs::rename(file, directory / "real" / "x.ini");
        fs::create_symlink("real/x.ini", file);
    }
    return true;
}

std::vector<std::string> names_in(const fs::path &directory) {
    std::vector<std::string> names;
    for (const auto &entry : fs::recursive_directory_iterator(directory)) {
        names.push_back(entry.path().filename().string());
    }
    return names;
}

void check(const Kind &kind, const fs::path &directory, std::size_t names, mode_t mode) {
    // The next save removes what a killed one has left.
    if (save(kWorkers, 1) != INI_OK) complain(kind.name, "the last save");
    MINI *cache = mini_open(nullptr, file.c_str(), MINI_LOADALL | MINI_READONLY);
    int total = 0;
    for (int worker = 0; worker < kWorkers; ++worker) {
        const int first = read_number(cache, "first", worker);
        const int last = read_number(cache, "last", worker);
        const int done = shared->done[worker];
        const int begun = shared->begun[worker];
        total += done;
        const bool never = first == -1 && last == -1 && done == 0;
        if (!never && (first != last || first < done || first > begun)) {
            complain(kind.name, key(worker) + " is " + std::to_string(first) + " and " +
                                    std::to_string(last) + ", not " + std::to_string(done) + " to " +
                                    std::to_string(begun));
        }
    }
    mini_close(&cache);
    std::ifstream in(file, std::ios::binary);
    std::string line;
    int comments = 0;
    while (std::getline(in, line)) comments += line.starts_with("; a comment that stays") ? 1 : 0;
    if (comments != 400) complain(kind.name, std::to_string(comments) + " comments are left");
    struct stat status {};
    stat(file.c_str(), &status);
    if (status.st_mode != mode) complain(kind.name, "another mode");
    if (names_in(directory).size() != names) {
        for (const std::string &name : names_in(directory)) std::printf("  %s\n", name.c_str());
        complain(kind.name, "something is left behind");
    }
    if (shared->torn > 0) complain(kind.name, std::to_string(shared->torn) + " reads were torn");
    if (shared->refused > 0) complain(kind.name, std::to_string(shared->refused) + " changes were refused");
    if (kind.is_private && shared->opened > 0) {
        complain(kind.name, std::to_string(shared->opened) + " times a stranger could open it");
    }
    std::printf("%s, %s: %d changes, %d reads, %d kills, %d names watched\n",
                directory.parent_path().c_str(), kind.name, total, shared->reads.load(),
                shared->kills.load(), shared->names.load());
    if (total == 0) complain(kind.name, "nothing was changed");
}

void run(const Kind &kind, const fs::path &directory, double seconds) {
    std::memset(static_cast<void *>(shared), 0, sizeof *shared);
    if (!prepare(kind, directory)) {
        std::printf("%s, %s: not possible for this user\n", directory.parent_path().c_str(), kind.name);
        return;
    }
    struct stat status {};
    stat(file.c_str(), &status);
    const std::size_t names = names_in(directory).size();
    std::vector<pid_t> children;
    const pid_t watcher = geteuid() == 0 ? fork() : -1;
    if (watcher == 0) watch(fs::is_symlink(file) ? directory / "real" : directory);
    for (int process = 0; process < kProcesses; ++process) children.push_back(start(kind, process));
    std::mt19937 random(20250101);
    const auto end = Clock::now() + std::chrono::duration<double>(seconds);
    while (Clock::now() < end) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20 + random() % 50));
        if (!kind.kills) continue;
        const std::size_t process = random() % kProcesses;
        kill(children[process], SIGKILL);
        waitpid(children[process], nullptr, 0);
        ++shared->kills;
        children[process] = start(kind, static_cast<int>(process));
    }
    shared->stop = true;
    for (const pid_t child : children) {
        int ended = -1;
        waitpid(child, &ended, 0);
        if (ended != 0) complain(kind.name, "a process has ended with " + std::to_string(ended));
    }
    if (watcher > 0) waitpid(watcher, nullptr, 0);
    check(kind, directory, names, status.st_mode);
    if (std::strcmp(kind.name, "mount point") == 0) umount(file.c_str());
}

}  // namespace

int main(int count, char **arguments) {
    double seconds = 10;
    std::vector<fs::path> places;
    for (int i = 1; i < count; ++i) {
        if (std::strcmp(arguments[i], "--seconds") == 0 && i + 1 < count) {
            seconds = std::atof(arguments[++i]);
        } else {
            places.emplace_back(arguments[i]);
        }
    }
    void *const room =
        mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (places.empty() || room == MAP_FAILED) {
        std::fprintf(stderr, "usage: kv_torture [--seconds N] DIRECTORY...\n");
        return 2;
    }
    shared = static_cast<Shared *>(room);
    for (const fs::path &place : places) {
        for (const Kind &kind : kKinds) {
            std::string pattern = (place / "kv-torture-XXXXXX").string();
            if (mkdtemp(pattern.data()) == nullptr) {
                std::perror(pattern.c_str());
                return 2;
            }
            fs::permissions(pattern, fs::perms{0755});
            std::fflush(stdout);  // before there are children that have it, too
            run(kind, pattern, seconds);
            fs::remove_all(pattern);
        }
    }
    return faults > 0 ? 1 : 0;
}

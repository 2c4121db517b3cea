// SPDX-License-Identifier: MIT
// What the desktop's shell does with groups of files.
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <sys/stat.h>

#include "platform/platform.hpp"
#include "platform/posix/drives.hpp"
#include "platform/posix/entries.hpp"
#include "platform/posix/trash.hpp"
#include "platform/posix/tree.hpp"
#include "platform/wildcards.hpp"

namespace kv::platform {

namespace {

using memory::String;
using Function = ShellOperation::Function;
using posix::child_of;

// One entry and where it goes.
struct Task {
    String from;
    String to;       // empty for removing
    String spelled;  // the new path as the caller writes it
    bool directory;
};

using Tasks = memory::Vector<Task>;

bool map(const char *path, posix::Purpose purpose, String &host) {
    posix::HostPath mapped;
    if (!posix::map_path(path, purpose, mapped)) return false;
    host = mapped.text;
    return true;
}

std::size_t name_position(const char *path) {
    const std::string_view text = path;
    const std::size_t separator = text.find_last_of("\\/:");
    return separator != text.npos ? separator + 1 : 0;
}

bool is_directory(const String &host, bool follow) {
    struct stat status;
    const int result = follow ? stat(host.c_str(), &status) : lstat(host.c_str(), &status);
    return result == 0 && S_ISDIR(status.st_mode);
}

bool exists(const String &host) {
    struct stat status;
    return lstat(host.c_str(), &status) == 0;
}

class Planner {
  public:
    explicit Planner(const ShellOperation &operation) : operation_(operation) {}

    // Nothing has changed if it returns false.
    bool plan(Tasks &tasks) {
        const char *to = operation_.to;
        const bool removing = operation_.function == Function::remove;
        for (const char *from = operation_.from; *from != '\0'; from += std::strlen(from) + 1) {
            if (!removing && (to == nullptr || *to == '\0')) return false;
            if (!plan_one(from, removing ? nullptr : to, tasks)) return false;
            if (!removing) to += std::strlen(to) + 1;
        }
        return true;
    }

  private:
    bool plan_one(const char *from, const char *to, Tasks &tasks) {
        Task task;
        if (!map(from, posix::Purpose::write, task.from)) return false;
        if (!exists(task.from)) {
            return has_wildcards(from + name_position(from)) && plan_pattern(from, to, tasks);
        }
        task.directory = is_directory(task.from, false);
        if (task.directory && operation_.files_only) return false;
        if (to != nullptr) {
            if (!map(to, posix::Purpose::write, task.to)) return false;
            task.spelled = to;
            if (!task.directory && is_directory(task.to, true)) {
                task.to = child_of(task.to, task.from.c_str() + task.from.rfind('/') + 1);
                task.spelled.clear();
            }
        }
        tasks.push_back(std::move(task));
        return true;
    }

    bool plan_pattern(const char *from, const char *to, Tasks &tasks) {
        String directory;
        String target;
        const String above = String(from, name_position(from)) + ".";
        if (!map(above.c_str(), posix::Purpose::write, directory)) return false;
        if (to != nullptr) {
            String below = to;
            if (has_wildcards(to + name_position(to))) below.replace(name_position(to), below.npos, ".");
            if (!map(below.c_str(), posix::Purpose::write, target)) return false;
        }
        DirectorySearch search;
        if (!search.open(from)) return false;
        bool any = false;
        for (FoundFile file; search.next(file);) {
            if (std::strcmp(file.name, ".") == 0 || std::strcmp(file.name, "..") == 0) continue;
            Task task;
            task.from = child_of(directory, file.name);
            task.directory = is_directory(task.from, false);
            if (task.directory && operation_.files_only) continue;
            if (to != nullptr) task.to = child_of(target, file.name);
            tasks.push_back(std::move(task));
            any = true;
        }
        return any;
    }

    const ShellOperation &operation_;
};

bool copy(const Task &task) {
    return !posix::lies_in(task.to, task.from) && posix::make_parents(task.to) &&
           posix::copy_tree(task.from, task.to);
}

bool move(const Task &task) {
    if (task.from == task.to) {  // a name that changes its case only was mapped to the entry itself
        posix::HostPath target;
        std::snprintf(target.text, sizeof target.text, "%s", task.to.c_str());
        return !task.spelled.empty() && posix::respell_last(task.spelled.c_str(), target) &&
               task.from != target.text && posix::rename_exclusive(task.from.c_str(), target.text);
    }
    if (posix::same_entry(task.from.c_str(), task.to.c_str()) || posix::lies_in(task.to, task.from) ||
        !posix::make_parents(task.to))
        return false;
    if (!task.directory || !exists(task.to)) {
        if (std::rename(task.from.c_str(), task.to.c_str()) == 0) return true;
        if (errno != EXDEV) return false;
    }
    return posix::copy_tree(task.from, task.to) && posix::remove_tree(task.from);
}

bool carry_out(const Task &task, const ShellOperation &operation) {
    switch (operation.function) {
        case Function::copy:
            return copy(task);
        case Function::move:
            return move(task);
        case Function::remove:
            break;
    }
    if (task.from == "/") return false;
    return operation.allow_undo ? posix::move_to_trash(task.from) : posix::remove_tree(task.from);
}

}  // namespace

ShellResult shell_operation(const ShellOperation &operation) {
    Tasks tasks;
    if (!Planner(operation).plan(tasks)) return ShellResult::failed;
    for (const Task &task : tasks) {
        if (!carry_out(task, operation)) return ShellResult::failed;
    }
    return ShellResult::done;
}

}  // namespace kv::platform

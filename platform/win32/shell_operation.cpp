// SPDX-License-Identifier: MIT
// What the shell does with groups of files.
//
// The shell gets whole paths, and a new path for each: patterns, and directories whose new place exists,
// are resolved here, since versions of the shell differ in what they take those for. What is wrong shows
// before the shell has changed anything.
#include <cstring>
#include <string_view>
// The second needs the first.
// clang-format off
#include <windows.h>
#include <shellapi.h>
// clang-format on

#include "platform/platform.hpp"
#include "platform/wildcards.hpp"
#include "platform/win32/paths.hpp"

namespace kv::platform {

namespace {

using memory::String;
using Function = ShellOperation::Function;

struct Task {
    String from;
    String to;  // empty for removing
};

struct Plan {
    memory::Vector<Task> tasks;
    memory::Vector<String> emptied;  // directories that have been moved entry by entry, inner ones last
};

// "C:\" or "\\server\share\", which nobody can make.
std::size_t root_length(const String &path) {
    constexpr std::size_t kDrive = 2;
    const std::size_t share = share_length(path.c_str());
    return (share > 0 ? share : kDrive) + 1;
}

bool absolute(const char *path, String &full) {
    win32::FullPath text;
    if (!win32::full_path(path, text)) return false;
    full = text.text;
    while (full.size() > root_length(full) && full.back() == '\\') full.pop_back();
    return true;
}

String child_of(const String &directory, const char *name) {
    String path = directory;
    if (path.empty() || path.back() != '\\') path += '\\';
    return path += name;
}

bool same_path(const String &a, const String &b) {
    return win32::same_path(a.c_str(), b.c_str());
}

bool lies_in(const String &path, const String &directory) {
    String above = path;
    for (; above.size() > directory.size(); above.resize(above.rfind('\\'))) {
        if (above.rfind('\\') == above.npos) return false;
    }
    return above.size() == directory.size() && same_path(above, directory);
}

bool is_directory(const String &path) {
    return file_kind(path.c_str()) == FileKind::directory;
}

class Planner {
  public:
    Planner(const ShellOperation &operation, Plan &plan) : operation_(operation), plan_(plan) {}

    bool plan() {
        const char *to = operation_.to;
        for (const char *from = operation_.from; *from != '\0'; from += std::strlen(from) + 1) {
            if (!removing() && (to == nullptr || *to == '\0')) return false;
            if (!plan_one(from, to)) return false;
            if (!removing()) to += std::strlen(to) + 1;
        }
        return true;
    }

  private:
    bool removing() const { return operation_.function == Function::remove; }

    bool plan_one(const char *from, const char *to) {
        Task task;
        if (has_wildcards(win32::last_component(from))) return plan_pattern(from, to);
        if (!absolute(from, task.from) || !is_entry(task.from.c_str())) return false;
        const bool directory = is_directory(task.from);
        if (directory && operation_.files_only) return false;
        if (!removing()) {
            if (!absolute(to, task.to)) return false;
            if (!directory && is_directory(task.to)) {
                task.to = child_of(task.to, win32::last_component(task.from.c_str()));
            } else {
                spell_as(to, task.to);
            }
        }
        return add(task);
    }

    bool plan_pattern(const char *from, const char *to) {
        const char *pattern = win32::last_component(from);
        Task above;
        if (!absolute((String(from, pattern) + ".").c_str(), above.from)) return false;
        if (!removing()) {
            const char *last = win32::last_component(to);
            if (!absolute((has_wildcards(last) ? String(to, last) + "." : String(to)).c_str(), above.to)) {
                return false;
            }
        }
        DirectorySearch search;
        if (!search.open(from)) return false;
        bool any = false;
        for (FoundFile file; search.next(file);) {
            if (std::strcmp(file.name, ".") == 0 || std::strcmp(file.name, "..") == 0) continue;
            if (file.directory && operation_.files_only) continue;
            Task task{child_of(above.from, file.name), {}};
            if (!removing()) task.to = child_of(above.to, file.name);
            if (!add(task)) return false;
            any = true;
        }
        return any;
    }

    // The system may have given the last component the spelling of what is there.
    static void spell_as(const char *path, String &full) {
        const char *name = win32::last_component(path);
        const std::size_t length = std::strlen(name);
        if (length == 0 || full.size() < length) return;
        const String last = full.substr(full.size() - length);
        if (same_path(last, name)) full.replace(full.size() - length, length, name);
    }

    // Takes a task apart as long as directories are to fill directories.
    bool add(const Task &task) {
        if (removing()) {
            plan_.tasks.push_back(task);
            return true;
        }
        const bool directory = is_directory(task.from);
        const bool only_case = operation_.function == Function::move && task.from != task.to;
        if (same_path(task.from, task.to)) {
            if (!only_case) return false;
            plan_.tasks.push_back(task);
            return true;
        }
        if (directory && lies_in(task.to, task.from)) return false;
        if (directory && is_entry(task.to.c_str()) && !is_directory(task.to)) return false;
        const std::size_t first = plan_.tasks.size();
        plan_.tasks.push_back(task);
        return !directory || fill_directories(first);
    }

    bool fill_directories(std::size_t at) {
        while (at < plan_.tasks.size()) {
            const Task task = plan_.tasks[at];
            if (!is_directory(task.from) || !is_directory(task.to)) {
                ++at;
                continue;
            }
            plan_.tasks.erase(plan_.tasks.begin() + static_cast<std::ptrdiff_t>(at));
            if (operation_.function == Function::move) plan_.emptied.push_back(task.from);
            DirectorySearch search;
            if (!search.open(child_of(task.from, "*").c_str())) return false;
            for (FoundFile file; search.next(file);) {
                if (std::strcmp(file.name, ".") == 0 || std::strcmp(file.name, "..") == 0) continue;
                plan_.tasks.push_back({child_of(task.from, file.name), child_of(task.to, file.name)});
            }
        }
        return true;
    }

    const ShellOperation &operation_;
    Plan &plan_;
};

// Makes the directories above the new places; the shell need not.
bool make_parents(const memory::Vector<Task> &tasks) {
    for (const Task &task : tasks) {
        for (std::size_t end = task.to.find('\\', root_length(task.to)); end != String::npos;
             end = task.to.find('\\', end + 1)) {
            if (CreateDirectoryA(task.to.substr(0, end).c_str(), nullptr) == 0 &&
                GetLastError() != ERROR_ALREADY_EXISTS && GetLastError() != ERROR_ACCESS_DENIED)
                return false;
        }
    }
    return true;
}

// Names that change their case only are none of the shell's business.
bool rename_case(memory::Vector<Task> &tasks) {
    for (auto task = tasks.begin(); task != tasks.end();) {
        if (task->to.empty() || !same_path(task->from, task->to)) {
            ++task;
            continue;
        }
        if (MoveFileExA(task->from.c_str(), task->to.c_str(), 0) == 0) return false;
        task = tasks.erase(task);
    }
    return true;
}

ShellResult call_shell(const memory::Vector<Task> &tasks, const ShellOperation &operation) {
    String from;
    String to;
    for (const Task &task : tasks) {
        from.append(task.from.c_str(), task.from.size() + 1);
        to.append(task.to.c_str(), task.to.size() + 1);
    }
    constexpr UINT kFunctions[] = {FO_COPY, FO_MOVE, FO_DELETE};
    int flags = FOF_NOCONFIRMATION | FOF_NOCONFIRMMKDIR;
    if (operation.allow_undo) flags |= FOF_ALLOWUNDO;
    if (operation.files_only) flags |= FOF_FILESONLY;
    if (operation.function != Function::remove) flags |= FOF_MULTIDESTFILES;
    flags |= operation.progress != nullptr ? FOF_SIMPLEPROGRESS : FOF_SILENT;
    SHFILEOPSTRUCTA call{};
    call.hwnd = operation.focused_owner ? GetFocus() : static_cast<HWND>(operation.owner);
    call.wFunc = kFunctions[static_cast<int>(operation.function)];
    call.pFrom = from.c_str();
    call.pTo = operation.function != Function::remove ? to.c_str() : nullptr;
    call.fFlags = static_cast<FILEOP_FLAGS>(flags);
    call.lpszProgressTitle = operation.progress;
    if (SHFileOperationA(&call) != 0)
        return call.fAnyOperationsAborted ? ShellResult::aborted : ShellResult::failed;
    return call.fAnyOperationsAborted ? ShellResult::aborted : ShellResult::done;
}

}  // namespace

ShellResult shell_operation(const ShellOperation &operation) {
    Plan plan;
    if (!Planner(operation, plan).plan() || !rename_case(plan.tasks)) return ShellResult::failed;
    if (!plan.tasks.empty()) {
        if (!make_parents(plan.tasks)) return ShellResult::failed;
        const ShellResult result = call_shell(plan.tasks, operation);
        if (result != ShellResult::done) return result;
    }
    for (std::size_t left = plan.emptied.size(); left > 0; --left) {
        if (RemoveDirectoryA(plan.emptied[left - 1].c_str()) == 0) return ShellResult::failed;
    }
    return ShellResult::done;
}

}  // namespace kv::platform

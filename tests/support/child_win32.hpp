// SPDX-License-Identifier: MIT
// Functions of a test that run in a process of their own: this program is started again for them.
#pragma once

#include <string>
#include <vector>
#include <windows.h>

namespace kvtest {

/// What can be run, by its name; an object of the file's scope.
class ChildFunction {
  public:
    using Arguments = std::vector<std::string>;  // without blanks and quotes
    using Function = int (*)(const Arguments &arguments);

    ChildFunction(const char *name, Function function);
};

/// A process that runs such a function.
class Child {
  public:
    Child(const std::string &name, const ChildFunction::Arguments &arguments);
    Child(const Child &) = delete;
    Child &operator=(const Child &) = delete;
    ~Child();

    DWORD process_id() const { return GetProcessId(process_); }
    /// What the function returned.
    int wait() const;
    void kill() const;

  private:
    HANDLE process_ = nullptr;
};

/// True, with the result, if this process is one of those.
bool run_child_function(int argc, char **argv, int &result);

}  // namespace kvtest

// SPDX-License-Identifier: MIT
#include "tests/support/child_win32.hpp"

#include <cstring>
#include <gtest/gtest.h>
#include <map>

namespace kvtest {

namespace {

constexpr char kMark[] = "--child";

std::map<std::string, ChildFunction::Function> &functions() {
    static std::map<std::string, ChildFunction::Function> all;
    return all;
}

}  // namespace

ChildFunction::ChildFunction(const char *name, Function function) {
    functions()[name] = function;
}

Child::Child(const std::string &name, const ChildFunction::Arguments &arguments) {
    char program[MAX_PATH];
    GetModuleFileNameA(nullptr, program, sizeof program);
    std::string line = std::string("\"") + program + "\" " + kMark + " " + name;
    for (const std::string &argument : arguments) line += " " + argument;
    STARTUPINFOA start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    const BOOL started = CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                                        &start, &process);
    EXPECT_NE(started, 0) << GetLastError();
    if (started == 0) return;
    CloseHandle(process.hThread);
    process_ = process.hProcess;
}

Child::~Child() {
    if (process_ == nullptr) return;
    kill();
    CloseHandle(process_);
}

int Child::wait() const {
    DWORD code = 0;
    WaitForSingleObject(process_, INFINITE);
    GetExitCodeProcess(process_, &code);
    return static_cast<int>(code);
}

void Child::kill() const {
    TerminateProcess(process_, 1);
    WaitForSingleObject(process_, INFINITE);
}

bool run_child_function(int argc, char **argv, int &result) {
    if (argc < 3 || std::strcmp(argv[1], kMark) != 0) return false;
    result = functions().at(argv[2])(ChildFunction::Arguments(argv + 3, argv + argc));
    return true;
}

}  // namespace kvtest

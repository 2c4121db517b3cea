// SPDX-License-Identifier: MIT
// What the tests need of the system that runs them; host_posix.cpp and host_win32.cpp.
#pragma once

#include <filesystem>

namespace kvtest {

/// A drive C that belongs to this process, so that tests can run side by side, and on POSIX a home; on
/// Windows somebody who answers message boxes.
class Host {
  public:
    Host();
    Host(const Host &) = delete;
    Host &operator=(const Host &) = delete;
    ~Host();

    /// Empty if there is none; the reason is on standard error.
    const std::filesystem::path &root() const { return root_; }

  private:
    std::filesystem::path root_;
    std::filesystem::path home_;
};

/// The system's number of this process.
unsigned long process_number();

/// Runs all tests; the result of main(). A test that ends the process fails it, whatever its exit code.
int run_tests(int argc, char **argv);

}  // namespace kvtest

// SPDX-License-Identifier: MIT
// The search for the main configuration file and the files beside it.
#pragma once

#include "kv/config.h"

namespace kv::config {

constexpr int kPathSize = 256;

/// A path of the search; empty if there is none.
struct Path {
    char text[kPathSize] = "";
};

/// Looks at one place after the other, and tells each to a visitor if there is one.
class Search {
  public:
    Search() = default;
    Search(kv_place_function visit, void *user) : visit_(visit), user_(user) {}

    /// The main configuration file; reported if it is missing.
    bool find_main(Path &found);
    bool find(const char *section, const char *entry, const char *filename, Path &found);

  private:
    bool tell(int place, const char *path, bool exists);
    bool look(int place, const char *directory, const char *filename, Path &found);
    bool look_in_current(const char *filename, Path &found);
    bool look_in_variable(const char *filename, Path &found);
    bool look_in_list(const char *list, const char *filename, Path &found);
    bool look_in_registry(const char *filename, Path &found);

    kv_place_function visit_ = nullptr;
    void *user_ = nullptr;
};

}  // namespace kv::config

// SPDX-License-Identifier: MIT
// All process-wide state of the environment tree, and the lock that guards it.
#pragma once

#include <array>
#include <cstdint>

#include "kv/env.h"

#include "platform/platform.hpp"

namespace kv::env {

inline constexpr int kDelimiterLength = 254;

/// What env_get_first() leaves for env_get_next().
struct Iteration {
    ENV *env;  // null: no iteration
    std::int32_t id;
    char *section;  // owned copies; null as given
    char *path;
    std::int32_t next_position;
    std::int32_t exact;
};

/// What env_get_error() tells.
struct SyntaxError {
    std::int64_t line;  // 0: none yet
    std::int64_t column;
    const char *text;
};

class Writing;

struct State {
    char delimiter[256];
    char previous_delimiter[256];
    std::array<bool, 256> is_delimiter;  // the characters of `delimiter`
    Iteration iteration;
    SyntaxError syntax_error;
    ENV *first_handle;       // all open environments and sub-environments
    const Writing *writing;  // the innermost writing that is running, see writer.hpp
    // Counts what may lead an address to another element than before, or to one that is gone: elements
    // taken out or inserted in any tree, another delimiter. Elements that are appended do not.
    std::uint64_t changes;
};

extern State state;

inline bool is_delimiter(char c) {
    return state.is_delimiter[static_cast<unsigned char>(c)];
}

/// Takes the environment lock for a scope; on platforms below Windows NT there is none.
class Lock {
  public:
    Lock();
    Lock(const Lock &) = delete;
    Lock &operator=(const Lock &) = delete;
    ~Lock();

  private:
    bool taken_;
};

void end_iteration();

}  // namespace kv::env

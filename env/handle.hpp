// SPDX-License-Identifier: MIT
// Handles: environments and sub-environments, and the entry that every function on one begins with.
#pragma once

#include <cstdint>
#include <new>
#include <utility>

#include "kv/env.h"

#include "env/address_cache.hpp"
#include "env/element.hpp"
#include "env/report.hpp"
#include "env/state.hpp"

struct ENV {
    // A root environment has sections; a sub-environment an element and the environment it was opened on.
    kv::env::List sections;
    kv::env::Element *root_element;
    ENV *parent;

    std::int32_t users;  // open sub-environments, environments that name it as default, running visits
    std::int32_t id;
    ENV *default_env;
    bool counts_as_user;  // of default_env; not so where the link was only copied from the parent
    std::int32_t copies;  // links to this environment that do not count as users
    std::int32_t mtime;   // seconds since 1970; -10: never read from a file
    ENV *next_handle;     // all open handles
    ENV *previous_handle;

    kv::env::AddressCache addresses;  // of a root environment

    bool is_subenv() const { return root_element != nullptr; }
};

namespace kv::env {

inline constexpr std::int32_t kNoTime = -10;

/// Opens a sub-environment on an element of env's tree. Throws std::bad_alloc.
ENV *open_on(ENV *env, Element &element);
/// Links env to the next environment of its default chain, or to none.
void set_default(ENV *env, ENV *default_env, bool counts_as_user);
/// Closes a handle that nobody uses.
void close(ENV *env);

/// True if an element of a root environment has a pin.
bool has_pinned_elements(const ENV *env);

/// Keeps an environment from being closed in a scope.
class Use {
  public:
    explicit Use(ENV *env) : env_(env) { ++env_->users; }
    Use(const Use &) = delete;
    Use &operator=(const Use &) = delete;
    ~Use() { --env_->users; }

  private:
    ENV *env_;
};

/// Runs an operation on an environment as every function does: under the lock, with the environment
/// checked, and with an exhausted heap reported. The failure value is returned in both cases.
template <typename Result, typename Operation>
Result enter(const ENV *env, Result failure, Operation operation) {
    const Lock lock;
    if (env == nullptr) {
        report("Nil parametr");
        return failure;
    }
    try {
        return operation();
    } catch (const std::bad_alloc &) {
        report("out of space");
        return failure;
    }
}

template <typename Operation>
std::int32_t enter(const ENV *env, Operation operation) {
    return enter(env, std::int32_t{ENV_ERROR}, std::move(operation));
}

}  // namespace kv::env

#include "memory/failpoint.hpp"

namespace kv::memory {

constinit std::atomic<std::int64_t> allocations_until_failure{-1};

}  // namespace kv::memory

#include <type_traits>

#include "platform/platform.hpp"

namespace kv::platform {

static_assert(std::is_trivially_destructible_v<Lock>, "threads may outlive main()");

void Lock::lock() {
    if (!survives_forks_.load(std::memory_order_relaxed)) survive_forks();
    const std::uintptr_t self = this_thread();
    if (owner_.load(std::memory_order_relaxed) != self) {
        mutex_.lock();
        owner_.store(self, std::memory_order_relaxed);
    }
    ++depth_;
}

void Lock::unlock() {
    if (--depth_ > 0) return;
    owner_.store(0, std::memory_order_relaxed);
    mutex_.unlock();
}

}  // namespace kv::platform

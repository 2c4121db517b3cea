// SPDX-License-Identifier: MIT
// RAII over the allocation wrappers: an owning pointer, and an allocator for the standard containers.
#pragma once

#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "kv/memory.h"

namespace kv::memory {

/// Destroys an object that make_owned() made, or frees a block of the allocation wrappers.
struct Release {
    template <typename T>
    void operator()(T *object) const {
        std::destroy_at(object);
        heap_free(object);
    }
    void operator()(char *block) const { heap_free(block); }
};

template <typename T>
using Owned = std::unique_ptr<T, Release>;

/// A new object in a block of its own; null when the heap is exhausted.
template <typename T, typename... Arguments>
Owned<T> make_owned(Arguments &&...arguments) {
    void *block = heap_malloc(sizeof(T));
    if (block == nullptr) return nullptr;
    return Owned<T>(::new (block) T(std::forward<Arguments>(arguments)...));
}

/// Standard allocator; throws std::bad_alloc when the heap is exhausted.
template <typename T>
struct Allocator {
    using value_type = T;

    Allocator() = default;
    template <typename U>
    Allocator(const Allocator<U> &) {}  // NOLINT(google-explicit-constructor): allocators convert

    T *allocate(std::size_t count) {
        if (count > std::numeric_limits<std::uint32_t>::max() / sizeof(T)) throw std::bad_alloc();
        void *block = heap_malloc(static_cast<std::uint32_t>(count * sizeof(T)));
        if (block == nullptr) throw std::bad_alloc();
        return static_cast<T *>(block);
    }
    void deallocate(T *block, std::size_t) { heap_free(block); }

    friend bool operator==(const Allocator &, const Allocator &) { return true; }
};

template <typename T>
using Vector = std::vector<T, Allocator<T>>;

using String = std::basic_string<char, std::char_traits<char>, Allocator<char>>;

}  // namespace kv::memory

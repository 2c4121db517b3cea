// SPDX-License-Identifier: MIT
// Linking and searching in the lists of the tree. Every search costs about the same in a list of a hundred
// thousand elements as in one of a hundred.
#pragma once

#include <cstdint>
#include <string_view>

#include "env/element.hpp"

namespace kv::env {

// The list takes the element over.
void append(List &list, ElementPointer element);
void insert_before(Element &where, ElementPointer element);
/// Takes an element out of its list.
ElementPointer unlink(Element &element);
/// Moves all elements of `from` after those of `to`.
void splice(List &to, List &from);

/// The element that a name and an occurrence index designate: the n-th of the name, or for 0 the first of
/// the list whatever its name. Null if there is none.
Element *find(List &list, std::string_view name, std::int32_t n);
std::int32_t count_named(List &list, std::string_view name);
/// The occurrence index of an element in its list.
std::int32_t occurrence(const Element &element);
/// The element at a position, from 1; null if there is none.
Element *at(List &list, std::int32_t position);

}  // namespace kv::env

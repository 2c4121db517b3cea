// SPDX-License-Identifier: MIT
#include "env/ordered.hpp"

#include <algorithm>
#include <cmath>

namespace kv::env {

namespace {

constexpr std::uint64_t kFirstNumber = std::uint64_t{1} << 62;
constexpr std::uint64_t kGap = std::uint64_t{1} << 24;
constexpr std::size_t kChunkSize = 256;

bool before(const Element *a, const Element *b) {
    return a->order < b->order;
}

// Renumbers the elements around `element` so that there is room after it. The neighbourhood is the
// smallest aligned range of numbers around the element's own that is thinly enough used; larger ranges
// have to be thinner, which makes the cost per insertion logarithmic on average (Bender, Cole, Demaine,
// Farach-Colton, Zito, "Two simplified algorithms for maintaining order in a list", 2002).
void make_room(Element &element) {
    constexpr double kThinning = 1.5;
    Element *from = &element;
    Element *to = &element;
    std::uint64_t count = 1;
    for (int bits = 1; bits < 64; ++bits) {
        const std::uint64_t mask = (std::uint64_t{1} << bits) - 1;
        const std::uint64_t low = element.order & ~mask;
        const std::uint64_t high = element.order | mask;
        for (; from->previous != nullptr && from->previous->order >= low; ++count) from = from->previous;
        for (; to->next != nullptr && to->next->order <= high; ++count) to = to->next;
        if (static_cast<double>(count) > std::pow(2 / kThinning, bits)) continue;
        const std::uint64_t step = mask / count;
        if (step < 2) continue;
        std::uint64_t number = low;
        for (Element *each = from;; each = each->next, number += step) {
            each->order = number;
            if (each == to) return;
        }
    }
}

}  // namespace

void number_all(const List &list) {
    std::uint64_t number = kFirstNumber;
    for (Element *element = list.first; element != nullptr; element = element->next, number += kGap) {
        element->order = number;
    }
}

void number_linked(Element &element) {
    const Element *next = element.next;
    Element *previous = element.previous;
    if (previous == nullptr) {
        element.order = next != nullptr ? next->order - kGap : kFirstNumber;
        return;
    }
    if (next == nullptr) {
        element.order = previous->order + kGap;
        return;
    }
    if (next->order - previous->order < 2) {
        // With its predecessor's number it counts among those that get new ones.
        element.order = previous->order;
        make_room(*previous);
        return;
    }
    element.order = previous->order + (next->order - previous->order) / 2;
}

std::size_t Ordered::chunk_of(const Element &element) const {
    const auto behind = std::upper_bound(
        chunks_.begin(), chunks_.end(), &element,
        [](const Element *wanted, const Chunk &chunk) { return before(wanted, chunk.front()); });
    return behind == chunks_.begin() ? 0 : static_cast<std::size_t>(behind - chunks_.begin()) - 1;
}

// Makes the start of `chunk`, and of all before it, known.
void Ordered::settle(std::size_t chunk) {
    for (; settled_ <= chunk; ++settled_) {
        starts_[settled_] = settled_ == 0 ? 0
                                          : starts_[settled_ - 1] +
                                                static_cast<std::uint32_t>(chunks_[settled_ - 1].size());
    }
}

Element *Ordered::at(std::size_t position) {
    settle(chunks_.size() - 1);
    // Where all were appended, the chunks before are full.
    std::size_t chunk = position / kChunkSize;
    if (chunk >= chunks_.size() || position < starts_[chunk] ||
        position - starts_[chunk] >= chunks_[chunk].size()) {
        const auto behind = std::upper_bound(starts_.begin(), starts_.end(), position);
        chunk = static_cast<std::size_t>(behind - starts_.begin()) - 1;
    }
    Element *const found = chunks_[chunk][position - starts_[chunk]];
    prefetch(*found);
    return found;
}

std::size_t Ordered::position(const Element &element) {
    const std::size_t chunk = chunk_of(element);
    settle(chunk);
    const Chunk &items = chunks_[chunk];
    const auto place = std::lower_bound(items.begin(), items.end(), &element, before);
    return starts_[chunk] + static_cast<std::size_t>(place - items.begin());
}

void Ordered::insert(Element *element) {
    if (chunks_.empty()) {
        starts_.push_back(0);
        chunks_.emplace_back(1, element);
        size_ = 1;
        return;
    }
    std::size_t at = chunk_of(*element);
    if (chunks_[at].size() == kChunkSize) {
        // Elements usually come in their order: a full last chunk is left full.
        const bool behind_all = at + 1 == chunks_.size() && before(chunks_[at].back(), element);
        const std::size_t keep = behind_all ? kChunkSize : kChunkSize / 2;
        Chunk rest(chunks_[at].begin() + static_cast<std::ptrdiff_t>(keep), chunks_[at].end());
        chunks_[at].resize(keep);
        chunks_.insert(chunks_.begin() + static_cast<std::ptrdiff_t>(at) + 1, std::move(rest));
        starts_.push_back(0);
        settled_ = std::min(settled_, at + 1);
        if (behind_all || before(chunks_[at + 1].front(), element)) ++at;
    }
    Chunk &chunk = chunks_[at];
    chunk.insert(std::upper_bound(chunk.begin(), chunk.end(), element, before), element);
    settled_ = std::min(settled_, at + 1);
    ++size_;
}

void Ordered::erase(const Element &element) {
    const std::size_t at = chunk_of(element);
    Chunk &chunk = chunks_[at];
    chunk.erase(std::lower_bound(chunk.begin(), chunk.end(), &element, before));
    settled_ = std::min(settled_, at + 1);
    --size_;
    if (!chunk.empty()) return;
    chunks_.erase(chunks_.begin() + static_cast<std::ptrdiff_t>(at));
    starts_.pop_back();
    settled_ = std::min(settled_, at);
}

}  // namespace kv::env

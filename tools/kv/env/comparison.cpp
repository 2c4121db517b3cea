// SPDX-License-Identifier: MIT
#include "tools/kv/env/comparison.hpp"

#include <algorithm>
#include <tuple>
#include <unordered_map>
#include <utility>

#include "kv/env.h"

#include "tools/kv/env/address.hpp"

namespace kvtool {

namespace {

constexpr std::uint32_t kNone = EnvDocument::kNone;
using Node = EnvDocument::Node;

bool is_number(std::string_view name) {
    return name.find_first_not_of("0123456789") == name.npos;
}

// The members of a sequence that can stay where they are, so that as few as possible move: a longest
// ascending part of it. kNone in it is never one.
std::vector<bool> longest_ascending(const std::vector<std::uint32_t> &values) {
    std::vector<std::size_t> ends;  // of the best part of each length, where it ends
    std::vector<std::size_t> before(values.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (values[i] == kNone) continue;
        const auto at =
            std::lower_bound(ends.begin(), ends.end(), values[i],
                             [&](std::size_t end, std::uint32_t value) { return values[end] < value; });
        before[i] = at != ends.begin() ? *(at - 1) : i;
        at != ends.end() ? static_cast<void>(*at = i) : ends.push_back(i);
    }
    std::vector<bool> kept(values.size(), false);
    if (ends.empty()) return kept;
    std::size_t i = ends.back();
    for (std::size_t left = ends.size(); left > 0; --left) {
        kept[i] = true;
        i = before[i];
    }
    return kept;
}

}  // namespace

// Compares block by block: first the lists of elements are made alike, then what is in them. So the
// addresses that edits go by are those of the second file for all that is around a list.
class TreeComparison::Comparer {
  public:
    Comparer(TreeComparison &result, const EnvDocument &before, const EnvDocument &after)
        : result_(result), before_(before), after_(after), delimiters_(env_get_delimiter()) {}

    void run() {
        open_.push_back({kNone, kNone, false, {}});
        while (!open_.empty()) {
            const Blocks blocks = std::move(open_.back());
            open_.pop_back();
            const std::size_t first = open_.size();
            compare_lists(blocks);
            std::reverse(open_.begin() + static_cast<std::ptrdiff_t>(first), open_.end());
        }
        std::sort(order_.begin(), order_.end());
        for (const Order &order : order_) {
            result_.differences_.push_back({std::get<1>(order), std::get<2>(order)});
        }
    }

  private:
    // What an edit can go by.
    struct Address {
        std::string path;  // of a block; empty for a section, and if there is none
        bool has_index = false;
        bool named = true;  // false: no path leads there
        std::size_t delimiters = 0;
    };
    // Two blocks to compare; a new one is empty before.
    struct Blocks {
        std::uint32_t before;
        std::uint32_t after;
        bool is_new;
        Address address;
    };
    // Where a difference is drawn, and the nodes.
    using Order = std::tuple<std::uint64_t, std::uint32_t, std::uint32_t>;
    static constexpr std::uint64_t kBeforeIt = 0;
    static constexpr std::uint64_t kAtIt = 1;

    using Counts = std::unordered_map<std::string_view, std::int32_t>;

    void compare_lists(const Blocks &blocks) {
        std::vector<std::uint32_t> old;
        std::vector<std::uint32_t> wanted;
        if (!blocks.is_new) before_.for_each_in(blocks.before, [&](std::uint32_t i) { old.push_back(i); });
        after_.for_each_in(blocks.after, [&](std::uint32_t i) { wanted.push_back(i); });

        const std::vector<std::uint32_t> partners = pair(old, wanted);  // places in `wanted`
        const std::vector<bool> kept = longest_ascending(partners);
        std::vector<std::uint32_t> kept_as(wanted.size(), kNone);  // the old node of each wanted one
        std::uint32_t next = blocks.after == kNone ? static_cast<std::uint32_t>(after_.nodes().size())
                                                   : after_.nodes()[blocks.after].end;
        for (std::size_t i = old.size(); i-- > 0;) {
            if (kept[i]) {
                kept_as[partners[i]] = old[i];
                next = wanted[partners[i]];
            } else {
                order_.emplace_back(2 * std::uint64_t{next} + kBeforeIt, old[i], kNone);
                remove(blocks, old[i]);
            }
        }
        insert_missing(blocks, wanted, kept_as);
        for (std::size_t i = 0; i < wanted.size(); ++i) {
            if (kept_as[i] != kNone) compare(blocks, kept_as[i], wanted[i]);
        }
    }

    // Elements of the same name and occurrence.
    std::vector<std::uint32_t> pair(const std::vector<std::uint32_t> &old,
                                    const std::vector<std::uint32_t> &wanted) const {
        std::unordered_map<std::string_view, std::vector<std::uint32_t>> places;
        for (std::uint32_t i = 0; i < wanted.size(); ++i) {
            places[after_.nodes()[wanted[i]].name].push_back(i);
        }
        std::vector<std::uint32_t> partners;
        for (const std::uint32_t number : old) {
            const Node &node = before_.nodes()[number];
            const auto found = places.find(node.name);
            const auto index = static_cast<std::size_t>(node.occurrence - 1);
            const bool has = found != places.end() && index < found->second.size();
            partners.push_back(has ? found->second[index] : kNone);
        }
        return partners;
    }

    void remove(const Blocks &blocks, std::uint32_t old) {
        const Node &node = before_.nodes()[old];
        std::vector<std::string> words = address_words(blocks, node.name, node.occurrence);
        if (words.empty()) {
            tell(before_, old);
        } else {
            result_.edits_.push_back({"delete", std::move(words)});
        }
    }

    void insert_missing(const Blocks &blocks, const std::vector<std::uint32_t> &wanted,
                        const std::vector<std::uint32_t> &kept_as) {
        // For each place, the next element that is there and that an edit can name.
        std::vector<std::size_t> next(wanted.size() + 1, wanted.size());
        for (std::size_t i = wanted.size(); i-- > 0;) {
            const bool stays = kept_as[i] != kNone && can_name(after_.nodes()[wanted[i]].name);
            next[i] = stays ? i : next[i + 1];
        }
        Counts counts;
        std::size_t nearest = wanted.size();  // the next element that is there
        std::vector<std::size_t> there(wanted.size() + 1, wanted.size());
        for (std::size_t i = wanted.size(); i-- > 0;) {
            there[i] = nearest;
            if (kept_as[i] != kNone) nearest = i;
        }
        for (std::size_t i = 0; i < wanted.size(); ++i) {
            const Node &node = after_.nodes()[wanted[i]];
            if (kept_as[i] == kNone) {
                if (!blocks.is_new)
                    order_.emplace_back(2 * std::uint64_t{wanted[i]} + kAtIt, kNone, wanted[i]);
                if (next[i] != there[i]) tell(after_, wanted[i]);  // comes at another place
                insert(blocks, wanted[i], next[i] < wanted.size() ? wanted[next[i]] : kNone, counts);
            }
            ++counts[node.name];
        }
    }

    // `counts` is what stands before it.
    void insert(const Blocks &blocks, std::uint32_t number, std::uint32_t next, Counts &counts) {
        const Node &node = after_.nodes()[number];
        std::vector<std::string> words = address_words(blocks, node.name, node.occurrence);
        if (words.empty() || !fits(node.value)) {
            tell(after_, number);
            return;
        }
        const bool section = blocks.after == kNone;
        if (next != kNone) {
            const std::string_view next_name = after_.nodes()[next].name;
            std::vector<std::string> at = address_words(blocks, next_name, counts[next_name] + 1);
            at.emplace_back(node.name);
            if (!node.block && !node.value.empty()) at.emplace_back(node.value);
            result_.edits_.push_back({"insert", std::move(at)});
        } else if (section) {
            result_.edits_.push_back({"set", words});
        }
        if (!node.block && next == kNone) {
            words.emplace_back(node.value);
            result_.edits_.push_back({"set", std::move(words)});
        } else if (node.block && !section) {
            result_.edits_.push_back({"block", std::move(words)});
        }
        if (node.block) enter(blocks, kNone, number, true);
    }

    void compare(const Blocks &blocks, std::uint32_t old, std::uint32_t wanted) {
        const Node &from = before_.nodes()[old];
        const Node &to = after_.nodes()[wanted];
        if (from.block && to.block) {
            enter(blocks, old, wanted, blocks.is_new);
            return;
        }
        if (from.block == to.block && from.value == to.value) return;
        order_.emplace_back(2 * std::uint64_t{wanted} + kAtIt, old, wanted);
        std::vector<std::string> words = address_words(blocks, to.name, to.occurrence);
        if (words.empty() || !fits(to.value)) {
            tell(after_, wanted);
        } else if (to.block) {
            result_.edits_.push_back({"block", std::move(words)});
            enter(blocks, kNone, wanted, true);
        } else {
            words.emplace_back(to.value);
            result_.edits_.push_back({"set", std::move(words)});
        }
    }

    void enter(const Blocks &blocks, std::uint32_t old, std::uint32_t wanted, bool is_new) {
        const Node &node = after_.nodes()[wanted];
        Blocks inner{old, wanted, is_new, {}};
        if (blocks.after == kNone) {
            inner.address.named = node.occurrence == 1 && fits(node.name);
        } else {
            inner.address = step(blocks.address, node.name, node.occurrence);
        }
        open_.push_back(std::move(inner));
    }

    // What a file has, and an edit cannot be given.
    static bool fits(std::string_view content) { return content.find_first_of("\r\n") == content.npos; }
    bool can_name(std::string_view name) const {
        return !name.empty() && fits(name) && name.find_first_of(delimiters_) == name.npos;
    }

    Address step(const Address &block, std::string_view name, std::int32_t occurrence) const {
        Address address = block;
        address.named = block.named && can_name(name);
        if (!address.named) return {{}, false, false, 0};
        const auto add = [&](std::string_view part) {
            if (!address.path.empty()) {
                address.path += delimiters_[0];
                ++address.delimiters;
            }
            address.path += part;
        };
        if (is_number(name) && !block.path.empty() && !block.has_index) add("1");
        add(name);
        address.has_index = occurrence > 1;
        if (address.has_index) add(std::to_string(occurrence));
        if (address.path.size() > kLongestPath || address.delimiters > kMostDelimiters)
            return {{}, false, false, 0};
        return address;
    }

    // SECTION and PATH of an element in a block that is as in the second file; empty if it has none.
    std::vector<std::string> address_words(const Blocks &blocks, std::string_view name,
                                           std::int32_t occurrence) const {
        if (blocks.after == kNone) {
            return occurrence == 1 && fits(name) ? std::vector{std::string(name)}
                                                 : std::vector<std::string>();
        }
        const Address address = step(blocks.address, name, occurrence);
        if (!address.named) return {};
        return {std::string(after_.section(blocks.after)), address.path};
    }

    void tell(const EnvDocument &document, std::uint32_t node) {
        std::string problem = document.name() + ": " + document.readable_address(node);
        result_.problems_.push_back(problem + ": differs, and no edit can say how");
    }

    TreeComparison &result_;
    const EnvDocument &before_;
    const EnvDocument &after_;
    std::string delimiters_;
    std::vector<Blocks> open_;
    std::vector<Order> order_;
};

TreeComparison::TreeComparison(const EnvDocument &before, const EnvDocument &after) {
    Comparer(*this, before, after).run();
}

}  // namespace kvtool

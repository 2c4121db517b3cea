// SPDX-License-Identifier: MIT
// What of a site's file is not as in the maker's, which names everything that a site may set.
#include <algorithm>
#include <cstdlib>
#include <functional>
#include <unordered_map>
#include <unordered_set>

#include "env/numbers.hpp"
#include "tools/kv/env/edits.hpp"
#include "tools/kv/env/findings.hpp"
#include "tools/kv/failure.hpp"
#include "tools/kv/suggestion.hpp"
#include "tools/kv/text.hpp"

namespace kvtool {

namespace {

// "*" stands for any characters, "?" for one.
bool matches(std::string_view pattern, std::string_view name) {
    std::size_t p = 0;
    std::size_t n = 0;
    std::size_t star = pattern.npos;
    std::size_t from = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            from = n;
        } else if (p < pattern.size() && (pattern[p] == '?' || pattern[p] == name[n])) {
            ++p;
            ++n;
        } else if (star != pattern.npos) {
            p = star + 1;
            n = ++from;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', p) == pattern.npos;
}

// "SECTION [PATH]" with patterns for names; an index is one that is asked for.
class FreePattern {
  public:
    explicit FreePattern(const std::string &text) {
        Edit words = parse_edit(text);
        if (words.words.size() > 1) throw Failure{kUsage, "--free wants SECTION [PATH], not " + text};
        steps_.push_back({words.verb, 0});
        if (words.words.empty()) return;
        std::string_view path = words.words[0];
        while (!path.empty()) {
            const std::size_t end = std::min(path.find_first_of(env_get_delimiter()), path.size());
            add(path.substr(0, end));
            path.remove_prefix(std::min(end + 1, path.size()));
        }
    }

    std::size_t length() const { return steps_.size(); }
    /// Whether the step at `depth` is this element.
    bool is_step(std::size_t depth, const EnvDocument::Node &node) const {
        const Step &step = steps_[depth];
        return matches(step.name, node.name) &&
               (step.occurrence == 0 || step.occurrence == node.occurrence);
    }

  private:
    struct Step {
        std::string name;
        std::int32_t occurrence;  // 0: any
        bool index = false;
    };

    void add(std::string_view part) {
        if (part.empty()) return;
        const bool digits = part.find_first_not_of("0123456789") == part.npos;
        if (digits && steps_.size() > 1 && !steps_.back().index) {
            steps_.back().occurrence =
                static_cast<std::int32_t>(std::strtol(std::string(part.substr(0, 9)).c_str(), nullptr, 10));
            steps_.back().index = true;
        } else {
            steps_.push_back({std::string(part), 0});
        }
    }

    std::vector<Step> steps_;
};

// The texts of the numbers of a list; 0: the text is none.
std::size_t count_numbers(std::string_view text) {
    const std::string terminated(text);
    if (kv::env::parse_list(terminated.c_str(), std::span<double>()).outcome == kv::env::Parsed::mismatched)
        return 0;
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), ',')) + 1;
}

std::string times(std::size_t count, const char *what) {
    return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

class Comparison {
  public:
    Comparison(const EnvDocument &site, const EnvDocument &maker, const std::vector<std::string> &free,
               Findings &findings)
        : site_(site), maker_(maker), findings_(findings) {
        for (const std::string &pattern : free) free_.emplace_back(pattern);
        for (const Finding &finding : findings) told_.insert(finding.node);
        for (std::uint32_t i = 0; i < maker.nodes().size(); ++i) {
            const EnvDocument::Node &node = maker.nodes()[i];
            elements_.emplace(Key{node.parent, node.name, node.occurrence}, i);
        }
    }

    void run() {
        const std::vector<EnvDocument::Node> &nodes = site_.nodes();
        counterparts_.assign(nodes.size(), EnvDocument::kNone);
        matched_.assign(nodes.size(), {});
        for (std::uint32_t i = 0; i < nodes.size();) i = look_at(i) ? i + 1 : nodes[i].end;
    }

  private:
    struct Key {
        std::uint32_t parent;
        std::string_view name;
        std::int32_t occurrence;
        bool operator==(const Key &other) const = default;
    };
    struct Hash {
        std::size_t operator()(const Key &key) const {
            const std::size_t name = std::hash<std::string_view>()(key.name);
            return (name * 31 + key.parent) * 31 + static_cast<std::size_t>(key.occurrence);
        }
    };

    std::uint32_t find(std::uint32_t parent, std::string_view name, std::int32_t occurrence) const {
        const auto found = elements_.find({parent, name, occurrence});
        return found != elements_.end() ? found->second : EnvDocument::kNone;
    }
    void add(std::uint32_t number, Severity severity, std::string message) {
        if (told_.contains(number)) return;
        findings_.push_back({site_.nodes()[number].offset, severity, number, std::move(message)});
    }

    // True if there is more to be said of what is in it.
    bool look_at(std::uint32_t number) {
        const EnvDocument::Node &node = site_.nodes()[number];
        const bool free = is_free(number);
        const std::uint32_t parent =
            node.parent == EnvDocument::kNone ? EnvDocument::kNone : counterparts_[node.parent];
        const std::uint32_t counterpart = find(parent, node.name, node.occurrence);
        counterparts_[number] = counterpart;
        if (counterpart == EnvDocument::kNone) {
            if (!free) tell_missing(number, parent);
            return false;
        }
        const EnvDocument::Node &other = maker_.nodes()[counterpart];
        if (node.block != other.block) {
            add(number, Severity::error,
                node.block ? "is a block, and the maker's file has a text"
                           : "is a text, and the maker's file has a block");
            return false;
        }
        if (!node.block) compare_texts(number, other.value);
        return node.block;
    }

    void tell_missing(std::uint32_t number, std::uint32_t parent) {
        const EnvDocument::Node &node = site_.nodes()[number];
        std::vector<std::string> names;
        std::size_t of_the_name = 0;
        maker_.for_each_in(parent, [&](std::uint32_t other) {
            if (maker_.nodes()[other].name == node.name) ++of_the_name;
            if (maker_.nodes()[other].occurrence == 1)
                names.push_back(readable(maker_.nodes()[other].name));
        });
        if (of_the_name > 0) {
            add(number, Severity::error,
                "is number " + std::to_string(node.occurrence) + " of its name, and the maker's file has " +
                    std::to_string(of_the_name));
        } else {
            add(number, Severity::error,
                "the maker's file has no such " +
                    std::string(node.parent == EnvDocument::kNone ? "section" : "element") +
                    suggestion(readable(node.name), names));
        }
    }

    void compare_texts(std::uint32_t number, std::string_view makers) {
        const std::string_view value = site_.nodes()[number].value;
        if (value == makers) {
            add(number, Severity::note, "is the same as in the maker's file");
            return;
        }
        const std::size_t wanted = count_numbers(makers);
        if (wanted == 0) return;
        const std::size_t count = count_numbers(value);
        if (count == 0) {
            add(number, Severity::error,
                "'" + readable(value) + "' is no " + (wanted == 1 ? "number" : "list of numbers") +
                    ", as '" + readable(makers) + "' in the maker's file is");
        } else if (count != wanted) {
            add(number, Severity::note,
                "has " + times(count, "number") + ", and the maker's file " + std::to_string(wanted));
        }
    }

    // Each node keeps how far it and the blocks around it have followed each pattern.
    bool is_free(std::uint32_t number) {
        if (free_.empty()) return false;
        const EnvDocument::Node &node = site_.nodes()[number];
        std::vector<std::size_t> &reached = matched_[number];
        bool free = false;
        for (std::size_t i = 0; i < free_.size(); ++i) {
            std::size_t before = node.parent == EnvDocument::kNone ? 0 : matched_[node.parent][i];
            const bool done = before == free_[i].length();
            if (!done) before = before != kLost && free_[i].is_step(before, node) ? before + 1 : kLost;
            reached.push_back(before);
            free = free || before == free_[i].length();
        }
        return free;
    }

    static constexpr std::size_t kLost = static_cast<std::size_t>(-1);

    const EnvDocument &site_;
    const EnvDocument &maker_;
    Findings &findings_;
    std::vector<FreePattern> free_;
    std::unordered_set<std::uint32_t> told_;
    std::unordered_map<Key, std::uint32_t, Hash> elements_;  // of the maker
    std::vector<std::uint32_t> counterparts_;                // of each node of the site
    std::vector<std::vector<std::size_t>> matched_;
};

}  // namespace

void find_differences(const EnvDocument &site, const EnvDocument &maker,
                      const std::vector<std::string> &free, Findings &findings) {
    Comparison(site, maker, free, findings).run();
}

}  // namespace kvtool

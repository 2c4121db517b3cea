// SPDX-License-Identifier: MIT
// Patterns beside a model that tries every way to match. The lines of the input are the pattern and the
// name.
#include "platform/wildcards.hpp"

#include <vector>

#include "fuzz/fio/support.hpp"

namespace {

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

// Whether the end of a pattern matches the end of a name, with the answers for shorter ends.
class Model {
  public:
    Model(const std::string &pattern, const std::string &name)
        : pattern_(pattern), name_(name), answers_((pattern.size() + 1) * (name.size() + 1)) {}

    bool matches() {
        for (std::size_t p = pattern_.size() + 1; p-- > 0;) {
            for (std::size_t n = name_.size() + 1; n-- > 0;) answers_[at(p, n)] = compute(p, n);
        }
        return answers_[0] != 0;
    }

  private:
    bool soft(std::size_t p) const {
        return p < pattern_.size() && pattern_[p] == '.' &&
               (p + 1 == pattern_.size() || pattern_[p + 1] == '*' || pattern_[p + 1] == '?');
    }

    std::size_t at(std::size_t p, std::size_t n) const { return p * (name_.size() + 1) + n; }
    bool answer(std::size_t p, std::size_t n) const { return answers_[at(p, n)] != 0; }

    bool compute(std::size_t p, std::size_t n) const {
        const bool end = n == name_.size();
        if (p == pattern_.size()) return end;
        const char c = pattern_[p];
        if (c == '*') {
            const bool stopped = !end && soft(p + 1) && n == name_.rfind('.');
            return answer(p + 1, n) || (!end && !stopped && answer(p, n + 1));
        }
        if (c == '?') {
            if (end || name_[n] == '.') return answer(p + 1, n);
            return answer(p + 1, n + 1);
        }
        if (end) return soft(p) && answer(p + 1, n);
        return lower(c) == lower(name_[n]) && answer(p + 1, n + 1);
    }

    const std::string &pattern_;
    const std::string &name_;
    std::vector<char> answers_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    kvfuzz::Lines lines(data, size);
    const std::string pattern = lines.next();
    const std::string name = lines.next();
    if (pattern.size() * name.size() > 2000 || pattern.size() > 255) return 0;
    const bool expected = pattern == "*.*" || Model(pattern, name).matches();
    KV_REQUIRE(kv::platform::matches_pattern(pattern.c_str(), name.c_str()) == expected);
    return 0;
}

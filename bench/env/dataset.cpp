// SPDX-License-Identifier: MIT
#include "bench/env/dataset.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <random>

namespace kvbench {

namespace {

constexpr int kSections = 100;
constexpr int kOwnLeaves = 40;  // of a section, outside its blocks
constexpr int kBlocks = 6;      // per section
constexpr int kBlockLeaves = 10;

// Makes names and values; the same ones in every run.
class Generator {
  public:
    std::string name(int number) {
        static constexpr std::array<const char *, 16> kSubjects{
            "speed", "force", "pressure", "position",  "temperature", "torque", "flow",  "delay",
            "limit", "gain",  "offset",   "tolerance", "stroke",      "angle",  "level", "current"};
        static constexpr std::array<const char *, 5> kRoles{"", "_min", "_max", "_set", "_alarm"};
        const auto at = static_cast<std::size_t>(number);
        return std::string(kSubjects[at % kSubjects.size()]) + kRoles[at / kSubjects.size()];
    }

    // Of ten values four are doubles, three whole numbers, two texts and one a list.
    Value value() {
        switch (below(10)) {
            case 0:
            case 1:
            case 2:
            case 3:
                return fraction();
            case 4:
            case 5:
            case 6:
                return static_cast<std::int32_t>(below(20000)) - 2000;
            case 7:
            case 8:
                return text();
            default:
                return list();
        }
    }

    void shuffle(std::vector<const Leaf *> &order) {
        for (std::size_t i = order.size(); i > 1; --i) std::swap(order[i - 1], order[below(i)]);
    }

  private:
    std::size_t below(std::size_t limit) { return random_() % limit; }

    // With up to six digits and never whole, so that each format takes it for a real number.
    double fraction() { return static_cast<double>(below(500) * 1000 + 1 + below(999)) / 1000; }

    std::string text() {
        static constexpr std::array<const char *, 12> kWords{"Press",  "left",  "hydraulic", "pump",
                                                             "feeder", "Motor", "ready",     "cell 4",
                                                             "manual", "line",  "station",   "steel"};
        std::string result = kWords[below(kWords.size())];
        for (std::size_t more = below(4); more > 0; --more) {
            result += ' ';
            result += kWords[below(kWords.size())];
        }
        return result;
    }

    std::vector<double> list() {
        std::vector<double> result(3 + below(6));
        for (double &number : result) number = fraction();
        return result;
    }

    std::mt19937 random_{20240229};
};

std::vector<Leaf> make_leaves() {
    static constexpr std::array<const char *, kBlocks> kBlockNames{"axis_x", "axis_y",  "axis_z",
                                                                   "heater", "cooling", "safety"};
    Generator generator;
    std::vector<Leaf> result;
    for (int s = 1; s <= kSections; ++s) {
        const std::string section = "machine_" + std::to_string(s);
        for (int i = 0; i < kOwnLeaves; ++i)
            result.push_back({section, "", generator.name(i), generator.value()});
        for (const char *block : kBlockNames) {
            for (int i = 0; i < kBlockLeaves; ++i)
                result.push_back({section, block, generator.name(i), generator.value()});
        }
    }
    return result;
}

std::vector<const Leaf *> make_random_doubles() {
    std::vector<const Leaf *> result;
    for (const Leaf &leaf : leaves()) {
        if (std::holds_alternative<double>(leaf.value)) result.push_back(&leaf);
    }
    Generator().shuffle(result);
    return result;
}

}  // namespace

const std::vector<Leaf> &leaves() {
    static const std::vector<Leaf> all = make_leaves();
    return all;
}

const std::vector<const Leaf *> &random_doubles() {
    static const std::vector<const Leaf *> order = make_random_doubles();
    return order;
}

std::string path_in_section(const Leaf &leaf, char delimiter) {
    return leaf.block.empty() ? leaf.name : leaf.block + delimiter + leaf.name;
}

Address address_of(const Leaf &leaf, char delimiter) {
    return {leaf.section, path_in_section(leaf, delimiter)};
}

std::string number_text(double value) {
    std::array<char, 32> text;
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr};
}

std::string value_text(const Value &value, char separator) {
    if (const auto *number = std::get_if<double>(&value)) return number_text(*number);
    if (const auto *whole = std::get_if<std::int32_t>(&value)) return std::to_string(*whole);
    if (const auto *text = std::get_if<std::string>(&value)) return *text;
    std::string result;
    for (const double number : std::get<std::vector<double>>(value)) {
        if (!result.empty()) result += separator;
        result += number_text(number);
    }
    return result;
}

}  // namespace kvbench

// SPDX-License-Identifier: MIT
// Conditions with any operator, column and values: the operator's text loses its blanks, and the entries
// found are those for which the conditions hold.
#include <cmath>
#include <vector>

#include "fuzz/profiles/support.hpp"

namespace {

struct Condition {
    std::string column;
    std::string op;
    double value;
};

std::string without_blanks(const std::string &text) {
    std::string result;
    for (const char c : text) {
        if (c != ' ' && c != '\t') result += c;
    }
    return result;
}

bool holds(const std::string &op, double a, double b) {
    const bool equal = std::fabs(a - b) < 1e-15;
    if (op == ">") return a > b;
    if (op == "<") return a < b;
    if (op == ">=") return a >= b;
    if (op == "<=") return a <= b;
    if (op == "=" || op == "==") return equal;
    if (op == "!=" || op == "<>") return !equal;
    return true;
}

Condition read_condition(kvfuzz::Input &input) {
    static const char *const kColumns[] = {"A", "B", "T", "S", "Q", ""};
    static const char kCharacters[] = "<>=!  \tx";
    Condition condition{kColumns[input.below(6)], "", 0};
    for (std::size_t length = input.below(5); length > 0; --length) {
        condition.op += kCharacters[input.below(sizeof kCharacters - 1)];
    }
    condition.value = static_cast<signed char>(input.byte()) / 4.0;
    if (input.below(8) == 0) condition.value += 1e-15;
    return condition;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static const kvfuzz::TableFile file;
    static const char *const kNames[] = {"B", nullptr};
    kvfuzz::Input input(data, size);
    std::vector<Condition> conditions(input.below(6));
    for (Condition &condition : conditions) condition = read_condition(input);
    std::string content = "T S A B\n";
    std::vector<double> a;
    std::vector<double> b;
    while (!input.empty() && a.size() < 60) {
        a.push_back(static_cast<signed char>(input.byte()) / 4.0);
        b.push_back(static_cast<signed char>(input.byte()) / 4.0);
        content += "P " + std::to_string(a.size()) + " " + std::to_string(a.back()) + " " +
                   std::to_string(b.back()) + "\n";
    }
    PROFIL *table = file.fill(content, kNames);
    KV_REQUIRE(table != nullptr);
    std::vector<Condition> given = conditions;
    std::vector<PROFIL_CONDITION> records;
    for (Condition &condition : given) {
        records.push_back({condition.column.c_str(), condition.op.data(), condition.value});
    }
    double value = 0;
    char name[PROFIL_NAME_SIZE];
    const auto count = static_cast<std::int32_t>(records.size());
    std::int32_t result = profil_search(table, records.data(), count, "P", &value, name);
    for (std::size_t i = 0; i < conditions.size(); ++i) {
        KV_REQUIRE(given[i].op.c_str() == without_blanks(conditions[i].op));
    }
    for (std::size_t i = 0; i < a.size(); ++i) {
        bool all = true;
        for (const Condition &condition : conditions) {
            const std::string op = without_blanks(condition.op);
            if (condition.column == "A") all = all && holds(op, a[i], condition.value);
            if (condition.column == "B") all = all && holds(op, b[i], condition.value);
        }
        if (!all) continue;
        KV_REQUIRE(result == 0 && name == "P " + std::to_string(i + 1) && value == b[i]);
        result = profil_search_next(table, nullptr, 0, "P", &value, name);
    }
    KV_REQUIRE(result == -1);
    return profil_close(table);
}

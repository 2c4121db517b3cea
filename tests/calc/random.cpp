// The calculator against a plain evaluator that walks a tree: random trees are written as text, with no
// more parentheses than they need.
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "kv.h"

#include "platform/platform.hpp"

namespace {

struct Node {
    std::string operation;  // a number's text, an operator, or a function
    std::vector<std::unique_ptr<Node>> operands;
};
using NodePointer = std::unique_ptr<Node>;

// How tightly an operator binds; functions and numbers more than all.
int level_of(const Node &node) {
    const std::string &op = node.operation;
    if (node.operands.size() == 3 && op == "?") return 1;
    if (node.operands.size() == 2) {
        if (op == "AND" || op == "OR") return 2;
        if (std::strchr("=<>#", op[0]) != nullptr) return 3;
        if (op == "+" || op == "-") return 4;
        if (op == "*" || op == "/") return 5;
        if (op == "^") return 6;
    }
    if (node.operands.size() == 1 && (op == "-" || op == "NOT")) return 7;
    return 8;
}

std::string written(const Node &node, int least_level) {
    const int level = level_of(node);
    const auto operand = [&](std::size_t i, int least) { return written(*node.operands[i], least); };
    std::string text;
    switch (level) {
        case 1:
            text = operand(0, 2) + " ? " + operand(1, 1) + " : " + operand(2, 1);
            break;
        case 6:
            text = operand(0, 7) + "^" + operand(1, 6);
            break;
        case 7:
            text = node.operation + " " + operand(0, 7);
            break;
        case 8:
            text = node.operation;
            for (std::size_t i = 0; i < node.operands.size(); ++i)
                text += (i == 0 ? "(" : ",") + operand(i, 1);
            if (!node.operands.empty()) text += ")";
            break;
        default:
            text = operand(0, level) + " " + node.operation + " " + operand(1, level + 1);
            break;
    }
    return level < least_level ? "(" + text + ")" : text;
}

// Throws the error code.
double value_of(const Node &node) {
    const std::string &op = node.operation;
    if (node.operands.empty()) return op == "PI" ? std::acos(-1.0) : std::strtod(op.c_str(), nullptr);
    if (op == "?") return value_of(*node.operands[value_of(*node.operands[0]) != 0 ? 1 : 2]);
    std::vector<double> values;
    for (const NodePointer &operand : node.operands) values.push_back(value_of(*operand));
    const double a = values[0];
    if (op == "MIN" || op == "MAX") {
        double kept = a;
        for (const double value : values)
            kept = op == "MIN" ? std::fmin(kept, value) : std::fmax(kept, value);
        return kept;
    }
    if (values.size() == 1) {
        if (op == "-") return -a;
        if (op == "NOT") return a == 0 ? 1 : 0;
        if (op == "ABS") return std::fabs(a);
        if (op == "SIN") return std::sin(a * (std::acos(-1.0) / 180));
        if (a < 0) throw int{CALC_NEGATIVE_ROOT};
        return std::sqrt(a);
    }
    const double b = values[1];
    if (op == "AND") return a != 0 && b != 0 ? 1 : 0;
    if (op == "OR") return a != 0 || b != 0 ? 1 : 0;
    if (op == "=") return a == b ? 1 : 0;
    if (op == "<>" || op == "#") return a != b ? 1 : 0;
    if (op == "<") return a < b ? 1 : 0;
    if (op == ">") return a > b ? 1 : 0;
    if (op == "<=") return a <= b ? 1 : 0;
    if (op == ">=") return a >= b ? 1 : 0;
    if (op == "+") return a + b;
    if (op == "-") return a - b;
    if (op == "*") return a * b;
    if (op == "/") {
        if (b == 0) throw int{CALC_DIVISION_BY_ZERO};
        return a / b;
    }
    if (a < 0 && (std::fabs(b) > 2e9 || b != std::floor(b))) throw int{CALC_FRACTIONAL_POWER};
    const double power = kv::platform::power(a, b);
    if (!std::isfinite(power)) throw int{CALC_INFINITE_POWER};
    return power;
}

class Generator {
  public:
    explicit Generator(unsigned seed) : random_(seed) {}

    NodePointer tree(int depth) {
        static const char *const kNumbers[] = {"0", "1", "2", "3", "7", "0.5", "1.25", "10", "90", "PI"};
        static const char *const kBinary[] = {"+",  "-", "*", "/", "^",  "AND", "OR", "=",
                                              "<>", "#", "<", ">", "<=", ">=",  "+",  "*"};
        static const char *const kUnary[] = {"-", "NOT", "ABS", "SIN", "SQRT"};
        auto node = std::make_unique<Node>();
        const unsigned choice = below(10);
        if (depth == 0 || choice == 0) {
            node->operation = kNumbers[below(std::size(kNumbers))];
            return node;
        }
        std::size_t count = 2;
        if (choice == 1) {
            node->operation = "?";
            count = 3;
        } else if (choice == 2) {
            node->operation = below(2) == 0 ? "MIN" : "MAX";
            count = 1 + below(3);
        } else if (choice <= 4) {
            node->operation = kUnary[below(std::size(kUnary))];
            count = 1;
        } else {
            node->operation = kBinary[below(std::size(kBinary))];
        }
        for (std::size_t i = 0; i < count; ++i) node->operands.push_back(tree(depth - 1));
        return node;
    }

  private:
    unsigned below(std::size_t limit) { return static_cast<unsigned>(random_() % limit); }
    std::mt19937 random_;
};

TEST(CalcRandom, AgreesWithAPlainEvaluator) {
    Generator generator(5);
    int values = 0;
    for (int i = 0; i < 30000 && !testing::Test::HasFailure(); ++i) {
        const NodePointer tree = generator.tree(1 + i % 6);
        const std::string text = written(*tree, 1);
        double expected = 0;
        int error = CALC_OK;
        try {
            expected = value_of(*tree);
        } catch (int code) {
            error = code;
        }
        double value = 0;
        char ok = 0;
        const int32_t done = calc_expression(text.c_str(), &value, &ok);
        ASSERT_EQ(done, error == CALC_OK) << text;
        if (done == 1) {
            ++values;
            if (std::isnan(expected)) expected = value;  // not a number: the order of arguments may matter
            ASSERT_DOUBLE_EQ(value, expected) << text;
            continue;
        }
        int32_t code = 0;
        int32_t line = 0;
        int32_t column = 0;
        char message[101];
        calc_error(&code, &line, &column, message);
        ASSERT_EQ(code, error) << text;
    }
    EXPECT_GT(values, 15000);
}

}  // namespace

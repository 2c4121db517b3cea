// SPDX-License-Identifier: MIT
// `kv env diff`: what differs between two files, as edits or as a drawing.
#include <iostream>

#include "tools/kv/env/action.hpp"
#include "tools/kv/env/comparison.hpp"
#include "tools/kv/env/edits.hpp"
#include "tools/kv/failure.hpp"
#include "tools/kv/terminal.hpp"
#include "tools/kv/text.hpp"

namespace kvtool {

namespace {

// Draws the elements that differ, with the blocks that they are in.
class DiffDrawing {
  public:
    DiffDrawing(const EnvDocument &before, const EnvDocument &after) : before_(before), after_(after) {}

    void draw(const TreeComparison &comparison) {
        for (const Difference &difference : comparison.differences()) {
            // Of an element that has become another, the old one first.
            if (difference.before != EnvDocument::kNone) add('-', before_, difference.before);
            if (difference.after != EnvDocument::kNone) add('+', after_, difference.after);
        }
    }

  private:
    // Deeper blocks are not indented further.
    static constexpr std::size_t kDeepest = 40;

    void line(char sign, std::size_t depth, const std::string &text) {
        std::string drawn(1, sign);
        drawn.append(1 + 2 * std::min(depth, kDeepest), ' ').append(text);
        const Style style = sign == '-' ? Style::error : sign == '+' ? Style::number : Style::line;
        std::cout << styled(std::cout, style, drawn) << '\n';
    }
    static std::string name_of(const EnvDocument::Node &node) {
        if (node.parent == EnvDocument::kNone) return "[" + readable(node.name) + "]";
        const std::string index = node.occurrence > 1 ? "@" + std::to_string(node.occurrence) : "";
        return readable(node.name) + index;
    }

    void add(char sign, const EnvDocument &document, std::uint32_t number) {
        const std::vector<EnvDocument::Node> &nodes = document.nodes();
        const std::size_t depth = lead_to(document, number);
        line(sign, depth, text_of_node(nodes[number]));
        std::vector<std::uint32_t> ends;  // of the blocks inside
        for (std::uint32_t i = number + 1; i < nodes[number].end; ++i) {
            while (!ends.empty() && i >= ends.back()) ends.pop_back();
            line(sign, depth + ends.size() + 1, text_of_node(nodes[i]));
            if (nodes[i].block) ends.push_back(nodes[i].end);
        }
    }
    static std::string text_of_node(const EnvDocument::Node &node) {
        return name_of(node) + (node.block ? "" : " = " + readable(node.value));
    }

    // Draws the blocks around an element that were not drawn for the one before. Their number.
    std::size_t lead_to(const EnvDocument &document, std::uint32_t number) {
        std::vector<std::string> blocks;
        for (std::uint32_t i = document.nodes()[number].parent; i != EnvDocument::kNone;
             i = document.nodes()[i].parent)
            blocks.push_back(name_of(document.nodes()[i]));
        std::size_t same = 0;
        while (same < blocks.size() && same < drawn_.size() &&
               drawn_[same] == blocks[blocks.size() - 1 - same])
            ++same;
        drawn_.resize(same);
        for (std::size_t i = same; i < blocks.size(); ++i) {
            drawn_.push_back(blocks[blocks.size() - 1 - i]);
            line(' ', i, drawn_.back());
        }
        return blocks.size();
    }

    const EnvDocument &before_;
    const EnvDocument &after_;
    std::vector<std::string> drawn_;
};

int run_diff(std::string_view, const Arguments &arguments) {
    const EnvDocument before(arguments.operands()[0]);
    const EnvDocument after(arguments.operands()[1]);
    const TreeComparison comparison(before, after);
    if (arguments.has("--tree")) {
        DiffDrawing(before, after).draw(comparison);
    } else {
        for (const Edit &edit : comparison.edits()) std::cout << edit_text(edit) << '\n';
    }
    for (const std::string &problem : comparison.problems()) std::cerr << problem << '\n';
    if (!comparison.problems().empty()) return kFile;
    return comparison.differences().empty() ? kDone : kNotFound;
}

constexpr Option kOptions[] = {
    {"--tree", "", "draw what differs instead"},
};

}  // namespace

const Action kEnvDiff = {
    "diff",
    "A B",
    "print what differs between two files, as edits or as a drawing",
    R"(Prints the edits that make the elements of B of those of A, a line each, as 'kv env edit' takes
them; what else is in A, such as comments, stays then:
  kv env diff a.env b.env | kv env edit a.env
Elements of one name are compared in their order: the second axis with the second axis.

With --tree: the elements that differ, those of A behind a "-" and those of B behind a "+", in the
blocks that they are in, for people.

The exit code is 0 if nothing differs, and 1 if something does. It is 3 if an edit would have to
name an element that no path can name, which standard error tells: because a delimiter is in its
name (choose another --delimiter), it is nested too deep, the name has a line end, or its section
is not the first of its name.
)",
    kOptions,
    2,
    2,
    run_diff,
};

}  // namespace kvtool

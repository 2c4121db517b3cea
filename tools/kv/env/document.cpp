// SPDX-License-Identifier: MIT
#include "tools/kv/env/document.hpp"

#include <unordered_map>
#include <utility>

#include "env/handle.hpp"
#include "env/reader.hpp"
#include "env/state.hpp"
#include "platform/text_lines.hpp"
#include "tools/kv/env/address.hpp"
#include "tools/kv/files.hpp"
#include "tools/kv/text.hpp"

namespace kvtool {

EnvDocument::EnvDocument(const std::string &file, std::string name)
    : name_(std::move(name)),
      bytes_(read_all(file)),
      text_(kv::platform::before_ctrl_z(bytes_)),
      tree_(new_tree()) {
    text_oddities(name_, bytes_.substr(0, 2), "");  // refuses a text in UTF-16
    const kv::env::Lock lock;
    if (text_.size() >= kNone) throw Failure{kFile, name_ + ": is too large: 4 GB and more"};
    kv::env::Spans spans;
    kv::env::WholeText source(text_);
    if (kv::env::read_text(source, tree_.get(), &spans) != ENV_OK)
        throw SyntaxFailure{{kFile, syntax_problem(name_)}};
    if (spans.unclosed != kv::env::Spans::kClosed) unclosed_ = spans.unclosed;
    nodes_.resize(spans.elements.size());
    for (std::size_t i = 0; i < nodes_.size(); ++i) {
        nodes_[i].offset = spans.elements[i].begin;
        nodes_[i].end = spans.elements[i].next;
    }
    add_sections();
}

// Fills in what the tree tells of the nodes. Each element has the number of its span.
void EnvDocument::add_sections() {
    std::unordered_map<std::string_view, std::int32_t> seen;
    const auto add = [&](const kv::env::List &list, std::uint32_t parent) {
        seen.clear();
        for (const kv::env::Element *element = list.first; element != nullptr; element = element->next) {
            Node &node = nodes_[element->span()];
            node.name = element->name_view();
            node.block = element->type == ENV_TYPE_BLOCK;
            if (!node.block) node.value = element->text;
            node.parent = parent;
            node.occurrence = ++seen[node.name];
        }
    };
    add(tree_->sections, kNone);
    const auto next_block = [](const kv::env::Element *element) {
        while (element != nullptr && element->list() == nullptr) element = element->next;
        return element;
    };
    for (const kv::env::Element *block = next_block(tree_->sections.first); block != nullptr;) {
        add(*block->list(), block->span());
        const kv::env::Element *next = next_block(block->list()->first);
        while (next == nullptr && block != nullptr) {
            next = next_block(block->next);
            block = block->is_section() ? nullptr : block->parent->owner;
        }
        block = next;
    }
}

std::string_view EnvDocument::section(std::uint32_t node) const {
    while (nodes_[node].parent != kNone) node = nodes_[node].parent;
    return nodes_[node].name;
}

std::string EnvDocument::path(std::uint32_t node) const {
    std::vector<std::uint32_t> steps;
    for (; nodes_[node].parent != kNone; node = nodes_[node].parent) steps.push_back(node);
    std::string path;
    const char delimiter = env_get_delimiter()[0];
    for (std::size_t i = steps.size(); i-- > 0;) {
        const Node &step = nodes_[steps[i]];
        if (!path.empty()) path += delimiter;
        path += step.name;
        // Digits after a name would be taken for its index.
        const bool digits =
            i > 0 && nodes_[steps[i - 1]].name.find_first_not_of("0123456789") == std::string_view::npos;
        if (step.occurrence > 1 || digits) path += delimiter + std::to_string(step.occurrence);
    }
    return path;
}

std::string EnvDocument::readable_address(std::uint32_t node) const {
    constexpr std::size_t kLongest = 200;
    std::string within = path(node);
    if (within.size() > kLongest) within = "..." + within.substr(within.size() - kLongest);
    return readable(
        describe(std::string(section(node)).c_str(), within.empty() ? nullptr : within.c_str()));
}

EnvDocument::Place EnvDocument::place(std::size_t offset) {
    if (offset < line_start_) {
        line_ = 1;
        line_start_ = 0;
    }
    for (std::size_t feed; (feed = bytes_.find('\n', line_start_)) < offset; line_start_ = feed + 1)
        ++line_;
    return {line_, offset - line_start_ + 1};
}

}  // namespace kvtool

// SPDX-License-Identifier: MIT
// `kv env show`: a tree as a drawing, as its text, or as JSON.
#include <iostream>

#include "tools/kv/env/action.hpp"
#include "tools/kv/env/address.hpp"
#include "tools/kv/env/file.hpp"
#include "tools/kv/env/missing.hpp"
#include "tools/kv/env/walk.hpp"
#include "tools/kv/failure.hpp"
#include "tools/kv/json.hpp"
#include "tools/kv/output.hpp"
#include "tools/kv/terminal.hpp"
#include "tools/kv/text.hpp"

namespace kvtool {

namespace {

class Drawing : public Visitor {
  public:
    void text(const Item &item, std::string_view value) override {
        begin_line(item.last);
        std::cout << readable(item.name) << " = " << readable(value) << '\n';
    }
    void open_block(const Item &item) override {
        begin_line(item.last);
        const std::string name = readable(item.name);
        std::cout << styled(std::cout, Style::heading, item.section ? '[' + name + ']' : name) << '\n';
        // The block that the drawing starts with has no branch to its left.
        std::string_view branch = item.last ? "    " : "│   ";
        if (depth_ == 0 || depth_ > kDeepest) branch = "";
        prefix_ += branch;
        branches_.push_back(branch.size());
        ++depth_;
    }
    void close_block() override {
        --depth_;
        prefix_.resize(prefix_.size() - branches_.back());
        branches_.pop_back();
    }

  private:
    // Deeper blocks are not indented further: the width of a drawing has a limit, the depth of a tree has
    // none. Their depth is told instead.
    static constexpr std::size_t kDeepest = 40;

    void begin_line(bool last) {
        if (depth_ == 0) return;
        std::cout << styled(std::cout, Style::line, prefix_ + (last ? "└── " : "├── "));
        if (depth_ > kDeepest) std::cout << "(depth " << depth_ << ") ";
    }

    std::size_t depth_ = 0;
    std::string prefix_;
    std::vector<std::size_t> branches_;
};

class Json : public Visitor {
  public:
    Json() { std::cout << "[\n"; }
    ~Json() override { std::cout << "]\n"; }
    Json(const Json &) = delete;
    Json &operator=(const Json &) = delete;

    void text(const Item &item, std::string_view value) override {
        std::cout << "{\"name\": ";
        std::cout << json_string(item.name);
        std::cout << ", \"value\": ";
        std::cout << json_string(value);
        std::cout << (item.last ? "}\n" : "},\n");
    }
    void open_block(const Item &item) override {
        std::cout << "{\"name\": ";
        std::cout << json_string(item.name);
        std::cout << ", \"elements\": [\n";
        last_.push_back(item.last);
    }
    void close_block() override {
        std::cout << (last_.back() ? "]}\n" : "]},\n");
        last_.pop_back();
    }

  private:
    std::vector<bool> last_;
};

// Copies what it visits below one element of another tree.
class Copy : public Visitor {
  public:
    explicit Copy(Tree destination) { open_.push_back(std::move(destination)); }
    ~Copy() override {
        while (!open_.empty()) open_.pop_back();
    }
    Copy(const Copy &) = delete;
    Copy &operator=(const Copy &) = delete;

    void text(const Item &item, std::string_view value) override {
        const ChildPath path(item.name, item.occurrence);
        check(env_put(innermost(), nullptr, path.text(), std::string(value).c_str()));
    }
    void open_block(const Item &item) override {
        if (item.section) return;  // the destination itself
        const ChildPath path(item.name, item.occurrence);
        Tree block(env_create_subenv(innermost(), nullptr, path.text()));
        if (block == nullptr) throw std::bad_alloc();
        // An element becomes a block by what is stored below it, and stays one.
        check(env_put(block.get(), nullptr, "x", ""));
        check(env_delete(block.get(), nullptr, "x"));
        open_.push_back(std::move(block));
    }
    void close_block() override { open_.pop_back(); }

  private:
    ENV *innermost() { return open_.back().get(); }
    static void check(int32_t code) {
        if (code != ENV_OK) throw std::bad_alloc();
    }

    std::vector<Tree> open_;
};

// An addressed element as the text of a file of its own: the section, and in it that element alone.
void write_text(Tree element, const char *section, bool section_itself) {
    const Tree part = new_tree();
    env_put(part.get(), section, nullptr, "");
    {
        Copy copy(Tree(env_open_subenv(part.get(), section, nullptr, 1)));
        walk(std::move(element), section_itself, true, copy);
    }
    print_bytes(file_text(text_of(part.get())));
}

int run_show(std::string_view command, const Arguments &arguments) {
    const char *section = operand(arguments, 1);
    const char *path = operand(arguments, 2);
    const bool text = arguments.has("--text");
    const bool json = arguments.has("--json");
    if (text && json) fail_usage(command, "--text or --json, not both");
    if (path != nullptr) Path{path};

    const Tree tree = new_tree();
    load(operand(arguments, 0), tree.get());
    Tree element;
    if (section != nullptr) {
        element.reset(env_open_subenv(tree.get(), section, path, arguments.has("--any-depth") ? 0 : 1));
        if (element == nullptr) fail_missing(arguments.operands()[0], tree.get(), section, path);
    }
    const auto visit = [&](Visitor &visitor) {
        if (element != nullptr) {
            walk(std::move(element), path == nullptr, true, visitor);
        } else {
            walk_sections(tree.get(), visitor);
        }
    };
    if (text && element != nullptr) {
        write_text(std::move(element), section, path == nullptr);
    } else if (text) {
        print_bytes(file_text(text_of(tree.get())));
    } else if (json) {
        Json document;
        visit(document);
    } else {
        Drawing drawing;
        visit(drawing);
    }
    return kDone;
}

constexpr Option kOptions[] = {
    {"--text", "", "print the canonical text, as a file holds it"},
    kJsonOption,
    kAnyDepthOption,
};

}  // namespace

const Action kEnvShow = {
    "show",
    "FILE [SECTION [PATH]]",
    "print a file, or a part of it, as a drawing, text or JSON",
    R"(Prints a file, a section, or what PATH leads to. Without an option: a drawing of the tree for
people, in UTF-8. Texts that are UTF-8 are printed as they are, in others bytes from A0 on are taken
as Latin-1; control characters are shown as \xNN. Blocks deeper than 40 levels are not indented
further, their depth is told.

--text: the text as a file holds it, bytes as they are, CR LF at the line ends; of a part of the
file: the section with that part alone.

--json: an array of elements, so that the order and repeated names stay. A text is
  {"name": NAME, "value": TEXT}
and a section or a block
  {"name": NAME, "elements": [...]}
A byte NN outside of ASCII is written as \u00NN, whatever the code page of the file is: every
character of the JSON is one byte of the file.
)",
    kOptions,
    1,
    3,
    run_show,
};

}  // namespace kvtool

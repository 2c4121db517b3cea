// SPDX-License-Identifier: MIT
#include "tools/kv/env/walk.hpp"

#include <new>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "tools/kv/env/address.hpp"

namespace kvtool {

namespace {

struct Block {
    Tree env;
    int32_t count;
    int32_t position = 0;
    std::unordered_map<std::string, int32_t> seen = {};  // elements of each name up to the position
};

// The open blocks, from the walk's start to where it is. Inner handles are closed before outer ones.
class OpenBlocks {
  public:
    OpenBlocks() = default;
    ~OpenBlocks() {
        while (!blocks_.empty()) leave();
    }
    OpenBlocks(const OpenBlocks &) = delete;
    OpenBlocks &operator=(const OpenBlocks &) = delete;

    bool empty() const { return blocks_.empty(); }
    Block &innermost() { return blocks_.back(); }
    void enter(Tree env) {
        const int32_t count = env_count_elements(env.get(), nullptr, nullptr, 1);
        blocks_.push_back({std::move(env), count});
    }
    void leave() { blocks_.pop_back(); }

  private:
    std::vector<Block> blocks_;
};

Tree open_child(ENV *block, const Item &item) {
    const ChildPath path(item.name, item.occurrence);
    Tree child(env_open_subenv(block, nullptr, path.text(), 1));
    if (child == nullptr) throw std::bad_alloc();
    return child;
}

}  // namespace

void walk(Tree element, bool section, bool last, Visitor &visitor) {
    const char *name = "";
    const char *value = "";
    const int32_t type =
        env_get_core(element.get(), nullptr, nullptr, 1, 0, nullptr, &name, &value, nullptr);
    if (type == ENV_DATA) {
        visitor.text({name, 1, last, section}, value);
        return;
    }
    visitor.open_block({name, 1, last, section});
    OpenBlocks blocks;
    blocks.enter(std::move(element));
    while (!blocks.empty()) {
        Block &block = blocks.innermost();
        if (block.position == block.count) {
            blocks.leave();
            visitor.close_block();
            continue;
        }
        ENV *const env = block.env.get();
        const int32_t found =
            env_get_core(env, nullptr, nullptr, 1, ++block.position, nullptr, &name, &value, nullptr);
        const Item item = {name, ++block.seen[name], block.position == block.count, false};
        if (found == ENV_DATA) {
            visitor.text(item, value);
        } else if (found == ENV_BLOCK) {
            visitor.open_block(item);
            blocks.enter(open_child(env, item));
        }
    }
}

void walk_sections(ENV *env, Visitor &visitor) {
    const char *name = "";
    for (int32_t left = env_count_elements(env, nullptr, nullptr, 1); left > 0; --left) {
        env_get_core(env, nullptr, nullptr, 1, 1, nullptr, &name, nullptr, nullptr);
        const std::string section = name;
        Tree element(env_open_subenv(env, section.c_str(), nullptr, 1));
        if (element == nullptr) throw std::bad_alloc();
        walk(std::move(element), true, left == 1, visitor);
        env_delete(env, section.c_str(), nullptr);
    }
}

}  // namespace kvtool

// SPDX-License-Identifier: MIT
// Edits of a text: reading what comes out gives what the functions make of the tree that was read before.
#include <algorithm>
#include <array>
#include <new>
#include <vector>

#include "env/edits.hpp"
#include "fuzz/env/support.hpp"

namespace {

using kvfuzz::Environment;
using kvfuzz::Input;

// A text of the caller: one that occurs often, or one of its own.
std::string take_text(Input &input, const std::array<const char *, 8> &usual) {
    const std::size_t choice = input.below(16);
    if (choice < usual.size()) return usual[choice];
    std::string text = input.split(choice - usual.size()).rest();
    std::replace(text.begin(), text.end(), '\0', '0');
    return text;
}

struct Edit {
    std::int32_t operation;
    std::string section, path, text, name;
    bool has_path;
    std::int32_t mode;

    explicit Edit(Input &input)
        : operation(static_cast<std::int32_t>(input.below(5))),
          section(take_text(input, {"s", "s", "a", "t", "", "new", "s", "b"})),
          path(take_text(input, {"a", "b", "a@a", "b@2@a", "a@0", "c", "b@b@b", "a@3"})),
          text(take_text(input, {"", "x", "\\", "x\\\\", "\\ y", ";x", "x\\  z", "0"})),
          name(take_text(input, {"a", "b", ";a", "\\", "c", "\\ d", "a\\\\", "7"})),
          has_path(input.below(8) != 0),
          mode(static_cast<std::int32_t>(input.below(4))) {
        if (input.below(8) == 0) text.append(100, text.empty() ? '\\' : text.back());
    }
    const char *path_or_nil() const { return has_path ? path.c_str() : nullptr; }
    ENV_EDIT get(ENV *source) const {
        const char *const where = operation == ENV_EDIT_MERGE && !has_path ? nullptr : section.c_str();
        return {operation, where, path_or_nil(), text.c_str(), name.c_str(), source, mode};
    }
};

// The text that reading a file of these bytes gives.
std::string as_read(std::string_view bytes) {
    std::string text;
    bytes = bytes.substr(0, bytes.find('\x1a'));
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (bytes[i] != '\r' || i + 1 == bytes.size() || bytes[i + 1] != '\n') text += bytes[i];
    }
    return text;
}

// What the functions do that an edit stands for.
std::int32_t apply(const ENV_EDIT &edit, ENV *env) {
    switch (edit.operation) {
        case ENV_EDIT_PUT:
            return env_put(env, edit.section, edit.path, edit.text);
        case ENV_EDIT_MAKE_BLOCK: {
            if (edit.path == nullptr) return env_put(env, edit.section, nullptr, "");
            if (env_check(env, edit.section, edit.path, 1) == ENV_BLOCK) return ENV_OK;
            const std::int32_t status = env_put(env, edit.section, edit.path, "");
            ENV *const block = env_open_subenv(env, edit.section, edit.path, 1);
            KV_REQUIRE(block != nullptr);
            KV_REQUIRE(env_put(block, nullptr, "x", "") == ENV_OK);
            KV_REQUIRE(env_delete(block, nullptr, "x") == ENV_OK);
            KV_REQUIRE(env_close(block, 0) == ENV_OK);
            return status;
        }
        case ENV_EDIT_DELETE:
            return env_delete(env, edit.section, edit.path);
        case ENV_EDIT_INSERT: {
            const std::int32_t status = env_insert_before(env, edit.section, edit.path, edit.name);
            if (status != ENV_OK || edit.path == nullptr) return status;
            // The new element is the external in the list of the one that it stands before.
            for (kv::env::Element *section = env->sections.first; section != nullptr;
                 section = section->next) {
                for (const kv::env::Element *element = section; element != nullptr;
                     element = kv::env::following(element, section)) {
                    if (element->type == ENV_TYPE_EXTERNAL)
                        kv::env::set_text(*const_cast<kv::env::Element *>(element), edit.text);
                }
            }
            return status;
        }
        default:
            return edit.section == nullptr ? env_sink(env, edit.source, edit.mode)
                                           : std::int32_t{ENV_ERROR};
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const bool ready = (kvfuzz::quiet(), true);
    KV_REQUIRE(ready);
    Input input(data, size);
    std::vector<Edit> edits;
    for (std::size_t left = input.below(5); left > 0; --left) edits.emplace_back(input);
    const std::string other = as_read(input.split(input.below(64)).rest());
    std::string bytes = input.rest();
    std::replace(bytes.begin(), bytes.end(), '\0', '0');  // left out where it is read

    Environment source;
    kvfuzz::read(other, source);
    std::vector<ENV_EDIT> list;
    for (const Edit &edit : edits) list.push_back(edit.get(source));

    std::size_t reached = 0;
    kv::memory::String edited;
    const std::int32_t status = kv::env::edit_text(bytes, list, reached, edited);
    Environment wanted;
    const std::int32_t read = kvfuzz::read(as_read(bytes), wanted);
    if (read != ENV_OK) {
        KV_REQUIRE(status == read && reached == 0 && edited.empty());
        return 0;
    }
    if (list.empty()) KV_REQUIRE(status == ENV_OK && std::string_view(edited) == bytes);
    KV_REQUIRE((status == ENV_OK) == (reached == list.size()));
    if (status != ENV_OK) {
        KV_REQUIRE(edited.empty());
        return 0;
    }
    for (const ENV_EDIT &edit : list) {
        // A merge of a block makes less than the function does where nothing is stored.
        if (edit.operation == ENV_EDIT_MERGE && edit.section != nullptr) return 0;
        KV_REQUIRE(apply(edit, wanted) == ENV_OK);
    }

    Environment got;
    KV_REQUIRE(kvfuzz::read(as_read(edited), got) == ENV_OK);
    KV_REQUIRE(
        kvfuzz::same_elements(static_cast<ENV *>(wanted)->sections, static_cast<ENV *>(got)->sections));
    // What stands behind a Ctrl-Z stays.
    const std::size_t behind = std::min(bytes.find('\x1a'), bytes.size());
    KV_REQUIRE(std::string_view(edited).ends_with(std::string_view(bytes).substr(behind)));
    return 0;
}

#include "tools/kv/env/edits.hpp"

#include <algorithm>

#include "tools/kv/env/address.hpp"
#include "tools/kv/env/file.hpp"
#include "tools/kv/failure.hpp"

namespace kvtool {

namespace {

constexpr std::string_view kBlanks = " \t";

[[noreturn]] void fail_quoting(const std::string &text) {
    throw Failure{kUsage, "a quote is not closed, or something stands right behind it: " + text};
}

// Takes the quoted word at the start of `rest` from it.
std::string take_quoted(std::string_view &rest, const std::string &text) {
    const char quote = rest.front();
    std::string word;
    for (std::size_t i = 1; i < rest.size(); ++i) {
        if (rest[i] != quote) {
            word += rest[i];
        } else if (i + 1 < rest.size() && rest[i + 1] == quote) {
            word += rest[i++];
        } else {
            rest.remove_prefix(i + 1);
            if (!rest.empty() && kBlanks.find(rest.front()) == kBlanks.npos) fail_quoting(text);
            return word;
        }
    }
    fail_quoting(text);
}

[[noreturn]] void fail_not_found(const char *section, const char *path) {
    throw Failure{kNotFound, describe(section, path) + " not found"};
}

const char *word(const Edit &edit, std::size_t n) {
    return n < edit.words.size() ? edit.words[n].c_str() : nullptr;
}

void put(ENV *env, const char *section, const char *path, const char *value) {
    if (env_put(env, section, path, value) == ENV_OK) return;
    throw Failure{kUsage, describe(section, path) + " cannot be made: an index is 0 in a block without " +
                              "elements, or far beyond the elements that there are"};
}

void set(const Edit &edit, ENV *env) {
    if (edit.words.size() == 2) throw Failure{kUsage, "set wants a value behind SECTION PATH"};
    const char *section = word(edit, 0);
    const char *path = word(edit, 1);
    const char *value = word(edit, 2);
    if (env_exist(env, section, nullptr, 1) == 0) check_section_name(section);
    if (path == nullptr) {
        put(env, section, nullptr, "");
        return;
    }
    check_text(value);
    const Path names(path);
    if (env_exist(env, section, path, 1) == 0) {
        for (const std::string &name : names.names()) check_element_name(name);
    }
    put(env, section, path, value);
}

void remove(const Edit &edit, ENV *env) {
    const char *path = word(edit, 1);
    if (path != nullptr) Path{path};
    if (env_delete(env, word(edit, 0), path) != ENV_OK) fail_not_found(word(edit, 0), path);
}

// Gives the new element of a block its text. It is the one that has no text yet, since a file holds no
// externals.
void fill_inserted(ENV *block, const char *name, const char *value) {
    int32_t occurrence = 0;
    const char *met = "";
    for (int32_t position = 1;; ++position) {
        const int32_t type =
            env_get_core(block, nullptr, nullptr, 1, position, nullptr, &met, nullptr, nullptr);
        if (std::string_view(met) == name) ++occurrence;
        if (type == ENV_EXTERNAL || type == ENV_NOT_FOUND) break;
    }
    const ChildPath path(name, occurrence);
    put(block, nullptr, path.text(), value);
}

void insert(const Edit &edit, ENV *env) {
    const char *section = word(edit, 0);
    if (edit.words.size() == 2) {
        check_section_name(edit.words[1]);
        if (env_insert_before(env, section, nullptr, word(edit, 1)) != ENV_OK)
            fail_not_found(section, nullptr);
        return;
    }
    const char *path = word(edit, 1);
    const char *name = word(edit, 2);
    const char *value = edit.words.size() > 3 ? word(edit, 3) : "";
    const std::string parent = Path(path).parent();
    check_element_name(name);
    check_text(value);
    if (env_insert_before(env, section, path, name) != ENV_OK) fail_not_found(section, path);
    const Tree block(env_open_subenv(env, section, parent.empty() ? nullptr : parent.c_str(), 1));
    if (block == nullptr) fail_not_found(section, path);
    fill_inserted(block.get(), name, value);
}

struct Verb {
    std::string_view name;
    std::string_view words;
    std::size_t least;
    std::size_t most;
    void (*apply)(const Edit &edit, ENV *env);
};

constexpr Verb kVerbs[] = {
    {"set", "SECTION [PATH VALUE]", 1, 3, set},
    {"delete", "SECTION [PATH]", 1, 2, remove},
    {"insert", "SECTION [PATH] NAME [VALUE]", 2, 4, insert},
};

}  // namespace

Edit parse_edit(const std::string &text) {
    std::vector<std::string> words;
    std::string_view rest = text;
    for (;;) {
        rest.remove_prefix(std::min(rest.find_first_not_of(kBlanks), rest.size()));
        if (rest.empty()) break;
        if (rest.front() == '\'' || rest.front() == '"') {
            words.push_back(take_quoted(rest, text));
        } else {
            const std::size_t end = std::min(rest.find_first_of(kBlanks), rest.size());
            words.emplace_back(rest.substr(0, end));
            rest.remove_prefix(end);
        }
    }
    if (words.empty()) throw Failure{kUsage, "an edit is empty"};
    Edit edit = {words.front(), {}};
    edit.words.assign(words.begin() + 1, words.end());
    return edit;
}

void apply(const Edit &edit, ENV *env) {
    const Verb *verb = std::begin(kVerbs);
    while (verb != std::end(kVerbs) && verb->name != edit.verb) ++verb;
    if (verb == std::end(kVerbs))
        throw Failure{kUsage, "no edit '" + edit.verb + "', see 'kv env edit --help'"};
    if (edit.words.size() < verb->least || edit.words.size() > verb->most) {
        throw Failure{kUsage, edit.verb + " wants " + std::string(verb->words)};
    }
    verb->apply(edit, env);
}

}  // namespace kvtool

// SPDX-License-Identifier: MIT
#include "tools/kv/env/edits.hpp"

#include <algorithm>

#include "tools/kv/env/address.hpp"
#include "tools/kv/env/file.hpp"
#include "tools/kv/failure.hpp"
#include "tools/kv/files.hpp"

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

const char *word(const Edit &edit, std::size_t n) {
    return n < edit.words.size() ? edit.words[n].c_str() : nullptr;
}

struct Verb {
    std::string_view name;
    std::string_view words;
    std::size_t least;
    std::size_t most;
    int32_t operation;
};

constexpr Verb kVerbs[] = {
    {"set", "SECTION [PATH VALUE]", 1, 3, ENV_EDIT_PUT},
    {"block", "SECTION [PATH]", 1, 2, ENV_EDIT_MAKE_BLOCK},
    {"delete", "SECTION [PATH]", 1, 2, ENV_EDIT_DELETE},
    {"insert", "SECTION [PATH] NAME [VALUE]", 2, 4, ENV_EDIT_INSERT},
};

// The library's form of an edit, which points into it.
ENV_EDIT library_edit(const Edit &edit) {
    const Verb *verb = std::begin(kVerbs);
    while (verb != std::end(kVerbs) && verb->name != edit.verb) ++verb;
    if (verb == std::end(kVerbs))
        throw Failure{kUsage, "no edit '" + edit.verb + "', see 'kv env edit --help'"};
    if (edit.words.size() < verb->least || edit.words.size() > verb->most) {
        throw Failure{kUsage, edit.verb + " wants " + std::string(verb->words)};
    }
    const bool puts = verb->operation == ENV_EDIT_PUT;
    if (puts && edit.words.size() == 2) throw Failure{kUsage, "set wants a value behind SECTION PATH"};
    ENV_EDIT made{verb->operation, word(edit, 0), word(edit, 1), nullptr, nullptr, nullptr, 0};
    if (puts) made.text = word(edit, 2);
    if (verb->operation == ENV_EDIT_INSERT) {
        const bool section = edit.words.size() == 2;
        if (section) made.path = nullptr;
        made.name = word(edit, section ? 1 : 2);
        made.text = section ? nullptr : word(edit, 3);
    }
    return made;
}

// Why the library did not make an edit. Throws Failure.
[[noreturn]] void explain(const ENV_EDIT &edit, int32_t status) {
    if (edit.path != nullptr) Path{edit.path};
    const std::string where = describe(edit.section, edit.path);
    if (status == ENV_NOT_FOUND) throw Failure{kNotFound, where + " not found"};
    const bool inserts = edit.operation == ENV_EDIT_INSERT;
    if (inserts) {
        edit.path != nullptr ? check_element_name(edit.name) : check_section_name(edit.name);
    } else {
        check_section_name(edit.section);
    }
    if (edit.text != nullptr) check_text(edit.text);
    if (edit.path != nullptr && !inserts) {
        for (const std::string &name : Path(edit.path).names()) check_element_name(name);
    }
    throw Failure{kUsage, where +
                              " cannot be made: an index is 0 in a block without elements, or far "
                              "beyond the elements that there are"};
}

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

std::string edit_text(const Edit &edit) {
    std::string text = edit.verb;
    for (const std::string &word : edit.words) {
        const bool plain =
            !word.empty() && word[0] != '\'' && word[0] != '"' && word.find_first_of(kBlanks) == word.npos;
        text += ' ';
        if (plain) {
            text += word;
            continue;
        }
        text += '\'';
        for (const char c : word) text.append(c == '\'' ? 2 : 1, c);
        text += '\'';
    }
    return text;
}

void edit_file(const std::string &file, const std::string &shown, const std::vector<Edit> &edits,
               bool numbered) {
    std::vector<ENV_EDIT> made;
    const auto fail = [&](const Failure &failure) {
        std::string text = shown + ": ";
        if (numbered) text += "edit " + std::to_string(made.size() + 1) + ": ";
        throw Failure{failure.code, text + failure.text + "; nothing was saved"};
    };
    try {
        for (const Edit &edit : edits) made.push_back(library_edit(edit));
    } catch (const Failure &failure) {
        fail(failure);
    }
    int32_t reached = 0;
    const int32_t status =
        env_edit_file(file.c_str(), made.data(), static_cast<int32_t>(made.size()), &reached);
    if (status == ENV_OK) return;
    if (status == ENV_SYNTAX) throw Failure{kFile, syntax_problem(shown)};
    const auto number = static_cast<std::size_t>(reached);
    if (number == made.size())
        throw Failure{kFile, shown + ": could not be saved: " + save_failure_reason(file)};
    try {
        const ENV_EDIT edit = made[number];
        made.resize(number);
        explain(edit, status);
    } catch (const Failure &failure) {
        fail(failure);
    }
}

}  // namespace kvtool

// SPDX-License-Identifier: MIT
#include "tools/kv/env/file.hpp"

#include <iostream>
#include <new>
#include <string_view>

#include "tools/kv/failure.hpp"
#include "tools/kv/files.hpp"

namespace kvtool {

namespace {

// A text beyond this is not kept: indentation alone makes very deep trees longer than any memory.
constexpr std::size_t kLongestText = std::size_t{1} << 30;

struct TextSource {
    const std::string &text;
    std::size_t position;
};

int32_t next_character(void *stream) {
    TextSource &source = *static_cast<TextSource *>(stream);
    if (source.position == source.text.size()) return -1;
    return static_cast<unsigned char>(source.text[source.position++]);
}

struct TextSink {
    std::string text;
    bool failed;
};

void put_character(int32_t c, void *stream) {
    TextSink &sink = *static_cast<TextSink *>(stream);
    if (sink.failed) return;
    try {
        if (sink.text.size() == kLongestText) throw std::bad_alloc();
        sink.text += static_cast<char>(c);
    } catch (const std::bad_alloc &) {  // the library's frames lie between here and the caller
        sink.failed = true;
    }
}

}  // namespace

std::string syntax_problem(const std::string &file) {
    struct Wording {
        std::string_view report;
        std::string_view words;
    };
    constexpr Wording kWordings[] = {
        {"Section waited", "a section must begin here: [NAME]"},
        {"Equal sign waited", "the text ends inside a name; \"=\" is missing"},
        {"Cbracesymbol waited", "the block does not end; \"}\" is missing"},
    };
    int32_t line = 0;
    int32_t column = 0;
    char report[256] = "";
    env_get_error(&line, &column, sizeof report, report);
    std::string_view words = report;
    for (const Wording &wording : kWordings) {
        if (words.find(wording.report) != words.npos) words = wording.words;
    }
    return file + ":" + std::to_string(line) + ":" + std::to_string(column) + ": " + std::string(words);
}

Tree new_tree(int32_t id, ENV *default_env) {
    Tree tree(env_open(id, default_env));
    if (tree == nullptr) throw std::bad_alloc();
    return tree;
}

LoadResult try_load(const std::string &file, ENV *env, std::string &problem) {
    problem.clear();
    std::string text;
    try {
        text = read_all(file);
        for (const std::string &oddity : text_oddities(input_name(file), text, "it is left out")) {
            problem.append(problem.empty() ? "" : "\n").append(oddity);
        }
    } catch (const Failure &failure) {
        if (failure.code != kFile) throw;
        problem = failure.text;
        return !is_standard(file) && why_unreadable(file).missing ? LoadResult::missing
                                                                  : LoadResult::unreadable;
    }
    text = as_text_mode(std::move(text));
    TextSource source{text, 0};
    switch (env_read(next_character, &source, env)) {
        case ENV_OK:
            return LoadResult::done;
        case ENV_SYNTAX:
            problem = syntax_problem(input_name(file));
            return LoadResult::syntax;
        default:
            throw std::bad_alloc();
    }
}

void load(const std::string &file, ENV *env) {
    std::string problem;
    if (try_load(file, env, problem) != LoadResult::done) throw Failure{kFile, problem};
    if (!problem.empty()) std::cerr << problem << '\n';
}

std::string text_of(ENV *env) {
    TextSink sink{};
    env_write(put_character, &sink, env);
    if (sink.failed) throw std::bad_alloc();
    return std::move(sink.text);
}

std::string file_text(const std::string &text) {
    std::string converted;
    for (const char c : text) {
        if (c == '\n') converted += '\r';
        converted += c;
    }
    return converted;
}

}  // namespace kvtool

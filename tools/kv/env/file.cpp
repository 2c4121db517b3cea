#include "tools/kv/env/file.hpp"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <new>
#include <string_view>

#include "platform/platform.hpp"
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

// Whether the text holds all of the tree that it was made of.
bool reads_back(const std::string &text) {
    const Tree copy = new_tree();
    TextSource source{text, 0};
    return env_read(next_character, &source, copy.get()) == ENV_OK && text_of(copy.get()) == text;
}

// Whether the file holds the text. It is read as the library reads it, so that every name means the file
// that the library wrote.
bool holds(const std::string &file, const std::string &text) {
    const Tree saved = new_tree();
    return env_read_file(file.c_str(), saved.get()) == ENV_OK && text_of(saved.get()) == text;
}

// Pipes and devices cannot be replaced or read back.
bool is_stream(const std::string &file) {
    std::error_code ignored;
    const std::filesystem::file_status status = std::filesystem::status(file, ignored);
    return std::filesystem::exists(status) && !std::filesystem::is_regular_file(status) &&
           !std::filesystem::is_directory(status);
}

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

}  // namespace

Tree new_tree(int32_t id, ENV *default_env) {
    Tree tree(env_open(id, default_env));
    if (tree == nullptr) throw std::bad_alloc();
    return tree;
}

LoadResult try_load(const std::string &file, ENV *env, std::string &problem) {
    switch (env_read_file(file.c_str(), env)) {
        case ENV_OK:
            return LoadResult::done;
        case ENV_SYNTAX:
            problem = syntax_problem(file);
            return LoadResult::syntax;
        default:
            break;
    }
    const Unreadable why = why_unreadable(file);
    problem = why.text;
    return why.missing ? LoadResult::missing : LoadResult::unreadable;
}

void load(const std::string &file, ENV *env) {
    std::string problem;
    if (try_load(file, env, problem) != LoadResult::done) throw Failure{kFile, problem};
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

void save(ENV *env, const std::string &file) {
    const std::string text = text_of(env);
    if (!reads_back(text)) {
        throw Failure{kUsage, file + ": not saved: a text or a name in it cannot be written to a file"};
    }
    if (file == "-") {
        std::cout << file_text(text);
        return;
    }
    bool saved;
    if (is_stream(file)) {
        std::ofstream stream(file, std::ios::binary);
        stream << file_text(text);
        stream.close();
        saved = !stream.fail();
    } else {
        kv::platform::clear_failure();
        env_write_file(file.c_str(), env);
        saved = holds(file, text);
    }
    if (!saved) {
        throw Failure{kFile, file + ": could not be saved: " + save_failure_reason(file)};
    }
}

}  // namespace kvtool

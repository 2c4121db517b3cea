// SPDX-License-Identifier: MIT
// `kv env get`: one value, as text or checked to be a number or a list, from a file and its defaults.
#include <charconv>
#include <iostream>

#include "tools/kv/env/action.hpp"
#include "tools/kv/env/address.hpp"
#include "tools/kv/env/file.hpp"
#include "tools/kv/env/missing.hpp"
#include "tools/kv/failure.hpp"
#include "tools/kv/files.hpp"
#include "tools/kv/terminal.hpp"

namespace kvtool {

namespace {

struct CloseChain {
    void operator()(ENV *env) const { env_close(env, 1); }
};

// A file and the files that answer where it has nothing.
class Chain {
  public:
    Chain(const std::string &file, const std::vector<std::string> &defaults) {
        add(file);
        for (const std::string &next : defaults) add(next);
    }

    ENV *env() const { return first_.get(); }
    const std::string &file(int32_t id) const { return files_[static_cast<std::size_t>(id)]; }

  private:
    void add(const std::string &file) {
        Tree link = new_tree(static_cast<int32_t>(files_.size()));
        load(file, link.get());
        files_.push_back(file);
        if (first_ == nullptr) {
            first_.reset(link.release());
        } else {
            env_attach_as_last_default(first_.get(), link.release());
        }
    }

    std::vector<std::string> files_;
    std::unique_ptr<ENV, CloseChain> first_;
};

struct Request {
    const Chain &chain;
    const char *section;
    const char *path;
    int32_t exact;
    bool origin;
};

std::vector<std::string> split_at_commas(std::string_view text) {
    std::vector<std::string> parts;
    for (;;) {
        const std::size_t end = text.find(',');
        parts.emplace_back(text.substr(0, end));
        if (end == text.npos) return parts;
        text.remove_prefix(end + 1);
    }
}

// The shortest text that reads back as the same number.
std::string text_of_number(double value) {
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

std::string text_of_number(int32_t value) {
    return std::to_string(value);
}

template <typename Number>
int32_t get_number(const Request &request,
                   int32_t (*getter)(ENV *, const char *, const char *, int32_t, Number *),
                   std::vector<std::string> &values) {
    Number value{};
    const int32_t id = getter(request.chain.env(), request.section, request.path, request.exact, &value);
    values.push_back(text_of_number(value));
    return id;
}

template <typename Number>
int32_t get_numbers(const Request &request,
                    int32_t (*getter)(ENV *, const char *, const char *, int32_t, int32_t *, Number *),
                    std::vector<std::string> &values) {
    ENV *env = request.chain.env();
    int32_t count = 0;
    const int32_t found =
        env_get_array_size(env, request.section, request.path, request.exact, &count, nullptr);
    if (found < 0) return found;
    std::vector<Number> numbers(static_cast<std::size_t>(count));
    const int32_t id = getter(env, request.section, request.path, request.exact, &count, numbers.data());
    for (std::size_t i = 0; id >= 0 && i < static_cast<std::size_t>(count); ++i) {
        values.push_back(text_of_number(numbers[i]));
    }
    return id;
}

int32_t get_text(const Request &request, std::vector<std::string> &values) {
    const char *text = "";
    const int32_t id =
        env_get_reference(request.chain.env(), request.section, request.path, request.exact, &text);
    values.emplace_back(text);
    return id;
}

int32_t get_strings(const Request &request, std::vector<std::string> &values) {
    std::vector<std::string> text;
    const int32_t id = get_text(request, text);
    values = split_at_commas(text.front());
    return id;
}

struct Type {
    std::string_view name;
    std::string_view words;
    int32_t (*get)(const Request &request, std::vector<std::string> &values);
};

constexpr Type kTypes[] = {
    {"text", "a text", get_text},
    {"long", "a whole number",
     [](const Request &r, std::vector<std::string> &v) { return get_number<int32_t>(r, env_get_long, v); }},
    {"double", "a number",
     [](const Request &r, std::vector<std::string> &v) {
         return get_number<double>(r, env_get_double, v);
     }},
    {"longs", "a list of whole numbers",
     [](const Request &r, std::vector<std::string> &v) {
         return get_numbers<int32_t>(r, env_get_longs, v);
     }},
    {"doubles", "a list of numbers",
     [](const Request &r, std::vector<std::string> &v) {
         return get_numbers<double>(r, env_get_doubles, v);
     }},
    {"strings", "a list of texts", get_strings},
};

int run_get(std::string_view, const Arguments &arguments) {
    const std::string type_name = arguments.value("--type", "text");
    const Type *type = std::begin(kTypes);
    while (type->name != type_name) ++type;    // one of them, as the table of options says
    const Path path(arguments.operands()[2]);  // refuses what is no path

    const Chain chain(arguments.operands()[0], arguments.values("--default"));
    const Request request = {chain, operand(arguments, 1), operand(arguments, 2),
                             arguments.has("--any-depth") ? 0 : 1, arguments.has("--origin")};
    std::vector<std::string> values;
    const int32_t id = type->get(request, values);
    const std::string where = input_name(chain.file(0)) + ": " + describe(request.section, request.path);
    if (id == ENV_DATA) throw Failure{kNotFound, where + " is a block, not " + std::string(type->words)};
    if (id == ENV_SYNTAX) throw Failure{kNotFound, where + " is not " + std::string(type->words)};
    if (id == ENV_NOT_FOUND) fail_missing(chain.file(0), chain.env(), request.section, request.path);
    if (id < 0) throw std::bad_alloc();
    for (const std::string &value : values) {
        if (request.origin) std::cout << chain.file(id) << '\t';
        std::cout << for_terminal(value) << '\n';
    }
    return kDone;
}

constexpr Option kOptions[] = {
    {"--type", "TYPE", "text, long, double, longs, doubles or strings (default text)", 't',
     "text long double longs doubles strings"},
    {"--default", "FILE", "ask this file where FILE has nothing; more of them are asked in turn"},
    {"--origin", "", "print the name of the file that answered, and a tab, before each value"},
    kAnyDepthOption,
};

}  // namespace

const Action kEnvGet = {
    "get",
    "FILE SECTION PATH",
    "print a value",
    R"(Prints a value: as it stands, or read as a number, or as a list with commas between its parts,
one part a line. Exit code 1 if the element is missing, is a block, or is not of the type; all
parts of a list are checked before the first one is printed.
)",
    kOptions,
    3,
    3,
    run_get,
};

}  // namespace kvtool

// SPDX-License-Identifier: MIT
#include "tools/kv/calc/sources.hpp"

#include <algorithm>
#include <charconv>
#include <utility>

#include "tools/kv/env/file.hpp"
#include "tools/kv/failure.hpp"

namespace kvtool {

namespace {

constexpr std::string_view kIni = "ini:";

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view kSpaces = " \t";
    text.remove_prefix(std::min(text.find_first_not_of(kSpaces), text.size()));
    return text.substr(0, text.find_last_not_of(kSpaces) + 1);
}

// A whole text that is one number, perhaps with blanks around it.
bool is_number(std::string_view text, double &value) {
    text = trimmed(text);
    if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
    if (text.find_first_not_of("0123456789.+-eE") != text.npos) return false;  // "inf", "nan"
    const char *const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    return error == std::errc() && stop == end;
}

}  // namespace

Sources::Sources(const std::vector<std::string> &env_files, std::string section, std::string ini_file)
    : section_(std::move(section)), ini_file_(std::move(ini_file)) {
    for (const std::string &file : env_files) {
        Tree link = new_tree();
        load(file, link.get());
        if (chain_ == nullptr) {
            chain_.reset(link.release());
        } else {
            env_attach_as_last_default(chain_.get(), link.release());
        }
    }
}

double Sources::value(std::string_view path) {
    path = trimmed(path);
    if (path.starts_with(kIni)) return ini_value(path.substr(kIni.size()));
    return env_value(std::string(path));
}

double Sources::env_value(const std::string &path) const {
    if (chain_ == nullptr) throw std::string("there is no file to ask; name one with --env");
    const std::string element = "[" + section_ + "] " + path;
    double value = 0;
    const int32_t result = env_get_double(chain_.get(), section_.c_str(), path.c_str(), 1, &value);
    if (result >= 0) return value;
    switch (result) {
        case ENV_SYNTAX:
            throw element + " is no number";
        case ENV_DATA:
            throw element + " is a block, not a number";
        case ENV_BAD_PATH:
            throw "'" + path + "' is no path";
        default:
            throw "there is no " + element;
    }
}

double Sources::ini_value(std::string_view path) {
    const std::size_t slash = path.find('/');
    if (slash == path.npos) throw std::string("a section, / and a key are wanted behind ini:");
    const std::string_view section = path.substr(0, slash);
    const std::string key(path.substr(slash + 1));
    if (!ini_) {
        const std::string file = ini_file_.empty() ? main_ini_file() : ini_file_;
        if (file.empty())
            throw Failure{kFile, "there is no main configuration file; name a file with --ini"};
        ini_.emplace(file);
    }
    const std::string entry = describe_ini(section, key.c_str());
    const std::optional<std::string_view> text = ini_->find(section, key);
    if (!text) throw "there is no " + entry;
    double value = 0;
    if (!is_number(*text, value)) throw entry + " is no number";
    return value;
}

}  // namespace kvtool

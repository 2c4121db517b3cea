// SPDX-License-Identifier: MIT
// `kv ini set`, `delete`, `rename` and `edit`: changes of a file, all of a call or none.
#include <iostream>

#include "platform/platform.hpp"
#include "tools/kv/env/edits.hpp"
#include "tools/kv/failure.hpp"
#include "tools/kv/files.hpp"
#include "tools/kv/ini/action.hpp"
#include "tools/kv/ini/losses.hpp"
#include "tools/kv/output.hpp"

namespace kvtool {

namespace {

bool has_any(const std::string &text, const char *characters) {
    return text.find_first_of(characters) != text.npos;
}

bool has_white_space_at(const std::string &text, std::size_t position) {
    return static_cast<unsigned char>(text[position]) <= 32;
}

void check_section(const std::string &name) {
    const bool around = !name.empty() && (name.front() == ' ' || name.back() == ' ');
    if (around || has_any(name, "]\n\r\x1a") || name.size() > 79) {
        throw Failure{kUsage,
                      "a section's name has at most 79 characters, no \"]\", line end or Ctrl-Z in it, "
                      "and no blanks around it"};
    }
}

void check_new_section(const std::string &name) {
    check_section(name);
    if (name.empty()) throw Failure{kUsage, "a section's new name is empty"};
}

void check_key(const std::string &key) {
    if (key.empty() || key[0] == ';' || key[0] == '[' || has_any(key, "=\n\r\x1a") || key.size() > 79 ||
        has_white_space_at(key, 0) || has_white_space_at(key, key.size() - 1)) {
        throw Failure{kUsage,
                      "a key has 1 to 79 characters, no \"=\", line end or Ctrl-Z in it and no blanks "
                      "around it, and begins neither with \";\" nor with \"[\""};
    }
}

void check_value(const std::string &key, const std::string &value) {
    if (has_any(value, "\n\r\x1a") || (!value.empty() && has_white_space_at(value, value.size() - 1))) {
        throw Failure{kUsage, "a value has no line end or Ctrl-Z in it and no blanks at its end"};
    }
    constexpr std::size_t kLineLength = 511;
    if (key.size() + 1 + value.size() > kLineLength) {
        throw Failure{kUsage, "a key and its value have at most 510 characters together"};
    }
}

// The library's form of an edit, which points into it.
INI_EDIT library_edit(const Edit &edit) {
    const std::vector<std::string> &words = edit.words;
    const auto wants = [&](std::size_t least, std::size_t most, const char *what) {
        if (words.size() < least || words.size() > most)
            throw Failure{kUsage, edit.verb + " wants " + what};
    };
    if (edit.verb == "set") {
        wants(3, 3, "SECTION KEY VALUE");
        check_section(words[0]);
        check_key(words[1]);
        check_value(words[1], words[2]);
        return {INI_EDIT_WRITE, words[0].c_str(), words[1].c_str(), words[2].c_str()};
    }
    if (edit.verb == "delete") {
        wants(1, 2, "SECTION [KEY]");
        if (words.size() == 1) return {INI_EDIT_DELETE_SECTION, words[0].c_str(), nullptr, nullptr};
        return {INI_EDIT_DELETE_ENTRY, words[0].c_str(), words[1].c_str(), nullptr};
    }
    if (edit.verb == "rename") {
        wants(2, 3, "SECTION [KEY] NEW");
        if (words.size() == 2) {
            check_new_section(words[1]);
            return {INI_EDIT_RENAME_SECTION, words[0].c_str(), nullptr, words[1].c_str()};
        }
        check_key(words[2]);
        return {INI_EDIT_RENAME_ENTRY, words[0].c_str(), words[1].c_str(), words[2].c_str()};
    }
    throw Failure{kUsage, "no edit '" + edit.verb + "', see 'kv ini edit --help'"};
}

[[noreturn]] void fail_edit(const std::string &file, const std::string &which, const Failure &failure) {
    std::string text = input_name(file);
    text.append(": ").append(which).append(failure.text).append("; nothing was saved");
    throw Failure{failure.code, text};
}

// What an edit did not find, as the document tells it.
[[noreturn]] void fail_missing(std::string_view command, const std::string &path, const IniOperands &given,
                               const std::string &which, const Edit &edit, int32_t status) {
    try {
        fail_not_found(command, IniDocument(path), given, edit.words[0],
                       status == INI_NO_ENTRY ? edit.words[1] : "");
    } catch (const Failure &failure) {
        fail_edit(given.file, which, {failure.code, failure.text.substr(failure.text.find(": ") + 2)});
    }
}

void apply(std::string_view command, const std::string &path, const IniOperands &given,
           const std::vector<Edit> &edits, bool numbered) {
    const auto which = [&](std::size_t i) {
        return numbered ? "edit " + std::to_string(i + 1) + ": " : std::string();
    };
    std::vector<INI_EDIT> all;
    for (std::size_t i = 0; i < edits.size(); ++i) {
        try {
            all.push_back(library_edit(edits[i]));
        } catch (const Failure &failure) {
            fail_edit(given.file, which(i), failure);
        }
    }
    const std::string before = ini_text(path);
    int32_t reached = 0;
    kv::platform::clear_failure();
    const int32_t status = ini_edit(path.c_str(), all.data(), static_cast<int32_t>(all.size()), &reached);
    if (status == INI_OK) {
        for (const std::string &loss : losses(before, ini_text(path), edits))
            std::cerr << input_name(given.file) << ": " << loss << '\n';
        return;
    }
    const std::string reason = save_failure_reason(path);
    const auto failed = static_cast<std::size_t>(reached);
    if (failed < edits.size() && status > INI_OK) {
        fail_missing(command, path, given, which(failed), edits[failed], status);
    }
    throw Failure{kFile, input_name(given.file) + ": could not be saved: " + reason};
}

// `numbered`: messages tell which of the edits failed.
int change_file(std::string_view command, const IniOperands &given, const Arguments &arguments,
                const std::vector<Edit> &edits, bool numbered) {
    const std::string &file = given.file;
    const std::string output = arguments.value("--output", file);
    const bool create = arguments.has("--create") && !is_standard(file) && why_unreadable(file).missing;
    if (output == file && !is_standard(file)) {
        if (!create) Input{file};  // fails with the reason
        apply(command, file, given, edits, numbered);
        return kDone;
    }
    const TemporaryFile copy;
    save_file(copy.name(), create ? "" : read_all(file));
    apply(command, copy.name(), given, edits, numbered);
    save_file(output, read_all(copy.name()));
    return kDone;
}

// An action whose operands are the words of one edit, of which there are at most so many.
int run_single(std::string_view command, const Arguments &arguments, std::size_t most) {
    const std::string_view verb = command.substr(command.rfind(' ') + 1);
    const IniOperands given = ini_operands(command, arguments, most);
    return change_file(command, given, arguments, {{std::string(verb), given.words}}, false);
}

int run_edit(std::string_view command, const Arguments &arguments) {
    std::vector<Edit> edits;
    for (const std::string &text : arguments.values("--edit")) edits.push_back(parse_edit(text));
    if (edits.empty()) fail_usage(command, "-e EDIT is missing");
    return change_file(command, ini_operands(command, arguments, 0), arguments, edits, true);
}

constexpr Option kCreateOption = {"--create", "", "make the file if there is none"};
constexpr Option kSetOptions[] = {kCreateOption, kOutputOption};
constexpr Option kDeleteOptions[] = {kOutputOption};
constexpr Option kEditOptions[] = {
    {"--edit", "EDIT", "an edit; may be given several times", 'e'},
    kCreateOption,
    kOutputOption,
};

}  // namespace

const Action kIniSet = {
    "set",
    "[FILE] SECTION KEY VALUE",
    "set an entry to a value",
    R"(Sets an entry, which is added at the end of its section, and the section at the end of the file,
where there is none. Comments stay, and so do lines of more than 511 characters, which the library
reads as several, byte for byte. The other lines of the section up to the entry come out as
KEY=VALUE; those that are no entries are left out, which is said on standard error, as is what else
has to be cut. See 'kv ini list' for what the library reads.

Refused, with exit code 2, is what a file cannot hold: what has a line end or a Ctrl-Z (26); a
value with blanks at its end; a key with "=", or that begins with ";" or "["; a section's name
with "]"; names with blanks around them or of more than 79 characters; key and value of more than
510 together.
)",
    kSetOptions,
    3,
    4,
    [](std::string_view command, const Arguments &arguments) { return run_single(command, arguments, 3); },
};

const Action kIniDelete = {
    "delete",
    "[FILE] SECTION [KEY]",
    "delete an entry or a section",
    R"(Deletes an entry, without KEY a section with its comments. Two operands are SECTION and KEY.
)",
    kDeleteOptions,
    1,
    3,
    [](std::string_view command, const Arguments &arguments) { return run_single(command, arguments, 2); },
};

const Action kIniRename = {
    "rename",
    "[FILE] SECTION [KEY] NEW",
    "rename an entry or a section",
    R"(Gives an entry the key NEW, without KEY a section the name NEW. Value and place stay. For what a
name cannot be, see 'kv ini set --help'. Three operands are SECTION, KEY and NEW.
)",
    kDeleteOptions,
    2,
    4,
    [](std::string_view command, const Arguments &arguments) { return run_single(command, arguments, 3); },
};

const Action kIniEdit = {
    "edit",
    "[FILE]",
    "make several edits at once",
    R"(Makes edits in order and saves the file once, with all of them; if one fails, none is saved. An
EDIT is
  set SECTION KEY VALUE
  delete SECTION [KEY]
  rename SECTION [KEY] NEW
with the meaning of the actions of these names. Its words are separated by blanks. A word that
has blanks or is empty stands in '...' or "..."; the quote itself is written twice in it.
Backslashes, and quotes inside of a word, are characters like others:
  kv ini edit -e "set Pfade Daten C:\kv\daten" -e "delete Beep Tick"
)",
    kEditOptions,
    0,
    1,
    run_edit,
};

}  // namespace kvtool

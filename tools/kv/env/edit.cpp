// SPDX-License-Identifier: MIT
// `kv env set`, `delete`, `insert` and `edit`: changes of a file, all of a call or none.
#include "tools/kv/env/action.hpp"
#include "tools/kv/env/edits.hpp"
#include "tools/kv/env/in_place.hpp"
#include "tools/kv/failure.hpp"
#include "tools/kv/files.hpp"

namespace kvtool {

namespace {

// `numbered`: messages tell which of the edits failed.
int change_file(const Arguments &arguments, const std::vector<Edit> &edits, bool numbered) {
    change(arguments.operands()[0], arguments, [&](const std::string &file, const std::string &shown) {
        edit_file(file, shown, edits, numbered);
    });
    return kDone;
}

// An action whose operands after FILE are the words of one edit.
int run_single(std::string_view command, const Arguments &arguments) {
    const std::string_view verb = command.substr(command.rfind(' ') + 1);
    return change_file(
        arguments, {{std::string(verb), {arguments.operands().begin() + 1, arguments.operands().end()}}},
        false);
}

// The edits of standard input, a line each.
std::vector<std::string> read_edits() {
    std::vector<std::string> edits;
    Input input("-");
    for (std::string line; input.line(line);) {
        if (line.find_first_not_of(" \t") != line.npos) edits.push_back(line);
    }
    return edits;
}

int run_edit(std::string_view command, const Arguments &arguments) {
    const std::vector<std::string> texts = arguments.values("--edit");
    if (texts.empty() && is_standard(arguments.operands()[0]))
        fail_usage(command, "the file and its edits cannot both be standard input");
    std::vector<Edit> edits;
    for (const std::string &text : texts.empty() ? read_edits() : texts) edits.push_back(parse_edit(text));
    return change_file(arguments, edits, true);
}

constexpr Option kCreateOption = {"--create", "", "start with an empty file if there is none"};
constexpr Option kSetOptions[] = {kCreateOption, kOutputOption};
constexpr Option kDeleteOptions[] = {kOutputOption};
constexpr Option kEditOptions[] = {
    {"--edit", "EDIT", "an edit; may be given several times", 'e'},
    kCreateOption,
    kOutputOption,
};

}  // namespace

const Action kEnvSet = {
    "set",
    "FILE SECTION [PATH VALUE]",
    "store a value, or make a section",
    R"(Stores VALUE at PATH and saves the file; without PATH it makes the section if there is none.
What is missing on the way is made: sections, blocks, and for an index beyond the last element
of its name as many empty elements as are missing. A block that VALUE is stored over is gone
with all in it, and so is the text of an element that PATH leads through. A part of PATH that is
digits behind a name is an index, so 'slot@7' is the seventh slot; 'slot@1@7' names an element
7.

Refused, with exit code 2, is what a file cannot carry: a text with a line end, that begins with
a blank or "{", or ends with a blank; a name with "=" or a line end, or with blanks around it,
or that begins with "[" or "}"; a section name with "]"; the byte 26.

All bytes of FILE that are not part of what changes stay: comments, blank lines, indentation. A
new element stands behind the others of its block, indented as they are. The file is locked, so
that of the changes of several processes none is lost.
)",
    kSetOptions,
    2,
    4,
    run_single,
};

const Action kEnvDelete = {
    "delete",
    "FILE SECTION [PATH]",
    "delete an element or a section",
    R"(Deletes an element with all below it, without PATH a section, and saves the file.
)",
    kDeleteOptions,
    2,
    3,
    run_single,
};

const Action kEnvInsert = {
    "insert",
    "FILE SECTION [PATH] NAME [VALUE]",
    "insert an element or a section before another",
    R"(Inserts an element NAME with the text VALUE (empty if not given) in front of the one at PATH;
without PATH, an empty section NAME in front of SECTION. Then saves the file. An element becomes
a block when something is set below it. NAME is one name, not a path. For what is refused, see
'kv env set --help'.
)",
    kDeleteOptions,
    3,
    5,
    run_single,
};

const Action kEnvEdit = {
    "edit",
    "FILE",
    "make several edits at once",
    R"(Makes edits in order and saves the file once, with all of them; if one fails, none is saved.
Without -e the edits are the lines of standard input, as 'kv env diff' prints them. An EDIT is
  set SECTION [PATH VALUE]
  block SECTION [PATH]      make an empty block, or the section
  delete SECTION [PATH]
  insert SECTION [PATH] NAME [VALUE]
with the meaning of the actions of the same names. Its words are separated by blanks. A word that
has blanks or is empty stands in '...' or "..."; the quote itself is written twice in it.
Backslashes, and quotes inside of a word, are characters like others:
  kv env edit press.env -e "set press name 'Press 4'" -e 'delete press limits@max'
)",
    kEditOptions,
    1,
    1,
    run_edit,
};

}  // namespace kvtool

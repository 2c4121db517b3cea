// SPDX-License-Identifier: MIT
// Single edits of a file, and their form as text.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "kv/env.h"

namespace kvtool {

/// A verb and its words: {"set", {"press", "limits@max", "250"}}.
struct Edit {
    std::string verb;
    std::vector<std::string> words;
};

/// Takes the text of an edit apart: words separated by blanks. A word that begins with ' or " goes on to
/// the same quote again, blanks included; in it the quote is written twice. Nothing else is special. Throws
/// Failure (kUsage).
Edit parse_edit(const std::string &text);
/// The text that is taken apart to this edit.
std::string edit_text(const Edit &edit);

/// Makes the edits in a file, all or none. Throws Failure, whose text begins with `shown`, the name of the
/// file: kUsage for an unknown verb, a wrong number of words, a bad path and what a file cannot carry;
/// kNotFound; kFile. `numbered`: it tells which of the edits failed.
void edit_file(const std::string &file, const std::string &shown, const std::vector<Edit> &edits,
               bool numbered);

}  // namespace kvtool

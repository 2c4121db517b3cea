// Single edits of a tree, and their form as text.
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

/// Makes the edit. Throws Failure: kUsage for an unknown verb, a wrong number of words, a bad path and what
/// a file cannot carry; kNotFound.
void apply(const Edit &edit, ENV *env);

}  // namespace kvtool

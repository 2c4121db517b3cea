// SPDX-License-Identifier: MIT
// `kv env format`: the canonical form of a file.
#include <algorithm>
#include <iostream>

#include "platform/file_change.hpp"
#include "tools/kv/env/action.hpp"
#include "tools/kv/env/file.hpp"
#include "tools/kv/env/findings.hpp"
#include "tools/kv/env/in_place.hpp"
#include "tools/kv/failure.hpp"
#include "tools/kv/files.hpp"

namespace kvtool {

namespace {

// What the canonical form does not have.
void tell_losses(EnvDocument &document) {
    const std::string_view text = document.text();
    std::size_t comments = 0;
    std::size_t first = text.npos;
    for (std::size_t line = 0; line < text.size();) {
        if (text[line] == ';') {
            ++comments;
            first = std::min(first, line);
        }
        line = std::min(text.find('\n', line), text.size() - 1) + 1;
    }
    const auto tell = [&](std::size_t offset, const std::string &what) {
        std::cerr << document.name() << ':' << document.place(offset).line << ": " << what << " dropped\n";
    };
    if (comments == 1) tell(first, "a comment is");
    if (comments > 1)
        tell(first, std::to_string(comments) + " lines of comments, of which this is the first, are");
    Findings findings;
    find_oddities(document, findings);
    for (const Finding &finding : findings) {
        // What is not read is not written.
        if (finding.node == EnvDocument::kNone && finding.offset != document.unclosed())
            tell(finding.offset, finding.message + "; it is");
    }
}

void format(const std::string &file, const std::string &shown) {
    using kv::platform::Saved;
    EnvDocument document(file, shown);
    tell_losses(document);
    const Saved saved =
        kv::platform::change_file(file.c_str(), kv::platform::Old::needed,
                                  [&](const kv::memory::String &, kv::memory::String &formatted) {
                                      const Tree tree = new_tree();
                                      std::string problem;
                                      if (try_load(file, tree.get(), problem) != LoadResult::done)
                                          throw Failure{kFile, problem};
                                      formatted = file_text(text_of(tree.get()));
                                      return true;
                                  });
    if (saved == Saved::exhausted) throw std::bad_alloc();
    if (saved != Saved::done)
        throw Failure{kFile, shown + ": could not be saved: " + save_failure_reason(file)};
}

int run_format(std::string_view, const Arguments &arguments) {
    change(arguments.operands()[0], arguments, format, false);
    return kDone;
}

constexpr Option kOptions[] = {kOutputOption};

}  // namespace

const Action kEnvFormat = {
    "format",
    "FILE",
    "rewrite a file in the canonical form, without its comments",
    R"(Writes FILE anew as an application that saves it does: two blanks of indentation a level, CR LF, long
lines broken, and nothing but its elements. What is dropped is told on standard error: comments,
text before the first section, what is behind a Ctrl-Z.

The other actions do not need it: they keep what is there. It is for files that are to be compared
line by line, or that are only written by applications.
)",
    kOptions,
    1,
    1,
    run_format,
};

}  // namespace kvtool

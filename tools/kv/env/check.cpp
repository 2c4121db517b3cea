// SPDX-License-Identifier: MIT
// `kv env check`: whether files follow the format, mean what they say, and fit the maker's file.
#include <algorithm>
#include <iostream>
#include <optional>

#include "tools/kv/env/action.hpp"
#include "tools/kv/env/findings.hpp"
#include "tools/kv/failure.hpp"
#include "tools/kv/json.hpp"

namespace kvtool {

namespace {

std::string_view word_of(Severity severity) {
    switch (severity) {
        case Severity::error:
            return "error";
        case Severity::warning:
            return "warning";
        default:
            return "note";
    }
}

std::string as_json(EnvDocument &site, const Finding &finding) {
    const EnvDocument::Place place = site.place(finding.offset);
    JsonObject object;
    object.add("file", json_utf8(site.name()))
        .add("line", std::to_string(place.line))
        .add("column", std::to_string(place.column))
        .add("severity", json_string(word_of(finding.severity)));
    if (finding.node != EnvDocument::kNone) {
        object.add("section", json_string(site.section(finding.node)));
        object.add("path", json_string(site.path(finding.node)));
    }
    return object.add("message", json_utf8(finding.message)).text();
}

void print(EnvDocument &site, const Finding &finding) {
    const EnvDocument::Place place = site.place(finding.offset);
    std::cerr << site.name() << ':' << place.line << ':' << place.column << ": "
              << word_of(finding.severity) << ": ";
    if (finding.node != EnvDocument::kNone) std::cerr << site.readable_address(finding.node) << ": ";
    std::cerr << finding.message << '\n';
}

// The checks that a call asks for, of one file after the other.
class Check {
  public:
    explicit Check(const Arguments &arguments)
        : strict_(arguments.has("--strict")), free_(arguments.values("--free")) {
        if (arguments.has("--against")) maker_.emplace(arguments.value("--against", ""));
        if (arguments.has("--json")) json_.emplace(std::cout);
    }

    int run(const std::string &file) {
        try {
            EnvDocument site(file);
            Findings findings;
            find_oddities(site, findings);
            if (strict_) {
                for (Finding &finding : findings) finding.severity = Severity::error;
            }
            if (maker_) find_differences(site, *maker_, free_, findings);
            return tell(site, findings);
        } catch (const SyntaxFailure &failure) {
            std::cerr << failure.text << '\n';
            return kNotFound;
        } catch (const Failure &failure) {
            if (failure.code == kUsage) throw;
            std::cerr << failure.text << '\n';
            return failure.code;
        }
    }

  private:
    int tell(EnvDocument &site, Findings &findings) {
        std::stable_sort(findings.begin(), findings.end(),
                         [](const Finding &a, const Finding &b) { return a.offset < b.offset; });
        int code = kDone;
        for (const Finding &finding : findings) {
            json_ ? json_->add(as_json(site, finding)) : print(site, finding);
            const Severity least = maker_ ? Severity::warning : Severity::error;
            if (finding.severity >= least) code = kNotFound;
        }
        return code;
    }

    bool strict_;
    std::vector<std::string> free_;
    std::optional<EnvDocument> maker_;
    std::optional<JsonArray> json_;
};

int run_check(std::string_view command, const Arguments &arguments) {
    if (arguments.has("--free") && !arguments.has("--against"))
        fail_usage(command, "--free goes with --against");
    Check check(arguments);
    int code = kDone;
    for (const std::string &file : arguments.operands()) code = std::max(code, check.run(file));
    return code;
}

constexpr Option kOptions[] = {
    {"--against", "MAKER", "compare with the maker's file, which names what a site may set"},
    {"--free", "PATTERN", "elements that need not be in MAKER; may be given several times"},
    {"--strict", "", "warnings are errors"},
    kJsonOption,
};

}  // namespace

const Action kEnvCheck = {
    "check",
    "FILE...",
    "check files: their syntax, and what they mean",
    R"(Reads files and prints nothing if there is nothing to say of them. What there is comes on standard
error as FILE:LINE:COLUMN: SEVERITY: MESSAGE, or with --json on standard output as an array. All
files are checked. A file that does not follow the format gives exit code 1, and one that cannot be
read gives 3.

Warned of is what the format accepts and nobody means: a comment that is indented, which is part of
the next name; a line without "=", which is, too; text before the first section; what is behind a
Ctrl-Z; a zero byte; a last section without "]"; a text that is twice in a block where all else is
once. Warnings leave the exit code 0; with --strict they are errors, and it is 1.

With --against, each element of FILE is sought in MAKER, at the same address. Errors are: there is
no such element, or not so many of the name; one is a block and the other a text; MAKER has a
number or a list of numbers and FILE has none. Notes are: the value is MAKER's; a list has another
length. The exit code is 1 if anything but notes was said.

A PATTERN is SECTION [PATH], as in an edit (see 'kv env edit --help'), and * and ? in its names
stand for any characters and for one. The elements that it names, of all indices if it has none,
and what is below them need not be in MAKER:
  kv env check site.env --against press.env --free 'network link' --free 'local*'
)",
    kOptions,
    1,
    100000,
    run_check,
};

}  // namespace kvtool

// SPDX-License-Identifier: MIT
#include "tools/kv/ini/losses.hpp"

#include <map>
#include <memory>
#include <set>
#include <string_view>
#include <utility>

#include "kv/fio.h"

namespace kvtool {

namespace {

std::string all_white_space() {
    std::string white;
    for (char c = 1; c <= 32; ++c) white += c;
    return white;
}

std::string without(const std::string &around, std::string_view text) {
    const std::size_t start = text.find_first_not_of(around);
    if (start == text.npos) return {};
    return std::string(text.substr(start, text.find_last_not_of(around) + 1 - start));
}

struct Line {
    enum class Kind { empty, header, entry, other };

    std::size_t number;
    std::size_t length;
    Kind kind;
    std::string section;  // that it stands in
    std::string key;
    std::string form;  // the normal one; of a header, what stands after the name
};

std::vector<Line> lines_of(std::string_view text) {
    const std::string white = all_white_space();
    std::vector<Line> lines;
    std::string section;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        const std::string line = without(white, text.substr(start, end - start));
        Line found{lines.size() + 1, end - start, Line::Kind::other, section, {}, line};
        const std::size_t equals = line.find('=');
        if (line.empty()) {
            found.kind = Line::Kind::empty;
        } else if (line[0] == '[') {
            const std::size_t close = std::min(line.find(']'), line.size());
            section = without(" ", std::string_view(line).substr(1, close - 1));
            found = {found.number, found.length, Line::Kind::header, section, {}, {}};
            if (close < line.size()) found.form = without(white, std::string_view(line).substr(close + 1));
        } else if (line[0] != ';' && equals != line.npos) {
            found.kind = Line::Kind::entry;
            found.key = without(" ", std::string_view(line).substr(0, equals));
            found.form = found.key + line.substr(equals);
        }
        lines.push_back(std::move(found));
        start = end + 1;
    }
    return lines;
}

// What edits change, in the names that the file had before them.
struct Changed {
    explicit Changed(const std::vector<Edit> &edits) {
        for (const Edit &edit : edits) {
            const std::string section = before(edit.words[0]);
            if (edit.words.size() > 2 || (edit.verb == "delete" && edit.words.size() == 2)) {
                keys.emplace(section, edit.words[1]);
            } else if (edit.verb == "rename") {
                names[edit.words[1]] = section;
            } else {
                deleted.insert(section);
            }
            sections.insert(section);
        }
    }

    std::string before(const std::string &section) const {
        const auto found = names.find(without(" ", section));
        return found != names.end() ? found->second : without(" ", section);
    }
    bool has_kept(const Line &line) const {
        return sections.contains(line.section) && !deleted.contains(line.section) &&
               (line.kind != Line::Kind::entry || !keys.contains({line.section, line.key})) &&
               line.kind != Line::Kind::empty && !line.form.empty();
    }

    std::map<std::string, std::string> names;  // of renamed sections
    std::set<std::string> sections;
    std::set<std::string> deleted;
    std::set<std::pair<std::string, std::string>> keys;
};

std::string describe(const Line &line) {
    constexpr std::size_t kLongestLine = 511;
    const std::string which = "line " + std::to_string(line.number);
    if (line.length > kLongestLine) return which + " has more than 511 characters and was cut";
    if (line.kind == Line::Kind::header) return which + " lost what stood behind its name: " + line.form;
    return which + " is no entry and was left out: " + line.form;
}

struct CloseFio {
    void operator()(FIO *handle) const { fio_close(handle); }
};

}  // namespace

std::string ini_text(const std::string &file) {
    const std::unique_ptr<FIO, CloseFio> handle(fio_open(nullptr, file.c_str(), FIO_READ | FIO_TEXT));
    std::string text;
    char block[4096];
    while (const std::uint32_t count = fio_fread(block, 1, sizeof block, handle.get()))
        text.append(block, count);
    return text;
}

std::vector<std::string> losses(const std::string &before, const std::string &after,
                                const std::vector<Edit> &edits) {
    const Changed changed(edits);
    std::multiset<std::pair<std::string, std::string>> kept;
    for (const Line &line : lines_of(after)) kept.emplace(changed.before(line.section), line.form);
    std::vector<std::string> messages;
    for (const Line &line : lines_of(before)) {
        if (!changed.has_kept(line)) continue;
        const auto found = kept.find({line.section, line.form});
        if (found == kept.end()) {
            messages.push_back(describe(line));
        } else {
            kept.erase(found);
        }
    }
    return messages;
}

}  // namespace kvtool

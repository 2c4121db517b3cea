// SPDX-License-Identifier: MIT
// From sections in memory back to the bytes of the file.
#include "kv/frame.h"

#include "config/ini_lines.hpp"
#include "config/mini_sections.hpp"

namespace kv::mini {

using config::Line;
using config::LineKind;
using config::next_line;

namespace {

// The bytes of the file that is made.
class Text {
  public:
    /// Ends the line that stands last, if there is one.
    void separate() {
        if (!bytes_.empty()) end_line();
    }
    void end_line() { bytes_ += "\r\n"; }
    void line(std::string_view line) {
        separate();
        append(line);
    }
    void header(std::string_view name) {
        separate();
        bytes_ += '[';
        append(name);
        bytes_ += ']';
    }
    void entry(const Entry &entry) {
        separate();
        append(entry.key());
        bytes_ += '=';
        append(entry.text());
    }
    void section(const Section &section) {
        if (section.name_size > 0) header(section.key());
        for (const Entry *at = section.entries.first(); at != nullptr; at = next(at)) entry(*at);
    }
    memory::String finish(std::string_view behind) {
        bytes_ += behind;
        return std::move(bytes_);
    }

  private:
    void append(std::string_view text) { platform::append_text(bytes_, text); }

    memory::String bytes_;
};

// Goes along the file's lines and the cached entries of the section they stand in.
class Merge {
  public:
    explicit Merge(Sections &sections) : sections_(sections) {
        for (Section *section = sections.first(); section != nullptr; section = next(section)) {
            section->merged = false;
        }
        if (sections.first() != nullptr && sections.first()->name_size == 0) enter(sections.first());
    }

    void comment(std::string_view line) { text_.line(line); }

    void entry(std::string_view line) {
        if (current_ == nullptr) {
            text_.line(line);
            nothing_written_ = false;
            return;
        }
        config::Entry parts;
        if (!config::take_apart(line, parts)) {
            kv_error("Incorrect entry's format. '=' is not found;", "entry has been ignored", nullptr,
                     "Mini", __LINE__);
        } else if (pending_ != nullptr && pending_->key() == parts.key) {
            write_pending();
        }
    }

    // The lines under a header without a name belong to no section that can be loaded, and stay.
    void header(std::string_view name) {
        leave();
        if (!nothing_written_) text_.end_line();
        text_.header(name);
        enter(name.empty() ? nullptr : sections_.find(name));
    }

    memory::String finish(std::string_view behind) {
        leave();
        for (Section *section = sections_.first(); section != nullptr; section = next(section)) {
            if (!section->modified || section->merged) continue;
            section->merged = true;
            text_.separate();
            text_.section(*section);
        }
        return text_.finish(behind);
    }

  private:
    void enter(Section *section) {
        current_ = section;
        pending_ = section != nullptr ? section->entries.first() : nullptr;
    }

    void leave() {
        if (current_ == nullptr) return;
        while (pending_ != nullptr) write_pending();
        current_->merged = true;
    }

    void write_pending() {
        text_.entry(*pending_);
        nothing_written_ = false;
        pending_ = next(pending_);
    }

    Sections &sections_;
    Text text_;
    Section *current_ = nullptr;      // none while the lines of a section that is not loaded go by
    const Entry *pending_ = nullptr;  // the entry after the one that was written last
    bool nothing_written_ = true;     // no entry yet
};

}  // namespace

memory::String rewritten(Sections &sections) {
    Text text;
    for (Section *section = sections.first(); section != nullptr; section = next(section)) {
        text.section(*section);
        section->merged = true;
    }
    return text.finish({});
}

memory::String merged(std::string_view old, Sections &sections) {
    Merge merge(sections);
    platform::TextLines lines(old, kLongestLine, platform::TextLines::Ends::feed_or_zero);
    for (;;) {
        const Line line = next_line(lines);
        switch (line.kind) {
            case LineKind::comment:
                merge.comment(line.text);
                break;
            case LineKind::entry:
                merge.entry(line.text);
                break;
            case LineKind::header:
                merge.header(line.text);
                break;
            case LineKind::end:
                return merge.finish(platform::behind_text(old));
        }
    }
}

void mark_saved(Sections &sections) {
    for (Section *section = sections.first(); section != nullptr; section = next(section)) {
        if (section->merged) section->modified = section->created = false;
    }
}

}  // namespace kv::mini

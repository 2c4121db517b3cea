// SPDX-License-Identifier: MIT
#include "env/patch.hpp"

#include <algorithm>
#include <utility>

#include "env/line_writer.hpp"

namespace kv::env {

namespace {

/// The new text, as it grows.
class Output : public Sink {
  public:
    explicit Output(std::string_view line_end) : line_end_(line_end) {}

    /// A line feed becomes the file's line end.
    void put(const char *text, std::size_t size) override {
        const std::string_view piece(text, size);
        if (piece == "\n") {
            copy(line_end_);
        } else if (piece == "\\\n") {
            copy("\\");
            copy(line_end_);
        } else {
            copy(piece);
        }
    }
    void copy(std::string_view bytes) {
        const std::size_t feed = bytes.rfind('\n');
        if (feed != bytes.npos) line_start_ = bytes_.size() + feed + 1;
        bytes_.append(bytes);
    }
    void indent(std::size_t blanks) { bytes_.append(blanks, ' '); }

    /// The bytes of the last line.
    std::size_t column() const { return bytes_.size() - line_start_; }
    /// True if reading would take something else away together with a line end after it.
    bool needs_tab() const {
        if (bytes_.ends_with('\r')) return true;
        const std::size_t last = bytes_.find_last_not_of(' ');
        return last != bytes_.npos && bytes_[last] == '\\';
    }
    void reserve(std::size_t size) { bytes_.reserve(size); }
    memory::String take() { return std::move(bytes_); }

  private:
    memory::String bytes_;
    std::size_t line_start_ = 0;
    std::string_view line_end_;
};

/// Blanks at the start of a line: some of the old text, and more spaces.
struct Indentation {
    std::string_view blanks;
    std::size_t more = 0;
};

// New blocks that are nested deeper are not indented further, or their text would grow with the square of
// the depth.
constexpr std::size_t kDeepestIndentation = 80;
constexpr std::size_t kBlockIndentation = 2;

std::string_view first_line_end(std::string_view text) {
    const std::size_t feed = text.find('\n');
    return feed != text.npos && (feed == 0 || text[feed - 1] != '\r') ? "\n" : "\r\n";
}

// Walks through the changed tree and the spans at once. Edits keep the order of the elements that were
// read, so that the spans of those that are left come in order, and what is missing among them is what was
// deleted.
//
// Nothing is copied before a change comes: `cursor_` is what has been dealt with of the old text.
class Patch {
  public:
    Patch(std::string_view text, Spans spans, const List &sections)
        : text_(text),
          spans_(std::move(spans)),
          sections_(sections),
          output_(first_line_end(text)),
          lines_(output_) {}

    memory::String run() {
        output_.reserve(text_.size() + text_.size() / 16 + 256);
        const Element *last = sections_.last;
        while (last != nullptr && last->has_span == 0) last = last->previous;
        last_kept_ = last;
        for (const Element *element = sections_.first; element != nullptr;) {
            if (enter(*element)) {
                element = element->children->first;
                continue;
            }
            while (element->next == nullptr && !element->is_section()) {
                element = element->parent->owner;
                remove_up_to(span_of(*element).next);
            }
            element = element->next;
        }
        remove_up_to(end_of_spans());
        copy_to(text_.size());
        return output_.take();
    }

  private:
    const Span &span_of(const Element &element) const { return spans_.elements[element.span()]; }
    std::uint32_t end_of_spans() const { return static_cast<std::uint32_t>(spans_.elements.size()); }
    // A text does not begin with "{", or it would have been read as a block.
    bool was_block(const Span &span) const { return span.value < text_.size() && text_[span.value] == '{'; }

    // ---- What is read off the old text

    std::size_t after_blanks(std::size_t at) const {
        while (at < text_.size() && is_blank(text_[at])) ++at;
        return at;
    }
    bool all_blank(std::size_t from, std::size_t to) const { return after_blanks(from) >= to; }
    /// The bytes of the line end at an offset.
    std::size_t line_end_at(std::size_t at) const {
        const std::string_view rest = text_.substr(at, 2);
        return rest.starts_with('\n') ? 1 : rest == "\r\n" ? 2 : 0;
    }

    Indentation line_indentation(const Span &span) const {
        const std::size_t end = std::min<std::size_t>(after_blanks(span.line), span.begin);
        return {text_.substr(span.line, end - span.line)};
    }
    bool begins_line(const Element *element) const {
        if (element == nullptr || element->has_span == 0) return false;
        const Span &span = span_of(*element);
        return all_blank(span.line, span.begin);
    }
    /// Of a new element.
    Indentation indentation(const Element &element) const {
        if (begins_line(element.previous)) return line_indentation(span_of(*element.previous));
        if (element.previous != nullptr && element.previous->has_span == 0) return last_indentation_;
        if (begins_line(element.next)) return line_indentation(span_of(*element.next));
        return indentation_in(element);
    }
    /// Of an element that has no neighbours.
    Indentation indentation_in(const Element &element) const {
        if (element.is_section()) return {};
        Indentation result = line_indentation(span_of(*element.parent->owner));
        result.more = kBlockIndentation;
        return result;
    }
    Indentation section_indentation() const {
        const Span &first = spans_.elements.front();
        return all_blank(first.line, first.begin) ? line_indentation(first) : Indentation{};
    }
    /// Of the end of the block that holds an element.
    Indentation closing_indentation(const Element &element) const {
        return element.is_section() ? Indentation{} : line_indentation(span_of(*element.parent->owner));
    }

    // ---- What is written

    void write(const Indentation &indentation) {
        output_.copy(indentation.blanks);
        output_.indent(indentation.more);
    }

    void end_line() {
        if (output_.needs_tab()) output_.copy("\t");
        output_.put("\n", 1);
        fresh_ = true;
    }

    void copy_to(std::size_t offset) {
        if (offset <= cursor_) return;
        if (resumes_) {
            cursor_ = std::min(after_blanks(cursor_), offset);
            if (cursor_ == offset) return;
            resume();
        }
        output_.copy(text_.substr(cursor_, offset - cursor_));
        cursor_ = offset;
        fresh_ = false;
    }

    // Begins a line with what followed on a line of the old text.
    void resume() {
        resumes_ = false;
        const char next = text_[cursor_];
        write(next == '[' ? section_indentation() : next == '}' ? closing_resumed_ : resumed_);
        if (next == ';' && output_.column() == 0) output_.indent(1);  // else it would be a comment
    }

    void resume_later(const Element &element, const Indentation &indentation) {
        resumes_ = true;
        resumed_ = indentation;
        closing_resumed_ = closing_indentation(element);
    }

    // The last section's "]", before something follows it.
    void close_header() {
        if (spans_.unclosed == Spans::kClosed) return;
        copy_to(spans_.unclosed);
        output_.copy("]");
        fresh_ = false;
        if (spans_.unclosed < text_.size()) end_line();
        spans_.unclosed = Spans::kClosed;
    }

    // Goes to the beginning of a line at an offset or, if that has been passed, where the cursor is.
    // `at_line_start` tells of the offset.
    void begin_line(std::size_t offset, bool at_line_start, const Element &element) {
        if (offset == text_.size()) close_header();
        if (cursor_ < offset) {
            copy_to(offset);
            fresh_ = at_line_start;
        }
        if (fresh_) return;
        const std::size_t at = after_blanks(cursor_);
        if (const std::size_t size = line_end_at(at); size > 0) {
            copy_to(at + size);
            fresh_ = true;
            return;
        }
        if (at < text_.size()) {
            resume_later(element, indentation(element));
        } else {
            copy_to(at);
        }
        end_line();
    }

    // ---- Elements that are gone

    void remove_up_to(std::uint32_t number) {
        while (next_ < number) {
            const Span &span = spans_.elements[next_];
            if (span.next == end_of_spans() && span.value == text_.size()) spans_.unclosed = Spans::kClosed;
            remove(span);
            next_ = span.next;
        }
    }

    void remove(const Span &span) {
        const bool line_ahead = cursor_ < span.line;
        const bool begins_line =
            (line_ahead || fresh_) && all_blank(line_ahead ? span.line : cursor_, span.begin);
        if (!begins_line) {
            std::size_t end = span.begin;
            while (end > cursor_ && is_blank(text_[end - 1])) --end;
            copy_to(end);
            if (span.ends_line() && output_.needs_tab()) output_.copy("\t");
            cursor_ = span.tail;
            return;
        }
        copy_to(span.line);
        fresh_ = true;
        cursor_ = span.end;
        if (span.ends_line()) {
            resumes_ = false;
            return;
        }
        const std::size_t at = after_blanks(cursor_);
        const std::size_t size = line_end_at(at);
        if (size > 0 || at == text_.size()) {
            cursor_ = at + size;
            resumes_ = false;
        } else if (!resumes_) {
            resumes_ = true;
            resumed_ = closing_resumed_ = line_indentation(span);
        }
    }

    // ---- Elements that are there

    // True if the elements of a block come next.
    bool enter(const Element &element) {
        if (element.has_span == 0) {
            add(element);
            return false;
        }
        remove_up_to(element.span());
        if (&element == last_kept_) last_kept_ = nullptr;
        const Span &span = span_of(element);
        ++next_;
        const bool block = element.type == ENV_TYPE_BLOCK;
        if (block && (element.is_section() || was_block(span))) {
            const List *list = element.list();
            if (list != nullptr && list->first != nullptr) return true;
            remove_up_to(span.next);
        } else if (block) {
            text_to_block(element, span);
        } else if (was_block(span)) {
            block_to_text(element, span);
        } else if (element.changed != 0) {
            replace_text(element, span);
        }
        next_ = span.next;
        return false;
    }

    void replace_text(const Element &data, const Span &span) {
        copy_to(span.value);
        const bool unfinished = lines_.write_unended(output_.column(), data.text);
        fresh_ = false;
        cursor_ = span.tail;
        if (unfinished && !span.ends_line()) output_.put("\n", 1);
        if (unfinished && !span.ends_line()) fresh_ = true;
    }

    void block_to_text(const Element &data, const Span &span) {
        copy_to(span.value);
        const bool unfinished = lines_.write_unended(output_.column(), data.text);
        fresh_ = false;
        cursor_ = after_blanks(span.end);
        const bool at_end = cursor_ == text_.size();
        if (line_end_at(cursor_) > 0 || (at_end && !unfinished)) return;
        output_.put("\n", 1);
        fresh_ = true;
        if (!at_end) resume_later(data, begins_line(&data) ? line_indentation(span) : indentation_in(data));
    }

    void text_to_block(const Element &block, const Span &span) {
        copy_to(span.value);
        Indentation outer = begins_line(&block) ? line_indentation(span) : indentation_in(block);
        output_.copy("{");
        output_.put("\n", 1);
        fresh_ = true;
        if (const List *list = block.list(); list != nullptr) {
            Indentation inner = outer;
            inner.more += kBlockIndentation;
            for (const Element *element = list->first; element != nullptr; element = element->next)
                write_new(*element, inner);
        }
        write(outer);
        output_.copy("}");
        fresh_ = false;
        cursor_ = span.tail;
    }

    // ---- New elements

    // Behind the element before it, or where its block begins; a last section at the end of the text, since
    // the comments there belong to the section before it.
    void add(const Element &element) {
        const Element *const previous = element.previous;
        const Indentation indented = indentation(element);
        if (element.is_section() && last_kept_ == nullptr) {
            remove_up_to(end_of_spans());
            begin_line(text_.size(), spans_.last_line == text_.size(), element);
        } else if (previous != nullptr) {
            if (previous->has_span != 0) {
                const Span &span = span_of(*previous);
                begin_line(span.end, span.ends_line(), element);
            }
        } else if (element.is_section()) {
            copy_to(spans_.elements.front().begin);
            resumes_ = true;
        } else {
            const Element &block = *element.parent->owner;
            begin_line(span_of(block).value + (block.is_section() ? 0 : 1), false, element);
        }
        write_new(element, indented);
        last_indentation_ = indented;
    }

    // A new element with all that is in it, on lines of its own.
    void write_new(const Element &top, const Indentation &indentation) {
        std::size_t depth = 0;
        for (const Element *element = &top;;) {
            open(*element, indentation, depth);
            if (const List *list = element->list(); list != nullptr && list->first != nullptr) {
                element = list->first;
                ++depth;
                continue;
            }
            close(*element, indentation, depth);
            while (element != &top && element->next == nullptr) {
                element = element->parent->owner;
                close(*element, indentation, --depth);
            }
            if (element == &top) break;
            element = element->next;
        }
        fresh_ = true;
    }

    void write(Indentation indentation, std::size_t depth) {
        indentation.more += std::min(kBlockIndentation * depth, kDeepestIndentation);
        write(indentation);
    }

    void open(const Element &element, const Indentation &indentation, std::size_t depth) {
        if (fresh_) write(indentation, depth);
        fresh_ = true;
        if (element.is_section()) {
            lines_.write_behind(output_.column(), {"[", element.name_view(), "]"});
            return;
        }
        if (output_.column() == 0 && element.name()[0] == ';')
            output_.indent(1);  // else it would be a comment
        lines_.write_behind(output_.column(), {element.name_view(), " =",
                                               element.type == ENV_TYPE_DATA ? element.text : "{"});
    }

    void close(const Element &element, const Indentation &indentation, std::size_t depth) {
        if (element.type != ENV_TYPE_BLOCK || element.is_section()) return;
        write(indentation, depth);
        output_.copy("}");
        output_.put("\n", 1);
    }

    std::string_view text_;
    Spans spans_;
    const List &sections_;
    Output output_;
    LineWriter lines_;

    std::size_t cursor_ = 0;
    std::uint32_t next_ = 0;              // the first span that was not met yet
    const Element *last_kept_ = nullptr;  // the last section that was read, until it is met
    bool fresh_ = true;  // the output ends at the start of a line, at which a ";" would begin a comment
    bool resumes_ =
        false;             // then, what follows in the old text stood after something else on its line, ...
    Indentation resumed_;  // ... and gets this indentation, ...
    Indentation closing_resumed_;   // ... or this, if it is the end of a block
    Indentation last_indentation_;  // of the last new element
};

}  // namespace

memory::String patch(std::string_view text, Spans spans, const List &sections) {
    return Patch(text, std::move(spans), sections).run();
}

}  // namespace kv::env

// SPDX-License-Identifier: MIT
// What the format accepts in a file and nobody means.
#include <algorithm>

#include "tools/kv/env/findings.hpp"
#include "tools/kv/text.hpp"

namespace kvtool {

namespace {

constexpr char kCtrlZ = 26;

class Oddities {
  public:
    Oddities(const EnvDocument &document, Findings &findings) : document_(document), findings_(findings) {}

    void find() {
        find_text_before_sections();
        find_unread_bytes();
        const std::vector<EnvDocument::Node> &nodes = document_.nodes();
        for (std::uint32_t i = 0; i < nodes.size(); ++i) {
            look_at_name(i);
            if (nodes[i].block) find_doubles(i);
        }
        if (document_.unclosed() != EnvDocument::kNone)
            add(document_.unclosed(), "the section's name has no \"]\" behind it");
    }

  private:
    void add(std::size_t offset, std::string message, std::uint32_t node = EnvDocument::kNone) {
        findings_.push_back({offset, Severity::warning, node, std::move(message)});
    }

    void find_text_before_sections() {
        const std::string_view text = document_.text();
        const std::size_t sections =
            document_.nodes().empty() ? text.size() : document_.nodes().front().offset;
        for (std::size_t line = 0; line < sections;) {
            const std::size_t first = text.find_first_not_of(" \t\r", line);
            if (first >= sections) return;
            if (text[first] != '\n' && text[line] != ';') {
                const bool mark = text.starts_with("\xef\xbb\xbf");
                add(first, mark ? "a byte order mark, which is no part of the format"
                                : "text before the first section is not read");
                return;
            }
            line = std::min(text.find('\n', line), text.size() - 1) + 1;
        }
    }

    void find_unread_bytes() {
        const std::string_view text = document_.text();
        if (const std::size_t zero = text.find('\0'); zero != text.npos) {
            const auto more =
                std::count(text.begin() + static_cast<std::ptrdiff_t>(zero) + 1, text.end(), '\0');
            add(zero, "a zero byte is left out" +
                          (more > 0 ? ", as with " + std::to_string(more) + " more" : std::string()));
        }
        const std::string_view bytes = document_.bytes();
        if (bytes.find_first_not_of(kCtrlZ, text.size()) != bytes.npos) {
            add(text.size(), "a Ctrl-Z ends the text; " + std::to_string(bytes.size() - text.size() - 1) +
                                 " bytes behind it are not read");
        }
    }

    void look_at_name(std::uint32_t number) {
        const EnvDocument::Node &node = document_.nodes()[number];
        if (node.parent == EnvDocument::kNone) return;
        const std::size_t feed = node.name.find('\n');
        if (node.name.starts_with(';')) {
            add(node.offset, "a comment begins at the start of a line; this one is part of the name",
                number);
        } else if (feed != node.name.npos) {
            add(node.offset,
                "\"=\" is missing behind '" + readable(node.name.substr(0, feed)) +
                    "'; the name goes on in the next line",
                number);
        }
    }

    // Blocks of one name are a list; of a text that is there twice the second is not asked for.
    void find_doubles(std::uint32_t block) {
        std::uint32_t twice = EnvDocument::kNone;
        std::size_t names = 0;
        bool others_once = true;
        document_.for_each_in(block, [&](std::uint32_t number) {
            const EnvDocument::Node &node = document_.nodes()[number];
            if (node.occurrence == 1) ++names;
            if (node.occurrence == 1) return;
            if (twice != EnvDocument::kNone || node.block) others_once = false;
            twice = number;
        });
        if (twice == EnvDocument::kNone || !others_once || names < 2) return;
        const EnvDocument::Node &node = document_.nodes()[twice];
        add(node.offset, "'" + readable(node.name) + "' is there twice, and its neighbours once", twice);
    }

    const EnvDocument &document_;
    Findings &findings_;
};

}  // namespace

void find_oddities(const EnvDocument &site, Findings &findings) {
    Oddities(site, findings).find();
}

}  // namespace kvtool

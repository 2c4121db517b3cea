// SPDX-License-Identifier: MIT
// An environment file as its elements and the places where they stand, for what tells people about them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tools/kv/env/file.hpp"
#include "tools/kv/failure.hpp"
#include "tools/kv/files.hpp"

namespace kvtool {

/// Thrown for a file that breaks the format; its code is kFile.
struct SyntaxFailure : Failure {};

class EnvDocument {
  public:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

    struct Node {
        std::string_view name;
        std::string_view value;  ///< of a text
        bool block;
        std::uint32_t parent;     ///< kNone: a section
        std::uint32_t end;        ///< the first node after it that is not below it
        std::int32_t occurrence;  ///< among the elements of its name in its block, from 1
        std::size_t offset;       ///< of its name in the file, or of the "[" of a section
    };
    struct Place {
        std::size_t line;  ///< both from 1
        std::size_t column;
    };

    /// Reads a file, or standard input. Throws Failure (kFile), SyntaxFailure if it breaks the format.
    explicit EnvDocument(const std::string &file) : EnvDocument(file, input_name(file)) {}
    /// With another name for messages.
    EnvDocument(const std::string &file, std::string name);
    EnvDocument(const EnvDocument &) = delete;
    EnvDocument &operator=(const EnvDocument &) = delete;

    /// What messages call the file.
    const std::string &name() const { return name_; }
    /// The whole file, and what of it is read: all before a Ctrl-Z.
    std::string_view bytes() const { return bytes_; }
    std::string_view text() const { return text_; }

    /// All elements in their order, blocks before what they hold. The first element of a block is the node
    /// after it, if that is before its end; the next one of a list is at the end of the one before.
    const std::vector<Node> &nodes() const { return nodes_; }
    /// Calls `function` with the number of each element of a block; of kNone: with each section.
    template <typename Function>
    void for_each_in(std::uint32_t block, Function function) const {
        const std::uint32_t end =
            block == kNone ? static_cast<std::uint32_t>(nodes_.size()) : nodes_[block].end;
        for (std::uint32_t i = block == kNone ? 0 : block + 1; i < end; i = nodes_[i].end) function(i);
    }
    /// The section that holds a node, and its path there, with the indices that it needs to be found; empty
    /// for a section.
    std::string_view section(std::uint32_t node) const;
    std::string path(std::uint32_t node) const;
    /// "[SECTION] PATH" for people; of a long path the end.
    std::string readable_address(std::uint32_t node) const;
    /// Of an offset in bytes(). Goes on from the one asked for before.
    Place place(std::size_t offset);
    /// Where the last section lacks its "]"; kNone if it has one.
    std::uint32_t unclosed() const { return unclosed_; }

  private:
    void add_sections();

    std::string name_;
    std::string bytes_;
    std::string_view text_;
    Tree tree_;
    std::vector<Node> nodes_;
    std::uint32_t unclosed_ = kNone;
    std::size_t line_ = 1;  // of the place that was asked for last, and where it begins
    std::size_t line_start_ = 0;
};

}  // namespace kvtool

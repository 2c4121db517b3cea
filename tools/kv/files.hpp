// SPDX-License-Identifier: MIT
// Reading files and standard input. Every path of the program goes through the library, which knows drives
// and names in another case, and every failure comes with the system's reason.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tools/kv/terminal.hpp"

namespace kvtool {

/// True if there is such a file, which is no directory.
bool is_file(const std::string &name);
/// True for "-": standard input, or where something is written, standard output.
bool is_standard(const std::string &name);
/// What messages call it: the name, or "standard input".
std::string input_name(const std::string &name);

/// Why the last call on a file failed: "Permission denied".
std::string failure_reason(const std::string &file);

/// Why the last save of a file failed: as failure_reason(), or "it is in use by NAME (process 123)".
std::string save_failure_reason(const std::string &file);

/// Throws Failure (kFile) after a call that has failed, with its reason.
[[noreturn]] void fail_reading(const std::string &file);

/// Standard input is read for one file at most: throws Failure (kUsage) the second time.
void take_standard_input();
/// A new command line begins.
void release_standard_input();

/// Why a file, which the library could not read, cannot be read.
struct Unreadable {
    std::string text;  ///< "FILE: cannot be read: Permission denied"
    bool missing;      ///< there is no such file
};
Unreadable why_unreadable(const std::string &file);

/// Throws Failure (kFile) if the path, or that of the name in the directory, is longer than the library's
/// functions on files take.
void require_path(const std::string &path, const std::string &name = {});

/// Throws Failure (kFile), which begins with the command, if the directory cannot be read.
void require_directory(const std::string &command, const std::string &directory);

/// A file that is read from its beginning, or standard input.
class Input {
  public:
    /// `prints_meanwhile`: what is read is printed while it is read, so that no progress may be shown at
    /// the terminal that it is printed to. Throws Failure (kFile).
    explicit Input(const std::string &name, bool prints_meanwhile = false);
    Input(const Input &) = delete;
    Input &operator=(const Input &) = delete;
    ~Input();

    /// Up to `size` bytes; 0 at the end. Throws Failure (kFile).
    std::size_t read(char *buffer, std::size_t size);
    /// `size` bytes, fewer only at the end. Throws Failure (kFile).
    std::size_t read_whole(char *buffer, std::size_t size);
    /// The next byte, -1 at the end.
    int get() {
        if (position_ == filled_ && !fill()) return -1;
        return static_cast<unsigned char>(buffer_[position_++]);
    }
    /// A line without its line end, LF or CR LF; false at the end.
    bool line(std::string &text);
    const std::string &name() const { return name_; }

  private:
    struct File;
    static constexpr std::size_t kBuffer = 65536;

    bool fill();
    std::size_t read_raw(char *buffer, std::size_t size);

    std::string name_;
    std::unique_ptr<File> file_;  // null for standard input
    std::unique_ptr<char[]> buffer_;
    std::size_t position_ = 0;
    std::size_t filled_ = 0;
    std::int64_t total_ = 0;
    Progress progress_;
};

/// The name of a file that does not exist yet, and is removed at the end. Throws Failure (kFile).
class TemporaryFile {
  public:
    TemporaryFile();
    TemporaryFile(const TemporaryFile &) = delete;
    TemporaryFile &operator=(const TemporaryFile &) = delete;
    ~TemporaryFile();

    const char *name() const { return name_; }

  private:
    char name_[257];
};

/// All bytes of a file, or of standard input. Throws Failure (kFile).
std::string read_all(const std::string &name);

/// What in a text file is not read as it stands there, each "NAME:LINE:COLUMN: ...": zero bytes, of which
/// `zero` says what becomes of them, a byte order mark, and what is after a Ctrl-Z. Throws Failure (kFile)
/// at a text in UTF-16.
std::vector<std::string> text_oddities(const std::string &name, std::string_view text,
                                       std::string_view zero);
/// The text without what the library leaves out: CR LF is a line feed, and a Ctrl-Z ends it.
std::string as_text_mode(std::string text);

}  // namespace kvtool

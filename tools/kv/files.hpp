// Reading files and standard input. Every path of the program goes through the library, which knows drives
// and names in another case, and every failure comes with the system's reason.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace kvtool {

/// True for "-": standard input, or where something is written, standard output.
bool is_standard(const std::string &name);
/// What messages call it: the name, or "standard input".
std::string input_name(const std::string &name);

/// Why the last call on a file failed: "Permission denied".
std::string failure_reason(const std::string &file);

/// Why the last save of a file failed: as failure_reason(), or "it is in use by NAME (process 123)".
std::string save_failure_reason(const std::string &file);

/// Why a file, which the library could not read, cannot be read.
struct Unreadable {
    std::string text;  ///< "FILE: cannot be read: Permission denied"
    bool missing;      ///< there is no such file
};
Unreadable why_unreadable(const std::string &file);

/// Throws Failure (kFile) if the path, or that of the name in the directory, is longer than the library's
/// functions on files take.
void require_path(const std::string &path, const std::string &name = {});

/// A file that is read from its beginning, or standard input.
class Input {
  public:
    /// Throws Failure (kFile).
    explicit Input(const std::string &name);
    Input(const Input &) = delete;
    Input &operator=(const Input &) = delete;
    ~Input();

    /// Up to `size` bytes; 0 at the end. Throws Failure (kFile).
    std::size_t read(char *buffer, std::size_t size);
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

    std::string name_;
    std::unique_ptr<File> file_;  // null for standard input
    std::unique_ptr<char[]> buffer_;
    std::size_t position_ = 0;
    std::size_t filled_ = 0;
};

/// All bytes of a file, or of standard input. Throws Failure (kFile).
std::string read_all(const std::string &name);

}  // namespace kvtool

// SPDX-License-Identifier: MIT
// All that the families ask of the operating system. platform/posix and platform/win32 implement it;
// the families include nothing else of the system.
//
// Paths are the families' own: drives, backslashes, names without regard to case. Each implementation
// maps them to the system's paths when it touches the file system. Nothing here allocates from the
// library's heap unless it says so, and nothing throws unless it says so.
#pragma once

#include <array>
#include <atomic>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <mutex>
#include <string_view>

#include "memory/owned.hpp"

namespace kv::platform {

// ---- Locks

/// A lock for one thread at a time, ready before any code runs, as that of the standard library is not on
/// every system. A thread that waits tries a moment before it sleeps.
class Mutex {
  public:
    constexpr Mutex() = default;
    Mutex(const Mutex &) = delete;
    Mutex &operator=(const Mutex &) = delete;

    void lock();
    bool try_lock();
    void unlock();
    /// Takes the lock away from whoever has it.
    void reset() { state_ = State::free; }

  private:
    enum class State : int { free, held, waited_for };
    std::atomic<State> state_{State::free};
};

/// A recursive lock, ready before any code runs, and lasting, since threads may outlive main().
///
/// The child of a fork can use it, whichever thread held it: the fork takes the locks for a moment, so that
/// the child finds what they guard as it is between two operations. Of a holder that does not let go within
/// a second the lock is taken away in the child, and what it guards is what that holder made of it.
class Lock {
  public:
    /// What the lock guards, in the order in which one thread takes several of them.
    enum class Kind : std::uint8_t { environments, log, trace, directories, time };
    static constexpr std::size_t kKinds = 5;

    /// The lock of a kind; there is one of each, so that a fork knows them all.
    static constexpr Lock &of(Kind kind);

    constexpr Lock() = default;
    Lock(const Lock &) = delete;
    Lock &operator=(const Lock &) = delete;

    void lock();
    void unlock();

  private:
    /// What tells the running thread from the others; never 0. The child of a fork has that of its parent.
    static std::uintptr_t this_thread();
    /// Lets forks take the locks from now on. Called before the first lock is taken, and waits for a fork
    /// that is on its way.
    static void survive_forks();
    void before_fork();
    /// True if the lock is held by the thread that called fork().
    bool after_fork_in_parent();
    void after_fork_in_child();

    static inline constinit std::atomic<bool> survives_forks_{false};

    Mutex mutex_;
    std::atomic<std::uintptr_t> owner_{0};  // a thread
    int depth_ = 0;                         // how often the owner has it
    int forks_ = 0;                         // how often of these for a fork
};

inline constinit std::array<Lock, Lock::kKinds> locks{};

constexpr Lock &Lock::of(Kind kind) {
    return locks[static_cast<std::size_t>(kind)];
}

// ---- Files

/// A file opened for reading bytes. Closed when destroyed.
class InputFile {
  public:
    InputFile() = default;
    InputFile(const InputFile &) = delete;
    InputFile &operator=(const InputFile &) = delete;
    ~InputFile();

    /// Whether what is read has to be one state of the file: then changes that are written in place wait
    /// for the end of the object, and it waits for theirs, but not longer than FileLock::acquire() does.
    enum class Content { any, consistent };
    /// False if the file cannot be opened, or is a directory.
    bool open(const char *path, Content content = Content::any);
    /// True if open() failed because there is no such file.
    bool missing() const { return missing_; }
    /// Reads up to `size` bytes; the number read, 0 at the end, -1 after a read error.
    std::int64_t read(char *buffer, std::size_t size);
    /// Reads `size` bytes from an offset on, fewer at the end of the file; the number read, -1 after a read
    /// error or if the file has no positions. What read() reads next stays the same.
    std::int64_t read_at(std::int64_t offset, char *buffer, std::size_t size);
    /// Seconds since 1970 of the last modification; false if the system does not tell.
    bool modification_time(std::int64_t &seconds) const;

  private:
    std::intptr_t handle_ = -1;
    bool missing_ = false;
    bool locked_ = false;
};

/// What tells one state of a file from another, as far as the system tells.
struct FileStamp {
    bool exists = false;
    std::uint64_t volume = 0;
    std::uint64_t number = 0;  // of the file on its volume
    std::int64_t size = 0;
    std::int64_t modified = 0;  // nanoseconds, or what the system counts in

    bool operator==(const FileStamp &) const = default;
};

/// The lock that a change of a file holds from the moment the file is read until its new content is in
/// place, so that several changes, of other processes too, are made one after the other. It does not keep
/// anybody from reading, nor from writing without this lock.
///
/// A file that is not there has no lock: two who create it at the same time do not wait for each other, but
/// the second one is told by ReplacementFile::overtaken(). Where the system has no lock for a file (no
/// right to write it, a file system without locks), nobody waits.
class FileLock {
  public:
    FileLock() = default;
    FileLock(const FileLock &) = delete;
    FileLock &operator=(const FileLock &) = delete;
    ~FileLock() { release(); }

    /// Waits for the lock on the file of this name, instead of that it has. False if somebody else has kept
    /// it for as long as one waits: KV_LOCK_TIMEOUT seconds, 10 if that is not set.
    bool acquire(const char *path);
    void release();
    /// The state of the file when the lock was acquired.
    const FileStamp &stamp() const { return stamp_; }

  private:
    std::intptr_t handle_ = -1;
    FileStamp stamp_;
};

/// Whether somebody has a lock on a file that changes of it wait for.
enum class LockState { free, held };
/// Says whether a change of the file would have to wait for another process, and, where the system tells
/// it, which: "NAME (process 123)" goes into the buffer, or an empty text.
LockState lock_state(const char *path, char *holder, std::size_t size);

/// A file that takes new content as a whole: after commit() it holds all that was written, and until
/// then, or without commit(), its old content. The new content has no name before it is complete, or one
/// that only its owner can read; the file keeps its permissions, owner, access list and attributes.
///
/// Where a new file cannot take the old one's place (several hard links, somebody else's file, a mount
/// point, no right to write the directory, attributes that cannot be kept, a device), commit() writes in
/// place from memory; readers that ask for a consistent content (InputFile::open) wait for that.
class ReplacementFile {
  public:
    ReplacementFile();
    ReplacementFile(const ReplacementFile &) = delete;
    ReplacementFile &operator=(const ReplacementFile &) = delete;
    ~ReplacementFile();

    /// `lock` is the caller's lock on this file, which has to outlive the object; without one, the file is
    /// locked from here to the end of commit(). False if the file cannot be written, or is in use; nothing
    /// has changed then.
    bool open(const char *path, const FileLock *lock = nullptr);
    /// False after a write error or an exhausted heap; later writes and commit() then fail too.
    bool write(const char *bytes, std::size_t size);
    /// Puts the new content in place. False if that fails; the old content is kept.
    bool commit();
    /// True if what failed was the heap.
    bool exhausted() const { return exhausted_; }
    /// True if commit() failed because readers did not let go of a file that is written in place.
    bool in_use() const { return in_use_; }
    /// True if commit() failed because the file is not in the state any more in which the caller's lock
    /// found it: somebody has made, changed or replaced it without this lock. The change is to begin anew.
    bool overtaken() const { return overtaken_; }

  private:
    struct Paths;
    // False if that fails. The two that commit may throw std::bad_alloc, which commit() catches.
    bool open_temporary();
    bool write_temporary(const char *bytes, std::size_t size);
    bool commit_temporary();
    bool commit_in_place();

    FileLock own_lock_;
    const FileLock *lock_ = nullptr;
    memory::Owned<Paths> paths_;
    memory::Vector<char> pending_;  // the content of a file that is written in place
    std::intptr_t handle_ = -1;     // the temporary file
    bool failed_ = false;
    bool exhausted_ = false;
    bool overtaken_ = false;
    bool in_use_ = false;
};

/// A text for people on this machine, such as the log: appended to, or emptied first. Lines have the
/// platform's own ends.
class ReportFile {
  public:
    /// What happens while the file, which may be a pipe or a terminal, takes no more.
    enum class Busy : std::uint8_t {
        wait,
        drop  // what it does not take at once is lost, and so is all if nobody reads it
    };

    ReportFile() = default;
    ReportFile(const ReportFile &) = delete;
    ReportFile &operator=(const ReportFile &) = delete;
    ~ReportFile();

    bool open(const char *path, bool empty_first, Busy busy = Busy::wait);
    /// Write errors are ignored: a report has nowhere to report to.
    void write(std::string_view text);

  private:
    std::intptr_t handle_ = -1;
    bool drops_ = false;
};

/// Seconds since 1970 of a file's last modification; false if there is no such file.
bool modification_time(const char *path, std::int64_t &seconds);

enum class FileKind { none, file, directory };

/// What a path names; links are followed.
FileKind file_kind(const char *path);
/// True if the path names anything, a link that leads nowhere included.
bool is_entry(const char *path);
/// True if the path exists and may be read and written as far as asked.
bool accessible(const char *path, bool reading, bool writing);

/// One entry of a directory; of a link, what it leads to.
struct FoundFile {
    const char *name;  // until the next search step
    bool directory;
    bool hidden;
    bool read_only;  // nobody may write it
    bool system;     // belongs to the system
    bool archive;    // has changed since the last backup
    std::uint64_t size;
    std::int64_t modified;  // seconds since 1970
};

/// The entries of a directory whose names match a pattern, in the order of the system; "." and ".." are
/// entries like any other.
class DirectorySearch {
  public:
    DirectorySearch();
    DirectorySearch(const DirectorySearch &) = delete;
    DirectorySearch &operator=(const DirectorySearch &) = delete;
    ~DirectorySearch();

    /// `path` is a directory followed by a pattern, with "*" and "?" as DOS understands them. False if
    /// there is no such directory. Throws std::bad_alloc.
    bool open(const char *path);
    /// False at the end.
    bool next(FoundFile &file);

  private:
    struct Place;
    memory::Owned<Place> place_;
};

enum class CopyResult { done, no_source, no_destination, short_write };

/// Copies the content of a file over a file that may exist. A file copied onto itself stays as it is.
CopyResult copy_file(const char *from, const char *to);
/// False, and nothing has changed, if that fails or there is something at the new path. A name may change
/// its case only.
bool rename_file(const char *from, const char *to);
/// False for a directory.
bool remove_file(const char *path);
bool make_directory(const char *path);
/// False if the directory is not empty.
bool remove_directory(const char *path);
/// Writes a path that does not exist, beginning with `prefix`, in the directory of the setting TMP if that
/// exists, else in `directory`; nothing is created, and no path is given twice. False if it does not fit.
bool temporary_name(const char *directory, const char *prefix, char *name, std::size_t size);
/// The bytes that the caller may still write to a drive; false if the system does not tell.
bool free_space(char drive, double &bytes);

/// What the desktop's shell does with a group of files and directories.
struct ShellOperation {
    enum class Function { copy, move, remove };

    Function function;
    const char *from;      // paths, each with its terminator, and an empty one at the end; the last
                           // component may be a pattern, which stands for the entries that match it
    const char *to;        // for copy and move: one for each path in `from`; that of a pattern says the
                           // directory, its own last component being left out if it is a pattern
    bool files_only;       // a pattern stands for files only, and a directory may not be named
    bool allow_undo;       // what is removed can be restored by the user
    const char *progress;  // the title of a window of progress; null for none
    void *owner;           // the owner of that window, unless
    bool focused_owner;    // that is the window that has the focus
};

enum class ShellResult { done, aborted, failed };

/// Directories are treated with all that is in them; directories that are missing at the new place are
/// made. Files there are replaced. Throws std::bad_alloc.
ShellResult shell_operation(const ShellOperation &operation);

// ---- Drives and current directories. A drive is a capital letter; other characters are no drive.

/// '\0' if the current directory is on no drive but on a share, "\\server\share\work".
char current_drive();
/// True if the drive could be made the current one.
bool drive_exists(char drive);
/// False if there is no such drive; the current one stays.
bool set_current_drive(char drive);
/// Writes the current directory of a drive, "C:\work", or "C:\" at its root; with '\0' for the drive, the
/// current directory on a share. False, with the buffer as it was, if there is no such drive or the text
/// and its terminator do not fit.
bool current_directory(char drive, char *buffer, std::size_t size);
/// Makes a directory the current one of its drive, and the drive the current one. False if that fails;
/// nothing has changed then.
bool change_directory(const char *path);
/// The characters of "\\server\share" at the beginning of a path, which stand in place of a drive; 0 if it
/// does not begin so, or the system knows no shares.
std::size_t share_length(const char *path);

// ---- Streams of the C library

struct StreamMode {
    enum class Access { read, write, append };
    Access access;
    bool update;  // the other direction too
    bool text;    // CR LF on disk is a line feed, and reading ends at a Ctrl-Z (26)
};

/// What translates a text stream.
struct TextLayer;

struct Stream {
    std::FILE *file = nullptr;
    TextLayer *text = nullptr;  // null for a binary stream, and where the C library itself translates
};

/// Opens a file as fopen() does, at position 0 in every mode. `file` is null if that fails, or if it is a
/// directory; nothing has changed then. fclose() closes and frees all of it. Text streams that can be
/// updated lose a Ctrl-Z at the end of the file, so that what is appended can be read.
///
/// The stream belongs to one thread at a time: its functions do not lock it.
Stream open_stream(const char *path, const StreamMode &mode);
enum class LockResult { done, denied, bad_file, no_position, failed };

/// A lock on the bytes of a stream's file, which other streams, of other processes too, are denied until
/// unlock() or until the object and its stream have ended.
class RegionLock {
  public:
    RegionLock() = default;
    RegionLock(const RegionLock &) = delete;
    RegionLock &operator=(const RegionLock &) = delete;
    ~RegionLock();

    /// Locks the bytes that the file has now, with those in the stream's buffer, which are written; without
    /// waiting. Streams that only read share the lock where
    /// the system does not let them write the file.
    LockResult lock(const Stream &stream);
    LockResult unlock(const Stream &stream);

  private:
    std::intptr_t holder_ = -1;  // has the lock instead of a stream that only reads
};

/// The offset in the file, in bytes on disk, in text streams too; -1 if there is none.
std::int64_t stream_tell(const Stream &stream);
/// Moves to an offset in bytes on disk; `origin` as for fseek(). False if that fails.
bool stream_seek(const Stream &stream, std::int64_t offset, int origin);

// ---- Time

/// The time since 1970 in seconds, and the milliseconds (0 to 999) that have gone by since.
struct TimeOfDay {
    std::int64_t seconds;
    std::int32_t milliseconds;
};

TimeOfDay current_time();
/// Seconds since 1970 as local calendar time; false if it cannot be represented.
bool local_time(std::int64_t seconds, std::tm &fields);
/// Local calendar time, its fields brought into their ranges, as seconds since 1970. The time zone's rules
/// say whether daylight saving holds, whatever `fields` says: of two times that it can mean it is the
/// first, and a time that a change leaves out is taken by the rule after that change. False if it cannot be
/// represented.
bool calendar_time(std::tm &fields, std::int64_t &seconds);

// ---- Telling the user

/// What a message box stands in front of.
enum class BoxOwner { focused_window, none };

/// Shows a text and waits until the user has dismissed it.
void message_box(const char *text, const char *caption, BoxOwner owner);
/// Sends a text to an attached debugger, without waiting for it.
void debugger_output(const char *text);

/// Leaves errno, and whatever else tells of the thread's last failure, as it found them.
class KeptErrors {
  public:
    KeptErrors();
    KeptErrors(const KeptErrors &) = delete;
    KeptErrors &operator=(const KeptErrors &) = delete;
    ~KeptErrors();

  private:
    int number_;
    [[maybe_unused]] unsigned long code_ = 0;  // of Windows
};

void beep();
/// True if a standard stream is a person's terminal.
bool is_terminal(std::FILE *stream);
/// True if that terminal also understands the escape sequences for colours; they are switched on then.
bool takes_colors(std::FILE *stream);
/// True if a standard stream leads to a console that takes characters, by write_characters(), and reads
/// bytes in a code page of its own.
bool takes_characters(std::FILE *stream);
/// Writes a text to such a console, line by line: one that is UTF-8 as such, any other as the system reads
/// texts of 8 bits. False if that fails.
bool write_characters(std::FILE *stream, std::string_view text);

/// Whether a standard stream passes bytes as they are, where the system would translate line ends.
void set_binary(std::FILE *stream, bool binary);

// ---- Why a call failed

/// Forgets what has failed before on this thread.
void clear_failure();
/// What is said of a lock that somebody else has.
inline constexpr char kFileInUse[] = "The file is in use";
/// Writes what the system says about the last failure on this thread since then, "Permission denied"; the
/// empty text if it says nothing.
void describe_failure(char *text, std::size_t size);

// ---- Serial ports

/// How a serial port sends, and what it waits for.
struct SerialSettings {
    enum class Parity : std::uint8_t { none, odd, even, mark, space };
    enum class StopBits : std::uint8_t { one, one_and_half, two };
    enum class Line : std::uint8_t { off, on, handshake, toggle };

    std::int32_t baud_rate;
    std::int32_t data_bits;
    Parity parity;
    StopBits stop_bits;
    bool xon_xoff;         // XON and XOFF hold the other side's sending, in both directions
    bool cts_output_flow;  // CTS holds the output
    bool dsr_output_flow;  // DSR holds the output
    bool dsr_sensitivity;  // what comes while DSR is off is dropped
    Line dtr;              // never toggle
    Line rts;
};

/// An open serial port. Closed when destroyed.
class SerialPort {
  public:
    SerialPort() = default;
    /// Takes over what release() gave.
    explicit SerialPort(std::intptr_t handle) : handle_(handle) {}
    SerialPort(const SerialPort &) = delete;
    SerialPort &operator=(const SerialPort &) = delete;
    ~SerialPort();

    /// Opens the port for this object alone. False if there is no such port, or somebody has it.
    bool open(const char *name);
    /// What the mode text "name:entry" makes of the port's present settings: its syntax is that of the
    /// system's command "mode", in the older form ("9600,n,8,1,p") or the newer one ("baud=9600 xon=on").
    /// False, with `settings` of no meaning, if the system rejects the text.
    bool settings_from(const char *name, const char *entry, SerialSettings &settings) const;
    /// False if the port cannot do all that is asked.
    bool apply(const SerialSettings &settings);
    /// Sends bytes as they are, and returns when the system has no more of them. False if the port has
    /// taken fewer.
    bool write(const char *bytes, std::size_t size);
    /// The system's handle, which the caller has to close now; never 0 for an open port.
    std::intptr_t release();

  private:
    std::intptr_t handle_ = 0;
};

/// The sibling library that sends a plot file where programs like this one cannot reach the ports.
struct PlotHelper {
    const char *library;
    const char *initialize;  // its entries
    const char *plot;
};

enum class PlotHelperResult { done, not_loaded, not_initialized };

/// Loads the library, calls its entry `initialize` with the library's handle and 1, then its entry `plot`
/// with the path and the port, and unloads it; one that cannot be initialised stays. `result` is what
/// `plot` returned.
PlotHelperResult run_plot_helper(const PlotHelper &helper, const char *path, const char *port,
                                 std::int32_t &result);

// ---- The process

enum class CommandResult { done, failed, interrupted };

/// Runs a command line in the system's shell; interrupted if the user has ended it from the terminal.
CommandResult run_command(const char *line);

/// The value inside the process environment, or null.
const char *environment_variable(const char *name);
/// Sets a variable of the process; an empty value removes it. False if the system refuses.
bool set_environment_variable(const char *name, const char *value);
/// The code that kv_get_win32() returns; 0 if unknown.
std::int32_t windows_platform_code();
/// The directory of the system's own settings, such as WIN.INI. False if it is not known, or does not fit
/// with its terminator.
bool windows_directory(char *buffer, std::size_t size);

/// The text that is the default value of a key under the current user, such as "Software\\Maker\\file".
/// False if there is none, or it does not fit with its terminator.
bool registry_text(const char *key, char *text, std::size_t size);

// ---- Numbers: as text in the "C" locale, whatever the application's locale is

/// As vsnprintf.
int format(char *buffer, std::size_t size, const char *format_text, std::va_list arguments);
/// As strtod without an end pointer.
double parse_double(const char *text);

/// The system's pow(), which rounds well: 10 to the power -2 is the number nearest to 0.01.
double power(double base, double exponent);

}  // namespace kv::platform

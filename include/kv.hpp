// SPDX-License-Identifier: MIT
// kv for C++20: handles that close themselves, texts as std::string_view, results that say why there is
// none, and ranges. A thin layer over the C interface, which it never leaves; the headers in kv/ say what
// each function does, and everything here may be mixed with calls of them: get() of a handle gives what
// they take.
//
// A std::int32_t that comes back is what the C function returned, ENV_OK or INI_OK where it is done, and on
// failure nothing has changed but what its header says. Handles own what they opened; views are valid as
// long as stated.
//
// Nothing here throws but std::bad_alloc, where a std::string or a std::vector is made. A moved-from handle
// may be destroyed and assigned to, and gives NIL.
#ifndef KV_HPP
#define KV_HPP

#if !(__cplusplus >= 202002L || (defined(_MSVC_LANG) && _MSVC_LANG >= 202002L))
#error "kv.hpp wants C++20 (-std=c++20, /std:c++20); older C++ and C use kv.h"
#endif

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <memory>
#include <ranges>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "kv.h"

namespace kv {

// ---- Texts and results

/// A text as an argument: zero-terminated ones are handed on, others are copied, short ones without the
/// heap. NIL stays NIL.
class text {
  public:
    text(std::nullptr_t) noexcept : data_(nullptr) {}
    text(const char *zero_terminated) noexcept : data_(zero_terminated) {}
    text(const std::string &string) noexcept : data_(string.c_str()) {}
    text(std::string_view view) : data_(near_) { copy(view); }
    text(const std::filesystem::path &path) : data_(near_) { copy(path.string()); }
    text(const text &) = delete;
    text &operator=(const text &) = delete;

    const char *c_str() const noexcept { return data_; }

  private:
    void copy(std::string_view view) {
        if (view.size() >= sizeof near_) {
            far_ = std::make_unique<char[]>(view.size() + 1);
            data_ = far_.get();
        }
        char *const to = far_ ? far_.get() : near_;
        to[view.copy(to, view.size())] = '\0';
    }

    const char *data_;
    std::unique_ptr<char[]> far_;
    char near_[64];  // is left as it is where it is not used
};

/// A value, or the code that says why there is none. Its meaning is that of the C function.
template <typename T>
class [[nodiscard]] result {
  public:
    static result of(T value, std::int32_t code = 0) { return {std::move(value), code, true}; }
    static result failed(std::int32_t code) { return {T{}, code, false}; }

    bool has_value() const noexcept { return valid_; }
    explicit operator bool() const noexcept { return valid_; }
    /// What the C function returned.
    std::int32_t code() const noexcept { return code_; }

    // A result that has a value.
    const T &operator*() const &noexcept { return value_; }
    T operator*() && { return std::move(value_); }
    const T *operator->() const noexcept { return &value_; }

    template <typename Default>
    T value_or(Default &&otherwise) const & {
        return valid_ ? value_ : static_cast<T>(std::forward<Default>(otherwise));
    }
    template <typename Default>
    T value_or(Default &&otherwise) && {
        return valid_ ? std::move(value_) : static_cast<T>(std::forward<Default>(otherwise));
    }

  private:
    result(T value, std::int32_t code, bool valid) : value_(std::move(value)), code_(code), valid_(valid) {}

    T value_;
    std::int32_t code_;
    bool valid_;
};

// ---- Call trace

/// The function that runs, in the trace of reports, until the end of the scope: kv_begin() and kv_end().
class trace {
  public:
    /// The name has to outlive the scope.
    explicit trace(const char *name) noexcept { kv_begin(name); }
    trace(const trace &) = delete;
    trace &operator=(const trace &) = delete;
    ~trace() { kv_end(); }
};

namespace detail {

template <auto Function>
struct call {
    template <typename Handle>
    void operator()(Handle *handle) const noexcept {
        Function(handle);
    }
};

/// A view of what next() of a source gives: a pointer to the current item, which lives in the source, or
/// null at the end. It can be gone through once.
template <typename Source>
class once : public std::ranges::view_base {
  public:
    class iterator {
      public:
        using value_type = typename Source::item_type;
        using difference_type = std::ptrdiff_t;

        iterator() = default;
        explicit iterator(once *range) : range_(range) { ++*this; }
        const value_type &operator*() const noexcept { return *item_; }
        const value_type *operator->() const noexcept { return item_; }
        iterator &operator++() {
            item_ = range_->source_.next();
            return *this;
        }
        void operator++(int) { ++*this; }
        friend bool operator==(const iterator &it, std::default_sentinel_t) noexcept {
            return it.item_ == nullptr;
        }

      private:
        once *range_ = nullptr;
        const value_type *item_ = nullptr;
    };

    explicit once(Source source) : source_(std::move(source)) {}
    iterator begin() { return iterator(this); }
    static std::default_sentinel_t end() noexcept { return {}; }

  private:
    Source source_;
};

/// Gives what next() of an object gives, which has to outlive it.
template <typename Object, typename Item>
struct rest_of {
    using item_type = Item;
    Object *object;

    const Item *next() { return object->next(); }
};

/// Calls `list(buffer, size)`, a function that says INI_NO_ROOM until all its names fit, and gives the
/// names.
template <typename List>
result<std::vector<std::string>> names(List list) {
    std::vector<char> buffer(4000);
    for (;;) {
        auto size = static_cast<std::int32_t>(buffer.size());
        const std::int32_t status = list(buffer.data(), &size);
        if (status == INI_NO_ROOM && buffer.size() < INT32_MAX / 2) {
            buffer.resize(buffer.size() * 2);
            continue;
        }
        if (status != INI_OK) return result<std::vector<std::string>>::failed(status);
        std::vector<std::string> all;
        for (const char *name = buffer.data(); name < buffer.data() + size; name += all.back().size() + 1) {
            all.emplace_back(name);
        }
        return result<std::vector<std::string>>::of(std::move(all));
    }
}

}  // namespace detail

// ---- The environment tree

/// What an element is; the values are those of ENV_DATA, ENV_BLOCK and ENV_EXTERNAL.
enum class element_type : std::int32_t { data = ENV_DATA, block = ENV_BLOCK, external = ENV_EXTERNAL };

/// An element met on the way through a block. The texts are the tree's, valid until the element changes.
struct element {
    element_type type;
    std::int32_t origin;  ///< the id of the environment that has it
    std::string_view name;
    std::string_view value;  ///< of a data element
    void *external;          ///< of an external
};

/// An environment or a sub-environment. Defaults are not closed with it: an environment that is another's
/// default has to live longer than that one.
class env {
    struct close {
        void operator()(ENV *handle) const noexcept { env_close(handle, 0); }
    };

    using handle = std::unique_ptr<ENV, close>;

    struct walk {
        using item_type = element;

        const element *next() {
            const char *name = "";
            const char *value = "";
            item.external = nullptr;
            const std::int32_t type = env_get_core(tree, all_sections ? nullptr : section.c_str(),
                                                   path.empty() ? nullptr : path.c_str(), 1, ++position,
                                                   &item.origin, &name, &value, &item.external);
            if (type != ENV_DATA && type != ENV_BLOCK && type != ENV_EXTERNAL) return nullptr;
            item.type = static_cast<element_type>(type);
            item.name = name;
            item.value = value;
            return &item;
        }

        ENV *tree;
        std::string section;
        std::string path;
        bool all_sections;
        handle owned = nullptr;
        std::int32_t position = 0;
        element item = {};
    };
    using walking = detail::once<walk>;

  public:
    /// A new, empty environment; NIL if that fails.
    explicit env(std::int32_t id = 0, ENV *default_env = nullptr) : handle_(env_open(id, default_env)) {}
    /// Takes over what the C interface gave.
    static env adopt(ENV *opened) { return env(handle(opened)); }

    ENV *get() const noexcept { return handle_.get(); }
    [[nodiscard]] ENV *release() noexcept { return handle_.release(); }
    explicit operator bool() const noexcept { return handle_ != nullptr; }

    env subenv(const text &section, const text &path = nullptr) const {
        return adopt(env_open_subenv(get(), section.c_str(), path.c_str(), 1));
    }
    env create_subenv(const text &section, const text &path = nullptr) const {
        return adopt(env_create_subenv(get(), section.c_str(), path.c_str()));
    }

    /// A value: std::int32_t, double, std::string, std::string_view (the tree's own text, valid until the
    /// element changes), std::vector of std::int32_t, double or std::string, void * (an external). The code
    /// is the id of the environment that has it, or says why there is none.
    template <typename T>
    result<T> get(const text &section, const text &path, bool exact = true) const;

    /// Stores a value: a text, a whole number, a real number, a std::vector of std::int32_t, double or
    /// std::string, or a pointer (an external). ENV_ERROR, and nothing is stored, for a whole number that
    /// has more than 32 bits.
    template <typename T>
    std::int32_t put(const text &section, const text &path, const T &value);

    [[nodiscard]] bool exists(const text &section, const text &path = nullptr, bool exact = true) const {
        return env_exist(get(), section.c_str(), path.c_str(), exact) == 1;
    }
    [[nodiscard]] std::int32_t count(const text &section, const text &path = nullptr,
                                     bool exact = true) const {
        return env_count_elements(get(), section.c_str(), path.c_str(), exact);
    }
    std::int32_t erase(const text &section, const text &path = nullptr) {
        return env_delete(get(), section.c_str(), path.c_str());
    }

    /// The elements of a block, in their order. The block must not change meanwhile. Of an environment that
    /// is a temporary, the range takes over the handle.
    walking elements(std::string section, std::string path = {}) const & {
        return walking({get(), std::move(section), std::move(path), false});
    }
    walking elements(std::string section, std::string path = {}) && {
        return walking({get(), std::move(section), std::move(path), false, std::move(handle_)});
    }
    /// The sections of an environment.
    walking sections() const & { return walking({get(), {}, {}, true}); }
    walking sections() && { return walking({get(), {}, {}, true, std::move(handle_)}); }

    std::int32_t read(const text &content) { return env_read_from_string(content.c_str(), get()); }
    std::int32_t read_file(const text &path) { return env_read_file(path.c_str(), get()); }
    /// ENV_OK, or ENV_ERROR if the file could not be written and has its old content.
    [[nodiscard]] std::int32_t write_file(const text &path) const {
        return env_save_file(path.c_str(), get());
    }
    /// The text of all of it, with CR LF; empty if the heap is exhausted.
    std::string write() const {
        const std::unique_ptr<char, detail::call<heap_free>> content(env_write_to_string(get()));
        return content ? std::string(content.get()) : std::string();
    }

  private:
    explicit env(handle opened) : handle_(std::move(opened)) {}

    handle handle_;
};

template <typename T>
result<T> env::get(const text &section, const text &path, bool exact) const {
    // The number of parts of a list is not known before it is read.
    const auto list = [&](auto getter, auto item) {
        std::vector<decltype(item)> items;
        std::int32_t count = 0;
        std::int32_t code =
            env_get_array_size(get(), section.c_str(), path.c_str(), exact, &count, nullptr);
        if (code >= 0) {
            items.resize(static_cast<std::size_t>(count));
            code = getter(get(), section.c_str(), path.c_str(), exact, &count, items.data());
        }
        return code >= 0 ? result<T>::of(std::move(items), code) : result<T>::failed(code);
    };
    T value{};
    std::int32_t code;
    if constexpr (std::is_same_v<T, std::int32_t>) {
        code = env_get_long(get(), section.c_str(), path.c_str(), exact, &value);
    } else if constexpr (std::is_same_v<T, double>) {
        code = env_get_double(get(), section.c_str(), path.c_str(), exact, &value);
    } else if constexpr (std::is_same_v<T, void *>) {
        code = env_get_external(get(), section.c_str(), path.c_str(), exact, &value);
    } else if constexpr (std::is_same_v<T, std::vector<std::int32_t>>) {
        return list(env_get_longs, std::int32_t{});
    } else if constexpr (std::is_same_v<T, std::vector<double>>) {
        return list(env_get_doubles, double{});
    } else {
        const char *reference = "";
        code = env_get_reference(get(), section.c_str(), path.c_str(), exact, &reference);
        if constexpr (std::is_same_v<T, std::vector<std::string>>) {
            for (std::string_view rest = reference; code >= 0;) {
                const std::size_t comma = rest.find(',');
                value.emplace_back(rest.substr(0, comma));
                if (comma == rest.npos) break;
                rest.remove_prefix(comma + 1);
            }
        } else {
            static_assert(std::is_same_v<T, std::string> || std::is_same_v<T, std::string_view>,
                          "no type of a value");
            value = reference;
        }
    }
    return code >= 0 ? result<T>::of(std::move(value), code) : result<T>::failed(code);
}

template <typename T>
std::int32_t env::put(const text &section, const text &path, const T &value) {
    const char *const at = section.c_str();
    const char *const below = path.c_str();
    if constexpr (std::is_same_v<T, std::vector<std::int32_t>>) {
        return env_put_longs(get(), at, below, static_cast<std::int32_t>(value.size()), value.data());
    } else if constexpr (std::is_same_v<T, std::vector<double>>) {
        return env_put_doubles(get(), at, below, static_cast<std::int32_t>(value.size()), value.data());
    } else if constexpr (std::is_same_v<T, std::vector<std::string>>) {
        std::vector<const char *> texts;
        for (const std::string &one : value) texts.push_back(one.c_str());
        return env_put_strings(get(), at, below, static_cast<std::int32_t>(texts.size()), texts.data());
    } else if constexpr (std::is_convertible_v<const T &, text> ||
                         std::is_convertible_v<const T &, std::string_view>) {
        return env_put(get(), at, below, text(value).c_str());
    } else if constexpr (std::is_same_v<T, double> || std::is_same_v<T, float>) {
        return env_put_double(get(), at, below, static_cast<double>(value));
    } else if constexpr (std::is_integral_v<T>) {
        static_assert(!std::is_same_v<T, char>, "a character is a text, \"c\", or a number, int{c}");
        if constexpr (!std::is_same_v<T, bool>) {
            if (!std::in_range<std::int32_t>(value)) return ENV_ERROR;
        }
        return env_put_long(get(), at, below, static_cast<std::int32_t>(value));
    } else {
        static_assert(std::is_pointer_v<T>, "no type of a value");
        return env_put_external(get(), at, below, value);
    }
}

/// Edits of an environment file, collected first and then made in its text, all or none; what they do not
/// change stays as it is, comments and layout too. See env_edit_file().
class edit {
  public:
    /// Stores a text, or a value as env::put() stores it.
    template <typename T>
    edit &put(const text &section, const text &path, const T &value);
    edit &make_section(const text &section) { return add({ENV_EDIT_PUT, keep(section)}); }
    edit &make_block(const text &section, const text &path) {
        return add({ENV_EDIT_MAKE_BLOCK, keep(section), keep(path)});
    }
    edit &erase(const text &section, const text &path = nullptr) {
        return add({ENV_EDIT_DELETE, keep(section), keep(path)});
    }
    /// Without a path: a section before another one.
    edit &insert_before(const text &section, const text &path, const text &name,
                        const text &value = nullptr) {
        return add({ENV_EDIT_INSERT, keep(section), keep(path), keep(value), keep(name)});
    }
    /// All of `source`, or with a section one of its blocks. `source` has to be there when the edits are
    /// made.
    edit &merge(const env &source, std::int32_t mode, const text &section = nullptr,
                const text &path = nullptr) {
        return add({ENV_EDIT_MERGE, keep(section), keep(path), nullptr, nullptr, source.get(), mode});
    }

    /// Makes the edits. `reached` receives the index of the one that failed, or their number.
    std::int32_t save(const text &file, std::int32_t *reached = nullptr) const {
        return env_edit_file(file.c_str(), edits_.data(), static_cast<std::int32_t>(edits_.size()),
                             reached);
    }

  private:
    struct step : ENV_EDIT {
        step(std::int32_t what, const char *at, const char *below = nullptr, const char *content = nullptr,
             const char *called = nullptr, ENV *from = nullptr, std::int32_t how = 0) noexcept
            : ENV_EDIT{what, at, below, content, called, from, how} {}
    };

    edit &add(const step &made) {
        edits_.push_back(made);
        return *this;
    }
    const char *keep(const text &argument) {
        if (argument.c_str() == nullptr) return nullptr;
        const std::string_view view = argument.c_str();
        texts_.push_back(std::make_unique<char[]>(view.size() + 1));
        view.copy(texts_.back().get(), view.size());
        return texts_.back().get();
    }

    std::vector<ENV_EDIT> edits_;
    std::vector<std::unique_ptr<char[]>> texts_;  // that the edits point to
};

template <typename T>
edit &edit::put(const text &section, const text &path, const T &value) {
    if constexpr (std::is_convertible_v<const T &, text>) {
        return add({ENV_EDIT_PUT, keep(section), keep(path), keep(value)});
    } else if constexpr (std::is_convertible_v<const T &, std::string_view>) {
        return add({ENV_EDIT_PUT, keep(section), keep(path), keep(text(value))});
    } else {
        static_assert(!std::is_pointer_v<T>, "a file holds no externals");
        env numbers;
        numbers.put("s", "n", value);
        const result<std::string> stored = numbers.get<std::string>("s", "n");
        return add({ENV_EDIT_PUT, keep(section), keep(path), stored ? keep(*stored) : nullptr});
    }
}

// ---- INI files

/// An INI file in memory. Closing it saves what was changed, unless it is MINI_READONLY.
class ini {
  public:
    explicit ini(const text &path, std::int32_t flags = 0)
        : cache_(mini_open(nullptr, path.c_str(), flags)) {}
    ini(ini &&other) noexcept : cache_(std::exchange(other.cache_, nullptr)) {}
    /// Closes, and so saves, what it had.
    ini &operator=(ini &&other) noexcept {
        ini closed(std::move(other));
        std::swap(cache_, closed.cache_);
        return *this;
    }
    ~ini() { mini_close(&cache_); }

    MINI *get() const noexcept { return cache_; }
    explicit operator bool() const noexcept { return cache_ != nullptr; }

    /// A value: std::int32_t, double, or std::string.
    template <typename T>
    result<T> get(const text &section, const text &entry) const {
        T value{};
        std::int32_t status;
        if constexpr (std::is_same_v<T, std::int32_t>) {
            status = mini_read_long(cache_, section.c_str(), entry.c_str(), &value);
        } else if constexpr (std::is_same_v<T, double>) {
            status = mini_read_double(cache_, section.c_str(), entry.c_str(), &value);
        } else {
            static_assert(std::is_same_v<T, std::string>, "no type of a value");
            value.resize(100);
            for (;;) {
                auto size = static_cast<std::int32_t>(value.size());
                status = entry.c_str() == nullptr ? std::int32_t{INI_NO_ENTRY}
                                                  : mini_read_string(cache_, section.c_str(), entry.c_str(),
                                                                     value.data(), &size);
                if (status != INI_NO_ROOM || value.size() > INT32_MAX / 2) {
                    value.resize(status == INI_OK ? static_cast<std::size_t>(size) : 0);
                    break;
                }
                value.resize(value.size() * 2);
            }
        }
        return status == INI_OK ? result<T>::of(std::move(value)) : result<T>::failed(status);
    }

    std::int32_t put(const text &section, const text &entry, const text &value) {
        return mini_write_string(cache_, section.c_str(), entry.c_str(), value.c_str());
    }
    std::int32_t put(const text &section, const text &entry, std::int32_t value) {
        return mini_write_long(cache_, section.c_str(), entry.c_str(), value);
    }
    std::int32_t put(const text &section, const text &entry, double value) {
        return mini_write_double(cache_, section.c_str(), entry.c_str(), value);
    }
    std::int32_t erase(const text &section, const text &entry) {
        return mini_delete_entry(cache_, section.c_str(), entry.c_str());
    }

    /// The keys of a section, in their order.
    result<std::vector<std::string>> keys(const text &section) const {
        return detail::names([&](char *buffer, std::int32_t *size) {
            return mini_read_string(cache_, section.c_str(), nullptr, buffer, size);
        });
    }

    /// True if the file has been rewritten.
    [[nodiscard]] bool save() { return mini_update_file(cache_) == 1; }

  private:
    MINI *cache_;
};

// ---- Files of records and lines

class file {
    struct rest_of_lines {
        using item_type = std::string_view;

        const std::string_view *next() {
            if (fio_getstring(handle, longest, buffer.data()) != 0) return nullptr;
            line = buffer.c_str();
            return &line;
        }

        FIO *handle;
        std::int32_t longest;
        std::string buffer = std::string(static_cast<std::size_t>(longest) + 1, '\0');
        std::string_view line = {};
    };

  public:
    file(const text &path, std::uint32_t flags) : handle_(fio_open(nullptr, path.c_str(), flags)) {}

    FIO *get() const noexcept { return handle_.get(); }
    explicit operator bool() const noexcept { return handle_ != nullptr; }
    /// True if all that was written is in the file, which is closed in any case.
    [[nodiscard]] bool close() { return fio_close(handle_.release()) == 0; }

    /// The next value of a record: double, float, std::int32_t, std::int16_t or char.
    template <typename T>
    result<T> read() {
        T value{};
        std::int32_t status;
        if constexpr (std::is_same_v<T, double>) {
            status = fio_getdouble(get(), &value);
        } else if constexpr (std::is_same_v<T, float>) {
            status = fio_getfloat(get(), &value);
        } else if constexpr (std::is_same_v<T, std::int32_t>) {
            status = fio_getlong(get(), &value);
        } else if constexpr (std::is_same_v<T, std::int16_t>) {
            status = fio_getshort(get(), &value);
        } else {
            static_assert(std::is_same_v<T, char>, "no type of a record's value");
            status = fio_getchar(get(), &value) < 0 ? -1 : 0;
        }
        return status == 0 ? result<T>::of(value) : result<T>::failed(status);
    }

    /// A text field of a fixed width, without the blanks at its end that fill it.
    result<std::string> read_field(std::int32_t width) {
        std::string field;
        for (char c = 0; width > 0; --width) {
            if (fio_getchar(get(), &c) != 0) return result<std::string>::failed(-1);
            field += c;
        }
        field.resize(field.find_last_not_of(' ') + 1);
        return result<std::string>::of(std::move(field));
    }

    // The next value of a record, of exactly these types: true if it is written, or in the buffer.
    [[nodiscard]] bool write(double value) { return fio_putdouble(get(), value) == 0; }
    [[nodiscard]] bool write(float value) { return fio_putfloat(get(), value) == 0; }
    [[nodiscard]] bool write(std::int32_t value) { return fio_putlong(get(), value) == 0; }
    [[nodiscard]] bool write(std::int16_t value) { return fio_putshort(get(), value) == 0; }
    [[nodiscard]] bool write(char value) { return fio_putchar(get(), value) == 0; }
    template <typename T>
    requires std::is_arithmetic_v<T>
    bool write(T value) = delete;
    /// A text field, cut or filled with blanks to the width; 0 is that of the text.
    [[nodiscard]] bool write_field(const text &field, std::int32_t width = 0) {
        return fio_putstring(get(), field.c_str(), width) == 0;
    }

    /// The lines that are left, without their ends; a line that is longer than `longest` comes in pieces.
    auto lines(std::int32_t longest = 511) & { return detail::once<rest_of_lines>({get(), longest}); }

  private:
    std::unique_ptr<FIO, detail::call<fio_close>> handle_;
};

// ---- Tables of profiles and mats

/// A row of a table: its name, and the wanted columns' values in the order in which they were wanted.
struct row {
    std::string_view name;
    std::span<const double> values;
};

/// A condition of a search: {"A", ">", 50}.
struct condition {
    std::string column;
    std::string op;
    double value;
};

/// A table with the columns that are wanted of it. What a row refers to is valid until the next one is
/// read.
class table {
  public:
    /// A table of profiles. With `si`, the values are in metres and their powers (profil_get_factors()).
    explicit table(const text &path, std::vector<std::string> columns = {}, bool si = false)
        : columns_(std::move(columns)), values_(columns_.size()) {
        const std::vector<const char *> names = column_names();
        std::vector<double> factors(columns_.size());
        if (si) profil_get_factors(names.data(), factors.data());
        handle_.reset(profil_open(path.c_str(), names.data(), si ? factors.data() : nullptr));
    }
    static table of_mats(const text &path, std::vector<std::string> columns = {}) {
        table result(std::move(columns));
        result.handle_.reset(matte_open(path.c_str(), result.column_names().data()));
        return result;
    }

    PROFIL *get() const noexcept { return handle_.get(); }
    explicit operator bool() const noexcept { return handle_ != nullptr; }

    // Each row or null: at the end, or if none matches.
    const row *next() { return found(profil_next(get(), values_.data(), name_.data())); }
    const row *previous() { return found(profil_prev(get(), values_.data(), name_.data())); }
    /// The first one of the table that a pattern, such as "HEB200" or "L(100x10)", matches.
    const row *find(const text &pattern) {
        return found(profil_get(get(), pattern.c_str(), values_.data(), name_.data()));
    }
    /// The first one of the table that a pattern matches and that meets all conditions.
    const row *search(std::vector<condition> conditions, const text &pattern = "") {
        std::vector<PROFIL_CONDITION> all;
        for (condition &one : conditions) all.push_back({one.column.c_str(), one.op.data(), one.value});
        return found(profil_search(get(), all.data(), static_cast<std::int32_t>(all.size()),
                                   pattern.c_str(), values_.data(), name_.data()));
    }
    /// The next one by the conditions of search().
    const row *search_next(const text &pattern = "") {
        return found(profil_search_next(get(), nullptr, 0, pattern.c_str(), values_.data(), name_.data()));
    }

    /// The rows after the one last read; from the first one on, the first time.
    auto rows() & { return detail::once<detail::rest_of<table, row>>({this}); }

  private:
    explicit table(std::vector<std::string> columns)
        : columns_(std::move(columns)), values_(columns_.size()) {}

    std::vector<const char *> column_names() const {
        std::vector<const char *> names;
        for (const std::string &column : columns_) names.push_back(column.c_str());
        names.push_back(nullptr);
        return names;
    }
    const row *found(std::int32_t status) {
        row_ = {name_.data(), values_};
        return status == 0 ? &row_ : nullptr;
    }

    std::unique_ptr<PROFIL, detail::call<profil_close>> handle_;
    std::vector<std::string> columns_;
    std::vector<double> values_;
    std::array<char, PROFIL_NAME_SIZE> name_{};
    row row_;
};

// ---- Tokens and expressions

struct token {
    std::int32_t kind;   ///< SCAN_IDENTIFIER, ...
    std::int32_t error;  ///< SCAN_OK, or what is wrong with it
    SCAN_TOKEN record;
};

/// The tokens of a text, up to its end; SCAN_EOF is not one of them.
class scanner {
  public:
    /// The keywords have to outlive the scanner.
    explicit scanner(std::string content, std::int32_t flags = 0, std::vector<const char *> keywords = {})
        : content_(std::move(content)), keywords_(std::move(keywords)) {
        keywords_.push_back(nullptr);
        handle_.reset(scan_open(next_character, flags, keywords_.data()));
    }
    scanner(const scanner &) = delete;
    scanner &operator=(const scanner &) = delete;

    SCANNER *get() const noexcept { return handle_.get(); }
    explicit operator bool() const noexcept { return handle_ != nullptr; }

    /// Null at the end. What it points to is valid until the next one.
    const token *next() {
        if (handle_ == nullptr) return nullptr;
        scanner *const before = std::exchange(reading(), this);
        token_.error = scan_token(get(), &token_.kind, &token_.record);
        reading() = before;
        return token_.kind != SCAN_EOF ? &token_ : nullptr;
    }
    auto tokens() & { return detail::once<detail::rest_of<scanner, token>>({this}); }

  private:
    // The C interface asks for characters without saying for which scanner.
    static scanner *&reading() noexcept {
        static thread_local scanner *current = nullptr;
        return current;
    }
    static std::int32_t next_character() {
        scanner &self = *reading();
        if (self.position_ == self.content_.size()) return -1;
        return static_cast<unsigned char>(self.content_[self.position_++]);
    }

    std::string content_;
    std::size_t position_ = 0;
    std::vector<const char *> keywords_;
    token token_{};
    std::unique_ptr<SCANNER, detail::call<scan_close>> handle_;
};

/// The value of an expression, or its error: code(), and what else calc_error() says of it.
class [[nodiscard]] calculation : public result<double> {
  public:
    calculation(result<double> outcome, std::int32_t line, std::int32_t column, std::string message)
        : result(std::move(outcome)), line_(line), column_(column), message_(std::move(message)) {}

    // Of an error: the token where the evaluation stopped, counted from 0, and the text for its code.
    std::int32_t line() const noexcept { return line_; }
    std::int32_t column() const noexcept { return column_; }
    const std::string &message() const noexcept { return message_; }

  private:
    std::int32_t line_;
    std::int32_t column_;
    std::string message_;
};

inline calculation calculate(const text &expression) {
    double value = 0;
    char ok = 0;
    calc_expression(expression.c_str(), &value, &ok);
    if (ok != 0) return {calculation::of(value), 0, 0, {}};
    std::int32_t code = 0;
    std::int32_t line = 0;
    std::int32_t column = 0;
    char message[101] = "";
    calc_error(&code, &line, &column, message);
    return {calculation::failed(code), line, column, message};
}

}  // namespace kv

#endif

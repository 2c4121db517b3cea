// SPDX-License-Identifier: MIT
// JSON as the program prints it: an array with an element a line. Bytes and numbers follow one convention
// everywhere.
#pragma once

#include <ostream>
#include <string>
#include <string_view>

namespace kvtool {

/// A text of single bytes, such as those of environment and INI files, as a string: bytes outside of
/// printable ASCII are \u00XX, one character each.
std::string json_string(std::string_view text);
/// A text that is UTF-8, such as the name of a file, as a string of its characters. What is no UTF-8 in it
/// is \u00XX.
std::string json_utf8(std::string_view text);
/// A number with as many digits as tell it from every other; JSON has none for those that are not finite,
/// they are the strings "inf", "-inf" and "nan".
std::string json_number(double value);
std::string json_number(float value);

/// One line of `"name": value` pairs in braces.
class JsonObject {
  public:
    /// `value` is JSON.
    JsonObject &add(std::string_view name, std::string_view value);
    std::string text() const { return '{' + members_ + '}'; }

  private:
    std::string members_;
};

/// An array, printed as its elements come; it ends with the object.
class JsonArray {
  public:
    explicit JsonArray(std::ostream &stream);
    JsonArray(const JsonArray &) = delete;
    JsonArray &operator=(const JsonArray &) = delete;
    ~JsonArray();

    /// `element` is JSON.
    void add(std::string_view element);

  private:
    std::ostream &stream_;
    bool empty_ = true;
};

}  // namespace kvtool

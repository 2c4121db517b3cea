// SPDX-License-Identifier: MIT
// What {path} and {ini:Section/Key} stand for.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kv/env.h"

#include "tools/kv/ini/document.hpp"

namespace kvtool {

class Sources {
  public:
    /// Reads the environment files; each is the default of those before it. An empty `ini_file` is the main
    /// configuration file. Throws Failure (kFile).
    Sources(const std::vector<std::string> &env_files, std::string section, std::string ini_file);

    /// The number that stands there. Throws std::string, the reason, if there is none, and Failure (kFile)
    /// if the INI file cannot be read.
    double value(std::string_view path);

  private:
    struct CloseChain {
        void operator()(ENV *env) const { env_close(env, 1); }
    };

    double env_value(const std::string &path) const;
    double ini_value(std::string_view path);

    std::unique_ptr<ENV, CloseChain> chain_;  // null without files
    std::string section_;
    std::string ini_file_;
    std::optional<IniDocument> ini_;  // once it has been asked for
};

}  // namespace kvtool

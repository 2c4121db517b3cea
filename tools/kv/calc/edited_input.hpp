// SPDX-License-Identifier: MIT
// Lines typed at a terminal, edited by libedit.
#pragma once

#include <histedit.h>
#include <string>

#include "tools/kv/calc/history_file.hpp"
#include "tools/kv/calc/line_input.hpp"

namespace kvtool {

class EditedInput : public LineInput {
  public:
    explicit EditedInput(const char *prompt);
    EditedInput(const EditedInput &) = delete;
    EditedInput &operator=(const EditedInput &) = delete;
    ~EditedInput() override;

    bool next(std::string &line) override;
    bool interactive() const override { return true; }

  private:
    void remember(const std::string &line);

    HistoryFile file_;
    std::string last_;
    History *history_;
    HistEvent event_{};
    EditLine *editor_;
};

}  // namespace kvtool

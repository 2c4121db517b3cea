// SPDX-License-Identifier: MIT
// The formulas of `kv calc` one after the other, with the names that they give to values.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "tools/kv/calc/formula.hpp"
#include "tools/kv/calc/sources.hpp"

namespace kvtool {

class Sheet {
  public:
    /// `lasting`: a name, and `ans`, keep their values when a formula has none. Else the name that it was
    /// to get and `ans` have none then, so that nothing is computed from what stood there before.
    Sheet(Sources &sources, bool lasting) : sources_(sources), lasting_(lasting) {}

    struct Result {
        std::string target;  ///< empty if the value got no name
        double value;
    };
    /// Throws FormulaError if the formula has no finite value.
    Result evaluate(std::string_view typed);

  private:
    double value_of(std::string_view word) const;
    double compute(const Formula &formula) const;

    Sources &sources_;
    bool lasting_;
    std::map<std::string, double, std::less<>> names_;
    std::optional<double> last_;
};

}  // namespace kvtool

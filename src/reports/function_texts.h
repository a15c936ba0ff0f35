#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>

#include "core/function_table.h"
#include "files/spec_names.h"
#include "reports/analysis_result.h"

namespace velkor::reports {

// Of spec names that may not be the only ones, how many functions have them.
using SpecNameCounts = std::unordered_map<std::string, uint32_t>;

// Makes what is written of the functions of a table, in UTF-8, some at a time. Refers to the table
// and the counts, which must stay as they are. One thread at a time; several of these may work on
// one table at once.
class FunctionTexts {
 public:
  FunctionTexts(const StkFunctionTable& table, const SpecNameCounts& countOfName)
      : table_(table),
        codePage_(table.GetCodePage()),
        countOfName_(countOfName),
        specNames_(table) {}

  // Forgets those of the functions before.
  void Make(std::span<StkFunction* const> functions);
  const AnalysedTexts& Texts() const { return texts_; }

 private:
  void Add(const StkFunction& function);
  // Of its name in the plain form.
  void AddSpecName(const StkFunction& function, std::string_view specName);
  void AddCutName(const StkFunction& function, std::string_view name, TextsOfFew& cutNames) const;

  const StkFunctionTable& table_;
  const CodePage& codePage_;
  const SpecNameCounts& countOfName_;
  SpecNames specNames_;
  AnalysedTexts texts_;
};

}  // namespace velkor::reports

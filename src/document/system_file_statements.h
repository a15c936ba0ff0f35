#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/function_table.h"
#include "files/base_lines.h"
#include "files/spec_names.h"
#include "files/spec_reader.h"
#include "messages/catalogue.h"

namespace velkor {

// What the lines of a stk system file state, by function. Changes nothing, and refers to all that
// it is given.
class SystemFileStatements {
 public:
  SystemFileStatements(const StkFunctionTable& functions, const std::string& path,
                       const StkMessages& messages)
      : functions_(functions), path_(path), messages_(messages) {}

  // False at an erroneous line.
  bool Read(std::string_view text);
  // What a line that names the function states. The callees are there.
  const StkAdjustment* Of(const StkFunction& function) const;
  bool IsNamed(const StkFunction& clone) const { return baseLines_.IsNamed(clone); }
  // The line that holds for a clone which none names.
  const BaseLines::Line* LineFor(const StkFunction& clone) const {
    return baseLines_.LineFor(clone);
  }
  // Lines without effect: each names a function that is not there, or one of which nothing is left
  // but clones that other lines name.
  std::vector<StaleStatement>& Stale() { return stale_; }

 private:
  bool Take(uint32_t number, std::string_view text);
  bool TakeError(const SpecLineParser& line, uint32_t number, std::string_view text);
  bool Join(StkAdjustment& known, StkAdjustment line);

  const StkFunctionTable& functions_;
  const std::string& path_;
  const StkMessages& messages_;
  SpecNames names_{functions_};
  BaseLines baseLines_{functions_};
  std::unordered_map<const StkFunction*, StkAdjustment> byFunction_;  // asked, never walked
  std::vector<StaleStatement> stale_;
};

}  // namespace velkor

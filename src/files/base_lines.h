#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "core/clone_table.h"
#include "core/function_table.h"
#include "files/spec_line_parser.h"

namespace velkor {

// What lines of one specification file state of functions from which clones were made: which lines
// hold for which clones is known once all lines are. Refers to the functions of the table.
class BaseLines {
 public:
  struct Line {
    StkFunction* base = nullptr;  // none: gone
    std::string name;             // of the base, as written
    StkFunctionList clones;       // that it holds for, where no line names them
    StkAdjustment stated;         // callees: all
    std::string text;

    // What it states of a clone.
    StkAdjustment For(const StkFunction& clone, const CodePage& codePage) const {
      return AdjustmentFor(clone, stated, codePage);
    }
    CloneStatement Origin() const {
      return {.isOwn = false, .baseLine = base == nullptr ? name : std::string()};
    }
  };

  explicit BaseLines(const StkFunctionTable& functions) : functions_(functions) {}

  // The number of an earlier line on the function that is gone, which this one names too.
  std::optional<uint32_t> Earlier(const SpecLineParser& line) const;
  // A line without error that states something.
  void Take(const SpecLineParser& line, uint32_t number, std::string_view text);
  // Every line.
  void TakeName(const SpecLineParser& line);

  bool IsNamed(const StkFunction& clone) const { return named_.contains(&clone); }
  // In the file's order.
  const std::vector<Line>& Lines() const { return lines_; }
  // That holds for the clone, where no line names it.
  const Line* LineFor(const StkFunction& clone) const;
  bool HoldsForNone(const Line& line) const;

 private:
  Line& LineOf(const SpecLineParser& line);

  const StkFunctionTable& functions_;
  std::unordered_set<const StkFunction*> named_;           // asked, never walked
  std::unordered_map<const StkFunction*, size_t> lineOf_;  // clones, likewise
  std::vector<Line> lines_;
};

}  // namespace velkor

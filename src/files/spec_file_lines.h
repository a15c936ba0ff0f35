#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "core/function_table.h"
#include "files/spec_names.h"

namespace velkor {

// Of which lines a specification file consists that states what is in force, or what is kept: a
// clone has none where the line of its base says the same, and one with its name alone where that
// line is not to hold for it. Knows no form of a line. The table must not change meanwhile.
class SpecFileLines {
 public:
  enum class Of { kInForce, kKept };
  struct Line {
    const StkFunction* function = nullptr;  // whose statement it is, if there is one
    std::string goneBase;                   // named instead of the function, which is a clone of it
    uint32_t depth = kNoDepth;              // also where only a clone is recursive
  };

  SpecFileLines(const StkFunctionTable& table, SpecNames& names, Of of)
      : table_(table), names_(names), of_(of) {}

  // keptLines stand in the file as well, except those on a base of which now another line is.
  std::vector<Line> Stated(std::vector<std::string>& keptLines);
  // Of the functions that are unknown, and of which nothing is stated.
  std::vector<Line> Unknown() const;
  KeptStatement Statement(const StkFunction& function) const {
    return of_ == Of::kKept ? table_.Kept(function) : table_.InForce(function);
  }

 private:
  void FindBaseLines();
  // Whether the line is to be kept.
  bool TakeKept(const std::string& line);
  void AddBaseLine(const StkFunction& clone, const std::string& name);
  void AddClone(const StkFunction& clone);
  // Line of the base that says of the clone what is stated of it.
  bool IsSaid(const StkFunction& clone, const StkFunction& base, uint32_t depth) const;
  bool WouldFollow(const StkFunction& clone);
  bool IsStated(const StkFunction& function) const;
  uint32_t DepthOfBase(const StkFunction& base) const;
  uint32_t DepthOf(const StkFunction& function) const;
  const CloneStatement& OfClone(const StkFunction& clone) const {
    return of_ == Of::kKept ? table_.KeptOfClone(clone) : table_.Clones().Statement(clone);
  }

  struct BaseLine {
    const StkFunction* first = nullptr;
    uint32_t depth = kNoDepth;
  };

  const StkFunctionTable& table_;
  SpecNames& names_;
  const Of of_;
  std::unordered_map<std::string, BaseLine> baseLines_;   // on bases that are gone, by name
  std::unordered_set<const StkFunction*> underBaseLine_;  // clones that one of them could mean
  std::unordered_set<const StkFunction*> underKept_;      // the same of lines that are kept
  std::unordered_set<const StkFunction*> namedByKept_;
  std::vector<Line> lines_;
};

}  // namespace velkor

#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "core/function.h"

namespace velkor {

class FunctionNameIndex;

// All functions of one analysis: owns the records, keeps their insertion order and finds them by
// name. Records are never removed one by one. Not locked: one thread at a time.
//
// A lookup answers the first match in insertion order among the records of exactly that name, in
// constant time on average, also where one name stands in very many files.
class StkFunctionTable {
 public:
  explicit StkFunctionTable(const CodePage& codePage);
  ~StkFunctionTable();
  StkFunctionTable(const StkFunctionTable&) = delete;
  StkFunctionTable& operator=(const StkFunctionTable&) = delete;

  const CodePage& GetCodePage() const { return codePage_; }

  // A new FN_DEFINED record. The caller sets FN_GLOBAL and the rest on the result, before the
  // next lookup.
  StkFunction& AddDefined(std::string_view name, const StkFileEntry& file);
  StkFunction& Insert(std::unique_ptr<StkFunction> function);
  // Which function the name means in a call by caller; made anew as an unknown one when nothing
  // has that name. In this order: static in the caller's file, global in the caller's file, global
  // in another file, unknown.
  StkFunction& ResolveCall(const StkFunction& caller, std::string_view calleeName);
  // Every collected call name of every record; then the callees are sorted and the names gone.
  void ResolveAllCalls();
  // fileBaseName empty: the first global function of that name, else the first other one. Not
  // empty: the first static one whose file has that base name, ignoring letter case. The name is
  // the C name; one that is not bracketed and begins with "_" is first looked up as it stands.
  StkFunction* FindBySpecName(std::string_view fileBaseName, std::string_view name,
                              bool bracketed) const;

  void SetLibrarySize(StkFunction& function, uint32_t size);
  void SetPendingAdjustment(StkFunction& function, StkAdjustment adjustment);
  void DiscardPendingAdjustments();
  // Records with an adjustment in force; with unknown functions: those too that are unknown and
  // not adjusted.
  uint32_t CountForSpecFile(bool withUnknown) const;
  void Clear();

  // In insertion order; index i holds the function whose index field is i.
  const std::vector<std::unique_ptr<StkFunction>>& Functions() const { return functions_; }
  uint32_t Count() const { return static_cast<uint32_t>(functions_.size()); }
  uint32_t UnknownCount() const { return unknownCount_; }
  uint32_t AdjustedCount() const { return adjustedCount_; }
  // Set when a root's total was over the limit in the last computation.
  bool Overflow() const { return overflow_; }

  // For the adjustments and the computation of this folder.
  void SetAdjustedCount(uint32_t count) { adjustedCount_ = count; }
  void SetOverflow(bool overflow) { overflow_ = overflow; }

 private:
  void ResolveCallsOf(StkFunction& caller);

  const CodePage& codePage_;
  std::vector<std::unique_ptr<StkFunction>> functions_;
  std::unique_ptr<FunctionNameIndex> nameIndex_;
  uint32_t unknownCount_ = 0;
  uint32_t adjustedCount_ = 0;
  bool overflow_ = false;
};

}  // namespace velkor

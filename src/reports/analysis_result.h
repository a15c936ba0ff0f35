#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/bounds.h"
#include "core/explanation.h"
#include "core/name_table.h"
#include "core/reason.h"

namespace velkor::reports {

// The modules of an analysis by what became of them, named as the log names them.
struct AnalysisInputs {
  size_t read = 0;
  std::vector<std::string> missing;
  std::vector<std::string> notWhole;

  size_t Count() const { return read + missing.size() + notWhole.size(); }
};

// A warning or an error of the log.
struct AnalysisWarning {
  std::string code;
  std::string text;  // without the code
  std::string file;  // empty: none
  uint32_t line = 0;
};

struct AnalysisNote {
  std::string rule;
  std::string text;
  std::string file;  // empty: none
  uint32_t line = 0;
  std::optional<uint32_t> function;
};

// One kind of what keeps a function from a bound, and a function that it reaches and that has it.
struct AnalysedReason {
  ReasonKind kind{};
  uint32_t function = 0;
};

// A place where a function calls through a pointer. Texts as in AnalysedFunction.
struct AnalysedSite {
  uint32_t file = NameTable::kNone;
  uint32_t line = 0;  // from 1; 0: not told
  uint32_t column = 0;
};

// One function. What is a text is the number of a text of the result; kNone: none.
struct AnalysedFunction {
  static constexpr uint32_t kNone = NameTable::kNone;

  uint32_t name = kNone;
  uint32_t specName = kNone;
  uint32_t displayName = kNone;
  uint32_t statement = kNone;  // what names this function, and no other, in a specification file
  uint32_t file = kNone;
  uint32_t frameText = kNone;
  uint32_t totalText = kNone;
  uint32_t adjustmentText = kNone;    // as columns show it
  uint32_t adjustmentReport = kNone;  // as lines show it
  uint32_t line = 0;                  // of the file; 0: not known
  uint32_t flags = 0;                 // FN_...
  uint32_t frameSize = 0;
  uint32_t totalStackSize = 0;
  uint32_t librarySize = 0;
  uint32_t margin = kNoMargin;  // of the adjustment in force, like depth
  uint32_t depth = kNoDepth;
  int32_t chainCount = 1;
  uint32_t firstCall = 0;  // in the calls of the result: callees, then extra callees
  uint32_t calleeCount = 0;
  uint32_t extraCalleeCount = 0;
  uint32_t firstReason = 0;  // in the reasons of the result
  uint8_t reasonCount = 0;
  ReasonSet ownReasons;
  FunctionKind kind{};
  BoundState state{};
  FunctionSource source{};
  bool complete = false;  // bounded, and the total is not below the bound
  bool adjusted = false;
  uint64_t known = 0;  // bytes: the bound, unless the state is kUnbounded

  bool Is(uint32_t flag) const { return (flags & flag) != 0; }
  bool IsUnknown() const { return !Is(FN_DEFINED) && !Is(FN_LIBRARY); }
};

// The functions that need attention, by index, each list by name in the character order of the
// project.
struct FunctionsByName {
  std::vector<uint32_t> unknown;  // and not adjusted
  std::vector<uint32_t> recursive;
  std::vector<uint32_t> indirect;
  std::vector<uint32_t> adjusted;
  std::vector<uint32_t> library;  // and not adjusted
};

// A finished analysis as a value: all that the outputs write, and nothing of what computed it, so
// that it outlives the document, moves to another thread and stands beside another one. Not the
// analysis itself: it neither changes with it nor can be changed and computed anew.
//
// Texts are UTF-8. Functions are known by their indices, those of the table. Less than 200 bytes a
// function, besides names and calls; equal texts are kept once.
struct AnalysisResult {
  std::string project;
  std::string compilerName;
  std::optional<std::string> compilerVersion;  // none: no module was accepted
  AnalysisInputs inputs;
  uint32_t sizeLimit = kSizeLimit;
  std::vector<std::string> log;
  std::vector<AnalysisWarning> warnings;
  std::vector<AnalysisNote> notes;
  uint32_t unknownCount = 0;
  uint32_t adjustedCount = 0;
  bool overflow = false;  // the total of a top-level function is over the limit

  std::vector<AnalysedFunction> functions;
  std::vector<uint32_t> roots;  // ascending
  std::vector<RecursionGroup> groups;
  FunctionsByName lists;
  Explanations explanations;
  std::vector<uint32_t> calls;
  std::vector<AnalysedReason> reasons;
  std::unordered_map<uint32_t, std::vector<AnalysedSite>> indirectSites;  // by function
  NameTable texts;
  // Names that are too long for a line, and what a line shows of each.
  std::unordered_map<uint32_t, std::string> cutNames;
  std::string atLeast;  // before a number that can be larger: "≥", where the project has it

  std::string_view Text(uint32_t text) const {
    return text == AnalysedFunction::kNone ? std::string_view() : texts[text];
  }
  // Where the input has them.
  std::span<const AnalysedSite> Sites(const AnalysedFunction& function) const {
    const auto sites = indirectSites.find(static_cast<uint32_t>(&function - functions.data()));
    return sites == indirectSites.end() ? std::span<const AnalysedSite>() : sites->second;
  }
  std::span<const uint32_t> Callees(const AnalysedFunction& function) const {
    return AllCallees(function).first(function.calleeCount);
  }
  std::span<const uint32_t> ExtraCallees(const AnalysedFunction& function) const {
    return AllCallees(function).last(function.extraCalleeCount);
  }
  std::span<const uint32_t> AllCallees(const AnalysedFunction& function) const {
    return std::span(calls).subspan(function.firstCall,
                                    size_t{function.calleeCount} + function.extraCalleeCount);
  }
  // One of each kind that the function can reach, in the order of the kinds.
  std::span<const AnalysedReason> Reasons(const AnalysedFunction& function) const {
    return std::span(reasons).subspan(function.firstReason, function.reasonCount);
  }
};

}  // namespace velkor::reports

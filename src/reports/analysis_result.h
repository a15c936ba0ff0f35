#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/bounds.h"
#include "core/explanation.h"
#include "core/function_text.h"
#include "core/reason.h"
#include "core/reason_witnesses.h"
#include "reports/text_list.h"

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
  uint32_t column = 0;
  std::optional<uint32_t> function;
  bool incomplete = false;  // not everything was read
};

inline constexpr uint32_t kNoFile = 0xFFFFFFFF;

// A place where a function calls through a pointer.
struct AnalysedSite {
  uint32_t file = kNoFile;  // as in AnalysedFunction
  uint32_t line = 0;        // from 1; 0: not told
  uint32_t column = 0;
  uint64_t address = 0;  // in the linked program; 0: not told
};

// The numbers of one function. Those that few functions have, and its texts, are the result's to
// answer.
struct AnalysedFunction {
  uint64_t known = 0;       // bytes: the bound, unless the state is kUnbounded
  uint32_t file = kNoFile;  // in the files of the result
  uint32_t line = 0;        // of the file; 0: not known
  uint32_t flags = 0;       // FN_...
  uint32_t frameSize = 0;
  uint32_t totalStackSize = 0;
  int32_t chainCount = 1;
  uint32_t firstCall = 0;  // in the calls of the result: callees, then extra callees
  uint32_t extraCalleeCount = 0;
  ReasonSet ownReasons;
  FunctionKind kind{};
  BoundState state{};
  FunctionSource source{};
  bool complete = false;  // bounded, and the total is not below the bound
  bool adjusted = false;

  bool Is(uint32_t flag) const { return (flags & flag) != 0; }
  bool IsUnknown() const { return !Is(FN_DEFINED) && !Is(FN_LIBRARY); }
  // Top-level, because nothing is seen to call it but what calls through pointers.
  bool IsReachedThroughPointers() const {
    return Is(FN_ROOT) && Is(FN_ADDRESS_TAKEN) && !Is(FN_ENTRY);
  }
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

// What is written of functions, by index. Of names and statements only what does not follow from
// the rest.
struct AnalysedTexts {
  TextList names;           // symbols
  TextsOfFew shownNames;    // for people, where the C name does not follow from the symbol
  TextsOfFew specNames;     // where they are not the C name alone
  TextsOfFew statements;    // where they are not the spec name; empty: nothing names the function
  TextsOfFew cutSpecNames;  // what a line shows of those that are too long for it
  TextsOfFew cutDisplayNames;
  TextsOfFew symbolsToTell;  // where several functions have one spec name

  // Those of functions that come later.
  void Append(const AnalysedTexts& texts);
  void Clear();
};

// A finished analysis as a value: all that the outputs write, and nothing of what computed it, so
// that it outlives the document, moves to another thread and stands beside another one. Not the
// analysis itself: it neither changes with it nor can be changed and computed anew.
//
// Texts are UTF-8. Functions are known by their indices, those of the table. Less than 100 bytes a
// function, besides names and calls.
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
  std::string atLeast;    // before a number that can be larger: "≥", where the project has it

  std::vector<AnalysedFunction> functions;
  std::vector<uint32_t> roots;  // ascending
  std::vector<RecursionGroup> groups;
  FunctionsByName lists;
  Explanations explanations;
  ReasonWitnesses witnesses;
  std::vector<uint32_t> calls;
  std::vector<std::string> files;
  AnalysedTexts texts;
  ValuesOfFew<StkAppliedAdjustment> adjustments;
  ValuesOfFew<uint32_t> librarySizes;
  ValuesOfFew<std::vector<AnalysedSite>> indirectSites;
  ValuesOfFew<ToldFrames> frames;  // where they differ

  // The symbol.
  std::string_view Name(uint32_t function) const { return texts.names[function]; }
  // As FunctionSpecName and FunctionDisplayName say.
  std::string_view SpecName(uint32_t function) const;
  std::string DisplayName(uint32_t function) const;
  // The same on one line, no longer than a line bears, and told apart from others.
  std::string ShownSpecName(uint32_t function) const;
  std::string ShownDisplayName(uint32_t function) const;
  // " (_ZN1BC2Ev)" where others have the same name; else empty.
  std::string Distinction(uint32_t function) const;
  // What names this function, and no other, in a specification file; none where nothing does.
  std::optional<std::string_view> Statement(uint32_t function) const;
  // By number; empty: none.
  std::string_view File(uint32_t file) const;

  std::string FrameText(uint32_t function) const { return FrameSizeText(Sizes(function)); }
  std::string TotalText(uint32_t function) const { return TotalSizeText(Sizes(function)); }
  std::string AdjustmentText(uint32_t function, AdjustmentStyle style) const {
    return AdjustmentInfoText(Sizes(function), style);
  }
  // In force; without margin and depth where there is none.
  StkAppliedAdjustment Adjustment(uint32_t function) const;
  uint32_t LibrarySize(uint32_t function) const;

  std::span<const uint32_t> Callees(uint32_t function) const;
  std::span<const uint32_t> ExtraCallees(uint32_t function) const;
  std::span<const uint32_t> AllCallees(uint32_t function) const;
  // Where the input has them.
  std::span<const AnalysedSite> Sites(uint32_t function) const;
  // One of each kind that the function can reach, in the order of the kinds.
  std::vector<ReasonWitness> Reasons(uint32_t function) const { return witnesses.Of(function); }

 private:
  ShownSizes Sizes(uint32_t function) const;
};

}  // namespace velkor::reports

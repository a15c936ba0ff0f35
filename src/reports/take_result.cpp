#include "reports/take_result.h"

#include <array>
#include <optional>
#include <utility>

#include "core/adjustments.h"
#include "core/call_range.h"
#include "core/function_sorting.h"
#include "core/function_text.h"
#include "core/reason_witnesses.h"
#include "files/spec_names.h"

namespace velkor::reports {
namespace {

constexpr size_t kLongestName = 500;

std::vector<std::string> Utf8(const std::vector<std::string>& texts, const CodePage& codePage) {
  std::vector<std::string> converted;
  converted.reserve(texts.size());
  for (const std::string& text : texts) {
    converted.push_back(codePage.ToUtf8(text));
  }
  return converted;
}

void TakeMessages(const std::vector<StkMessage>& log, const CodePage& codePage,
                  AnalysisResult& result) {
  for (const StkMessage& message : log) {
    result.log.push_back(codePage.ToUtf8(message.text));
    if (message.IsWarning()) {
      const std::string lead = message.Code() + " ";  // as the text of each begins
      result.warnings.push_back({.code = message.Code(),
                                 .text = result.log.back().substr(lead.size()),
                                 .file = codePage.ToUtf8(message.file),
                                 .line = message.line});
    }
  }
}

void TakeNotes(const std::vector<StkNote>& notes, const CodePage& codePage,
               AnalysisResult& result) {
  for (const StkNote& note : notes) {
    result.notes.push_back({.rule = std::string(note.rule),
                            .text = codePage.ToUtf8(note.text),
                            .file = codePage.ToUtf8(note.file),
                            .line = note.line,
                            .function = note.function});
  }
}

std::vector<uint32_t> Indices(const StkFunctionList& functions) {
  std::vector<uint32_t> indices;
  indices.reserve(functions.size());
  for (const StkFunction* function : functions) {
    indices.push_back(function->index);
  }
  return indices;
}

class FunctionTaking {
 public:
  FunctionTaking(const ComputedAnalysis& analysis, AnalysisResult& result)
      : table_(analysis.functions),
        bounds_(analysis.bounds),
        codePage_(table_.GetCodePage()),
        witnesses_(table_, bounds_),
        specNames_(table_),
        result_(result) {}

  void Run() {
    result_.functions.reserve(table_.Count());
    for (const StkFunction* function : table_.Functions()) {
      AnalysedFunction& taken = result_.functions.emplace_back();
      TakeTexts(*function, taken);
      TakeValues(*function, taken);
      TakeBound(*function, taken);
      TakeCalls(*function, taken);
      TakeReasons(*function, taken);
      TakeSites(*function);
    }
    TakeLists();
  }

 private:
  struct ListRule {
    std::vector<uint32_t> FunctionsByName::*list;
    bool (*holds)(const StkFunction&);
  };

  uint32_t Text(std::string_view bytes) { return result_.texts.Intern(codePage_.ToUtf8(bytes)); }

  uint32_t Name(std::string_view bytes) {
    const uint32_t name = Text(bytes);
    const size_t kept = codePage_.CutLength(bytes, kLongestName);
    if (kept < bytes.size()) {
      result_.cutNames.emplace(name, codePage_.ToUtf8(bytes.substr(0, kept)) + "...");
    }
    return name;
  }

  uint32_t File(const StkFileEntry* file) {
    if (file != lastFile_) {  // those of one file mostly follow each other
      lastFile_ = file;
      lastFileText_ = file != nullptr ? Text(file->name) : AnalysedFunction::kNone;
    }
    return lastFileText_;
  }

  void TakeTexts(const StkFunction& function, AnalysedFunction& taken) {
    taken.name = Text(function.name);
    taken.specName = Name(FunctionSpecName(function, codePage_));
    taken.displayName = function.Is(FN_RECURSIVE | FN_INDIRECT_CALL)
                            ? Name(FunctionDisplayName(function, codePage_))
                            : taken.specName;
    const std::optional<std::string> statement = specNames_.Statement(function);
    taken.statement = statement ? Text(*statement) : AnalysedFunction::kNone;
    taken.file = File(function.place.file != nullptr ? function.place.file : function.file);
    taken.frameText = result_.texts.Intern(FrameSizeText(function));
    taken.totalText = result_.texts.Intern(TotalSizeText(function));
    taken.adjustmentText =
        result_.texts.Intern(AdjustmentInfoText(function, AdjustmentStyle::kList));
    taken.adjustmentReport =
        result_.texts.Intern(AdjustmentInfoText(function, AdjustmentStyle::kReport));
  }

  static void TakeValues(const StkFunction& function, AnalysedFunction& taken) {
    taken.flags = function.flags;
    taken.kind = function.Kind();
    taken.source = function.source;
    taken.line = function.place.line;
    taken.frameSize = function.frameSize;
    taken.totalStackSize = function.totalStackSize;
    taken.librarySize = function.librarySize;
    taken.chainCount = function.chainCount;
    taken.adjusted = function.adjustment != nullptr;
    if (taken.adjusted) {
      taken.margin = function.adjustment->margin;
      taken.depth = function.adjustment->depth;
    }
  }

  void TakeBound(const StkFunction& function, AnalysedFunction& taken) const {
    taken.state = bounds_.State(function);
    taken.known = bounds_.Known(function);
    taken.complete = bounds_.IsComplete(function);
    taken.ownReasons = bounds_.OwnReasons(function);
  }

  void TakeCalls(const StkFunction& function, AnalysedFunction& taken) {
    taken.firstCall = static_cast<uint32_t>(result_.calls.size());
    taken.calleeCount = static_cast<uint32_t>(function.callees.size());
    taken.extraCalleeCount = static_cast<uint32_t>(function.extraCallees.size());
    for (const StkFunction* callee : AllCallees(function)) {
      result_.calls.push_back(table_.IndexOf(*callee));
    }
  }

  void TakeSites(const StkFunction& function) {
    if (function.indirectSites != nullptr) {
      std::vector<AnalysedSite>& sites = result_.indirectSites[function.index];
      for (const SourceLine& site : *function.indirectSites) {
        sites.push_back({File(site.file), site.line, site.column});
      }
    }
  }

  void TakeReasons(const StkFunction& function, AnalysedFunction& taken) {
    taken.firstReason = static_cast<uint32_t>(result_.reasons.size());
    for (const ReasonWitnesses::Reason& reason : witnesses_.Of(function)) {
      result_.reasons.push_back({reason.kind, reason.function->index});
      ++taken.reasonCount;
    }
  }

  // One pass: reading the records of a large program takes longer than asking of each all there is.
  void TakeLists() {
    constexpr std::array<ListRule, 5> kRules = {{
        {&FunctionsByName::unknown,
         [](const StkFunction& function) { return function.IsUnknown() && !IsAdjusted(function); }},
        {&FunctionsByName::recursive,
         [](const StkFunction& function) { return function.Is(FN_RECURSIVE); }},
        {&FunctionsByName::indirect,
         [](const StkFunction& function) { return function.Is(FN_INDIRECT_CALL); }},
        {&FunctionsByName::adjusted, IsAdjusted},
        {&FunctionsByName::library, IsSystemLibrary},
    }};
    std::array<StkFunctionList, kRules.size()> lists;
    for (StkFunction* function : table_.Functions()) {
      for (size_t i = 0; i < kRules.size(); ++i) {
        if (kRules[i].holds(*function)) {
          lists[i].push_back(function);
        }
      }
    }
    for (size_t i = 0; i < kRules.size(); ++i) {
      SortByName(lists[i], codePage_);
      result_.lists.*kRules[i].list = Indices(lists[i]);
    }
  }

  const StkFunctionTable& table_;
  const StkBounds& bounds_;
  const CodePage& codePage_;
  const ReasonWitnesses witnesses_;
  SpecNames specNames_;
  const StkFileEntry* lastFile_ = nullptr;
  uint32_t lastFileText_ = AnalysedFunction::kNone;
  AnalysisResult& result_;
};

}  // namespace

AnalysisResult TakeResult(const ComputedAnalysis& analysis) {
  const StkFunctionTable& table = analysis.functions;
  const CodePage& codePage = table.GetCodePage();
  AnalysisResult result;
  result.project = codePage.ToUtf8(analysis.project);
  result.compilerName = codePage.ToUtf8(analysis.compilerName);
  if (analysis.compilerVersion) {
    result.compilerVersion = codePage.ToUtf8(*analysis.compilerVersion);
  }
  result.inputs = {.read = analysis.inputs.read,
                   .missing = Utf8(analysis.inputs.missing, codePage),
                   .notWhole = Utf8(analysis.inputs.notWhole, codePage)};
  result.sizeLimit = table.SizeLimit();
  TakeMessages(analysis.log, codePage, result);
  TakeNotes(analysis.notes, codePage, result);
  result.unknownCount = table.UnknownCount();
  result.adjustedCount = table.AdjustedCount();
  result.overflow = table.Overflow();
  result.roots = Indices(analysis.roots);
  result.groups = analysis.bounds.Groups();
  result.explanations = Explanations(table, analysis.bounds);
  result.atLeast = codePage.FromUtf8("≥") ? "≥" : ">=";
  FunctionTaking(analysis, result).Run();
  return result;
}

}  // namespace velkor::reports

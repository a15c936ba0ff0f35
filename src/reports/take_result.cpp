#include "reports/take_result.h"

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>

#include "core/adjustments.h"
#include "core/call_range.h"
#include "core/function_sorting.h"
#include "core/function_text.h"
#include "files/spec_names.h"

namespace velkor::reports {
namespace {

constexpr size_t kLongestName = 500;
constexpr uint32_t kFunctionsBetweenCheckpoints = 4096;

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
                            .column = note.column,
                            .function = note.function,
                            .incomplete = note.incomplete});
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
        specNames_(table_),
        checkpoint_(analysis.checkpoint),
        result_(result) {}

  void Run() {
    TakeLists();  // before the rest has its room: sorting takes room for a while
    Checkpoint();
    Reserve();
    for (const StkFunction* function : table_.Functions()) {
      if (function->index % kFunctionsBetweenCheckpoints == 0) {
        Checkpoint();
      }
      TakeTexts(*function);
      TakeValues(*function);
      TakeFewValues(*function);
      TakeCalls(*function);
    }
  }

 private:
  struct ListRule {
    std::vector<uint32_t> FunctionsByName::*list;
    bool (*holds)(const StkFunction&);
  };

  void Checkpoint() const {
    if (checkpoint_) {
      checkpoint_();
    }
  }

  // Vectors that grow leave holes as large as themselves.
  void Reserve() {
    size_t calls = 0;
    size_t bytes = 0;
    for (const StkFunction* function : table_.Functions()) {
      calls += AllCallees(*function).size();
      bytes += function->name.size();
      if (table_.SharesShownName(*function)) {
        ++countOfName_[FunctionSpecName(*function, codePage_)];
      }
    }
    result_.functions.reserve(table_.Count());
    result_.calls.reserve(calls);
    result_.texts.names.Reserve(table_.Count(), bytes);
  }

  void TakeTexts(const StkFunction& function) {
    AnalysedTexts& texts = result_.texts;
    texts.names.Add(codePage_.ToUtf8(function.name));
    if (!function.ShownName().empty()) {
      texts.shownNames.Add(function.index, codePage_.ToUtf8(function.ShownName()));
    }
    const std::string specName = FunctionSpecName(function, codePage_);
    if (specName != CName(function)) {
      texts.specNames.Add(function.index, codePage_.ToUtf8(specName));
    }
    const std::string statement = specNames_.Statement(function).value_or("");
    if (statement != specName) {
      texts.statements.Add(function.index, codePage_.ToUtf8(statement));
    }
    if (table_.SharesShownName(function) && countOfName_.at(specName) > 1) {
      texts.symbolsToTell.Add(function.index, codePage_.ToUtf8(function.name));
    }
    TakeCutName(function, specName, texts.cutSpecNames);
    TakeCutName(function, specName + DisplayMarks(function.flags), texts.cutDisplayNames);
  }

  void TakeCutName(const StkFunction& function, std::string_view name, TextsOfFew& cutNames) {
    if (name.size() > kLongestName) {
      const size_t kept = codePage_.CutLength(name, kLongestName);
      cutNames.Add(function.index, codePage_.ToUtf8(name.substr(0, kept)) + "...");
    }
  }

  uint32_t File(const StkFileEntry* file) {
    if (file == nullptr) {
      return kNoFile;
    }
    const auto next = static_cast<uint32_t>(result_.files.size());
    const auto [known, isNew] = files_.try_emplace(file, next);
    if (isNew) {
      result_.files.push_back(codePage_.ToUtf8(file->name));
    }
    return known->second;
  }

  void TakeValues(const StkFunction& function) {
    const SourceLine place = function.Place();
    result_.functions.push_back(
        {.known = bounds_.Known(function),
         .file = File(place.file != nullptr ? place.file : function.file),
         .line = place.line,
         .flags = function.flags,
         .frameSize = function.frameSize,
         .totalStackSize = function.totalStackSize,
         .chainCount = function.chainCount,
         .firstCall = static_cast<uint32_t>(result_.calls.size()),
         .extraCalleeCount = static_cast<uint32_t>(function.extraCallees.size()),
         .ownReasons = bounds_.OwnReasons(function),
         .kind = function.Kind(),
         .state = bounds_.State(function),
         .source = function.source,
         .complete = bounds_.IsComplete(function),
         .adjusted = function.adjustment != nullptr});
  }

  void TakeFewValues(const StkFunction& function) {
    if (function.adjustment != nullptr) {
      result_.adjustments.Add(function.index, *function.adjustment);
    }
    if (function.librarySize != 0) {
      result_.librarySizes.Add(function.index, function.librarySize);
    }
    if (function.told != nullptr && function.told->frames.Differ()) {
      result_.frames.Add(function.index, function.told->frames);
    }
    if (function.told != nullptr && !function.told->indirectSites.empty()) {
      std::vector<AnalysedSite> sites;
      for (const IndirectSite& site : function.told->indirectSites) {
        sites.push_back({File(site.file), site.line, site.column, site.address});
      }
      result_.indirectSites.Add(function.index, std::move(sites));
    }
  }

  void TakeCalls(const StkFunction& function) {
    for (const StkFunction* callee : AllCallees(function)) {
      result_.calls.push_back(table_.IndexOf(*callee));
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
  SpecNames specNames_;
  const std::function<void()>& checkpoint_;
  std::unordered_map<std::string, uint32_t> countOfName_;    // spec names that may not be the only
  std::unordered_map<const StkFileEntry*, uint32_t> files_;  // to their numbers in the result
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
  result.witnesses = ReasonWitnesses(table, analysis.bounds);
  result.atLeast = codePage.FromUtf8("≥") ? "≥" : ">=";
  FunctionTaking(analysis, result).Run();
  return result;
}

}  // namespace velkor::reports

#include "reports/take_result.h"

#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <utility>

#include "core/adjustments.h"
#include "core/call_range.h"
#include "core/function_sorting.h"
#include "core/function_text.h"
#include "platform/ordered_work.h"
#include "reports/function_texts.h"

namespace velkor::reports {
namespace {

constexpr size_t kPartSize = 4096;  // functions

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
        checkpoint_(analysis.checkpoint),
        result_(result) {}

  // What does not depend on the rest, and the texts of a few functions each, by several threads.
  void Run(size_t threads) {
    const std::array<std::function<void()>, 3> wholes = {
        [this] { TakeLists(); }, [this] { result_.explanations = Explanations(table_, bounds_); },
        [this] { result_.witnesses = ReasonWitnesses(table_, bounds_); }};
    Checkpoint();
    Reserve();
    OrderedWork work{.parts = wholes.size() + (table_.Count() + kPartSize - 1) / kPartSize,
                     .threads = threads,
                     .make = {},
                     .take = {}};
    std::vector<std::unique_ptr<FunctionTexts>> texts(work.Slots());
    for (std::unique_ptr<FunctionTexts>& some : texts) {
      some = std::make_unique<FunctionTexts>(table_, countOfName_);
    }
    work.make = [&](size_t part, size_t slot) {
      if (part < wholes.size()) {
        wholes[part]();
      } else {
        texts[slot]->Make(FunctionsOf(part - wholes.size()));
      }
    };
    work.take = [&](size_t part, size_t slot) {
      Checkpoint();
      if (part >= wholes.size()) {
        result_.texts.Append(texts[slot]->Texts());
        TakeFunctions(FunctionsOf(part - wholes.size()));
      }
    };
    work.Run();
  }

 private:
  struct ListRule {
    std::vector<uint32_t> FunctionsByName::*list;
    bool (*holds)(const StkFunction&);
  };

  std::span<StkFunction* const> FunctionsOf(size_t part) const {
    const std::span<StkFunction* const> all = table_.Functions();
    const size_t first = part * kPartSize;
    return all.subspan(first, std::min(kPartSize, all.size() - first));
  }

  void TakeFunctions(std::span<StkFunction* const> functions) {
    for (const StkFunction* function : functions) {
      TakeValues(*function);
      TakeFewValues(*function);
      TakeCalls(*function);
    }
  }

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
    constexpr std::array<ListRule, 5> kListRules = {{
        {&FunctionsByName::unknown,
         [](const StkFunction& function) { return function.IsUnknown() && !IsAdjusted(function); }},
        {&FunctionsByName::recursive,
         [](const StkFunction& function) { return function.Is(FN_RECURSIVE); }},
        {&FunctionsByName::indirect,
         [](const StkFunction& function) { return function.Is(FN_INDIRECT_CALL); }},
        {&FunctionsByName::adjusted, IsAdjusted},
        {&FunctionsByName::library, IsSystemLibrary},
    }};
    std::array<StkFunctionList, kListRules.size()> lists;
    for (StkFunction* function : table_.Functions()) {
      for (size_t i = 0; i < kListRules.size(); ++i) {
        if (kListRules[i].holds(*function)) {
          lists[i].push_back(function);
        }
      }
    }
    for (size_t i = 0; i < kListRules.size(); ++i) {
      SortByName(lists[i], codePage_);
      result_.lists.*kListRules[i].list = Indices(lists[i]);
    }
  }

  const StkFunctionTable& table_;
  const StkBounds& bounds_;
  const CodePage& codePage_;
  const std::function<void()>& checkpoint_;
  SpecNameCounts countOfName_;
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
  result.atLeast = codePage.FromUtf8("≥") ? "≥" : ">=";
  FunctionTaking(analysis, result).Run(analysis.threads);
  return result;
}

}  // namespace velkor::reports

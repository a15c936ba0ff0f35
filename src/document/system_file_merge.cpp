#include "document/system_file_merge.h"

#include <optional>
#include <unordered_map>
#include <utility>

#include "core/adjustment_information.h"
#include "core/function_sorting.h"
#include "core/function_text.h"
#include "core/recompute.h"
#include "files/byte_source.h"
#include "files/spec_line_parser.h"
#include "files/spec_names.h"
#include "files/text_reader.h"
#include "platform/limits.h"

namespace velkor {

namespace {

// A line that states only callees which the function calls directly adjusts nothing.
bool Adjusts(const StkAdjustment& stated) {
  return stated.margin != kNoMargin || stated.depth != kNoDepth || !stated.callees->empty();
}

// What the lines of the file state, by function.
class Statements {
 public:
  Statements(const StkFunctionTable& functions, const std::string& path,
             const StkMessages& messages)
      : functions_(functions), path_(path), messages_(messages) {}

  // False at an erroneous line.
  bool Read(std::string_view text) {
    StkMemorySource source(text);
    StkTextReader reader(source);
    TextLine line;
    for (uint32_t number = 1; reader.ReadLine(line, kTextBufferSize); ++number) {
      if (number > kMaxTextLines || line.length > kMaxTextLength || !Take(number, line.text)) {
        return false;
      }
    }
    return true;
  }
  const StkAdjustment* Of(const StkFunction& function) const {
    const auto found = byFunction_.find(&function);
    return found == byFunction_.end() ? nullptr : &found->second;
  }
  // Lines that name a function which is not there.
  std::vector<StaleStatement>& Stale() { return stale_; }

 private:
  bool Take(uint32_t number, std::string_view text) {
    SpecLineParser line(
        {functions_, names_, SpecificationKind::kSystemFile, path_, number, messages_}, text);
    if (!line.Parse()) {
      const MessageKey error = line.Error().key;
      if (error != MessageKey::kW9410 && error != MessageKey::kW9418) {
        return false;
      }
      stale_.push_back({std::string(text), number, std::string(line.Missing()), line.Function()});
      return true;
    }
    if (line.Function() == nullptr || (!line.AttributeSeen() && line.DirectCallees().empty())) {
      return true;
    }
    StkAdjustment adjustment;
    adjustment.margin = line.Margin();
    adjustment.depth = line.Depth();
    adjustment.SetCallees(line.Callees(), functions_.GetCodePage());
    adjustment.directCallees = line.DirectCallees();
    return Join(byFunction_[line.Function()], std::move(adjustment));
  }

  // False for a second line that adjusts the function.
  bool Join(StkAdjustment& known, StkAdjustment line) {
    StkFunctionList direct = std::move(known.directCallees);
    for (StkFunction* callee : line.directCallees) {
      InsertByName(direct, *callee, functions_.GetCodePage());
    }
    const bool first = !known.callees || !Adjusts(known);
    const bool taken = first || !Adjusts(line);
    if (first) {
      known = std::move(line);
    }
    known.directCallees = std::move(direct);
    return taken;
  }

  const StkFunctionTable& functions_;
  const std::string& path_;
  const StkMessages& messages_;
  SpecNames names_{functions_};
  std::unordered_map<const StkFunction*, StkAdjustment> byFunction_;  // asked, never walked
  std::vector<StaleStatement> stale_;
};

class Merging {
 public:
  Merging(StkFunctionTable& functions, StkRootList& roots, StkReporter& reporter)
      : functions_(functions), roots_(roots), reporter_(reporter) {}

  void Follow(StkFunction& function, const StkAdjustment* stated) {
    if (stated == nullptr) {
      Cancel(function);
    } else if (!IsInForce(*stated, function)) {
      Adjust(function, *stated);
    }
  }
  // What is in force of the function, the input brings.
  void Keep(const StkFunction& function, const StkAdjustment* stated) {
    std::optional<StkAppliedAdjustment> adjustment;
    if (stated != nullptr && Adjusts(*stated)) {
      adjustment = {stated->margin, stated->depth};
    }
    functions_.KeepUnderBrought(function, adjustment,
                                stated != nullptr ? *stated->callees : StkFunctionList(),
                                stated != nullptr ? stated->directCallees : StkFunctionList());
  }
  // False when a depth had to be dropped: its function is not recursive.
  bool Compute() {
    if (changed_) {
      Recompute(functions_, roots_, calleesChanged_, nullptr, nullptr, reporter_);
    }
    bool kept = true;
    for (StkFunction* function : withDepth_) {
      if (!function->Is(FN_RECURSIVE)) {
        functions_.PutInForce(*function, {function->adjustment->margin, kNoDepth});
        kept = false;
      }
    }
    if (!kept) {
      Recompute(functions_, roots_, false, nullptr, nullptr, reporter_);
    }
    return kept;
  }
  bool Changed() const { return changed_; }
  bool CalleesChanged() const { return calleesChanged_; }

 private:
  bool IsInForce(const StkAdjustment& stated, const StkFunction& function) const {
    const StkAppliedAdjustment now =
        function.adjustment ? *function.adjustment : StkAppliedAdjustment();
    return now.margin == stated.margin && now.depth == stated.depth &&
           (function.adjustment != nullptr) == Adjusts(stated) &&
           function.extraCallees == *stated.callees &&
           functions_.DirectCallees(function) == stated.directCallees;
  }
  void Cancel(StkFunction& function) {
    if (!function.HasStatement()) {
      return;
    }
    functions_.TakeAdjustmentAway(function);
    functions_.SetDirectCallees(function, {});
    SetCallees(function, {});
    Log(MessageKey::kSpecificationCanceled, function, {});
  }
  void Adjust(StkFunction& function, const StkAdjustment& stated) {
    const std::string text =
        AdjustmentInformation(stated, function, InformationMode::kCompare, reporter_.Messages())
            .text;
    if (Adjusts(stated)) {
      functions_.PutInForce(function, {stated.margin, stated.depth});
    } else {
      functions_.TakeAdjustmentAway(function);
    }
    functions_.SetDirectCallees(function, stated.directCallees);
    if (stated.depth != kNoDepth) {
      withDepth_.push_back(&function);
    }
    SetCallees(function, *stated.callees);
    Log(MessageKey::kSpecificationAdjusted, function, text);
  }
  void SetCallees(StkFunction& function, const StkFunctionList& callees) {
    calleesChanged_ = calleesChanged_ || function.extraCallees != callees;
    function.extraCallees = callees;
    changed_ = true;
  }
  void Log(MessageKey key, const StkFunction& function, const std::string& text) {
    const std::string name = FunctionSpecName(function, functions_.GetCodePage());
    if (key == MessageKey::kSpecificationCanceled) {
      reporter_.LogMessage(key, {name});
    } else {
      reporter_.LogMessage(key, {name, text});
    }
  }

  StkFunctionTable& functions_;
  StkRootList& roots_;
  StkReporter& reporter_;
  StkFunctionList withDepth_;
  bool changed_ = false;
  bool calleesChanged_ = false;
};

}  // namespace

SystemFileMerge MergeSystemFile(std::string_view text, const std::string& path,
                                const std::unordered_set<const StkFunction*>& own,
                                StkFunctionTable& functions, StkRootList& roots,
                                StkReporter& reporter) {
  Statements stated(functions, path, reporter.Messages());
  if (!stated.Read(text)) {
    return {};
  }
  Merging merging(functions, roots, reporter);
  for (StkFunction* function : functions.Functions()) {
    if (functions.Brought(*function) != nullptr) {
      merging.Keep(*function, stated.Of(*function));
    } else if (!own.contains(function)) {
      merging.Follow(*function, stated.Of(*function));
    }
  }
  std::erase_if(stated.Stale(), [&own](const StaleStatement& stale) {
    return stale.function != nullptr && own.contains(stale.function);
  });
  return {.read = true,
          .whole = merging.Compute(),
          .changed = merging.Changed(),
          .calleesChanged = merging.CalleesChanged(),
          .stale = std::move(stated.Stale())};
}

}  // namespace velkor

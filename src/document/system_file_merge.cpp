#include "document/system_file_merge.h"

#include <algorithm>
#include <optional>
#include <set>
#include <utility>

#include "core/adjustment_information.h"
#include "core/function_text.h"
#include "core/recompute.h"
#include "document/system_file_statements.h"

namespace velkor {

namespace {

// Puts what the file states in force, function by function; what changes is logged.
class Merging {
 public:
  Merging(StkFunctionTable& functions, StkRootList& roots, StkReporter& reporter)
      : functions_(functions), roots_(roots), reporter_(reporter) {}

  // stated: none where the file states nothing of the function.
  void Follow(StkFunction& function, const StkAdjustment* stated, bool asClone = false) {
    if (stated == nullptr) {
      Cancel(function);
      return;
    }
    const bool changes = !IsInForce(*stated, function, asClone);
    if (changes) {
      Adjust(function, *stated);
    }
    if (stated->depth != kNoDepth) {
      withDepth_.push_back({&function, stated->line, changes});
    }
  }
  // False when a depth had to be dropped: no function that its line holds for is recursive.
  bool Compute() {
    if (changed_) {
      Recompute(functions_, roots_, calleesChanged_, nullptr, nullptr, reporter_);
    }
    std::set<uint32_t> kept;  // lines
    std::set<uint32_t> dropped;
    for (const auto& [function, line, isNew] : withDepth_) {
      const StkAppliedAdjustment* now = function->adjustment.get();
      const bool hasDepth = now != nullptr && now->depth != kNoDepth;
      if (function->Is(FN_RECURSIVE) || (hasDepth && !isNew)) {
        kept.insert(line);
        continue;
      }
      dropped.insert(line);
      if (hasDepth) {
        functions_.PutInForce(*function, {now->margin, kNoDepth});
      }
    }
    if (!dropped.empty()) {
      Recompute(functions_, roots_, false, nullptr, nullptr, reporter_);
    }
    return std::ranges::includes(kept, dropped);
  }
  bool Changed() const { return changed_; }
  bool CalleesChanged() const { return calleesChanged_; }

 private:
  struct WithDepth {
    StkFunction* function;
    uint32_t line;  // that states it
    bool isNew;
  };

  // A clone has the depth of its base only while it is recursive.
  bool IsInForce(const StkAdjustment& stated, const StkFunction& function, bool asClone) const {
    const StkAppliedAdjustment now =
        function.adjustment ? *function.adjustment : StkAppliedAdjustment();
    const bool noDepth = asClone && now.depth == kNoDepth && !function.Is(FN_RECURSIVE);
    return now.margin == stated.margin && (now.depth == stated.depth || noDepth) &&
           (function.adjustment != nullptr) == stated.Adjusts() &&
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
    if (stated.Adjusts()) {
      functions_.PutInForce(function, {stated.margin, stated.depth});
    } else {
      functions_.TakeAdjustmentAway(function);
    }
    functions_.SetDirectCallees(function, stated.directCallees);
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
  std::vector<WithDepth> withDepth_;
  bool changed_ = false;
  bool calleesChanged_ = false;
};

// What is to be in force of a clone, or kept, and by which line.
struct StatedOfClone {
  std::optional<StkAdjustment> stated;
  CloneStatement origin;

  const StkAdjustment* Statement() const { return stated ? &*stated : nullptr; }
};

class Merge {
 public:
  Merge(const SystemFileStatements& file, const std::unordered_set<const StkFunction*>& own,
        StkFunctionTable& functions, Merging& merging)
      : file_(file), own_(own), functions_(functions), merging_(merging) {}

  void Take(StkFunction& function) {
    if (functions_.Brought(function) != nullptr) {
      Keep(function);
    } else if (own_.contains(&function)) {
      KeepOwn(function);
    } else if (function.Is(FN_CLONE)) {
      StatedOfClone stated = OfClone(function);
      merging_.Follow(function, stated.Statement(), !stated.origin.isOwn);
      functions_.Clones().SetStatement(function, std::move(stated.origin));
    } else {
      merging_.Follow(function, file_.Of(function));
    }
  }

 private:
  // What is in force of the function, the input brings.
  void Keep(const StkFunction& function) {
    if (function.Is(FN_CLONE)) {
      StatedOfClone stated = OfClone(function);
      functions_.KeepUnderBrought(function, stated.stated.value_or(StkAdjustment()),
                                  std::move(stated.origin));
    } else {
      const StkAdjustment* stated = file_.Of(function);
      functions_.KeepUnderBrought(function, stated != nullptr ? *stated : StkAdjustment(), {});
    }
  }

  // Of a clone from which everything was taken away here, no line of the file holds any more.
  void KeepOwn(const StkFunction& function) {
    const StkFunction* base = functions_.Clones().BaseOf(function);
    const CloneStatement& origin = functions_.Clones().Statement(function);
    if (function.Is(FN_CLONE) && !origin.isOwn && origin.baseLine.empty() && !own_.contains(base)) {
      functions_.Clones().SetStatement(function, {.isOwn = true, .baseLine = {}});
    }
  }

  StatedOfClone OfClone(const StkFunction& clone) const {
    if (file_.IsNamed(clone)) {
      const StkAdjustment* stated = file_.Of(clone);
      return {stated != nullptr ? std::optional(*stated) : std::nullopt,
              {.isOwn = true, .baseLine = {}}};
    }
    const StkFunction* base = functions_.Clones().BaseOf(clone);
    if (base != nullptr && own_.contains(base)) {
      return {OfOwnBase(clone, *base), {}};
    }
    const BaseLines::Line* line = file_.LineFor(clone);
    if (line == nullptr) {
      return {};
    }
    return {line->For(clone, functions_.GetCodePage()), line->Origin()};
  }

  std::optional<StkAdjustment> OfOwnBase(const StkFunction& clone, const StkFunction& base) const {
    const KeptStatement kept = functions_.Kept(base);
    if (kept.None()) {
      return std::nullopt;
    }
    StkAdjustment stated;
    if (kept.adjustment != nullptr) {
      stated.margin = kept.adjustment->margin;
      stated.depth = kept.adjustment->depth;
    }
    stated.callees = kept.callees;
    stated.directCallees = kept.directCallees;
    stated = AdjustmentFor(clone, stated, functions_.GetCodePage());
    stated.depth = clone.Is(FN_RECURSIVE) ? stated.depth : kNoDepth;
    return stated;
  }

  const SystemFileStatements& file_;
  const std::unordered_set<const StkFunction*>& own_;
  StkFunctionTable& functions_;
  Merging& merging_;
};

}  // namespace

SystemFileMerge MergeSystemFile(std::string_view text, const std::string& path,
                                const std::unordered_set<const StkFunction*>& own,
                                StkFunctionTable& functions, StkRootList& roots,
                                StkReporter& reporter) {
  SystemFileStatements stated(functions, path, reporter.Messages());
  if (!stated.Read(text)) {
    return {};
  }
  Merging merging(functions, roots, reporter);
  Merge merge(stated, own, functions, merging);
  for (StkFunction* function : functions.Functions()) {
    merge.Take(*function);
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

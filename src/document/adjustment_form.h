#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "core/adjustments.h"
#include "messages/reporter.h"

namespace velkor {

// What a user states about one function: a margin and a recursion depth as texts, and the callees
// of its indirect calls. Every face that takes an adjustment from its user works with this form,
// so that all accept, refuse and build the same. It starts from what is in force and changes
// nothing in the analysis, which must not change meanwhile either. User-interface thread.
class AdjustmentForm {
 public:
  static constexpr size_t kMaxCallees = 1024;

  enum class Field { kMargin, kDepth };
  // Why the texts are no adjustment: the message to show, and the field in error.
  struct Refusal {
    MessageKey message;    // W9462, W9463 or W9464
    std::string argument;  // the character that W9462 and W9463 name, the limit of W9464
    Field field;
  };

  AdjustmentForm(const StkFunctionTable& functions, const StkFunction& function);

  const std::string& MarginText() const { return marginText_; }
  const std::string& DepthText() const { return depthText_; }
  void SetMarginText(std::string_view text) { marginText_ = text; }
  void SetDepthText(std::string_view text) { depthText_ = text; }

  // The function's own callees, which no adjustment takes away.
  StkFunctionSpan FixedCallees() const { return function_.callees; }
  // In name order.
  const StkFunctionList& AddedCallees() const { return addedCallees_; }
  // Neither a fixed nor an added callee. The function itself can be added.
  bool CanAdd(const StkFunction& callee) const;
  bool CanDelete(const StkFunction& callee) const;
  // As many are added as one adjustment may state: a further one is answered with W9460.
  bool IsFull() const { return addedCallees_.size() >= kMaxCallees; }
  // The position among the added callees, -1 when it was there before or the form is full.
  int Add(StkFunction& callee);
  // The position it had, -1 when it was not there.
  int Delete(const StkFunction& callee);
  void DeleteAll();

  // The function could reach itself with the added callees: only then does a depth count. Linear
  // in the call graph after each change of the added callees.
  bool RecursionEnabled() const;

  // There is an adjustment in force that has not been reset here yet.
  bool CanReset() const { return canReset_; }
  // To what the function shows without an adjustment.
  void Reset();

  // None: both texts are usable. The margin comes first; the depth counts although it is disabled.
  std::optional<Refusal> Validate() const;
  // After Validate. None: the form states no adjustment, and one in force is to be cancelled.
  std::optional<StkAdjustment> BuildAdjustment() const;

 private:
  std::string WholeCharacter(std::string_view text, char firstByte) const;
  std::optional<Refusal> ValidateMargin() const;
  std::optional<Refusal> ValidateDepth() const;
  bool ShowsLibrarySize() const { return function_.Is(FN_LIBRARY | FN_FIXED_EXTRA); }

  const StkFunctionTable& functions_;
  const StkFunction& function_;
  std::string marginText_;
  std::string depthText_;
  StkFunctionList addedCallees_;
  StkFunctionList directCallees_;  // stated, although the function calls them directly
  bool canReset_;
  mutable std::optional<bool> recursionEnabled_;  // none: to be found out for the added callees
};

void ShowRefusal(const AdjustmentForm::Refusal& refusal, StkReporter& reporter);

}  // namespace velkor

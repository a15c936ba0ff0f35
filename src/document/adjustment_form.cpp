#include "document/adjustment_form.h"

#include <algorithm>

#include "core/function_sorting.h"
#include "files/numbers.h"

namespace velkor {

namespace {

// None for a text that counts as empty. Only for texts that were accepted.
std::optional<uint32_t> StatedNumber(std::string_view text) {
  uint32_t value = 0;
  char wrong = 0;
  const bool stated = ParseNumberText(text, value, wrong) == NumberResult::kOk;
  return stated ? std::optional(value) : std::nullopt;
}

}  // namespace

AdjustmentForm::AdjustmentForm(const StkFunctionTable& functions, const StkFunction& function)
    : functions_(functions),
      function_(function),
      addedCallees_(function.extraCallees),
      directCallees_(functions.DirectCallees(function)),
      canReset_(function.adjustment != nullptr),
      recursionEnabled_(function.Is(FN_RECURSIVE)) {
  if (const StkAppliedAdjustment* inForce = function.adjustment.get()) {
    marginText_ = inForce->margin == kNoMargin ? "" : std::to_string(inForce->margin);
    depthText_ = inForce->depth == kNoDepth ? "" : std::to_string(inForce->depth);
  } else if (ShowsLibrarySize()) {
    marginText_ = std::to_string(function.librarySize);
  }
}

bool AdjustmentForm::CanAdd(const StkFunction& callee) const {
  return !function_.CallsDirectly(callee) && !CanDelete(callee);
}

bool AdjustmentForm::CanDelete(const StkFunction& callee) const {
  return std::find(addedCallees_.begin(), addedCallees_.end(), &callee) != addedCallees_.end();
}

int AdjustmentForm::Add(StkFunction& callee) {
  if (IsFull()) {
    return -1;
  }
  recursionEnabled_.reset();
  return InsertByName(addedCallees_, callee, functions_.GetCodePage());
}

int AdjustmentForm::Delete(const StkFunction& callee) {
  recursionEnabled_.reset();
  return RemoveFunction(addedCallees_, callee);
}

void AdjustmentForm::DeleteAll() {
  recursionEnabled_.reset();
  addedCallees_.clear();
  directCallees_.clear();
}

bool AdjustmentForm::RecursionEnabled() const {
  if (!recursionEnabled_) {
    recursionEnabled_ = IsRecursiveWith(functions_, function_, addedCallees_);
  }
  return *recursionEnabled_;
}

void AdjustmentForm::Reset() {
  marginText_ = ShowsLibrarySize() ? std::to_string(function_.librarySize) : "";
  depthText_.clear();
  DeleteAll();
  canReset_ = false;
}

std::optional<AdjustmentForm::Refusal> AdjustmentForm::Validate() const {
  const std::optional<Refusal> refusal = ValidateMargin();
  return refusal ? refusal : ValidateDepth();
}

// Of the text that holds its first byte; only digits and a prefix stand before it.
std::string AdjustmentForm::WholeCharacter(std::string_view text, char firstByte) const {
  const size_t position = text.find(firstByte);
  return std::string(text.substr(position, functions_.GetCodePage().CharLength(text, position)));
}

std::optional<AdjustmentForm::Refusal> AdjustmentForm::ValidateMargin() const {
  uint32_t value = 0;
  char wrong = 0;
  const NumberResult result = ParseNumberText(marginText_, value, wrong);
  if (result == NumberResult::kNoNumber) {
    return Refusal{MessageKey::kW9462, WholeCharacter(marginText_, wrong), Field::kMargin};
  }
  if (result == NumberResult::kTooLarge ||
      (result == NumberResult::kOk && value > functions_.SizeLimit())) {
    return Refusal{MessageKey::kW9464, std::to_string(functions_.SizeLimit()), Field::kMargin};
  }
  return std::nullopt;
}

std::optional<AdjustmentForm::Refusal> AdjustmentForm::ValidateDepth() const {
  uint32_t value = 0;
  char wrong = 0;
  const NumberResult result = ParseNumberText(depthText_, value, wrong);
  if (result == NumberResult::kNoNumber) {
    return Refusal{MessageKey::kW9463, WholeCharacter(depthText_, wrong), Field::kDepth};
  }
  if (result == NumberResult::kOk && value == kNoDepth) {
    return Refusal{MessageKey::kW9463, "0", Field::kDepth};
  }
  if (result == NumberResult::kTooLarge) {
    return Refusal{MessageKey::kW9464, std::to_string(functions_.SizeLimit()), Field::kDepth};
  }
  return std::nullopt;
}

std::optional<StkAdjustment> AdjustmentForm::BuildAdjustment() const {
  const std::optional<uint32_t> margin = StatedNumber(marginText_);
  const std::optional<uint32_t> depth = StatedNumber(depthText_);
  StkAdjustment adjustment;
  adjustment.directCallees = directCallees_;
  bool stated = false;
  if (depth && RecursionEnabled()) {
    adjustment.depth = *depth;
    stated = true;
  }
  if (!addedCallees_.empty()) {
    adjustment.callees = addedCallees_;
    stated = true;
  }
  // A library size that was left as it was shown states nothing by itself.
  const bool onlyShown = !stated && ShowsLibrarySize() && margin == function_.librarySize;
  if (margin && !onlyShown) {
    adjustment.margin = *margin;
    stated = true;
  }
  // Those that the function calls directly are not shown, and no field takes them away.
  return stated || !directCallees_.empty() ? std::optional(std::move(adjustment)) : std::nullopt;
}

void ShowRefusal(const AdjustmentForm::Refusal& refusal, StkReporter& reporter) {
  reporter.ShowWarning(refusal.message, {refusal.argument});
}

}  // namespace velkor

#include "cli/adjust_form.h"

#include "files/numbers.h"

namespace velkor {
namespace {

uint32_t ValueOf(std::string_view text) {
  uint32_t value = 0;
  char wrong = 0;
  ParseNumberText(text, value, wrong);
  return value;
}

bool IsEmpty(std::string_view text) {
  uint32_t value = 0;
  char wrong = 0;
  return ParseNumberText(text, value, wrong) == NumberResult::kEmpty;
}

}  // namespace

AdjustForm::AdjustForm(const StkFunctionTable& functions, const StkFunction& function,
                       StkReporter& reporter)
    : functions_(functions),
      function_(function),
      reporter_(reporter),
      callees_(function.extraCallees) {
  if (const StkAppliedAdjustment* adjustment = function.adjustment.get()) {
    margin_ = adjustment->margin == kNoMargin ? "" : std::to_string(adjustment->margin);
    depth_ = adjustment->depth == kNoDepth ? "" : std::to_string(adjustment->depth);
  } else if (ShowsLibrarySize()) {
    margin_ = std::to_string(function.librarySize);
  }
}

bool AdjustForm::AddCallee(StkFunction& callee) {
  if (callees_.size() >= kMaxCallees) {
    reporter_.ShowWarning(MessageKey::kW9460, {});
    return false;
  }
  InsertByName(callees_, callee, functions_.GetCodePage());
  return true;
}

bool AdjustForm::DepthEnabled() const {
  return IsRecursiveWith(functions_, function_, callees_);
}

bool AdjustForm::Validate() {
  return ValidateMargin() && ValidateDepth();
}

bool AdjustForm::ValidateMargin() {
  uint32_t value = 0;
  char wrong = 0;
  const NumberResult result = ParseNumberText(margin_, value, wrong);
  if (result == NumberResult::kNoNumber) {
    reporter_.ShowWarning(MessageKey::kW9462, {wrong});
    return false;
  }
  if (result == NumberResult::kTooLarge ||
      (result == NumberResult::kOk && value > velkor::kSizeLimit)) {
    reporter_.ShowWarning(MessageKey::kW9464, {reporter_.Messages().Text(MessageKey::kSizeLimitText)});
    return false;
  }
  return true;
}

bool AdjustForm::ValidateDepth() {
  uint32_t value = 0;
  char wrong = 0;
  const NumberResult result = ParseNumberText(depth_, value, wrong);
  if (result == NumberResult::kOk && value == kNoDepth) {
    wrong = '0';
  }
  if (result == NumberResult::kNoNumber || wrong == '0') {
    reporter_.ShowWarning(MessageKey::kW9463, {wrong});
    return false;
  }
  if (result == NumberResult::kTooLarge) {
    reporter_.ShowWarning(MessageKey::kW9464, {reporter_.Messages().Text(MessageKey::kSizeLimitText)});
    return false;
  }
  return true;
}

std::optional<StkAdjustment> AdjustForm::Build() const {
  StkAdjustment adjustment;
  bool stated = false;
  if (!IsEmpty(depth_) && DepthEnabled()) {
    adjustment.depth = ValueOf(depth_);
    stated = true;
  }
  if (!callees_.empty()) {
    adjustment.callees = callees_;
    stated = true;
  }
  const bool hasMargin = !IsEmpty(margin_);
  const uint32_t margin = ValueOf(margin_);
  // A library size that was left as shown states nothing.
  if (hasMargin && (stated || !ShowsLibrarySize() || margin != function_.librarySize)) {
    adjustment.margin = margin;
    stated = true;
  }
  return stated ? std::optional(std::move(adjustment)) : std::nullopt;
}

}  // namespace velkor

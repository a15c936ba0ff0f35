#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/adjustments.h"
#include "messages/reporter.h"

namespace velkor {

// The fields in which a user states the adjustment of one function, as they stand when the form
// opens and as they are changed. Nothing reaches the function before the result is applied. Main
// thread; the analysis must not change meanwhile.
class AdjustForm {
 public:
  static constexpr size_t kMaxCallees = 1024;

  AdjustForm(const StkFunctionTable& functions, const StkFunction& function, StkReporter& reporter);

  void SetMargin(std::string_view text) { margin_ = text; }
  void SetDepth(std::string_view text) { depth_ = text; }
  void ClearCallees() { callees_.clear(); }
  // False after W9460 when there are too many. A function that is in the list already stays once.
  bool AddCallee(StkFunction& callee);
  // A depth can be stated: with these callees the function would be recursive.
  bool DepthEnabled() const;
  // False after W9462 to W9464: a field holds no usable number.
  bool Validate();
  // After Validate. None: the fields state no adjustment.
  std::optional<StkAdjustment> Build() const;

 private:
  bool ValidateMargin();
  bool ValidateDepth();
  bool ShowsLibrarySize() const { return function_.Is(FN_LIBRARY) || function_.Is(FN_FIXED_EXTRA); }

  const StkFunctionTable& functions_;
  const StkFunction& function_;
  StkReporter& reporter_;
  std::string margin_;
  std::string depth_;
  StkFunctionList callees_;
};

}  // namespace velkor

#include "core/adjustment_information.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "core/function_text.h"

namespace velkor {

namespace {

// Longer than this, together with the function's name, the text would not fit into its message.
constexpr size_t kInformationLimit = 5070;

// Whether functions are among those of a list, in logarithmic time.
class Membership {
 public:
  explicit Membership(const StkFunctionList& list) {
    indices_.reserve(list.size());
    for (const StkFunction* function : list) {
      indices_.push_back(function->index);
    }
    std::sort(indices_.begin(), indices_.end());
  }
  bool Has(const StkFunction& function) const {
    return std::binary_search(indices_.begin(), indices_.end(), function.index);
  }

 private:
  std::vector<uint32_t> indices_;
};

class Information {
 public:
  Information(const StkFunction& function, const StkMessages& messages)
      : messages_(messages),
        nameLength_(FunctionSpecName(function, messages.GetCodePage()).size()) {}

  void AddValue(uint32_t value, uint32_t before, uint32_t none, MessageKey set,
                MessageKey deleted) {
    if (value != before) {
      Append(value == none ? std::string(messages_.Text(deleted))
                           : messages_.FormatMessageText(set, {value}));
    }
  }

  // The first item that does not fit is the last one that is looked at.
  void AddCallee(MessageKey key, const StkFunction& callee) {
    result_.calleesChanged = true;
    if (cut_) {
      return;
    }
    const std::string name = FunctionSpecName(callee, messages_.GetCodePage());
    const std::string item = messages_.FormatMessageText(key, {name});
    if (result_.text.size() + item.size() + 1 + nameLength_ < kInformationLimit) {
      Append(item);
    } else {
      cut_ = true;
    }
  }

  AdjustmentInformationResult Take() {
    if (cut_) {
      result_.text += ", ...";
    }
    return std::move(result_);
  }

 private:
  void Append(std::string_view part) {
    if (!result_.text.empty()) {
      result_.text += ", ";
    }
    result_.text += part;
  }

  const StkMessages& messages_;
  size_t nameLength_;
  bool cut_ = false;
  AdjustmentInformationResult result_;
};

}  // namespace

AdjustmentInformationResult AdjustmentInformation(const StkAdjustment& adjustment,
                                                  const StkFunction& function, InformationMode mode,
                                                  const StkMessages& messages) {
  const bool compare = mode == InformationMode::kCompare;
  const StkAppliedAdjustment before =
      compare && function.adjustment != nullptr ? *function.adjustment : StkAppliedAdjustment();
  const StkFunctionList calleesBefore = compare ? function.extraCallees : StkFunctionList();
  const StkFunctionList calleesAfter = adjustment.callees.value_or(StkFunctionList());
  Information information(function, messages);
  information.AddValue(adjustment.margin, before.margin, kNoMargin, MessageKey::kMarginSet,
                       MessageKey::kMarginDeleted);
  information.AddValue(adjustment.depth, before.depth, kNoDepth, MessageKey::kDepthSet,
                       MessageKey::kDepthDeleted);
  const Membership wereThere(calleesBefore);
  for (const StkFunction* callee : calleesAfter) {
    if (!wereThere.Has(*callee)) {
      information.AddCallee(MessageKey::kCalleeAdded, *callee);
    }
  }
  const Membership areThere(calleesAfter);
  for (const StkFunction* callee : calleesBefore) {
    if (!areThere.Has(*callee)) {
      information.AddCallee(MessageKey::kCalleeDeleted, *callee);
    }
  }
  return information.Take();
}

}  // namespace velkor

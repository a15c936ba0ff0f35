#include "core/bound_notes.h"

#include <algorithm>
#include <string>

#include "core/bound_arithmetic.h"
#include "core/function_text.h"

namespace velkor {

namespace {

constexpr size_t kMostNamed = 10;

void NoteNestedDepths(const StkFunctionTable& table, const RecursionGroup& group,
                      const StkMessages& messages, std::vector<StkNote>& notes) {
  std::string names;
  uint32_t count = 0;
  for (const uint32_t member : group.members) {
    const StkFunction& function = *table.Functions()[member];
    if (StatedDepth(function) < 2) {
      continue;
    }
    if (++count <= kMostNamed) {
      names += (names.empty() ? "" : ", ") + FunctionSpecName(function, table.GetCodePage());
    }
  }
  if (count < 2) {
    return;
  }
  names += count > kMostNamed ? ", ..." : "";
  notes.push_back(
      {.rule = "nested-depths",
       .text = messages.FormatMessageText(MessageKey::kNoteNestedDepths, {count, names}),
       .file = {},
       .line = 0,
       .function = group.members.front()});
}

void NoteEmptyAdjustment(const StkFunctionTable& table, const StkBounds& bounds,
                         const StkFunction& function, const StkMessages& messages,
                         std::vector<StkNote>& notes) {
  const ReasonSet missing = bounds.OwnReasons(function);
  std::string wanted;
  const auto want = [&](MessageKey key) {
    wanted += (wanted.empty() ? "" : ", ") + std::string(messages.Text(key));
  };
  if (missing.Has(ReasonKind::kUnknown) || missing.Has(ReasonKind::kDynamic)) {
    want(MessageKey::kNoteWantsSize);
  }
  if (missing.Has(ReasonKind::kIndirect)) {
    want(MessageKey::kNoteWantsCallees);
  }
  if (missing.Has(ReasonKind::kHiddenCall)) {
    want(MessageKey::kNoteWantsHiddenCall);
  }
  if (missing.Has(ReasonKind::kRecursion) && StatedDepth(function) == kNoDepth) {
    want(MessageKey::kNoteWantsDepth);
  }
  if (!wanted.empty()) {
    const std::string name = FunctionSpecName(function, table.GetCodePage());
    notes.push_back(
        {.rule = "empty-adjustment",
         .text = messages.FormatMessageText(MessageKey::kNoteEmptyAdjustment, {name, wanted}),
         .file = {},
         .line = 0,
         .function = function.index});
  }
}

}  // namespace

std::vector<StkNote> BoundNotes(const StkFunctionTable& table, const StkBounds& bounds,
                                const StkMessages& messages) {
  std::vector<StkNote> notes;
  for (const RecursionGroup& group : bounds.Groups()) {
    NoteNestedDepths(table, group, messages, notes);
  }
  for (const StkFunction* function : table.Functions()) {
    if (function->adjustment != nullptr) {
      NoteEmptyAdjustment(table, bounds, *function, messages, notes);
    }
  }
  return notes;
}

}  // namespace velkor

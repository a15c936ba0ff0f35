#include "ui/views/analysis_notes.h"

#include <algorithm>
#include <vector>

#include "core/bound_notes.h"
#include "ui/commands/commands.h"

namespace velkor::ui {

namespace {

constexpr uint32_t kTexts = kDialogTextKey * 500 + 1021;
constexpr auto kMoreNotes = static_cast<MessageKey>(kTexts);
constexpr auto kNotBounds = static_cast<MessageKey>(kTexts + 1);

}  // namespace

AnalysisNotes::AnalysisNotes(UiContext& context) : context_(context) {
  context_.document.AddView(*this);
}

AnalysisNotes::~AnalysisNotes() {
  context_.document.RemoveView(*this);
}

void AnalysisNotes::OnUpdate(ViewHint hint) {
  if (hint != HINT_RESULTS) {
    return;
  }
  if (const StkBounds* bounds = context_.document.Bounds()) {
    WriteNotes(*bounds);
    WriteCount(*bounds);
  }
}

// Posted, as the lines of the jobs are: some of those may still wait behind an open box.
void AnalysisNotes::WriteNotes(const StkBounds& bounds) {
  const std::vector<StkNote> notes =
      BoundNotes(*context_.document.FunctionTable(), bounds, context_.messages);
  const size_t shown = std::min(notes.size(), kMostShown);
  for (size_t i = 0; i < shown; ++i) {
    context_.reporter.PostNote(notes[i]);
  }
  if (shown < notes.size()) {
    context_.reporter.PostLog(kMoreNotes, {static_cast<uint32_t>(notes.size() - shown)});
  }
}

void AnalysisNotes::WriteCount(const StkBounds& bounds) {
  const StkRootList& roots = *context_.document.RootList();
  uint32_t unbounded = 0;
  uint32_t below = 0;
  for (const StkFunction* function : roots.Functions()) {
    if (bounds.State(*function) == BoundState::kUnbounded) {
      ++unbounded;
    } else if (function->totalStackSize != kOverSize &&
               function->totalStackSize < bounds.Known(*function)) {
      ++below;
    }
  }
  if (unbounded + below != 0) {
    context_.reporter.PostLog(
        kNotBounds, {unbounded + below, static_cast<uint32_t>(roots.size()), unbounded, below});
  }
}

}  // namespace velkor::ui

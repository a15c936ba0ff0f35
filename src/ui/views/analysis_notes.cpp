#include "ui/views/analysis_notes.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "core/bound_notes.h"
#include "files/paths.h"
#include "ui/commands/commands.h"

namespace velkor::ui {

namespace {

constexpr uint32_t kTexts = kDialogTextKey * 500 + 1021;
constexpr auto kMoreNotes = static_cast<MessageKey>(kTexts);
constexpr auto kNotBounds = static_cast<MessageKey>(kTexts + 1);
constexpr auto kModulesRead = static_cast<MessageKey>(kTexts + 2);
constexpr size_t kMostModules = 4;

}  // namespace

AnalysisNotes::AnalysisNotes(UiContext& context) : context_(context) {
  context_.document.AddView(*this);
}

AnalysisNotes::~AnalysisNotes() {
  context_.document.RemoveView(*this);
}

void AnalysisNotes::OnUpdate(ViewHint hint) {
  if (hint == HINT_CLEAR) {
    inputNoted_ = false;
  }
  if (hint != HINT_RESULTS) {
    return;
  }
  if (const StkBounds* bounds = context_.document.Bounds()) {
    WriteNotes(*bounds);
    WriteModules();
    WriteCount(*bounds);
    inputNoted_ = true;
  }
}

// Posted, as the lines of the jobs are: some of those may still wait behind an open box.
void AnalysisNotes::WriteNotes(const StkBounds& bounds) {
  std::vector<StkNote> notes;
  if (!inputNoted_) {
    notes = context_.document.InputNotes();
  }
  std::ranges::move(BoundNotes(*context_.document.FunctionTable(), bounds, context_.messages),
                    std::back_inserter(notes));
  const size_t shown = std::min(notes.size(), kMostShown);
  for (size_t i = 0; i < shown; ++i) {
    context_.reporter.PostNote(notes[i]);
  }
  if (shown < notes.size()) {
    context_.reporter.PostLog(kMoreNotes, {static_cast<uint32_t>(notes.size() - shown)});
  }
}

void AnalysisNotes::WriteModules() {
  const std::vector<ModuleOutcome>& outcomes = context_.document.ModuleOutcomes();
  const StkStringList& modules = context_.document.Input()->Modules();
  std::string names;
  uint32_t read = 0;
  for (size_t i = 0; i < outcomes.size(); ++i) {
    const uint32_t before = static_cast<uint32_t>(i) - read;
    if (outcomes[i] == ModuleOutcome::kRead) {
      ++read;
    } else if (before <= kMostModules) {
      names += before == 0 ? "" : ", ";
      names += before == kMostModules ? "..."
                                      : FileNamePart(modules[i], context_.messages.GetCodePage());
    }
  }
  if (!names.empty() && !inputNoted_) {
    context_.reporter.PostLog(kModulesRead, {read, static_cast<uint32_t>(outcomes.size()), names});
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

#pragma once

#include <cstdint>

#include "core/bounds.h"
#include "document/document.h"
#include "ui/ui_context.h"

namespace velkor::ui {

// Writes into the log, below the last line of each analysis and of each loaded specification file,
// what the bounds have to say: the notes, and how many top-level functions have no bound or a total
// below it; before, once an analysis, the notes of its input, and which modules were not read
// whole. Nothing where there is nothing to say.
class AnalysisNotes : public View {
 public:
  // More notes would push too much else out of the log.
  static constexpr size_t kMostShown = 1000;

  explicit AnalysisNotes(UiContext& context);
  ~AnalysisNotes() override;
  AnalysisNotes(const AnalysisNotes&) = delete;
  AnalysisNotes& operator=(const AnalysisNotes&) = delete;

  void OnUpdate(ViewHint hint) override;

 private:
  void WriteNotes(const StkBounds& bounds);
  void WriteModules();
  void WriteCount(const StkBounds& bounds);

  UiContext& context_;
  bool inputNoted_ = false;  // what is the same for each file that is loaded
};

}  // namespace velkor::ui

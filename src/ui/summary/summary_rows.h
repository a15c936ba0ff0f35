#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>
#include <optional>
#include <vector>

#include "ui/answer/analysis_answer.h"
#include "ui/ui_context.h"
#include "ui/views/need_text.h"

namespace velkor::ui {

// How a row stands, told by the shape of its mark as well as by the colour.
enum class SummaryMark { kNone, kFine, kOpen, kBad, kNote };

// Bytes of a stack, and of what needs it.
struct StackBudget {
  uint64_t need = 0;
  uint64_t size = 0;
  bool bounded = true;
};

struct SummaryRow {
  QStringList cells;
  QString tip{};  // all that there is to say of it, where the cells do not
  SummaryMark mark = SummaryMark::kNone;
  std::optional<uint32_t> function{};  // that the row is about
  std::optional<StackBudget> budget{};
};

struct SummaryGroup {
  QString title;
  std::vector<SummaryRow> rows;  // at least one
};

// What the summary says of an answer, in the user's language: the largest of what there is of each
// kind, and how many more there are.
class SummaryRows {
 public:
  static constexpr size_t kMostWanted = 200;
  static constexpr size_t kMostNotes = 1000;

  explicit SummaryRows(const UiContext& context);

  // In one line. null: there is no answer; isWorking: but there will be.
  QString Lead(const AnalysisAnswer* answer, bool isWorking) const;
  // Stacks, then top-level functions: what, how much, why.
  std::vector<SummaryGroup> Needs(const AnalysisAnswer& answer) const;
  // What to state, then findings and notes: what, which value, how many functions it frees.
  std::vector<SummaryGroup> Wanted(const AnalysisAnswer& answer) const;

 private:
  SummaryRow StackRowOf(const reports::GateStack& stack, const AnalysisAnswer& answer) const;
  SummaryRow EntryRow(uint32_t function, const AnalysisAnswer& answer) const;
  QString Why(uint32_t function, const AnalysisAnswer& answer) const;
  std::vector<SummaryRow> WantedRows(const AnalysisAnswer& answer) const;
  std::vector<SummaryRow> FindingRows(const reports::GateOutcome& gate) const;
  std::vector<SummaryRow> NoteRows(const AnalysisAnswer& answer) const;
  QString Values(ReasonSet settles) const;
  QString Text(uint32_t item) const;
  void AddGroup(uint32_t title, size_t count, std::vector<SummaryRow> rows,
                std::vector<SummaryGroup>& groups) const;

  const UiContext& context_;
  NeedTexts needs_;
};

}  // namespace velkor::ui

#include "ui/views/need_text.h"

#include <QStringList>

#include "core/function_text.h"
#include "ui/commands/commands.h"

namespace velkor::ui {

namespace {

constexpr uint32_t kNeedTexts = kDialogTextKey * 510;
constexpr uint32_t kReasonTexts = kNeedTexts + 1;  // one a kind
constexpr uint32_t kOverLimit = kNeedTexts + 7;
constexpr uint32_t kMoreThanTotal = kNeedTexts + 8;
constexpr uint32_t kBound = kNeedTexts + 9;

}  // namespace

NeedTexts::NeedTexts(const UiContext& context)
    : overLimit_(context.Text(kOverLimit)),
      moreThanTotal_(context.Text(kMoreThanTotal)),
      bound_(context.Text(kBound)) {
  for (size_t kind = 0; kind < reasons_.size(); ++kind) {
    reasons_[kind] = context.Text(kReasonTexts + static_cast<uint32_t>(kind));
  }
}

QString NeedTexts::Need(uint64_t known, bool bounded) {
  return (bounded ? QString() : QString(QChar(u'≥'))) + QString::number(known);
}

QString NeedTexts::Need(const StkFunction& function, const StkBounds& bounds) {
  return Need(bounds.Known(function), bounds.State(function) != BoundState::kUnbounded);
}

QString NeedTexts::Mark(const StkFunction& function, const StkBounds& bounds) const {
  if (bounds.State(function) == BoundState::kUnbounded) {
    QStringList words;
    for (const ReasonKind kind : kReasonKinds) {
      if (bounds.Reasons(function).Has(kind)) {
        words.push_back(ReasonWord(kind));
      }
    }
    return words.join(", ");
  }
  if (bounds.State(function) == BoundState::kOver) {
    return overLimit_;
  }
  return bounds.IsComplete(function) ? QString() : moreThanTotal_;
}

uint32_t NeedTexts::MarkRank(const StkFunction& function, const StkBounds& bounds) {
  uint32_t rank = 0;
  const ReasonSet reasons = bounds.Reasons(function);
  for (const ReasonKind kind : kReasonKinds) {
    rank += reasons.Has(kind) ? uint32_t{4} << static_cast<unsigned>(kind) : 0;
  }
  if (rank != 0) {
    return rank;
  }
  return bounds.State(function) == BoundState::kOver ? 2 : bounds.IsComplete(function) ? 0 : 1;
}

QString NeedTexts::TotalAndNeed(const StkFunction& function, const StkBounds& bounds) const {
  QString total = QString::fromStdString(TotalSizeText(function));
  QString need = Need(function, bounds);
  if (bounds.IsComplete(function)) {
    return total;
  }
  const bool same = bounds.Known(function) == function.totalStackSize;
  const bool bounded = bounds.State(function) != BoundState::kUnbounded;
  if (same && !bounded && total != "?") {
    return need;
  }
  return total + " " + QChar(u'·') + " " + (bounded ? Filled(bound_, {need}) : need);
}

QString Filled(QString pattern, const QStringList& values) {
  qsizetype from = 0;
  for (const QString& value : values) {
    const qsizetype place = pattern.indexOf("{}", from);
    if (place < 0) {
      break;
    }
    pattern.replace(place, 2, value);
    from = place + value.size();
  }
  return pattern;
}

}  // namespace velkor::ui

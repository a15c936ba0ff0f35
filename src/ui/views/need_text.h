#pragma once

#include <QString>
#include <array>

#include "core/bounds.h"
#include "ui/ui_context.h"

namespace velkor::ui {

// What the window says of the bound of a function.
class NeedTexts {
 public:
  explicit NeedTexts(const UiContext& context);

  // "206", or "≥206" without a bound.
  static QString Need(uint64_t known, bool bounded);
  static QString Need(const StkFunction& function, const StkBounds& bounds);
  // Why it is not a bound, or the total none: "unknown size, recursion", "over the limit", "more
  // than the total". Empty where the total can be taken for the bound.
  QString Mark(const StkFunction& function, const StkBounds& bounds) const;
  // By what marks are sorted: more is missing.
  static uint32_t MarkRank(const StkFunction& function, const StkBounds& bounds);
  // The total, and behind it what of the need it does not say.
  QString TotalAndNeed(const StkFunction& function, const StkBounds& bounds) const;

  const QString& ReasonWord(ReasonKind kind) const {
    return reasons_[static_cast<size_t>(kind)];
  }
  const QString& OverLimit() const { return overLimit_; }
  const QString& MoreThanTotal() const { return moreThanTotal_; }

 private:
  std::array<QString, kReasonKinds.size()> reasons_;
  QString overLimit_;
  QString moreThanTotal_;
  QString bound_;
};

// The text with its "{}" replaced in order.
QString Filled(QString pattern, const QStringList& values);

}  // namespace velkor::ui

#pragma once

#include <QString>
#include <cstdint>
#include <vector>

#include "ui/views/function_cells.h"

namespace velkor::ui {

// The cells of many functions as one text, made in steps of less than a millisecond: rows with tabs
// between their cells, or comma-separated values with a heading.
class RowTexts {
 public:
  enum class Form { kTabs, kCsv };

  RowTexts(UiContext& context, std::vector<uint32_t> functions, Form form);

  // False once the text is whole. Only while no job has the functions.
  bool Step();
  QString Take() { return std::move(text_); }

 private:
  void Append(const CellTexts& cells);

  UiContext& context_;
  const std::vector<uint32_t> functions_;
  const Form form_;
  const StkBounds* bounds_;
  size_t next_ = 0;
  QString text_;
};

}  // namespace velkor::ui

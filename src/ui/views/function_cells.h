#pragma once

#include <QString>
#include <array>
#include <cstdint>

#include "core/bounds.h"
#include "core/function.h"
#include "ui/ui_context.h"

namespace velkor::ui {

// What tables of any functions show of each, as it is now.
enum class FunctionCell { kFunction, kTotal, kFrame, kMargin, kBound, kFile, kLine };
constexpr size_t kFunctionCellCount = 7;

using CellTexts = std::array<QString, kFunctionCellCount>;

CellTexts CellHeaders(const UiContext& context);

// bounds: of the function's table; none: the cell of the bound is empty.
QString CellText(const StkFunction& function, FunctionCell cell, const StkBounds* bounds,
                 const CodePage& codePage);
bool IsNumberCell(FunctionCell cell);
// The whole name and where the function is defined, for a tooltip.
QString WholeName(const StkFunction& function, const CodePage& codePage);

}  // namespace velkor::ui

#include "ui/views/function_cells.h"

#include "core/function_text.h"
#include "ui/commands/commands.h"
#include "ui/shown_text.h"

namespace velkor::ui {

namespace {

constexpr uint32_t kStatedHeaders = 35000;
constexpr uint32_t kBoundHeader = kDialogTextKey * 502 + 1;
constexpr uint32_t kLineHeader = kDialogTextKey * 502 + 2;

QString BoundText(const StkFunction& function, const StkBounds& bounds) {
  const QString known = QString::number(bounds.Known(function));
  return bounds.State(function) == BoundState::kUnbounded ? u'≥' + known : known;
}

QString PathText(const StkFunction& function, const CodePage& codePage) {
  return function.file ? ForScreen(function.file->name, codePage) : QString();
}

}  // namespace

CellTexts CellHeaders(const UiContext& context) {
  return {context.Text(kStatedHeaders),     context.Text(kStatedHeaders + 1),
          context.Text(kStatedHeaders + 2), context.Text(kStatedHeaders + 3),
          context.Text(kBoundHeader),       context.Text(kStatedHeaders + 4),
          context.Text(kLineHeader)};
}

QString CellText(const StkFunction& function, FunctionCell cell, const StkBounds* bounds,
                 const CodePage& codePage) {
  switch (cell) {
    case FunctionCell::kFunction:
      return ForScreen(FunctionDisplayName(function, codePage), codePage);
    case FunctionCell::kTotal:
      return ForScreen(TotalSizeText(function), codePage);
    case FunctionCell::kFrame:
      return ForScreen(FrameSizeText(function), codePage);
    case FunctionCell::kMargin:
      return ForScreen(AdjustmentInfoText(function, AdjustmentStyle::kList), codePage);
    case FunctionCell::kBound:
      return bounds ? BoundText(function, *bounds) : QString();
    case FunctionCell::kFile:
      return PathText(function, codePage);
    case FunctionCell::kLine:
      return function.Place().line == 0 ? QString() : QString::number(function.Place().line);
  }
  return {};
}

bool IsNumberCell(FunctionCell cell) {
  return cell != FunctionCell::kFunction && cell != FunctionCell::kFile;
}

QString WholeName(const StkFunction& function, const CodePage& codePage) {
  QString text = ForScreen(FunctionDisplayName(function, codePage), codePage);
  const SourceLine place = function.Place();
  const StkFileEntry* file = place.file ? place.file : function.file;
  if (file) {
    text += u'\n' + ForScreen(file->name, codePage);
    if (place.file && place.line != 0) {
      text += u':' + QString::number(place.line);
    }
  }
  return text;
}

}  // namespace velkor::ui

#include "core/function_text.h"

namespace velkor {

namespace {

std::string SizeText(uint32_t size) {
  return size == kOverSize ? "SIZEOVER" : std::to_string(size);
}

}  // namespace

std::string_view CName(const StkFunction& function) {
  if (!function.shownName.empty()) {
    return function.shownName;
  }
  std::string_view name = function.name;
  if (!function.Is(FN_PLAIN_SYMBOL) && name.starts_with('_')) {
    name.remove_prefix(1);
  }
  return name;
}

std::string FunctionSpecName(const StkFunction& function, const CodePage& codePage) {
  const std::string_view name = CName(function);
  std::string text;
  if (!function.Is(FN_DEFINED)) {
    text.append("[").append(name).append("]");
    return text;
  }
  if (function.IsStatic()) {
    if (function.file != nullptr) {
      text.append(function.file->BaseName(codePage));
    }
    text.append("#");
  }
  return text.append(name);
}

std::string FunctionDisplayName(const StkFunction& function, const CodePage& codePage) {
  std::string text = FunctionSpecName(function, codePage);
  if (function.Is(FN_RECURSIVE)) {
    text += '*';
  }
  if (function.Is(FN_INDIRECT_CALL)) {
    text += '&';
  }
  return text;
}

std::string TotalSizeText(const StkFunction& function) {
  const bool known = function.totalStackSize == kOverSize || !function.IsUnknown() ||
                     function.adjustment != nullptr;
  return known ? SizeText(function.totalStackSize) : "?";
}

std::string FrameSizeText(const StkFunction& function) {
  return function.Is(FN_DEFINED) ? SizeText(function.frameSize) : "?";
}

std::string MarginText(const StkFunction& function) {
  if (function.adjustment) {
    return function.adjustment->margin == kNoMargin ? "" : SizeText(function.adjustment->margin);
  }
  return function.Is(FN_LIBRARY | FN_FIXED_EXTRA) ? SizeText(function.librarySize) : "";
}

std::string RecursionText(const StkFunction& function) {
  if (!function.adjustment || function.adjustment->depth == kNoDepth) {
    return {};
  }
  return "*" + std::to_string(function.adjustment->depth);
}

std::string AdjustmentInfoText(const StkFunction& function, AdjustmentStyle style) {
  const std::string margin = MarginText(function);
  std::string recursion = RecursionText(function);
  if (margin.empty()) {
    return recursion;
  }
  if (style == AdjustmentStyle::kReport) {
    return "+" + margin + recursion;
  }
  return recursion.empty() ? margin : margin + " " + recursion;
}

std::string TextItem(const StkFunction& function, std::string_view separator,
                     const CodePage& codePage) {
  std::string text = FunctionDisplayName(function, codePage);
  text.append("(").append(TotalSizeText(function)).append(separator);
  text.append(FrameSizeText(function));
  const std::string information = AdjustmentInfoText(function, AdjustmentStyle::kReport);
  if (!information.empty()) {
    text.append(separator).append(information);
  }
  return text.append(")");
}

std::string CsvItem(const StkFunction& function, const CodePage& codePage) {
  const std::string information = AdjustmentInfoText(function, AdjustmentStyle::kReport);
  return FunctionDisplayName(function, codePage) + "," + TotalSizeText(function) + "," +
         FrameSizeText(function) + "," + (information.empty() ? "0" : information);
}

}  // namespace velkor

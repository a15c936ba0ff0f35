#include "core/function_text.h"

namespace velkor {

namespace {

std::string SizeText(uint32_t size) {
  return size == kOverSize ? "SIZEOVER" : std::to_string(size);
}

}  // namespace

std::string_view CName(const StkFunction& function) {
  const std::string_view shown = function.ShownName();
  return shown.empty() ? CNameOfSymbol(function.name, function.flags) : shown;
}

std::string_view CNameOfSymbol(std::string_view symbol, uint32_t flags) {
  if ((flags & FN_PLAIN_SYMBOL) == 0 && symbol.starts_with('_')) {
    symbol.remove_prefix(1);
  }
  return symbol;
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
  return FunctionSpecName(function, codePage) + DisplayMarks(function.flags);
}

std::string DisplayMarks(uint32_t flags) {
  const std::string recursive = (flags & FN_RECURSIVE) != 0 ? "*" : "";
  return recursive + ((flags & FN_INDIRECT_CALL) != 0 ? "&" : "");
}

ShownSizes::ShownSizes(const StkFunction& function)
    : flags(function.flags),
      frameSize(function.frameSize),
      totalStackSize(function.totalStackSize),
      librarySize(function.librarySize),
      adjustment(function.adjustment.get()) {}

std::string TotalSizeText(const ShownSizes& sizes) {
  const bool known = sizes.totalStackSize == kOverSize ||
                     (sizes.flags & (FN_DEFINED | FN_LIBRARY)) != 0 || sizes.adjustment != nullptr;
  return known ? SizeText(sizes.totalStackSize) : "?";
}

std::string FrameSizeText(const ShownSizes& sizes) {
  return (sizes.flags & FN_DEFINED) != 0 ? SizeText(sizes.frameSize) : "?";
}

std::string MarginText(const ShownSizes& sizes) {
  if (sizes.adjustment != nullptr) {
    const uint32_t margin = sizes.adjustment->margin;
    return margin == kNoMargin ? "" : SizeText(margin);
  }
  const bool known = (sizes.flags & (FN_LIBRARY | FN_FIXED_EXTRA)) != 0;
  return known ? SizeText(sizes.librarySize) : "";
}

std::string RecursionText(const ShownSizes& sizes) {
  if (sizes.adjustment == nullptr || sizes.adjustment->depth == kNoDepth) {
    return {};
  }
  return "*" + std::to_string(sizes.adjustment->depth);
}

std::string AdjustmentInfoText(const ShownSizes& sizes, AdjustmentStyle style) {
  const std::string margin = MarginText(sizes);
  std::string recursion = RecursionText(sizes);
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

#pragma once

#include <string>
#include <string_view>

#include "core/function.h"

namespace velkor {

// The texts by which a function is shown, in bytes of the analysis's code page.

// The symbol without the "_" that the input's symbols have before a C name, if it has one.
std::string_view CName(const StkFunction& function);
// The same of a symbol that no other name is shown for, in any code page that has ASCII.
std::string_view CNameOfSymbol(std::string_view symbol, uint32_t flags);
// "[name]" for a function not defined in the project, "file.c#name" for a static one, else "name".
std::string FunctionSpecName(const StkFunction& function, const CodePage& codePage);
// The same with "*" for a recursive function, then "&" for one with an indirect call.
std::string FunctionDisplayName(const StkFunction& function, const CodePage& codePage);
// What the one has behind the other.
std::string DisplayMarks(uint32_t flags);

// What the texts of a function's sizes are made of.
struct ShownSizes {
  ShownSizes() = default;
  // Implicit: the texts are those of the function.
  ShownSizes(const StkFunction& function);

  uint32_t flags = 0;
  uint32_t frameSize = 0;
  uint32_t totalStackSize = 0;
  uint32_t librarySize = 0;
  const StkAppliedAdjustment* adjustment = nullptr;  // none: not adjusted
};

std::string TotalSizeText(const ShownSizes& sizes);
std::string FrameSizeText(const ShownSizes& sizes);
// Empty when there is no margin.
std::string MarginText(const ShownSizes& sizes);
// "*3", or empty without a depth in force.
std::string RecursionText(const ShownSizes& sizes);

enum class AdjustmentStyle {
  kReport,  // "+10*3"
  kList,    // "10 *3"
};
std::string AdjustmentInfoText(const ShownSizes& sizes, AdjustmentStyle style);
// "main(10,4)" or, with an adjustment, "main(10,4,+10*3)".
std::string TextItem(const StkFunction& function, std::string_view separator,
                     const CodePage& codePage);
// "main,10,4,0".
std::string CsvItem(const StkFunction& function, const CodePage& codePage);

}  // namespace velkor

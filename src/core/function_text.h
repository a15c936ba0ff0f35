#pragma once

#include <string>
#include <string_view>

#include "core/function.h"

namespace velkor {

// The texts by which a function is shown, in bytes of the analysis's code page.

// The symbol without the "_" that the input's symbols have before a C name, if it has one.
std::string_view CName(const StkFunction& function);
// "[name]" for a function not defined in the project, "file.c#name" for a static one, else "name".
std::string FunctionSpecName(const StkFunction& function, const CodePage& codePage);
// The same with "*" for a recursive function, then "&" for one with an indirect call.
std::string FunctionDisplayName(const StkFunction& function, const CodePage& codePage);
std::string TotalSizeText(const StkFunction& function);
std::string FrameSizeText(const StkFunction& function);
// Empty when there is no margin.
std::string MarginText(const StkFunction& function);
// "*3", or empty without a depth in force.
std::string RecursionText(const StkFunction& function);

enum class AdjustmentStyle {
  kReport,  // "+10*3"
  kList,    // "10 *3"
};
std::string AdjustmentInfoText(const StkFunction& function, AdjustmentStyle style);
// "main(10,4)" or, with an adjustment, "main(10,4,+10*3)".
std::string TextItem(const StkFunction& function, std::string_view separator,
                     const CodePage& codePage);
// "main,10,4,0".
std::string CsvItem(const StkFunction& function, const CodePage& codePage);

}  // namespace velkor

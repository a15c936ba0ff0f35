#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "readers/tarn/line_scanner.h"

namespace velkor {

// The first line of a module: the banner of the compiler that wrote it.
struct HeaderLine {
  std::string_view family;  // points into the line
  uint32_t version = 0;     // as in StkCompilerInfo
};

// None when the line is no banner.
std::optional<HeaderLine> ParseHeaderLine(StkLineScanner& line);

}  // namespace velkor

#pragma once

#include <cstdint>
#include <optional>

#include "readers/tarn/line_scanner.h"

namespace velkor {

// The stack figure of a "CODE SIZE=" line, the cursor standing behind that keyword: bytes up to
// kSizeLimit, kOverSize for more. None when the line gives no figure.
std::optional<uint32_t> ParseStackFigure(StkLineScanner& line);

}  // namespace velkor

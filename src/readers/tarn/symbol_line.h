#pragma once

#include <optional>
#include <string_view>

#include "readers/tarn/line_scanner.h"
#include "readers/tarn/name_buffer.h"

namespace velkor {

// What a debugging symbol line tells about one symbol of the module.
struct SymbolLine {
  std::string_view name;  // in the line, or in the buffer given to the parser
  bool isFunction = false;
  bool isStatic = false;      // of a function only
  bool presetMargin = false;  // the symbol's type carries the mark of a preset margin
};

// Moves behind the "$DGS" that makes a line a symbol line.
bool EnterSymbolLine(StkLineScanner& line);
// The fields, the cursor standing behind "$DGS". None for a line that tells nothing. A line whose
// later fields are broken still tells its preset margin.
std::optional<SymbolLine> ParseSymbolFields(StkLineScanner& line, NameBuffer& buffer);

}  // namespace velkor

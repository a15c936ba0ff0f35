#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "files/text_line.h"
#include "readers/tarn/line_scanner.h"

namespace velkor {

// The tests that lines of a module's code are put to. They look at the line's own bytes and
// settle the usual instruction within a few of them.

struct SegmentDirective {
  bool segment = false;  // starts a segment of any kind
  bool code = false;     // names the code segment, in any letter case
};
SegmentDirective FindSegmentDirective(const TextLine& line);

// The label that the line begins with; empty when there is none of a function or of a bank
// switch stub.
std::string_view FindCodeLabel(const TextLine& line);

// What a call instruction calls, as far as it matters.
struct CodeCall {
  enum class Target : uint8_t { kHelper, kStub, kSymbol };

  std::string_view name;  // points into the line; of a helper without its prefix
  Target target = Target::kHelper;
};
std::optional<CodeCall> FindCodeCall(const TextLine& line, StkLineScanner& scanner);
// The symbol that stands behind the "!" of a call, a comment that follows at once left out.
std::string_view CalledSymbol(std::string_view target);

// Whether the line heads the code information block.
bool IsInformationHeading(const TextLine& line);

}  // namespace velkor

#pragma once

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

// What a call instruction calls, as far as it matters: a runtime helper or a bank switch stub.
struct RuntimeCall {
  std::string_view target;  // points into the line
  bool stub = false;
};
std::optional<RuntimeCall> FindRuntimeCall(const TextLine& line, StkLineScanner& scanner);

// Whether the line heads the code information block.
bool IsInformationHeading(const TextLine& line);

}  // namespace velkor

#include <string>

#include "fuzz/fuzzers.h"
#include "fuzz/require.h"
#include "reports/gate/baseline.h"

namespace velkor::testing {

// A baseline, which reads the same when it is written, or a fault with its place; never both.
void FuzzBaseline(std::string_view bytes) {
  using namespace reports;
  const ReadBaselineResult result = ReadBaseline(bytes);
  Require(result.baseline.has_value() == result.fault.empty(), "what has no fault is a baseline");
  if (!result.baseline) {
    Require(result.place.line >= 1 && result.place.column >= 1, "a fault has a place");
    return;
  }
  const std::string text = BaselineText(*result.baseline);
  const ReadBaselineResult again = ReadBaseline(text);
  Require(again.baseline.has_value(), "what is written can be read", again.fault);
  Require(BaselineText(*again.baseline) == text, "nothing is lost");
  for (const bool held : result.baseline->Holds(result.baseline->causes)) {
    Require(held, "it holds its own causes");
  }
}

}  // namespace velkor::testing

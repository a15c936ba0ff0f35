#include <algorithm>
#include <string>

#include "fuzz/fuzzers.h"
#include "fuzz/require.h"
#include "readers/configuration.h"

namespace velkor::testing {

// A configuration, or faults that each name a line of it; never both.
void FuzzConfiguration(std::string_view bytes) {
  const ReadConfigurationResult result = ReadConfiguration(bytes);
  Require(result.configuration.has_value() == result.faults.empty(),
          "what has no faults is a configuration");
  const auto lines = static_cast<uint32_t>(std::ranges::count(bytes, '\n')) + 2;
  for (const ConfigurationFault& fault : result.faults) {
    Require(fault.place.line >= 1 && fault.place.line <= lines && fault.place.column >= 1,
            "a fault lies in the text", fault.text);
    Require(!fault.text.empty(), "a fault is told");
  }
  if (result.configuration) {
    Require(!result.configuration->input.empty(), "there is an input");
  }
}

}  // namespace velkor::testing

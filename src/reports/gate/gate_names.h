#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "core/function_table.h"
#include "readers/configuration.h"

namespace velkor::reports {

// What the name of a function in a velkor.toml means. Texts are UTF-8.
struct NameMeaning {
  std::vector<uint32_t> functions;  // none, or several: it does not say which is meant
  std::string error;                // then: why, with what may be meant
};

using NameMeanings = std::map<std::string, NameMeaning, std::less<>>;

// Of every function that the configuration names as an entry, in a level or to be ignored, and of
// more. In the thread that owns the table; reads it only.
NameMeanings MeaningsOf(const Configuration& configuration, const std::vector<std::string>& more,
                        const StkFunctionTable& functions);

}  // namespace velkor::reports

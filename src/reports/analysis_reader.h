#pragma once

#include <cstdio>
#include <optional>
#include <string>

#include "reports/compared_analysis.h"

namespace velkor::reports {

// Reads the JSON of an analysis back, as far as a comparison needs it, from the file's position on.
// None when it is not whole, of another schema, of another program, or when its numbers do not fit
// together; error then says so, beginning with what follows the file's name.
std::optional<ComparedAnalysis> ReadAnalysis(std::FILE* file, std::string& error);

}  // namespace velkor::reports

#pragma once

#include "cli/application.h"

namespace velkor::cli {

// Compares two analyses, each the JSON of one or an input that is analysed now. Changes no file.
ExitStatus Diff(Application& application, const Options& options);

}  // namespace velkor::cli

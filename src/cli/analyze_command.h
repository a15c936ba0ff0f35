#pragma once

#include "cli/application.h"

namespace velkor {

// Runs the analysis and prints it on standard output. Changes no file.
ExitStatus Analyze(Application& application, const Options& options);

}  // namespace velkor

#pragma once

#include "cli/application.h"

namespace velkor::cli {

// Run the analysis and print it, or one function's bound taken apart, on standard output. They
// change no file.
ExitStatus Analyze(Application& application, const Options& options);
ExitStatus Explain(Application& application, const Options& options);

}  // namespace velkor::cli

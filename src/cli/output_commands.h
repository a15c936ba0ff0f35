#pragma once

#include "cli/application.h"

namespace velkor::cli {

// The commands that write what the analysis found, or what it wants, into a file of the user's
// choice. They change nothing in the project.
ExitStatus Todo(Application& application, const Options& options);
ExitStatus Report(Application& application, const Options& options);
ExitStatus Chains(Application& application, const Options& options);
ExitStatus Names(Application& application, const Options& options);
ExitStatus Save(Application& application, const Options& options);

}  // namespace velkor::cli

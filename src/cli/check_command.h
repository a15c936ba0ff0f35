#pragma once

#include "cli/application.h"

namespace velkor::cli {

// Runs the analysis, holds the stacks of a velkor.toml and the limits of the command line against
// it, and prints what was found. Changes no file but a baseline that is to be written anew.
ExitStatus Check(Application& application, const Options& options);

}  // namespace velkor::cli

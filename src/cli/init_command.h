#pragma once

#include "cli/application.h"

namespace velkor::cli {

// Writes a new velkor.toml with what the input shows. What is there stays as it is.
ExitStatus Init(Application& application, const Options& options);

}  // namespace velkor::cli

#pragma once

#include "cli/application.h"

namespace velkor::cli {

// The commands that change the project's adjustments and save its stk system file. Each runs the
// analysis first and then does what the window does.
ExitStatus Adjust(Application& application, const Options& options);
ExitStatus Reset(Application& application, const Options& options);
ExitStatus Load(Application& application, const Options& options);

}  // namespace velkor::cli

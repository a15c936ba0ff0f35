#pragma once

#include <functional>
#include <string>

#include "cli/application.h"
#include "reports/result_output.h"

namespace velkor::cli {

// Writes what a command has found, after the notes, and ends the command: to the file, or to
// standard output where it is empty, "-" or "/dev/stdout". Says what goes wrong. The jobs have
// ended.
ExitStatus WriteResult(Application& application, const std::string& file,
                       const std::function<void(reports::ResultOutput&)>& write);

}  // namespace velkor::cli

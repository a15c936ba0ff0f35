#pragma once

#include <functional>
#include <string>
#include <vector>

#include "cli/application.h"
#include "reports/result_output.h"

namespace velkor::cli {

// Where a command's result goes: a file, or standard output where that is empty, "-" or
// "/dev/stdout".
struct ResultTarget {
  std::string file;
  std::vector<std::string> inputs;  // which it may not be, besides those of the document
};

bool GoesToStandardOutput(const std::string& file);

// Writes what a command has found, and ends the command with that status unless it cannot be
// written, which is said. The jobs have ended.
ExitStatus WriteResult(Application& application, const ResultTarget& target, ExitStatus status,
                       const std::function<void(reports::ResultOutput&)>& write);
// The same of the analysis that the document holds, after its notes, with its status.
ExitStatus WriteResult(Application& application, const std::string& file,
                       const std::function<void(reports::ResultOutput&)>& write);

}  // namespace velkor::cli

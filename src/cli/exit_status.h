#pragma once

namespace velkor::cli {

// What the program's exit status says.
enum ExitStatus : int {
  kDone = 0,
  kNotEverythingRead = 1,  // the analysis finished, but something was not read whole
  kWrongUsage = 2,
  kProjectNotRead = 3,
  kOutputFailed = 4,   // the results could not be written
  kGateNotPassed = 5,  // a stack is not as it should be
  kStopped = 130,
};

}  // namespace velkor::cli

#pragma once

#include <array>
#include <string_view>

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

// The same, for the user.
struct ExitStatusText {
  ExitStatus status;
  std::string_view says;
};
inline constexpr std::array<ExitStatusText, 7> kExitStatusTexts = {{
    {kDone, "done"},
    {kNotEverythingRead, "done, but a module or statement is missing, cut short or refused"},
    {kWrongUsage, "wrong usage; nothing was changed"},
    {kProjectNotRead, "the input could not be read; diff: nothing in common"},
    {kOutputFailed, "the result could not be written"},
    {kGateNotPassed, "check: a stack is not as it should be"},
    {kStopped, "stopped"},
}};

}  // namespace velkor::cli

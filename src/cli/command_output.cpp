#include "cli/command_output.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "platform/standard_streams.h"
#include "reports/result_file.h"

namespace velkor::cli {
namespace {

bool Print(Application& application, const std::function<void(reports::ResultOutput&)>& write) {
  reports::ResultOutput output(stdout);
  write(output);
  const bool written = output.Finish();
  if (!written) {
    application.Say("cannot write to standard output: " + output.Failure());
  }
  return written;
}

bool WriteFile(Application& application, const ResultTarget& where,
               const std::function<void(reports::ResultOutput&)>& write) {
  const std::string path = application.AbsolutePath(where.file);
  std::vector<std::string> inputs;
  std::ranges::transform(where.inputs, std::back_inserter(inputs),
                         [&](const std::string& input) { return application.AbsolutePath(input); });
  return application.Document().MayWriteTo(path, inputs) &&
         reports::WriteResultFile(path, application.GetHost(), application.Reporter(), write);
}

}  // namespace

bool GoesToStandardOutput(const std::string& file) {
  return file.empty() || file == "-" || file == kStandardOutput;
}

ExitStatus WriteResult(Application& application, const ResultTarget& target, ExitStatus status,
                       const std::function<void(reports::ResultOutput&)>& write) {
  application.StopCatchingInterrupts();
  const bool written = GoesToStandardOutput(target.file) ? Print(application, write)
                                                         : WriteFile(application, target, write);
  application.RunJobs();  // what has been posted meanwhile
  return written ? status : kOutputFailed;
}

ExitStatus WriteResult(Application& application, const std::string& file,
                       const std::function<void(reports::ResultOutput&)>& write) {
  application.SayNotes();
  return WriteResult(application, {file, {}}, application.FinishedStatus(), write);
}

}  // namespace velkor::cli

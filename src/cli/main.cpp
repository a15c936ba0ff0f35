#include <algorithm>
#include <cstdio>
#include <exception>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "cli/analyze_command.h"
#include "cli/application.h"
#include "cli/change_commands.h"
#include "cli/check_command.h"
#include "cli/diff_command.h"
#include "cli/init_command.h"
#include "cli/output_commands.h"
#include "messages/product_version.h"
#include "platform/heap.h"
#include "platform/host_program.h"
#include "platform/terminal.h"
#include "reports/terminal_text.h"

namespace velkor::embedded {
extern const std::string_view commit;
}

namespace velkor::cli {
namespace {

ExitStatus RunCommand(Application& application, const Options& options) {
  switch (options.command) {
    case Options::Command::kAnalyze:
      return Analyze(application, options);
    case Options::Command::kExplain:
      return Explain(application, options);
    case Options::Command::kTodo:
      return Todo(application, options);
    case Options::Command::kReport:
      return Report(application, options);
    case Options::Command::kDiff:
      return Diff(application, options);
    case Options::Command::kCheck:
      return Check(application, options);
    case Options::Command::kInit:
      return Init(application, options);
    case Options::Command::kChains:
      return Chains(application, options);
    case Options::Command::kAdjust:
      return Adjust(application, options);
    case Options::Command::kReset:
      return Reset(application, options);
    case Options::Command::kLoad:
      return Load(application, options);
    case Options::Command::kSave:
      return Save(application, options);
    case Options::Command::kNames:
      return Names(application, options);
  }
  return kWrongUsage;
}

int Run(const std::vector<std::string>& given) {
  std::vector<const char*> texts;
  std::ranges::transform(given, std::back_inserter(texts), &std::string::c_str);
  const ParsedArguments arguments = ParseArguments(static_cast<int>(texts.size()), texts.data(),
                                                   VersionLine(embedded::commit));
  if (!arguments.options) {
    return arguments.status;
  }
  std::string error;
  const auto application = Application::Create(*arguments.options, error);
  if (application == nullptr) {
    std::fprintf(stderr, "velkor-cli: %s\n", reports::OneLine(error).c_str());
    return kWrongUsage;
  }
  return RunCommand(*application, *arguments.options);
}

}  // namespace
}  // namespace velkor::cli

int main(int argc, char** argv) {
  velkor::PrepareHeapForOneRun();
  velkor::PrepareStandardStreams();
  try {
    return velkor::cli::Run(velkor::ProgramArguments(argc, argv));
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "velkor-cli: %s\n", failure.what());
    return velkor::cli::kOutputFailed;
  }
}

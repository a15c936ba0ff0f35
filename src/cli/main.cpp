#include <cstdio>
#include <exception>

#include "cli/analyze_command.h"
#include "cli/application.h"
#include "platform/terminal.h"

namespace velkor {
namespace {

int Run(int argc, const char* const* argv) {
  const ParsedArguments arguments = ParseArguments(argc, argv);
  if (!arguments.options) {
    return arguments.status;
  }
  std::string error;
  const auto application = Application::Create(*arguments.options, error);
  if (application == nullptr) {
    std::fprintf(stderr, "velkor-cli: %s\n", error.c_str());
    return kWrongUsage;
  }
  return Analyze(*application, *arguments.options);
}

}  // namespace
}  // namespace velkor

int main(int argc, char** argv) {
  velkor::PrepareStandardStreams();
  try {
    return velkor::Run(argc, argv);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "velkor-cli: %s\n", failure.what());
    return velkor::kOutputFailed;
  }
}

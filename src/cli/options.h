#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "messages/stop_question.h"
#include "platform/machine_options.h"
#include "reports/gate/gate_input.h"

namespace CLI {
class App;
}

namespace velkor::cli {

// What is read where no INPUT is given.
inline constexpr std::string_view kConfigurationName = "velkor.toml";

enum class OutputFormat { kText, kJson, kCsv, kMarkdown };
enum class GateFormat { kText, kJson, kSarif, kGithub, kGitlab, kMarkdown };

// What the command line asks for. Texts are bytes as the caller gave them. Which fields have a
// meaning depends on the command.
struct Options {
  enum class Command {
    kAnalyze,
    kExplain,
    kTodo,
    kReport,
    kDiff,
    kCheck,
    kInit,
    kChains,
    kAdjust,
    kReset,
    kLoad,
    kSave,
    kNames
  };

  Command command = Command::kAnalyze;
  std::string project;
  std::string newer;  // diff: what the project is compared with
  std::optional<std::string> function;
  std::vector<std::string> loadFiles;  // applied in memory, in this order
  std::string specification;           // load
  std::string output;                  // a file; empty or "-": standard output

  OutputFormat format = OutputFormat::kText;
  size_t top = 10;      // analyze, as text: how many numbers
  bool chains = false;  // likewise: all of it, with the call chain of every top-level function
  bool full = false;    // likewise, and nothing is left out of a long call chain
  bool all = false;     // chains: all call chains; reset: all functions

  // adjust: none leaves the field as it is, an empty text empties it.
  std::optional<std::string> margin;
  std::optional<std::string> depth;
  std::vector<std::string> callees;
  bool noCallees = false;

  bool quiet = false;

  struct Check {
    std::vector<reports::StackLimit> limits;
    std::string baseline;  // empty: beside the velkor.toml
    bool updateBaseline = false;
    bool noFail = false;
    GateFormat format = GateFormat::kText;
  };
  Check check;
  std::string elf;  // init; empty: none

  StopAnswer onError = StopAnswer::kIgnore;
  MachineOptions machine;
};

struct ParsedArguments {
  std::optional<Options> options;  // none: the program ends here, with status
  int status = 0;
};

// Making the options of all commands takes longer than a short run.
enum class OptionsMade : uint8_t { kOfAllCommands, kOfGivenCommand };

// Teaches a parser all commands and what each takes, into options, which outlives it; what it takes
// at once, or when the parser meets the command.
void AddCommands(CLI::App& app, Options& options, OptionsMade made);

// Prints help on standard output and what is wrong on standard error. version: the line that
// --version prints.
ParsedArguments ParseArguments(int argc, const char* const* argv, const std::string& version);

}  // namespace velkor::cli

#include "cli/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <map>
#include <utility>

#include "cli/exit_status.h"
#include "cli/usage.h"

namespace velkor::cli {
namespace {

const char* const kFunctionHelp =
    "function as specification files name it: main, util.c#step, [memcpy]";

void MakeInputOptional(CLI::App& command) {
  CLI::Option* const input = command.get_option("INPUT");
  input->required(false);
  input->description(input->get_description() + " (default: the velkor.toml of this folder)");
}

void AddInput(CLI::App& command, Options& options, Options::Command number) {
  command
      .add_option("INPUT", options.project,
                  "project file (.prj), folder with call graph files (*.ci), or velkor.toml")
      ->required();
  command.callback([&options, number] { options.command = number; });
}

void AddRunOptions(CLI::App& command, Options& options) {
  AddChoice<StopAnswer>(command, "--on-error", options.onError,
                        {{"abort", StopAnswer::kAbort},
                         {"retry", StopAnswer::kRetry},
                         {"ignore", StopAnswer::kIgnore}},
                        "what a wrong line of a specification file does: abort drops the file, "
                        "retry and ignore log it and go on (default: ignore)");
  command.add_flag("-q,--quiet", options.quiet, "of the log only warnings, errors and notes");
  AddMachineOptions(command, options.machine);
}

void AddFormat(CLI::App& command, Options& options,
               std::vector<std::pair<std::string, OutputFormat>> formats) {
  AddChoice(command, "--format", options.format, std::move(formats),
            "how to print (default: text)");
}

void AddLoadOption(CLI::App& command, Options& options) {
  command
      .add_option(
          "--load", options.loadFiles,
          "stack size specification file to apply, in memory only (- for standard input); may "
          "be repeated")
      ->allow_extra_args(false)
      ->option_text("FILE");
}

void AddOutputOption(CLI::App& command, Options& options) {
  command
      .add_option("--output", options.output,
                  "where to write (default, and with -: standard output)")
      ->option_text("FILE");
}

// A command that saves what is in force must not get into the stk system file what stands in a
// file that is to be applied in memory only.
void RefuseLoadOption(const Options& options) {
  const bool saves = options.command == Options::Command::kAdjust ||
                     options.command == Options::Command::kReset ||
                     options.command == Options::Command::kLoad;
  if (saves && !options.loadFiles.empty()) {
    throw CLI::ValidationError(
        "--load",
        "applies a file in memory only, and this command saves what is in force; the command "
        "\"load\" saves what a file states");
  }
}

void TakeDefaultInput(const CLI::App& app, Options& options) {
  for (const CLI::App* command : app.get_subcommands()) {
    const CLI::Option* const input = command->get_option_no_throw("INPUT");
    if (input != nullptr && input->empty()) {
      options.project = kConfigurationName;
    }
  }
}

std::string CheckCount(const std::string& text) {
  const bool isCount = text.find_first_not_of("0123456789") == std::string::npos;
  return isCount ? "" : "\"" + text + "\" is no number.";
}

// Of analyze as text.
void AddTextOptions(CLI::App& command, Options& options) {
  CLI::Option* top =
      command.add_option("--top", options.top, "text: how many numbers (default: 10)")
          ->option_text("N")
          ->check(CheckCount);
  CLI::Option* function =
      command
          .add_option("--function", options.function, "text: this function, not the largest ones")
          ->option_text("NAME")
          ->excludes(top);
  for (CLI::Option* whole :
       {command.add_flag("--chains", options.chains,
                         "text: all of it, with the call chain of every top-level function"),
        command.add_flag("--full", options.full,
                         "text: the same, and nothing left out of a long call chain")}) {
    whole->excludes(top)->excludes(function);
  }
}

void AddAnalyze(CLI::App& command, Options& options) {
  AddInput(command, options, Options::Command::kAnalyze);
  MakeInputOptional(command);
  AddLoadOption(command, options);
  AddFormat(
      command, options,
      {{"text", OutputFormat::kText}, {"json", OutputFormat::kJson}, {"csv", OutputFormat::kCsv}});
  AddTextOptions(command, options);
  AddOutputOption(command, options);
  AddRunOptions(command, options);
  command.callback([&options, &command] {
    options.command = Options::Command::kAnalyze;
    for (const char* name : {"--top", "--function", "--chains", "--full"}) {
      if (options.format != OutputFormat::kText && command.count(name) != 0) {
        throw CLI::ValidationError(name, "chooses what the text shows; the other formats hold all");
      }
    }
  });
}

void AddExplain(CLI::App& command, Options& options) {
  AddInput(command, options, Options::Command::kExplain);
  command.add_option("FUNCTION", options.function, kFunctionHelp)->required();
  AddLoadOption(command, options);
  AddFormat(command, options, {{"text", OutputFormat::kText}, {"json", OutputFormat::kJson}});
  AddRunOptions(command, options);
}

void AddTodo(CLI::App& command, Options& options) {
  AddInput(command, options, Options::Command::kTodo);
  MakeInputOptional(command);
  AddLoadOption(command, options);
  AddOutputOption(command, options);
  AddRunOptions(command, options);
}

void AddReport(CLI::App& command, Options& options) {
  AddInput(command, options, Options::Command::kReport);
  MakeInputOptional(command);
  AddLoadOption(command, options);
  command.add_option("--output", options.output, "where to write; - is standard output")
      ->required()
      ->option_text("FILE");
  AddRunOptions(command, options);
}

void AddDiff(CLI::App& command, Options& options) {
  command.add_option("OLD", options.project, "JSON of analyze (- for standard input), or an INPUT")
      ->required();
  command.add_option("NEW", options.newer, "likewise")->required();
  command.callback([&options] { options.command = Options::Command::kDiff; });
  AddLoadOption(command, options);
  AddFormat(command, options,
            {{"text", OutputFormat::kText},
             {"json", OutputFormat::kJson},
             {"markdown", OutputFormat::kMarkdown}});
  AddOutputOption(command, options);
  AddRunOptions(command, options);
}

reports::StackLimit LimitOf(const std::string& text) {
  const size_t sign = text.rfind('=');
  reports::StackLimit limit;
  const char* const end = text.data() + text.size();
  const char* const number = text.data() + std::min(sign, text.size() - 1) + 1;
  const auto [next, error] = std::from_chars(number, end, limit.bytes);
  if (sign == text.npos || sign == 0 || error != std::errc() || next != end || limit.bytes == 0 ||
      limit.bytes > INT32_MAX) {
    throw CLI::ValidationError("--limit", "\"" + text + "\" is not ENTRY=BYTES");
  }
  limit.entry = text.substr(0, sign);
  return limit;
}

void AddCheckOptions(CLI::App& command, Options::Check& check) {
  command
      .add_option_function<std::vector<std::string>>(
          "--limit",
          [&check](const std::vector<std::string>& texts) {
            for (const std::string& text : texts) {
              check.limits.push_back(LimitOf(text));
            }
          },
          "what a function and all that it calls may take, beside the stacks; may be repeated")
      ->allow_extra_args(false)
      ->option_text("ENTRY=BYTES");
  command
      .add_option(
          "--baseline", check.baseline,
          "what the stacks needed before (default: velkor.baseline.json beside velkor.toml)")
      ->option_text("FILE");
  command.add_flag("--update-baseline", check.updateBaseline,
                   "write the baseline anew, and check against it");
  command.add_flag("--no-fail", check.noFail, "end with 0 where the check is not passed");
  AddChoice<GateFormat>(command, "--format", check.format,
                        {{"text", GateFormat::kText},
                         {"json", GateFormat::kJson},
                         {"sarif", GateFormat::kSarif},
                         {"github", GateFormat::kGithub},
                         {"gitlab", GateFormat::kGitlab},
                         {"markdown", GateFormat::kMarkdown}},
                        "how to print (default: text)");
}

void AddCheck(CLI::App& command, Options& options) {
  command.add_option("INPUT", options.project,
                     "velkor.toml, with --limit also a project file or a folder");
  MakeInputOptional(command);
  command.callback([&options] { options.command = Options::Command::kCheck; });
  AddCheckOptions(command, options.check);
  AddLoadOption(command, options);
  AddOutputOption(command, options);
  AddRunOptions(command, options);
}

void AddInit(CLI::App& command, Options& options) {
  AddInput(command, options, Options::Command::kInit);
  command.add_option("--elf", options.elf, "the linked program, which tells more")
      ->option_text("FILE");
  command.add_option("--output", options.output, "where to write (default: velkor.toml)")
      ->option_text("FILE");
  AddRunOptions(command, options);
}

void AddChains(CLI::App& command, Options& options) {
  AddInput(command, options, Options::Command::kChains);
  command.add_option("FUNCTION", options.function, kFunctionHelp)->required();
  AddLoadOption(command, options);
  command.add_flag("--all", options.all, "all call chains, not only those with the maximum stack");
  command
      .add_option(
          "--output", options.output,
          "where to write; .csv gives CSV, else text (default, and with -: standard output)")
      ->option_text("FILE");
  AddRunOptions(command, options);
}

void AddAdjust(CLI::App& command, Options& options) {
  AddInput(command, options, Options::Command::kAdjust);
  command.add_option("FUNCTION", options.function, kFunctionHelp)->required();
  command.add_option("--margin", options.margin, "bytes to add; '' takes the margin away")
      ->option_text("N");
  command
      .add_option("--depth", options.depth,
                  "how often it can be active at once; '' takes the depth away")
      ->option_text("N");
  CLI::Option* callees =
      command
          .add_option("--callee", options.callees,
                      "function that its indirect calls reach; repeat it for the whole list")
          ->allow_extra_args(false)
          ->option_text("NAME");
  command.add_flag("--no-callees", options.noCallees, "take the list of callees away")
      ->excludes(callees);
  command.callback([&options] {
    options.command = Options::Command::kAdjust;
    if (!options.margin && !options.depth && options.callees.empty() && !options.noCallees) {
      throw CLI::ValidationError("adjust",
                                 "state something: --margin, --depth, --callee or --no-callees");
    }
  });
  command.add_option("--load", options.loadFiles)->group("");
  AddRunOptions(command, options);
}

void AddReset(CLI::App& command, Options& options) {
  AddInput(command, options, Options::Command::kReset);
  CLI::Option* function = command.add_option("FUNCTION", options.function, kFunctionHelp);
  command.add_flag("--all", options.all, "every function")->excludes(function);
  command.callback([&options] {
    options.command = Options::Command::kReset;
    if (!options.function && !options.all) {
      throw CLI::RequiredError("FUNCTION or --all");
    }
  });
  command.add_option("--load", options.loadFiles)->group("");
  AddRunOptions(command, options);
}

void AddLoad(CLI::App& command, Options& options) {
  AddInput(command, options, Options::Command::kLoad);
  command
      .add_option("FILE", options.specification,
                  "stack size specification file (- for standard input)")
      ->required();
  command.add_option("--load", options.loadFiles)->group("");
  AddRunOptions(command, options);
}

void AddSave(CLI::App& command, Options& options) {
  AddInput(command, options, Options::Command::kSave);
  AddLoadOption(command, options);
  command.add_option("--output", options.output, "where to write (- for standard output)")
      ->required()
      ->option_text("FILE");
  AddRunOptions(command, options);
}

void AddNames(CLI::App& command, Options& options) {
  AddInput(command, options, Options::Command::kNames);
  AddLoadOption(command, options);
  AddRunOptions(command, options);
}

struct CommandForm {
  const char* name;
  const char* help;
  void (*addOptions)(CLI::App& command, Options& options);
};

constexpr CommandForm kCommandForms[] = {
    {"analyze", "print how much stack is used, and what is not known", AddAnalyze},
    {"explain", "take the bound of a function apart, into rows that add up to it", AddExplain},
    {"todo",
     "write what to state so that more functions have a bound, what frees most first, as a "
     "specification file to fill in",
     AddTodo},
    {"report", "write the analysis as one page of HTML with a picture", AddReport},
    {"diff", "compare two analyses, each JSON of analyze or an INPUT", AddDiff},
    {"check", "hold the stacks that velkor.toml states against what they need", AddCheck},
    {"init", "write a velkor.toml with what the input shows", AddInit},
    {"chains", "write the call chains of a function", AddChains},
    {"names", "print what names each function in a specification file, one a line", AddNames},
    {"adjust", "state the margin, recursion depth or indirect callees of a function, and save it",
     AddAdjust},
    {"reset", "take the adjustments of a function, or of all functions, away", AddReset},
    {"load", "apply a stack size specification file, and save it", AddLoad},
    {"save", "write all adjustments and the unknown functions as a specification file", AddSave},
};

std::string ExitStatusHelp() {
  std::string help = "Exit status:\n";
  for (const auto& [status, says] : kExitStatusTexts) {
    const std::string number = std::to_string(status);
    help += "  " + number + std::string(6 - number.size(), ' ') + std::string(says) + "\n";
  }
  return help;
}

}  // namespace

void AddCommands(CLI::App& app, Options& options, OptionsMade made) {
  app.name("velkor-cli");
  app.description("How much stack can each function of a firmware program use at most?");
  app.allow_windows_style_options(false);  // "/x" is a path on every host
  app.require_subcommand(1);
  for (const CommandForm& form : kCommandForms) {
    CLI::App* const command = app.add_subcommand(form.name, form.help);
    if (made == OptionsMade::kOfAllCommands) {
      form.addOptions(*command, options);
    } else {
      command->preparse_callback([&form, command, &options](size_t) {
        form.addOptions(*command, options);
        command->set_version_flag("--version", command->get_parent()->version());
      });
    }
  }
  app.footer(ExitStatusHelp());
}

ParsedArguments ParseArguments(int argc, const char* const* argv, const std::string& version) {
  Options options;
  CLI::App app;
  AddCommands(app, options, OptionsMade::kOfGivenCommand);
  app.set_version_flag("--version", version);
  try {
    app.parse(argc, argv);
    RefuseLoadOption(options);
    TakeDefaultInput(app, options);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {
      app.exit(error);  // help or version
      return {std::nullopt, kDone};
    }
    std::fprintf(stderr, "velkor-cli: %s\nRun with --help for more information.\n",
                 UsageError(app, error).c_str());
    return {std::nullopt, kWrongUsage};
  }
  return {std::move(options), kDone};
}

}  // namespace velkor::cli

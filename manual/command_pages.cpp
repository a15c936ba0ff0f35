// command_pages TEMPLATE FOLDER: writes the man pages of velkor-cli and its commands, and from
// TEMPLATE its completion for bash, into FOLDER. A tool of the build.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "cli/exit_status.h"
#include "cli/options.h"
#include "manual/completion.h"
#include "manual/file_output.h"
#include "manual/manual_page.h"
#include "manual/roff.h"

namespace velkor::manual {
namespace {

const std::string kProgram = "velkor-cli";

const char* const kManners =
    "Results go to standard output, the log to standard error, one message a line. A\n"
    ".B \\-\n"
    "names standard input or output wherever a file is wanted. Numbers are bytes.\n"
    ".PP\n"
    "Functions are named as specification files name them:\n"
    ".BR main ,\n"
    ".BR util.c#step ,\n"
    ".BR [memcpy] .\n";

const char* const kEnvironment =
    ".TP\n.B VELKOR_MAP\nFolders of projects and where they are on this machine, as with\n"
    ".BR \\-\\-map ,\nseparated by \";\".\n"
    ".TP\n.BR LC_ALL \", \" LC_CTYPE \", \" LANG\n"
    "The first that is set tells the character set of the files, unless\n"
    ".B \\-\\-codepage\ndoes.\n"
    ".TP\n.BR NO_COLOR \", \" TERM=dumb\nNo colours and no progress line.\n";

const char* const kFiles =
    ".TP\n.I ../dattarn/\n.TQ\n.I ../share/velkor/\n"
    "Tables of the stack sizes of library functions, beside the folder of the program; the\n"
    "first that is there counts. Without them the tables within the program serve.\n"
    ".TP\n.I velkor.toml\nWhat a program's stacks are; see\n.BR velkor.toml (5).\n"
    ".TP\n.I velkor.baseline.json\nWhat the stacks needed before, beside it.\n"
    ".TP\n.IR project .psg\nWhat was stated about the functions of\n.IR project .prj.\n";

std::string ExitStatusSection() {
  std::string section;
  for (const auto& [status, says] : cli::kExitStatusTexts) {
    section += Tagged(Bold(std::to_string(status)), std::string(says));
  }
  return section;
}

ManualPage ProgramPage(const CLI::App& app) {
  ManualPage page(kProgram, "tell how much stack the functions of a firmware program use at most");
  page.AddCalling(app);
  page.AddSection("DESCRIPTION", Lines(app.get_description()) + "\n.PP\n" + kManners);
  std::string commands;
  std::vector<std::string> pages = {"velkor(1)", "velkor.toml(5)"};
  for (const CLI::App* command : app.get_subcommands({})) {
    const std::string name = kProgram + "-" + command->get_name();
    commands += Tagged(Bold(command->get_name()), command->get_description());
    pages.push_back(name + "(1)");
  }
  page.AddSection("COMMANDS", commands);
  page.AddArguments(app);
  page.AddSection("EXIT STATUS", ExitStatusSection());
  page.AddSection("ENVIRONMENT", kEnvironment);
  page.AddSection("FILES", kFiles);
  page.AddSeeAlso(pages);
  return page;
}

ManualPage CommandPage(const CLI::App& command) {
  ManualPage page(kProgram + " " + command.get_name(), command.get_description());
  page.AddCalling(command);
  page.AddSection("DESCRIPTION", Lines(Sentence(command.get_description())) +
                                     "\n.PP\nExit status, environment and files:\n.BR " +
                                     Roff(kProgram) + " (1).\n");
  page.AddArguments(command);
  page.AddSeeAlso({kProgram + "(1)", "velkor.toml(5)"});
  return page;
}

void WriteCompletion(const CLI::App& app, const std::string& source, const std::string& target) {
  const std::string mark = "# @TABLES@\n";
  std::string text = ReadFile(source);
  text.replace(text.find(mark), mark.size(), CompletionTables(app) + "\n");
  WriteFile(target, text);
}

void WriteAll(const std::string& source, const std::string& folder) {
  cli::Options options;
  CLI::App app;
  cli::AddCommands(app, options, cli::OptionsMade::kOfAllCommands);
  app.set_version_flag("--version", "");
  std::vector<ManualPage> pages = {ProgramPage(app)};
  for (const CLI::App* command : app.get_subcommands({})) {
    pages.push_back(CommandPage(*command));
  }
  for (const ManualPage& page : pages) {
    WriteFile(folder + "/" + page.Name() + ".1", page.Text());
  }
  WriteCompletion(app, source, folder + "/velkor-cli.bash");
}

}  // namespace
}  // namespace velkor::manual

int main(int argc, char** argv) {
  try {
    if (argc == 3) {
      velkor::manual::WriteAll(argv[1], argv[2]);
      return 0;
    }
    std::fputs("command_pages TEMPLATE FOLDER\n", stderr);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "command_pages: %s\n", failure.what());
  }
  return 1;
}

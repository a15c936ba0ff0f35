#include "cli/diff_command.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <optional>

#include "cli/command_output.h"
#include "platform/host_program.h"
#include "reports/analysis_reader.h"
#include "reports/comparison_json.h"
#include "reports/comparison_output.h"

namespace velkor::cli {
namespace {

using reports::ComparedAnalysis;

struct CloseFile {
  void operator()(std::FILE* file) const {
    if (file != stdin) {
      std::fclose(file);
    }
  }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

// The file at its start when it holds JSON; none for what else there may be, which is an input.
File OpenJson(const std::string& given) {
  if (given == "-") {
    return File(stdin);
  }
  File file(OpenStdioFile(given, "rb"));
  int first = ' ';
  while (file != nullptr && (first == ' ' || first == '\t' || first == '\r' || first == '\n')) {
    first = std::fgetc(file.get());
  }
  if (file == nullptr || first != '{') {
    return nullptr;
  }
  std::ungetc(first, file.get());
  return file;
}

// One side of the comparison, or how the command ends without it.
struct Side {
  std::optional<ComparedAnalysis> analysis;
  ExitStatus status = kDone;
};

Side ReadJson(Application& application, const std::string& given, std::FILE* file) {
  std::string error;
  Side side{reports::ReadAnalysis(file, error), kDone};
  if (!side.analysis) {
    application.Say((given == "-" ? "standard input" : application.Typed(given)) + " " + error);
    side.status = kProjectNotRead;
  }
  return side;
}

Side Analyse(Application& application, Options options, const std::string& given) {
  options.project = given;
  const ExitStatus analysed = application.OpenAndAnalyse(options);
  if (analysed != kDone) {
    return {std::nullopt, analysed};
  }
  application.SayNotes();
  return {reports::TakeCompared(application.Result()), application.FinishedStatus()};
}

Side Take(Application& application, const Options& options, const std::string& given) {
  const File json = OpenJson(given);
  Side side = json != nullptr ? ReadJson(application, given, json.get())
                              : Analyse(application, options, given);
  if (side.analysis) {
    side.analysis->label = application.GetCodePage().ToUtf8(application.Typed(given));
  }
  return side;
}

void WriteComparison(const reports::Comparison& comparison, const ComparedAnalysis& before,
                     const ComparedAnalysis& after, OutputFormat format,
                     reports::ResultOutput& output) {
  switch (format) {
    case OutputFormat::kJson:
      return reports::WriteComparisonJson(comparison, before, after, output);
    case OutputFormat::kMarkdown:
      return reports::WriteComparisonMarkdown(comparison, before, after, output);
    default:
      return reports::WriteComparisonText(comparison, before, after, output);
  }
}

// Of two ways to end the graver one.
ExitStatus Graver(ExitStatus left, ExitStatus right) {
  constexpr std::array kGravest = {kStopped, kOutputFailed, kProjectNotRead, kNotEverythingRead,
                                   kDone};
  return *std::ranges::find_if(kGravest,
                               [&](ExitStatus each) { return each == left || each == right; });
}

}  // namespace

ExitStatus Diff(Application& application, const Options& options) {
  const Side before = Take(application, options, options.project);
  if (!before.analysis) {
    return before.status;
  }
  const Side after = Take(application, options, options.newer);
  if (!after.analysis) {
    return after.status;
  }
  const reports::Comparison comparison = reports::Compare(*before.analysis, *after.analysis);
  if (comparison.matched == 0) {
    application.Say(application.Typed(options.project) + " and " +
                    application.Typed(options.newer) +
                    " have no function in common: they are not of one program");
    return kProjectNotRead;
  }
  return WriteResult(application, {options.output, {options.project, options.newer}},
                     Graver(before.status, after.status), [&](reports::ResultOutput& output) {
                       WriteComparison(comparison, *before.analysis, *after.analysis,
                                       options.format, output);
                     });
}

}  // namespace velkor::cli

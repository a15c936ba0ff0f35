#include "cli/check_command.h"

#include <fmt/format.h>
#include <optional>
#include <string_view>
#include <vector>

#include "cli/command_output.h"
#include "files/whole_text.h"
#include "platform/path_text.h"
#include "reports/gate/gate_json.h"
#include "reports/gate/gate_text.h"
#include "reports/gate/github_output.h"
#include "reports/gate/gitlab_output.h"
#include "reports/gate/input_gate.h"
#include "reports/gate/markdown_output.h"
#include "reports/gate/sarif_output.h"

namespace velkor::cli {
namespace {

constexpr uint64_t kMostBaselineBytes = 256 << 20;

void WriteReport(const reports::GateReport& report, GateFormat format,
                 reports::ResultOutput& output) {
  switch (format) {
    case GateFormat::kText:
      return reports::WriteGateText(report, output);
    case GateFormat::kJson:
      return reports::WriteGateJson(report, output);
    case GateFormat::kSarif:
      return reports::WriteSarif(report, {}, output);
    case GateFormat::kGithub:
      return reports::WriteGithubAnnotations(report, output);
    case GateFormat::kGitlab:
      return reports::WriteGitlabReport(report, output);
    case GateFormat::kMarkdown:
      return reports::WriteGateMarkdown(report, output);
  }
}

// One run of the command.
class CheckRun {
 public:
  CheckRun(Application& application, const Options& options)
      : application_(application),
        options_(options),
        result_(application.Result()),
        gate_(*application.Document().Input(), *application.Document().FunctionTable(), result_,
              application.GetHost()) {}

  ExitStatus Run() {
    if (!gate_.IsConfigured() && options_.check.limits.empty()) {
      application_.Say("nothing says how large a stack is: give " + ConfigurationHint());
      return kWrongUsage;
    }
    if (options_.check.updateBaseline && BaselinePath().empty()) {
      application_.Say("--update-baseline: name the file with --baseline");
      return kWrongUsage;
    }
    std::optional<reports::Baseline> baseline;
    if (const ExitStatus read = ReadBaseline(baseline); read != kDone) {
      return read;
    }
    return CheckAgainst(std::move(baseline));
  }

 private:
  ExitStatus CheckAgainst(std::optional<reports::Baseline> baseline) {
    reports::GateOutcome outcome = Ask(baseline ? &*baseline : nullptr);
    if (outcome.report && options_.check.updateBaseline) {
      baseline =
          reports::BaselineOf(*outcome.report, result_, gate_.Sources().Configuration(), Commit());
      const auto write = [&](reports::ResultOutput& output) {
        output.Write(reports::BaselineText(*baseline));
      };
      if (WriteResult(application_, {BaselinePath(), {}}, kDone, write) != kDone) {
        return kOutputFailed;
      }
      if (!gate_.ChecksGrowth()) {
        application_.Say(
            "\"growth\" of [gate] is not stated: against this baseline a stack may grow as long as "
            "it fits");
      }
      outcome = Ask(&*baseline);
    }
    if (!outcome.report) {
      SayFaults(outcome.faults);
      return kWrongUsage;
    }
    return Write(*outcome.report);
  }

  reports::GateOutcome Ask(const reports::Baseline* baseline) {
    return gate_.Check(options_.check.limits, baseline);
  }

  ExitStatus Write(reports::GateReport& report) {
    if (application_.Document().AnyJobFailed() && report.Passed()) {
      report.findings.push_back(NotRead());
    }
    report.name = Name();
    report.commit = Commit();
    const bool passes = report.Passed() || options_.check.noFail;
    return WriteResult(
        application_, {options_.output, {BaselinePath()}}, passes ? kDone : kGateNotPassed,
        [&](reports::ResultOutput& output) { WriteReport(report, options_.check.format, output); });
  }

  // The log says what.
  reports::Finding NotRead() {
    reports::Finding finding;
    finding.rule = "statement-not-read";
    finding.text = "not everything was read: the log says what";
    finding.place = {gate_.Sources().Configuration(), 1, 1};
    return finding;
  }

  void SayFaults(const std::vector<reports::GateFault>& faults) {
    for (const reports::GateFault& fault : faults) {
      application_.Say(fault.place == TextPlace()
                           ? fault.text
                           : fmt::format("{}:{}:{}: {}", ConfigurationPath(), fault.place.line,
                                         fault.place.column, fault.text));
    }
  }

  // A folder that was given may hold one.
  std::string ConfigurationHint() {
    const std::string inFolder = ConfigurationPath() + "/velkor.toml";
    return application_.GetHost().files.Exists(inFolder)
               ? inFolder
               : "--limit ENTRY=BYTES, or a velkor.toml (\"init\" writes one)";
  }

  // None where there is none that has to be, and where it is to be written anew.
  ExitStatus ReadBaseline(std::optional<reports::Baseline>& baseline) {
    const std::string path = BaselinePath();
    FileSystem& files = application_.GetHost().files;
    if (options_.check.updateBaseline || path.empty() ||
        (options_.check.baseline.empty() && !files.Exists(path))) {
      return kDone;
    }
    const std::optional<std::string> text = ReadWholeText(files, path, kMostBaselineBytes);
    if (!text) {
      application_.Say("cannot read the baseline " + path);
      return kProjectNotRead;
    }
    reports::ReadBaselineResult read = reports::ReadBaseline(*text);
    if (!read.baseline) {
      application_.Say(
          fmt::format("{}:{}:{}: {}", path, read.place.line, read.place.column, read.fault));
      return kProjectNotRead;
    }
    if (!reports::IsSameProject(read.baseline->project, gate_.Sources().Configuration())) {
      application_.Say(
          fmt::format("{} is the baseline of another project, {}", path, read.baseline->project));
      return kProjectNotRead;
    }
    baseline = std::move(read.baseline);
    return kDone;
  }

  std::string BaselinePath() const {
    if (!options_.check.baseline.empty()) {
      return application_.AbsolutePath(options_.check.baseline);
    }
    const std::string& path = ConfigurationPath();
    return !gate_.IsConfigured() ? "" : path.substr(0, path.rfind(".toml")) + ".baseline.json";
  }

  const std::string& ConfigurationPath() const { return application_.Document().PathName(); }

  // "fw" of fw/velkor.toml and of fw.toml.
  std::string Name() const {
    const std::vector<std::string_view> steps =
        PathSteps(ConfigurationPath(), application_.GetCodePage());
    const std::string_view stem = steps.back().substr(0, steps.back().rfind('.'));
    const std::string_view folder = steps.size() < 2 ? std::string_view() : steps[steps.size() - 2];
    return std::string(stem != "velkor" ? stem : folder);
  }

  std::string Commit() {
    return reports::CommitOf(application_.GetHost().files, application_.GetCodePage(),
                             gate_.Sources().Root());
  }

  Application& application_;
  const Options& options_;
  const reports::AnalysisResult result_;
  reports::InputGate gate_;
};

}  // namespace

ExitStatus Check(Application& application, const Options& options) {
  const ExitStatus analysed = application.OpenAndAnalyse(options);
  if (analysed != kDone) {
    return analysed;
  }
  application.StopCatchingInterrupts();
  return CheckRun(application, options).Run();
}

}  // namespace velkor::cli

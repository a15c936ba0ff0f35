#include "cli/application.h"

#include <algorithm>
#include <iterator>

#include "core/bound_notes.h"
#include "document/notifications.h"
#include "platform/standard_streams.h"
#include "platform/terminal.h"
#include "reports/function_lookup.h"
#include "reports/note_text.h"
#include "reports/take_result.h"

namespace velkor::cli {
namespace {

reports::AnalysisInputs Inputs(CStkDoc& document) {
  reports::AnalysisInputs inputs;
  const StkStringList& modules = document.Input()->Modules();
  const std::vector<ModuleOutcome>& outcomes = document.ModuleOutcomes();
  for (size_t i = 0; i < outcomes.size(); ++i) {
    if (outcomes[i] == ModuleOutcome::kRead) {
      ++inputs.read;
    } else {
      const bool missing = outcomes[i] == ModuleOutcome::kMissing;
      (missing ? inputs.missing : inputs.notWhole).push_back(modules[i]);
    }
  }
  return inputs;
}

}  // namespace

std::unique_ptr<Application> Application::Create(const Options& options, std::string& error) {
  std::unique_ptr<LocalMachine> machine = LocalMachine::Create(options.machine, error);
  if (machine == nullptr) {
    return nullptr;
  }
  return std::unique_ptr<Application>(new Application(std::move(machine), options));
}

Application::Application(std::unique_ptr<LocalMachine> machine, const Options& options)
    : machine_(std::move(machine)),
      progress_(MayDrawOnErrorTerminal() && !options.quiet, ErrorTerminalWidth()),
      log_(GetCodePage(), progress_, options.quiet),
      boxes_(log_, options.onError),
      messages_(StkMessages::English(GetCodePage())) {
  reporter_.RegisterLogView(&log_);
  reporter_.SetOpenedFromCommandLine(true);
  interrupt_.emplace([this] { queue_.Post([this] { StopJobs(); }); });
}

Application::~Application() {
  interrupt_.reset();
  StopJobs();
  reporter_.RegisterLogView(nullptr);
  progress_.Erase();
}

ExitStatus Application::OpenAndAnalyse(const Options& options) {
  log_.ForgetNotes();
  if (!document_.OnOpenDocument(AbsolutePath(options.project))) {
    SayWhatWritesConfiguration(options);
    return kProjectNotRead;
  }
  document_.StartAnalysis();
  if (!RunJobs()) {
    return kStopped;
  }
  for (const std::string& file : options.loadFiles) {
    if (LoadSpecification(file, false) == kStopped) {
      return kStopped;
    }
  }
  return kDone;
}

void Application::SayWhatWritesConfiguration(const Options& options) {
  const bool wanted =
      options.command == Options::Command::kCheck || options.project == kConfigurationName;
  if (wanted && !GetHost().files.Exists(AbsolutePath(options.project))) {
    Say("\"velkor-cli init INPUT\" writes a velkor.toml");
  }
}

ExitStatus Application::LoadSpecification(const std::string& file, bool saveAfter) {
  if (!document_.LoadSpecFile(InputPath(file), saveAfter)) {
    Say(Typed(file) + " is not read: the project has no functions");
    anyFileUnread_ = true;
    return kNotEverythingRead;
  }
  return RunJobs() ? kDone : kStopped;
}

bool Application::RunJobs() {
  queue_.RunUntil([this] { return !document_.HasJobs(); });
  // What a stopped job has said before it stopped, and a request to stop that came at the end.
  queue_.Drain();
  progress_.Erase();
  return !stopped_;
}

ExitStatus Application::RunWritingJob() {
  if (!RunJobs()) {
    return kStopped;
  }
  SayNotes();
  return document_.AnyWritingFailed() ? kOutputFailed : FinishedStatus();
}

ExitStatus Application::FinishedStatus() {
  const bool unread = log_.AnythingUnread() || document_.AnyJobFailed() || anyFileUnread_ ||
                      std::ranges::any_of(log_.Notes(), &StkNote::incomplete) ||
                      std::ranges::any_of(document_.InputNotes(), &StkNote::incomplete) ||
                      std::ranges::any_of(document_.ModuleOutcomes(), [](ModuleOutcome outcome) {
                        return outcome != ModuleOutcome::kRead;
                      });
  return unread ? kNotEverythingRead : kDone;
}

void Application::Say(std::string_view text) {
  const bool ends = text.ends_with('.') || text.ends_with('?');
  log_.Say("velkor-cli: " + std::string(text) + (ends ? "" : "."));
}

void Application::SayNotes() {
  for (const StkNote& note : Notes()) {
    log_.Say("note: " + reports::NoteLine(note));
  }
}

reports::AnalysisResult Application::Result() {
  const ProgramInput& input = *document_.Input();
  return reports::TakeResult({.project = document_.PathName(),
                              .compilerName = input.GeneratorName(),
                              .compilerVersion = input.GeneratorVersion(),
                              .inputs = Inputs(document_),
                              .log = log_.Messages(),
                              .notes = Notes(),
                              .functions = *document_.FunctionTable(),
                              .roots = document_.RootList()->Functions(),
                              .bounds = *document_.Bounds(),
                              .threads = machine_->GetHost().threads});
}

std::vector<StkNote> Application::Notes() {
  std::vector<StkNote> notes = log_.Notes();
  std::ranges::move(document_.InputNotes(), std::back_inserter(notes));
  std::ranges::move(BoundNotes(*document_.FunctionTable(), *document_.Bounds(), messages_),
                    std::back_inserter(notes));
  return notes;
}

std::string Application::InputPath(std::string_view path) const {
  return path == "-" ? std::string(kStandardInput) : AbsolutePath(path);
}

std::string Application::OutputPath(std::string_view path) const {
  return path.empty() || path == "-" ? std::string(kStandardOutput) : AbsolutePath(path);
}

ExitStatus Application::NotFoundStatus() {
  return document_.FunctionTable()->Count() == 0 ? kProjectNotRead : kWrongUsage;
}

StkFunction* Application::FindFunction(const std::string& name) {
  const StkFunctionTable& functions = *document_.FunctionTable();
  if (functions.Count() == 0) {
    Say("no module was read: there are no functions");
    return nullptr;
  }
  const std::string typed = machine_->Typed(name);
  StkFunctionList found = reports::FindFunctions(functions, typed);
  if (found.empty()) {
    found = reports::FindFunctions(functions, name);  // a script may give the project's own bytes
  }
  if (found.size() != 1) {
    Say(reports::LookupError(functions, typed, found));
    return nullptr;
  }
  return found.front();
}

// Nobody is woken for a progress that is not shown.
void Application::Post(uint32_t message, uint64_t parameter) {
  if (IsOnlyProgress(message) && !progress_.IsShown()) {
    return;
  }
  queue_.Post([this, message, parameter] { monitor_.Handle(message, parameter); });
}

// The monitor knows a job only once its first notification has been handled.
void Application::StopJobs() {
  stopped_ = true;
  monitor_.Stop();
  for (const JobKind kind : kJobKinds) {
    document_.Stop(kind);
  }
}

}  // namespace velkor::cli

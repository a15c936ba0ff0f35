#include "cli/application.h"

#include "cli/function_lookup.h"
#include "platform/terminal.h"

namespace velkor {

std::unique_ptr<Application> Application::Create(const Options& options, std::string& error) {
  std::unique_ptr<LocalMachine> machine = LocalMachine::Create(options.machine, error);
  if (machine == nullptr) {
    return nullptr;
  }
  return std::unique_ptr<Application>(new Application(std::move(machine), options));
}

Application::Application(std::unique_ptr<LocalMachine> machine, const Options& options)
    : machine_(std::move(machine)),
      progress_(IsErrorTerminal(), ErrorTerminalWidth()),
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

ExitStatus Application::OpenAndAnalyse(std::string_view project) {
  if (!document_.OnOpenDocument(AbsolutePath(project))) {
    return kProjectNotRead;
  }
  document_.StartAnalysis();
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
  return document_.AnyWritingFailed() ? kOutputFailed : FinishedStatus();
}

void Application::Say(std::string_view text) {
  log_.Say("velkor-cli: " + std::string(text));
}

StkFunction* Application::FindFunction(const std::string& name) {
  const StkFunctionTable& functions = *document_.FunctionTable();
  const std::string typed = machine_->Typed(name);
  StkFunctionList found = FindFunctions(functions, typed);
  if (found.empty()) {
    found = FindFunctions(functions, name);  // a script may give the project's own bytes
  }
  if (found.size() != 1) {
    Say(LookupError(functions, typed, found));
    return nullptr;
  }
  return found.front();
}

void Application::Post(uint32_t message, uint64_t parameter) {
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

}  // namespace velkor

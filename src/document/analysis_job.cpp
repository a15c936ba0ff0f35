#include "document/analysis_job.h"

#include <algorithm>

#include "document/notifications.h"

namespace velkor {

StkAnalysisJob::StkAnalysisJob(AnalysisParts parts, MessageTarget& mainWindow)
    : StkJob(Event::Reset::kManual, mainWindow), parts_(parts) {}

StkAnalysisJob::~StkAnalysisJob() {
  Stop();
}

WorkEnd StkAnalysisJob::Run() {
  const StkStringList& modules = parts_.input.Modules();
  outcomes_.assign(modules.size(), ModuleOutcome::kMissing);
  Post(WM_STK_ANALYSIS_START, modules.size());
  if (!AnyModuleExists()) {
    parts_.reporter.PostWarning(MessageKey::kW9430, {parts_.input.GeneratorName()});
    PostEnd(WM_STK_ANALYSIS_END);
    return WorkEnd::kFailed;
  }
  if (!ReadModules()) {
    return WorkEnd::kStopped;
  }
  parts_.input.ResolveCalls(parts_.database);
  PostEnd(WM_STK_ANALYSIS_END);
  return WorkEnd::kCompleted;
}

void StkAnalysisJob::Abandon() {
  parts_.database.functions.Clear();
  std::fill(outcomes_.begin(), outcomes_.end(), ModuleOutcome::kNotWhole);
  try {
    // Never without a warning: no functions are no result.
    const std::string& path = currentPath_.empty() ? parts_.input.Path() : currentPath_;
    parts_.reporter.PostWarning(MessageKey::kW9401, {MessageFile{path}});
    parts_.reporter.PostLog(MessageKey::kReadingAborted, {path});
  } catch (...) {
    // The messages have no room; the notification is what matters.
  }
  PostEnd(WM_STK_ANALYSIS_END);
}

bool StkAnalysisJob::AnyModuleExists() {
  const StkStringList& modules = parts_.input.Modules();
  return std::any_of(modules.begin(), modules.end(), [this](const std::string& path) {
    return parts_.host.files.Exists(path, Spelling::kOfProject);
  });
}

bool StkAnalysisJob::ReadModules() {
  ModuleReadAhead modules(parts_.input, parts_.host.threads, stopEvent_);
  for (size_t i = 0; i < parts_.input.Modules().size(); ++i) {
    // The reading looks at the stop event every 100 lines only: many short modules must not keep
    // a stop waiting.
    if (stopEvent_.Test()) {
      SetStopped();
      parts_.reporter.PostLog(MessageKey::kReadingAborted, {parts_.input.Modules()[i]});
    } else {
      Post(WM_STK_ANALYSIS_STEP);
      EnterModule(modules, i);
    }
    if (Stopped()) {
      return false;
    }
  }
  return true;
}

void StkAnalysisJob::EnterModule(ModuleReadAhead& modules, size_t number) {
  StkReporter& reporter = parts_.reporter;
  currentPath_ = parts_.input.Modules()[number];
  const FileFailure failure = modules.Open(number);
  if (failure != FileFailure::kNone) {
    ReportNotOpened(failure);
    return;
  }
  outcomes_[number] = ModuleOutcome::kNotWhole;
  reporter.PostLog(MessageKey::kReadingStarted, {currentPath_});
  const ModuleReader::Entered entered = modules.Read().Enter(parts_.database);
  using Entered = ModuleReader::Entered;
  if (entered == Entered::kWhole || entered == Entered::kNotWhole) {
    const bool whole = entered == Entered::kWhole;
    outcomes_[number] = whole ? ModuleOutcome::kRead : ModuleOutcome::kNotWhole;
    reporter.PostLog(MessageKey::kReadingCompleted, {currentPath_});
  } else if (entered == Entered::kStopped) {
    SetStopped();
  }
}

void StkAnalysisJob::ReportNotOpened(FileFailure failure) {
  StkReporter& reporter = parts_.reporter;
  if (currentPath_.size() > parts_.input.MostPathLength()) {
    reporter.PostWarning(MessageKey::kW9407, {MessageFile{currentPath_}});
    return;
  }
  if (failure == FileFailure::kNotFound) {
    reporter.PostWarning(
        MessageKey::kW9431,
        {parts_.input.GeneratorName(), parts_.input.ModuleKindName(), MessageFile{currentPath_}});
  } else {
    reporter.PostWarning(MessageKey::kW9401, {MessageFile{currentPath_}});
  }
  reporter.PostLog(MessageKey::kReadingAborted, {currentPath_});
}

}  // namespace velkor

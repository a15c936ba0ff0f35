#include "document/analysis_job.h"

#include <algorithm>

#include "document/notifications.h"
#include "files/paths.h"
#include "readers/tarn/module_entry.h"

namespace velkor {

StkAnalysisJob::StkAnalysisJob(AnalysisParts parts, MessageTarget& mainWindow)
    : StkJob(Event::Reset::kManual, mainWindow), parts_(parts) {}

StkAnalysisJob::~StkAnalysisJob() {
  Stop();
}

void StkAnalysisJob::Run() {
  const StkStringList& modules = parts_.project.Modules();
  Post(WM_STK_ANALYSIS_START, modules.size());
  if (!AnyModuleExists()) {
    const StkMessages& messages = parts_.reporter.Messages();
    parts_.reporter.PostWarning(MessageKey::kW9430, {messages.Text(MessageKey::kCompilerName)});
    PostEnd(WM_STK_ANALYSIS_END);
    return;
  }
  if (!ReadModules()) {
    return;
  }
  parts_.functions.ResolveAllCalls();
  completed_ = true;
  PostEnd(WM_STK_ANALYSIS_END);
}

void StkAnalysisJob::Abandon() {
  parts_.functions.Clear();
  try {
    // Never without a warning: no functions are no result.
    const std::string& path = currentPath_.empty() ? parts_.project.Path() : currentPath_;
    parts_.reporter.PostWarning(MessageKey::kW9401, {path});
    parts_.reporter.PostLog(MessageKey::kReadingAborted, {path});
  } catch (...) {
    // The messages have no room; the notification is what matters.
  }
  PostEnd(WM_STK_ANALYSIS_END);
}

bool StkAnalysisJob::AnyModuleExists() {
  const StkStringList& modules = parts_.project.Modules();
  return std::any_of(modules.begin(), modules.end(),
                     [this](const std::string& path) { return parts_.host.files.Exists(path); });
}

bool StkAnalysisJob::ReadModules() {
  ModuleReadAhead modules(parts_.project.Modules(), parts_.host, stopEvent_);
  for (size_t i = 0; i < parts_.project.Modules().size(); ++i) {
    // The reading looks at the stop event every 100 lines only: many short modules must not keep
    // a stop waiting.
    if (stopEvent_.Test()) {
      SetStopped();
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
  currentPath_ = parts_.project.Modules()[number];
  const FileFailure failure = modules.Open(number);
  if (failure != FileFailure::kNone) {
    ReportNotOpened(failure);
    return;
  }
  reporter.PostLog(MessageKey::kReadingStarted, {currentPath_});
  ModuleEntry entry(currentPath_, {parts_.functions, parts_.files, parts_.project}, parts_.host,
                    reporter);
  const ModuleEntry::Result result = entry.Enter(modules.Read());
  if (result == ModuleEntry::Result::kWhole) {
    reporter.PostLog(MessageKey::kReadingCompleted, {currentPath_});
  } else if (result == ModuleEntry::Result::kStopped) {
    SetStopped();
  }
}

void StkAnalysisJob::ReportNotOpened(FileFailure failure) {
  StkReporter& reporter = parts_.reporter;
  if (currentPath_.size() > kMaxPathLength) {
    reporter.PostWarning(MessageKey::kW9407, {currentPath_});
    return;
  }
  if (failure == FileFailure::kNotFound) {
    const StkMessages& messages = reporter.Messages();
    reporter.PostWarning(MessageKey::kW9431,
                         {messages.Text(MessageKey::kCompilerName),
                          messages.Text(MessageKey::kAssemblerSourceModuleFile), currentPath_});
  } else {
    reporter.PostWarning(MessageKey::kW9401, {currentPath_});
  }
  reporter.PostLog(MessageKey::kReadingAborted, {currentPath_});
}

}  // namespace velkor

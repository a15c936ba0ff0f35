#include "document/analysis_job.h"

#include <algorithm>

#include "document/notifications.h"
#include "files/paths.h"
#include "files/text_writer.h"
#include "readers/module_reader.h"

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
  for (const std::string& path : modules) {
    // The reader looks at the stop event every 100 lines only: many short modules must not keep
    // a stop waiting.
    if (stopEvent_.Test()) {
      SetStopped();
    } else {
      Post(WM_STK_ANALYSIS_STEP);
      ReadModule(path);
    }
    if (Stopped()) {
      parts_.functions.Clear();
      return;
    }
  }
  parts_.functions.ResolveAllCalls();
  completed_ = true;
  PostEnd(WM_STK_ANALYSIS_END);
}

void StkAnalysisJob::Abandon() {
  parts_.functions.Clear();
  try {
    if (!currentPath_.empty()) {
      parts_.reporter.PostLog(MessageKey::kReadingAborted, {currentPath_});
    }
  } catch (...) {
    // The log line has no room; the notification is what matters.
  }
  PostEnd(WM_STK_ANALYSIS_END);
}

bool StkAnalysisJob::AnyModuleExists() {
  const StkStringList& modules = parts_.project.Modules();
  return std::any_of(modules.begin(), modules.end(),
                     [this](const std::string& path) { return parts_.host.files.Exists(path); });
}

void StkAnalysisJob::ReadModule(const std::string& path) {
  StkReporter& reporter = parts_.reporter;
  currentPath_ = path;
  if (path.size() > kMaxPathLength) {
    reporter.PostWarning(MessageKey::kW9407, {path});
    return;
  }
  StkTextWriter file(parts_.host);
  if (!OpenModule(file, path)) {
    return;
  }
  reporter.PostLog(MessageKey::kReadingStarted, {path});
  StkAsmModuleReader reader(file, path, stopEvent_,
                            {parts_.functions, parts_.files, parts_.project}, parts_.host,
                            reporter);
  if (reader.Read()) {
    reporter.PostLog(MessageKey::kReadingCompleted, {path});
  } else if (reader.Aborted()) {
    SetStopped();
  }
}

bool StkAnalysisJob::OpenModule(StkTextWriter& file, const std::string& path) {
  const StkTextWriter::Opened opened = file.OpenForRead(path);
  if (opened.ok) {
    return true;
  }
  StkReporter& reporter = parts_.reporter;
  if (opened.failure == MessageKey::kW9431) {
    const StkMessages& messages = reporter.Messages();
    reporter.PostWarning(opened.failure,
                         {messages.Text(MessageKey::kCompilerName),
                          messages.Text(MessageKey::kAssemblerSourceModuleFile), path});
  } else {
    reporter.PostWarning(opened.failure, {path});
  }
  reporter.PostLog(MessageKey::kReadingAborted, {path});
  return false;
}

}  // namespace velkor

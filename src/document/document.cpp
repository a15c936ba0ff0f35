#include "document/document.h"

#include <algorithm>
#include <array>

#include "core/adjustments.h"
#include "core/function_text.h"
#include "document/table_reading.h"
#include "platform/limits.h"
#include "readers/open_input.h"

namespace velkor {

namespace {

// Functions that are gone before a user notices.
constexpr uint32_t kDestroyedAtOnce = 20000;

}  // namespace

CStkDoc::CStkDoc(Host& host, StkReporter& reporter, MessageTarget& mainWindow)
    : host_(host), reporter_(reporter), mainWindow_(mainWindow) {}

CStkDoc::~CStkDoc() {
  DeleteContents();
}

void CStkDoc::AddView(View& view) {
  views_.push_back(&view);
}

void CStkDoc::RemoveView(View& view) {
  std::erase(views_, &view);
}

void CStkDoc::UpdateAllViews(View* sender, ViewHint hint) {
  const std::vector<View*> views = views_;
  for (View* view : views) {
    if (view != sender) {
      view->OnUpdate(hint);
    }
  }
}

bool CStkDoc::OnOpenDocument(std::string_view path) {
  std::string opened(path);
  StopAllJobs();
  SettleSystemSave();
  UpdateAllViews(nullptr, HINT_CLEAR);
  currentSelection_ = nullptr;
  pathName_.clear();
  if (!LoadProject(opened)) {
    return false;
  }
  pathName_ = std::move(opened);
  return true;
}

void CStkDoc::DeleteContents() {
  discarding_ = true;
  StopAllJobs();
  discarding_ = false;
  currentSelection_ = nullptr;
  input_.reset();
  moduleOutcomes_.clear();
  filesInMemory_.clear();
  DiscardTables();
  seenSystemFile_ = {};
  mergesInARow_ = 0;
  SetSystemSaveFailed(false);
  stale_.clear();
}

void CStkDoc::MakeTables() {
  fileTable_ = std::make_unique<StkFileTable>(host_.codePage);
  functionTable_ =
      std::make_unique<StkFunctionTable>(host_.codePage, input_->Rules(), host_.threads);
  rootList_ = std::make_unique<StkRootList>();
  bounds_ = std::make_unique<StkBounds>(*functionTable_);
}

void CStkDoc::DiscardTables() {
  StopReadings();
  unsaved_.clear();
  if (functionTable_ && functionTable_->Count() > kDestroyedAtOnce) {
    disposal_.Dispose({std::move(bounds_), std::move(rootList_), std::move(functionTable_),
                       std::move(fileTable_)});
  }
  bounds_.reset();
  rootList_.reset();
  functionTable_.reset();
  fileTable_.reset();
}

const StkBounds* CStkDoc::Bounds() {
  if (!bounds_ || BelongsToJob()) {
    return nullptr;
  }
  bounds_->Update();
  return bounds_.get();
}

std::vector<StkNote> CStkDoc::InputNotes() {
  if (!input_ || !functionTable_ || BelongsToJob()) {
    return {};
  }
  std::vector<StkNote> notes = input_->Notes();
  for (StkNote& note : notes) {
    if (note.function && *note.function >= functionTable_->Count()) {
      note.function.reset();
    }
  }
  for (const StaleStatement* stale : LinesToKeep()) {
    notes.push_back(NoteOf(*stale, input_->SystemFilePath(), reporter_.Messages()));
  }
  return notes;
}

bool CStkDoc::LoadProject(std::string_view path) {
  DeleteContents();
  if (path.size() > kMaxPathLength) {
    reporter_.ShowWarning(MessageKey::kW9407, {MessageFile{path}});
    return false;
  }
  input_ = OpenInput(path, host_, reporter_);
  if (!input_) {
    return false;
  }
  anyJobFailed_ = false;
  anyWritingFailed_ = false;
  return true;
}

void CStkDoc::StartAnalysis() {
  if (!input_ || fileTable_) {
    return;
  }
  MakeTables();
  jobs_.Start(std::make_unique<StkAnalysisJob>(
      AnalysisParts{host_, reporter_, *input_, {*functionTable_, *fileTable_}}, mainWindow_));
}

// Functions without totals must not be left behind.
void CStkDoc::AnalysisStopped() {
  jobs_.Empty(JobKind::kAnalysis);
  DiscardTables();
  MakeTables();
}

void CStkDoc::AnalysisFinished() {
  const StkAnalysisJob& job = *jobs_.Get<StkAnalysisJob>();
  const WorkEnd end = job.End();
  anyJobFailed_ = anyJobFailed_ || end == WorkEnd::kFailed;
  moduleOutcomes_ = job.Outcomes();
  jobs_.Empty(JobKind::kAnalysis);
  if (end == WorkEnd::kCompleted) {
    StartSpecRead();
  }
}

void CStkDoc::StartSpecRead() {
  if (!input_ || !functionTable_ || !CanChangeAnalysis()) {
    return;
  }
  readFromUserFile_ = false;
  saveAfterReading_ = false;
  StartReading(input_->BuildSpecSources());
}

bool CStkDoc::LoadSpecFile(std::string_view path, bool saveAfter) {
  if (!StartChange()) {
    return false;
  }
  readFromUserFile_ = true;
  saveAfterReading_ = saveAfter;
  if (!saveAfter) {
    filesInMemory_.emplace_back(path);
  }
  std::vector<std::unique_ptr<StkSpecReader>> sources;
  if (saveAfter) {
    sources.push_back(std::make_unique<StkSpecReader>(SpecificationKind::kUserFile,
                                                      std::string(path), host_, reporter_));
  } else {
    sources.push_back(std::make_unique<StkInputFileReader>(std::string(path), host_, reporter_));
  }
  StartReading(std::move(sources));
  return true;
}

void CStkDoc::StartReading(std::vector<std::unique_ptr<StkSpecReader>> sources) {
  StopReadings();
  jobs_.Start(std::make_unique<StkSpecReadJob>(std::move(sources), *functionTable_, *rootList_,
                                               *bounds_, !readings_.empty(), reporter_,
                                               mainWindow_));
}

void CStkDoc::SpecReadStopped() {
  const StkSpecReadJob& job = *jobs_.Get<StkSpecReadJob>();
  // A stop that came after the last line has stopped nothing: what was loaded is to be kept.
  if (job.End() == WorkEnd::kCompleted && saveAfterReading_) {
    systemSaveDue_ = true;
  }
  TakeReadingResult();
}

void CStkDoc::TakeReadingResult() {
  const StkSpecReadJob& job = *jobs_.Get<StkSpecReadJob>();
  anyJobFailed_ = anyJobFailed_ || job.End() == WorkEnd::kFailed;
  if (!readFromUserFile_) {
    seenSystemFile_ = {job.TakenSystemFile(), job.IncompleteSystemFile()};
    unsaved_.clear();
    stale_ = job.Stale();
  }
  unsaved_.insert(job.Adjusted().begin(), job.Adjusted().end());
  jobs_.Empty(JobKind::kSpecRead);
}

void CStkDoc::SpecReadFinished() {
  const bool save = saveAfterReading_ && jobs_.Get<StkSpecReadJob>()->End() == WorkEnd::kCompleted;
  TakeReadingResult();
  UpdateAllViews(nullptr, HINT_RESULTS);
  if (save || systemSaveDue_) {
    SaveSystemFile();
  }
}

void CStkDoc::Recalculate() {
  if (pathName_.empty()) {
    return;
  }
  reporter_.SetOpenedFromCommandLine(false);
  StopAllJobs();
  SettleSystemSave();
  UpdateAllViews(nullptr, HINT_CLEAR);
  currentSelection_ = nullptr;
  if (LoadProject(pathName_)) {
    StartAnalysis();
  }
}

bool CStkDoc::AdjustFunction(StkFunction& function, const StkAdjustment& adjustment) {
  if (!StartChange()) {
    return false;
  }
  NoteUnsaved(function);
  ChangeEnded(velkor::AdjustFunction(*functionTable_, *rootList_, function, adjustment, reporter_));
  return true;
}

bool CStkDoc::CancelAdjustment(StkFunction& function) {
  if (!StartChange()) {
    return false;
  }
  NoteUnsaved(function);
  ChangeEnded(velkor::CancelAdjustment(*functionTable_, *rootList_, function, reporter_));
  return true;
}

bool CStkDoc::CancelAllAdjustments() {
  if (!StartChange()) {
    return false;
  }
  bool any = !stale_.empty();
  for (const StkFunction* function : functionTable_->Functions()) {
    if (functionTable_->Brought(*function) != nullptr) {
      NoteBrought(*function);
    } else if (function->HasStatement()) {
      unsaved_.insert(function);
      any = true;
    }
  }
  if (!any) {
    return true;
  }
  stale_.clear();
  ChangeEnded(velkor::CancelAllAdjustments(*functionTable_, *rootList_, reporter_));
  return true;
}

void CStkDoc::NoteBrought(const StkFunction& function) {
  const BroughtPlace& place = functionTable_->Brought(function)->place;
  reporter_.PostNote(
      {.rule = "still-stated",
       .text = reporter_.Messages().FormatMessageText(
           MessageKey::kNoteStillStated, {FunctionSpecName(function, host_.codePage)}),
       .file = place.path,
       .line = place.line,
       .function = function.index});
}

// A newer statement takes the place of those that were not found.
void CStkDoc::NoteUnsaved(const StkFunction& function) {
  unsaved_.insert(&function);
  const StkFunctionList clones = functionTable_->Clones().Following(function);
  unsaved_.insert(clones.begin(), clones.end());
  std::erase_if(stale_, [&](const auto& stale) { return stale.function == &function; });
}

bool CStkDoc::HasStatement(const StkFunction& function) const {
  return function.HasStatement() || std::ranges::any_of(stale_, [&](const auto& stale) {
           return stale.function == &function;
         });
}

bool CStkDoc::CanChangeAnalysis() const {
  return !BelongsToJob() && !Has(JobKind::kChainSave);
}

bool CStkDoc::StartChange() {
  if (!CanChangeAnalysis() || !functionTable_ || functionTable_->Count() == 0) {
    return false;
  }
  EndSpecWrite();
  StopReadings();
  return true;
}

void CStkDoc::StopReadings() {
  for (StkTableReading* reading : readings_) {
    reading->Stop();
  }
}

void CStkDoc::ChangeEnded(bool calleesChanged) {
  UpdateAllViews(nullptr, calleesChanged ? HINT_STRUCTURE : HINT_SIZES);
  SaveSystemFile();
}

const CStkDoc::JobEnding& CStkDoc::EndingOf(JobKind kind) {
  static constexpr std::array<JobEnding, kJobKinds.size()> kEndings = {{
      {&CStkDoc::AnalysisStopped, &CStkDoc::AnalysisFinished},
      {&CStkDoc::SpecReadStopped, &CStkDoc::SpecReadFinished},
      {&CStkDoc::SpecWriteStopped, &CStkDoc::SpecWriteFinished},
      {&CStkDoc::ChainSaveStopped, &CStkDoc::ChainSaveFinished},
  }};
  return kEndings[static_cast<size_t>(kind)];
}

void CStkDoc::Stop(JobKind kind) {
  if (StkJob* job = jobs_.Get(kind)) {
    job->Stop();
    (this->*EndingOf(kind).stopped)();
  }
}

void CStkDoc::Finish(JobKind kind) {
  StkJob* job = jobs_.Get(kind);
  if (job != nullptr && job->EndPosted()) {
    job->Wait();
    (this->*EndingOf(kind).finished)();
  }
}

void CStkDoc::StopAllJobs() {
  StopReadings();
  Stop(JobKind::kAnalysis);
  Stop(JobKind::kSpecRead);
  Stop(JobKind::kChainSave);
  const auto* writing = jobs_.Get<StkSpecWriteJob>();
  if (writing != nullptr && !writing->IsAutomatic()) {
    Stop(JobKind::kSpecWrite);
  }
  EndDueSave();
}

}  // namespace velkor

#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "core/adjustments.h"
#include "core/bounds.h"
#include "core/file_table.h"
#include "core/function_table.h"
#include "core/root_list.h"
#include "document/background_disposal.h"
#include "document/job_kind.h"
#include "document/job_slots.h"
#include "document/jobs.h"
#include "document/module_outcome.h"
#include "messages/reporter.h"
#include "platform/host.h"
#include "platform/message_target.h"
#include "readers/program_input.h"

namespace velkor {

class StkTableReading;

enum ViewHint : int {
  HINT_CLEAR = 1,      // the analysis is discarded
  HINT_RESULTS = 2,    // it is complete
  HINT_STRUCTURE = 3,  // a callee list has changed
  HINT_SIZES = 4,      // sizes have changed
  HINT_SELECTION = 5,  // the call tree's selection has changed
  HINT_SAVED = 6,      // SystemSaveFailed answers otherwise than before
};

// What is told of changes of the document. User-interface thread.
class View {
 public:
  virtual ~View() = default;
  virtual void OnUpdate(ViewHint hint) = 0;
};

// The one document: an analysis, and the jobs that work on it. User-interface thread only.
//
// Tables are never discarded or changed while a job uses them: opening, recalculating and the
// destructor stop every running job first; the operations that change the analysis wait for a
// running writing of a specification file, and do nothing (answering false) while an analysis, a
// specification reading or a chain report runs.
//
// Adjustments are not lost on the way to the stk system file: opening, recalculating and the
// destructor let an automatic save end instead of stopping it, and make up for one that the user
// stopped; opening and recalculating try one that failed once more, and so does whoever lets go of
// the document (SettleSystemSave); a stk system file of which this analysis could not take
// everything is kept beside the new one (StkSystemFileKeeper). What another program
// has written into it since it was read is put in force before the save (MergeSystemFile).
//
// A job is finished on its end notification. One that was posted by a job that has been stopped
// since finds no job, or a newer one that still works; then nothing happens, and the newer one is
// finished on its own notification.
class CStkDoc {
 public:
  CStkDoc(Host& host, StkReporter& reporter, MessageTarget& mainWindow);
  ~CStkDoc();
  CStkDoc(const CStkDoc&) = delete;
  CStkDoc& operator=(const CStkDoc&) = delete;

  void AddView(View& view);
  void RemoveView(View& view);
  // To be stopped before the tables change.
  void AddReading(StkTableReading& reading) { readings_.push_back(&reading); }
  void RemoveReading(StkTableReading& reading) { std::erase(readings_, &reading); }
  // Every view but the sender is told.
  void UpdateAllViews(View* sender, ViewHint hint);

  // Does not start the analysis. False after a message: then the document is empty and has no
  // path name.
  bool OnOpenDocument(std::string_view path);
  // No project and no tables; running jobs are stopped before.
  void DeleteContents();

  // The project file. Kept when a recalculation could not load it, so that it can be tried again.
  const std::string& PathName() const { return pathName_; }
  ProgramInput* Input() { return input_.get(); }
  // The tables; none without a project, and none while they belong to a job. What is kept of them
  // (a table, a function) is not to be read meanwhile either.
  StkFunctionTable* FunctionTable() { return BelongsToJob() ? nullptr : functionTable_.get(); }
  StkRootList* RootList() { return BelongsToJob() ? nullptr : rootList_.get(); }
  // An analysis or a specification reading has the tables.
  bool BelongsToJob() const { return Has(JobKind::kAnalysis) || Has(JobKind::kSpecRead); }
  // The bounds of the functions, brought up to date now; after a reading they are already. They
  // stay as they are, also while the analysis changes, until the next call. None without tables,
  // and while they belong to a job.
  const StkBounds* Bounds();
  // Of each module of the input once its analysis has been finished, in its order; else empty.
  const std::vector<ModuleOutcome>& ModuleOutcomes() const { return moduleOutcomes_; }
  // What the input and the stk system file have to be noted for, as they are now. None while the
  // tables belong to a job. A note of a function that is gone names none.
  std::vector<StkNote> InputNotes();
  // The function that the call tree last selected.
  StkFunction* CurrentSelection() { return currentSelection_; }
  void SetCurrentSelection(StkFunction* function) { currentSelection_ = function; }

  bool LoadProject(std::string_view path);
  // Only with a project that has no tables yet.
  void StartAnalysis();
  void StartSpecRead();
  // saveAfter: rewrite the stk system file when the file has been read. Without it the file is an
  // input of this analysis, which nothing is written over.
  // False without a function to specify.
  bool LoadSpecFile(std::string_view path, bool saveAfter = true);
  void Recalculate();
  // Rewrites the stk system file in the background. A save that runs is waited for; requests made
  // meanwhile become one, which writes the newest state. Nothing without functions.
  void SaveSystemFile();
  // The last automatic save of this analysis has failed, and none has come through since: the stk
  // system file does not state what is in force.
  bool SystemSaveFailed() const { return systemSaveFailed_; }
  // Waits for a running automatic save, and makes good one that was stopped or has failed. False
  // when it fails again, after a message: to discard the analysis now loses adjustments.
  bool SettleSystemSave();
  // Waits for a running save. False without functions, or while they are being read.
  bool SaveSpecFile(std::string_view path);
  // Whether what is written of this analysis may go to the path. False after W9407 (it is too long)
  // or W9402 (it is a file that the analysis is made from, one of the programs, or of the inputs).
  bool MayWriteTo(const std::string& path, const std::vector<std::string>& inputs = {});
  // Waits for a report that runs. False without functions, or while they are being read.
  bool SaveCallChains(std::string_view path, const StkFunction& function, bool allChains,
                      StkChainReport::Format format);
  // Each is followed by SaveSystemFile, also when nothing has changed.
  bool AdjustFunction(StkFunction& function, const StkAdjustment& adjustment);
  bool CancelAdjustment(StkFunction& function);
  // What a file states that the input brings stays, and is noted. Without anything else there is
  // nothing to save.
  bool CancelAllAdjustments();
  // Something is stated about the function that CancelAdjustment takes away: also a line of the stk
  // system file that has no effect because it names another function that was not found.
  bool HasStatement(const StkFunction& function) const;

  // A job of this kind exists (it may have ended and not yet been finished).
  bool Has(JobKind kind) const { return jobs_.Has(kind); }
  bool HasJobs() const { return jobs_.HasAny(); }
  // The job of this kind, if there is one, ends now. An analysis leaves a project with empty
  // tables, a specification reading tells the views nothing; what an automatic save had to write
  // is written later.
  void Stop(JobKind kind);
  // On its end notification. An analysis goes on with StartSpecRead, unless no module could be
  // looked at.
  void Finish(JobKind kind);
  // A job that reads has failed since the project was loaded: what the tables hold may lack what
  // was to be read.
  bool AnyJobFailed() const { return anyJobFailed_; }
  // A job that writes a file has, as far as it has been finished: the file is not what it should
  // be.
  bool AnyWritingFailed() const { return anyWritingFailed_; }
  // False after a warning: the input has no place for adjustments; the function is stated in a file
  // that the input brings.
  bool CanKeepAdjustments();
  bool CanStateHere(const StkFunction& function);
  // No running job keeps the analysis from being changed.
  bool CanChangeAnalysis() const;

 private:
  // What follows when a job of one kind has ended; it is still in its slot.
  struct JobEnding {
    void (CStkDoc::*stopped)();
    void (CStkDoc::*finished)();
  };
  static const JobEnding& EndingOf(JobKind kind);

  void AnalysisStopped();
  void AnalysisFinished();
  void SpecReadStopped();
  void SpecReadFinished();
  void SpecWriteStopped();
  void SpecWriteFinished();
  void ChainSaveStopped() { jobs_.Empty(JobKind::kChainSave); }
  void ChainSaveFinished();
  void StopAllJobs();
  void StopReadings();
  void MakeTables();
  void DiscardTables();
  bool StartChange();
  void ChangeEnded(bool calleesChanged);
  void StartReading(std::vector<std::unique_ptr<StkSpecReader>> sources);
  void TakeReadingResult();
  bool HasFunctionsToWrite() const;
  void StartWriting(StkSpecWriter::Mode mode, std::string path);
  void EndSpecWrite();
  void EndDueSave();
  void TakeChangedSystemFile(const ChangedSystemFile& changed);
  void SetSystemSaveFailed(bool failed);
  // Those of the stk system file without effect that stay in it: a function stands on one line only.
  std::vector<const StaleStatement*> LinesToKeep() const;
  void NoteBrought(const StkFunction& function);
  // What is stated of it, and of the clones that have the same, is about to change here. A newer
  // statement takes the place of those that were not found.
  void NoteUnsaved(const StkFunction& function);
  std::vector<std::string> ProtectedPaths(bool withSystemFile);

  Host& host_;
  StkReporter& reporter_;
  MessageTarget& mainWindow_;
  std::vector<View*> views_;
  std::vector<StkTableReading*> readings_;
  std::string pathName_;
  std::unique_ptr<ProgramInput> input_;
  std::unique_ptr<StkFileTable> fileTable_;
  std::unique_ptr<StkFunctionTable> functionTable_;
  std::unique_ptr<StkRootList> rootList_;
  std::unique_ptr<StkBounds> bounds_;
  std::vector<ModuleOutcome> moduleOutcomes_;
  bool readFromUserFile_ = false;
  bool saveAfterReading_ = false;
  std::vector<std::string> filesInMemory_;  // loaded, and not saved after
  StkFunction* currentSelection_ = nullptr;
  JobSlots jobs_;
  bool systemSaveDue_ = false;
  bool systemSaveFailed_ = false;
  bool anyJobFailed_ = false;
  bool anyWritingFailed_ = false;
  StkSystemFileKeeper::Seen seenSystemFile_;
  // Adjusted or cancelled here since the stk system file was last read or written. Asked, never
  // walked.
  std::unordered_set<const StkFunction*> unsaved_;
  int mergesInARow_ = 0;
  bool discarding_ = false;            // the views are told nothing more of this analysis
  std::vector<StaleStatement> stale_;  // of the stk system file
  BackgroundDisposal disposal_;
};

}  // namespace velkor

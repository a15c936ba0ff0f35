#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/adjustments.h"
#include "core/file_table.h"
#include "core/function_table.h"
#include "core/root_list.h"
#include "document/jobs.h"
#include "messages/reporter.h"
#include "platform/host.h"
#include "platform/message_target.h"
#include "readers/project.h"

namespace velkor {

enum ViewHint : int {
  HINT_CLEAR = 1,      // the analysis is discarded
  HINT_RESULTS = 2,    // it is complete
  HINT_STRUCTURE = 3,  // a callee list has changed
  HINT_SIZES = 4,      // sizes have changed
  HINT_SELECTION = 5,  // the call tree's selection has changed
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
// running automatic save, and do nothing (answering false) while an analysis, a specification
// reading or a chain report runs.
class CStkDoc {
 public:
  CStkDoc(Host& host, StkReporter& reporter, MessageTarget& mainWindow);
  ~CStkDoc();
  CStkDoc(const CStkDoc&) = delete;
  CStkDoc& operator=(const CStkDoc&) = delete;

  void AddView(View& view);
  void RemoveView(View& view);
  // Every view but the sender is told.
  void UpdateAllViews(View* sender, ViewHint hint);

  bool OnOpenDocument(std::string_view path);
  void DeleteContents();

  // None, and empty, without a project.
  const std::string& PathName() const { return pathName_; }
  StkProject* Project() { return project_.get(); }
  StkFunctionTable* FunctionTable() { return functionTable_.get(); }
  StkRootList* RootList() { return rootList_.get(); }
  // The function that the call tree last selected.
  StkFunction* CurrentSelection() { return currentSelection_; }
  void SetCurrentSelection(StkFunction* function) { currentSelection_ = function; }

  bool LoadProject(std::string_view path);
  void StartAnalysis();
  void StopAnalysis();
  void FinishAnalysis();
  void StartSpecRead();
  // saveAfter: rewrite the stk system file when the file has been read.
  bool LoadSpecFile(std::string_view path, bool saveAfter = true);
  void StopSpecRead();
  void FinishSpecRead();
  void Recalculate();
  bool AdjustFunction(StkFunction& function, const StkAdjustment& adjustment);
  bool CancelAdjustment(StkFunction& function);
  bool CancelAllAdjustments();

  // A job of this kind exists (it may have ended and not yet been finished).
  bool IsAnalysing() const { return analysisJob_ != nullptr; }
  bool IsReadingSpecifications() const { return specReadJob_ != nullptr; }
  // No running job keeps the analysis from being changed.
  bool CanChangeAnalysis() const;

 private:
  void StopAllJobs();

  Host& host_;
  StkReporter& reporter_;
  MessageTarget& mainWindow_;
  std::vector<View*> views_;
  std::string pathName_;
  std::unique_ptr<StkProject> project_;
  std::unique_ptr<StkFileTable> fileTable_;
  std::unique_ptr<StkFunctionTable> functionTable_;
  std::unique_ptr<StkRootList> rootList_;
  bool readFromUserFile_ = false;
  StkFunction* currentSelection_ = nullptr;
  std::unique_ptr<StkAnalysisJob> analysisJob_;
  std::unique_ptr<StkSpecReadJob> specReadJob_;
};

}  // namespace velkor

#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "core/bounds.h"
#include "core/recompute.h"
#include "document/job.h"
#include "document/job_kind.h"
#include "files/spec_reader.h"
#include "messages/reporter.h"

namespace velkor {

// Reads an ordered list of specification sources, which it owns, and computes the totals after
// each. The totals are computed at least once, also when the job is stopped or when no source can
// be opened, with which it counts as completed. Completed, it has brought the bounds up to date.
// findsCallers: somebody will ask the table for them, and is not to wait then.
class StkSpecReadJob : public StkJob {
 public:
  static constexpr JobKind kKind = JobKind::kSpecRead;

  StkSpecReadJob(std::vector<std::unique_ptr<StkSpecReader>> sources, StkFunctionTable& functions,
                 StkRootList& roots, StkBounds& bounds, bool findsCallers, StkReporter& reporter,
                 MessageTarget& mainWindow);
  ~StkSpecReadJob() override;

  // The fingerprint of the stk system file, if one was read and everything that it states is in
  // force now: such a file may be replaced. Valid after Wait or Stop.
  std::optional<uint64_t> TakenSystemFile() const { return takenSystemFile_; }
  // The same of one that was read to its end and could not be taken whole.
  std::optional<uint64_t> IncompleteSystemFile() const { return incompleteSystemFile_; }
  // The functions that the last source has stated something of.
  const StkFunctionList& Adjusted() const { return adjusted_; }
  // What the stk system file states of functions that were not found: none where the file was
  // not taken to its end. A second line of a function is noted instead. Valid after Wait or Stop.
  const std::vector<StaleStatement>& Stale() const { return stale_; }

 protected:
  WorkEnd Run() override;
  void Abandon() override;

 private:
  void ReadSource(StkSpecReader& source);
  // True when the end of the file was reached.
  bool ReadLines(StkSpecReader& source, StkByteSource& bytes);
  void ReportCutShort(const StkSpecReader& source);
  bool IsDiscarded(const StkSpecReader& source) const;
  void HandOver(StkSpecReader& source, bool discarded);
  StkFunctionList Pending() const;
  // Depths of the stk system file that are dropped without a message.
  struct PendingDepth {
    StkFunction* function;
    uint32_t depth;
    uint32_t line;
  };
  std::vector<PendingDepth> PendingDepths() const;
  // Takes what the stk system file states, once it is in force. Answers whether all of it is, or
  // is kept.
  bool TakeSystemFile(const StkSpecReader& source, const std::vector<PendingDepth>& depths);

  std::vector<std::unique_ptr<StkSpecReader>> sources_;
  const StkSpecReader* current_ = nullptr;  // of the sources
  StkFunctionTable& functions_;
  StkRootList& roots_;
  StkBounds& bounds_;
  const bool findsCallers_;
  StkReporter& reporter_;
  bool cutShort_ = false;    // the current source
  uint32_t statements_ = 0;  // lines of the current source that state something
  std::optional<uint64_t> takenSystemFile_;
  std::optional<uint64_t> incompleteSystemFile_;
  StkFunctionList adjusted_;
  std::vector<StaleStatement> stale_;
};

}  // namespace velkor

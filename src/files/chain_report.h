#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "core/chain_walk.h"
#include "files/output_target.h"
#include "files/text_output_file.h"
#include "files/work_end.h"
#include "messages/reporter.h"
#include "platform/host.h"

namespace velkor {

// Writes the call chains from one function into a file, as a drawing or as comma-separated values.
// Made for one report: Open, then Write. Used by one job's thread; the functions must not change
// meanwhile. A file that exists is replaced once the report is whole; of a new one, what was
// written before a failure or a stop stays. A report costs what it writes.
class StkChainReport {
 public:
  enum class Format { kText, kCsv };
  // Called after each chain with the number of lines in the file so far. False stops.
  using AfterChain = std::function<bool(uint32_t lines)>;

  // giveUp: of a lock on the file that is to be replaced, with which the report is stopped.
  StkChainReport(Format format, std::string path, Host& host, const StkMessages& messages,
                 FileSystem::GiveUp giveUp = {});

  // kCsv for a path whose extension is "csv" in any letter case.
  static Format FormatOf(std::string_view path, const CodePage& codePage);

  bool Open();
  WorkEnd Write(const StkFunction& start, ChainMode mode, const AfterChain& afterChain);
  // The warning that belongs to an Open that answered false, or to kFailed.
  void PostFailure(StkReporter& reporter) const;

 private:
  WorkEnd Finish(bool whole);

  const Format format_;
  Host& host_;
  const StkMessages& messages_;
  StkOutputTarget target_;
  std::unique_ptr<TextOutputFile> file_;  // after Open
  MessageKey failure_{};
};

}  // namespace velkor

#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/function_table.h"
#include "core/specification_source.h"
#include "files/base_lines.h"
#include "files/byte_source.h"
#include "files/spec_names.h"
#include "messages/reporter.h"
#include "platform/host.h"

namespace velkor {

class SpecLineParser;

// A line of the stk system file that names a function which the analysis does not have. It has no
// effect, and is kept for the day on which it has one.
struct StaleStatement {
  std::string text;       // the line
  uint32_t line = 0;      // its number
  std::string missing;    // the name that names nothing, or no more than clones that others name
  StkFunction* function;  // that the line is about; none: the missing one
};
StkNote NoteOf(const StaleStatement& stale, const std::string& path, const StkMessages& messages);

// One stack size specification file to read: a user's file, a system library table or the stk
// system file. Parses line by line against the function table; a line without error takes effect
// at once, an erroneous line has none. Made for one reading, used by one job's thread.
class StkSpecReader : public SpecificationSource {
 public:
  StkSpecReader(SpecificationKind kind, std::string path, Host& host, StkReporter& reporter);

  SpecificationKind Kind() const override { return kind_; }
  const std::string& Path() const override { return path_; }
  StopAnswer Answer() const override { return answer_; }

  // The open file, or none after having reported as the kind requires. giveUp: of a lock on it; then
  // nothing is reported.
  virtual std::unique_ptr<StkByteSource> Open(const FileSystem::GiveUp& giveUp);

  // Takes the next line. False: the file is read no further (the answer is Abort).
  // length: of the whole line, of which text holds what was kept.
  virtual bool ParseLine(StkFunctionTable& table, uint32_t lineNumber, std::string_view text,
                         uint64_t length, Event& stopEvent);

  // After the last line that counts: what was stated of functions holds for their clones that no
  // line names.
  void EndLines(StkFunctionTable& table);

  // Lines that ask for a computation.
  uint32_t SpecCount() const { return specCount_; }
  // Lines of which all that they state has been taken, the stale ones not included.
  uint32_t TakenCount() const { return takenCount_; }
  // In the file's order.
  const std::vector<StaleStatement>& Stale() const { return stale_; }
  bool CallsSeen() const { return callsSeen_; }

 protected:
  // Asked before a line takes effect. False after a warning: a file of the input, which wins,
  // states the function.
  virtual bool MayState(StkFunctionTable& table, const StkFunction& function, uint32_t lineNumber);
  // What it states wins over what files of the input do.
  virtual bool IsOfInput() const { return false; }
  // What a line states is pending.
  void State(StkFunctionTable& table, StkFunction& function, StkAdjustment stated);
  // The file at the path; none when that fails, with nothing reported.
  std::unique_ptr<StkByteSource> OpenFile();
  std::unique_ptr<StkByteSource> Taken(OpenResult<InputFile> opened);
  bool NotFound() const { return notFound_; }

  const SpecificationKind kind_;
  const std::string path_;
  Host& host_;
  StkReporter& reporter_;

 private:
  // What a line without error states takes effect. False: it may not.
  bool Apply(StkFunctionTable& table, const SpecLineParser& line, uint32_t lineNumber);
  void StateForClones(StkFunctionTable& table, const BaseLines::Line& line);
  void KeepWithoutEffect(const BaseLines::Line& line);
  // False: the file is read no further.
  bool HandleError(const StkMessage& error, Event& stopEvent);
  void TakeName(StkFunctionTable& table, const SpecLineParser& line);
  void KeepStale(const SpecLineParser& line, uint32_t lineNumber, std::string_view text);

  bool notFound_ = false;
  uint32_t specCount_ = 0;
  uint32_t takenCount_ = 0;
  std::unique_ptr<SpecNames> names_;      // from the first line on
  std::unique_ptr<BaseLines> baseLines_;  // likewise
  std::vector<StaleStatement> stale_;
  bool callsSeen_ = false;
  StopAnswer answer_ = StopAnswer::kRetry;
};

// A file that the input itself brings, or that is taken in memory only: its statements win over
// those that the user keeps, which are not lost by that.
class StkInputFileReader : public StkSpecReader {
 public:
  StkInputFileReader(std::string path, Host& host, StkReporter& reporter)
      : StkSpecReader(SpecificationKind::kUserFile, std::move(path), host, reporter) {}

 protected:
  bool MayState(StkFunctionTable& table, const StkFunction& function, uint32_t lineNumber) override;
  bool IsOfInput() const override { return true; }
};

// The stk system file, where the user's adjustments live between runs. A missing one is normal. One
// that is held by another is waited for, a symbolic link out of its folder is not followed.
class StkSystemFileReader : public StkSpecReader {
 public:
  StkSystemFileReader(std::string path, Host& host, StkReporter& reporter)
      : StkSpecReader(SpecificationKind::kSystemFile, std::move(path), host, reporter) {}

  std::unique_ptr<StkByteSource> Open(const FileSystem::GiveUp& giveUp) override;
};

}  // namespace velkor

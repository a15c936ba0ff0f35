#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/function_table.h"
#include "files/output_target.h"
#include "files/spec_file_lines.h"
#include "files/spec_names.h"
#include "files/text_output_file.h"
#include "files/work_end.h"
#include "messages/catalogue.h"
#include "messages/reporter.h"
#include "platform/host.h"

namespace velkor {

// Writes the statements in force as a stack size specification file, which reads back as the same
// statements: every line is read before it is written, and one that would say something else is
// left out (PostRefused). Made for one writing: Open, then Write. Used by one job's thread; the
// table must not change meanwhile. Knows no thread and posts nothing but PostFailure.
class StkSpecWriter {
 public:
  enum class Mode {
    // The stk system file, after every change. It is replaced in one step by a complete new one:
    // after a failure, a stop or a crash the previous file is still there, whole. Statements that
    // the input brings are left out: what they took the place of is kept.
    kAutomatic,
    // A file of the user's choice, which also lists the unknown functions. One that exists is
    // replaced in the same way; of a new one, what was written before a failure or a stop stays.
    kUser,
  };
  // Called after each line with the number of lines written so far. False stops.
  using AfterFunction = std::function<bool(uint32_t count)>;

  // giveUp: of a lock on the file that is to be replaced, with which the writing is stopped.
  StkSpecWriter(Mode mode, std::string path, const StkFunctionTable& table, Host& host,
                FileSystem::GiveUp giveUp = {});
  StkSpecWriter(const StkSpecWriter&) = delete;
  StkSpecWriter& operator=(const StkSpecWriter&) = delete;

  // The number of lines that the file is to hold of functions. After SetKeptLines.
  uint32_t CountToWrite();
  // Automatic mode. Asked with the old file, if there is one, which is held, when the new one is
  // complete. False keeps the old file: the writing fails with W9402.
  void SetMayReplace(FileSystem::MayReplace mayReplace) { mayReplace_ = std::move(mayReplace); }
  // Automatic mode: lines to keep as they are, behind the others, which name functions that are not
  // there.
  void SetKeptLines(std::vector<std::string> lines) { keptLines_ = std::move(lines); }
  bool Open();
  // kStopped only when functions were left out, or the old file was locked: else a stop after the
  // last one comes too late.
  WorkEnd Write(const AfterFunction& afterFunction);
  // Of what was written.
  uint64_t Fingerprint() const { return target_.Fingerprint(); }
  // The warning that belongs to an Open that answered false, or to kFailed.
  void PostFailure(StkReporter& reporter) const;
  // A warning for each function whose line was left out.
  void PostRefused(StkReporter& reporter) const;

 private:
  bool WriteFunctions(const AfterFunction& afterFunction);
  bool WriteFunction(const SpecFileLines::Line& line);
  bool WriteKeptLines();
  // None where a name in it cannot be written.
  std::optional<std::string> TextOf(const SpecFileLines::Line& line);
  bool AddCallees(const KeptStatement& statement, std::string& text);
  bool ReadsBack(std::string_view text, const SpecFileLines::Line& line);
  WorkEnd Finish();
  WorkEnd EndStopped();
  WorkEnd Fail(MessageKey key);

  const Mode mode_;
  const StkFunctionTable& table_;
  Host& host_;
  StkOutputTarget target_;
  SpecNames names_{table_};
  SpecFileLines fileLines_;
  std::optional<std::vector<SpecFileLines::Line>> lines_;
  const StkMessages noMessages_{host_.codePage, {}};  // for lines that are read back
  std::vector<std::string> keptLines_;
  std::vector<std::string> refused_;      // functions
  std::unique_ptr<TextOutputFile> file_;  // after Open, until it is discarded
  FileSystem::MayReplace mayReplace_;
  uint32_t count_ = 0;
  bool stopped_ = false;
  MessageKey failure_{};
};

}  // namespace velkor

#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "core/function_table.h"
#include "files/text_output_file.h"
#include "files/write_end.h"
#include "messages/reporter.h"
#include "platform/host.h"

namespace velkor {

// Writes the adjustments in force as a stack size specification file, which reads back as the same
// adjustments. Made for one writing: Open, then Write. Used by one job's thread; the table must
// not change meanwhile. Knows no thread and posts nothing but PostFailure.
class StkSpecWriter {
 public:
  enum class Mode {
    // The stk system file, after every change. It is replaced in one step by a complete new one:
    // after a failure, a stop or a crash the previous file is still there, whole. Statements that
    // the input brings are left out: what they took the place of is kept.
    kAutomatic,
    // A file of the user's choice, which also lists the unknown functions. What was written
    // before a failure or a stop stays.
    kUser,
  };
  // Called after each function with the number of functions written so far. False stops.
  using AfterFunction = std::function<bool(uint32_t count)>;
  // Called with the complete new file's path and, when there is one, the old file, which is held.
  // False keeps the old file: the writing fails with W9402.
  using MayReplace = std::function<bool(const std::string& newPath, InputFile* old)>;

  StkSpecWriter(Mode mode, std::string path, const StkFunctionTable& table, Host& host);
  ~StkSpecWriter();
  StkSpecWriter(const StkSpecWriter&) = delete;
  StkSpecWriter& operator=(const StkSpecWriter&) = delete;

  // The number of functions that the file is to hold.
  uint32_t CountToWrite() const {
    return mode_ == Mode::kUser ? table_.CountForSpecFile(true) : table_.CountKept();
  }
  void SetMayReplace(MayReplace mayReplace) { mayReplace_ = std::move(mayReplace); }
  bool Open();
  // kStopped only when functions were left out: a stop after the last one comes too late.
  WriteEnd Write(const AfterFunction& afterFunction);
  // The warning that belongs to an Open that answered false, or to kFailed.
  void PostFailure(StkReporter& reporter) const;

 private:
  bool WriteFunctions(bool adjusted, const AfterFunction& afterFunction);
  const BroughtStatement* BroughtTo(const StkFunction& function) const;
  const StkAppliedAdjustment* AdjustmentToWrite(const StkFunction& function) const;
  bool WriteFunction(const StkFunction& function);
  bool WriteAttribute(std::string_view keyword, uint32_t value);
  std::string NameToRead(const StkFunction& function) const;
  WriteEnd Finish();
  bool TakeOldPlace();
  WriteEnd EndStopped();
  void Discard();
  WriteEnd Fail(MessageKey key);

  const Mode mode_;
  const std::string path_;
  const StkFunctionTable& table_;
  Host& host_;
  std::unique_ptr<TextOutputFile> file_;  // after Open, until it is discarded
  MayReplace mayReplace_;
  std::string sibling_;  // the new file until it takes the old one's place; empty: none
  uint32_t count_ = 0;
  bool stopped_ = false;
  MessageKey failure_{};
};

}  // namespace velkor

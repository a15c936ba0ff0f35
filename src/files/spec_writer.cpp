#include "files/spec_writer.h"

#include <utility>

#include "core/function_text.h"
#include "platform/limits.h"

namespace velkor {

StkSpecWriter::StkSpecWriter(Mode mode, std::string path, const StkFunctionTable& table, Host& host)
    : mode_(mode), table_(table), host_(host), target_(std::move(path), host) {}

bool StkSpecWriter::Open() {
  if (!target_.Open(mode_ == Mode::kAutomatic ? StkOutputTarget::Way::kBeside
                                              : StkOutputTarget::Way::kAsIsNeeded)) {
    failure_ = MessageKey::kW9402;
    return false;
  }
  file_ = std::make_unique<TextOutputFile>(target_.Output());
  file_->SetLimits(kMaxTextLines, kMaxTextLength, false);
  return true;
}

WorkEnd StkSpecWriter::Write(const AfterFunction& afterFunction) {
  const bool written = WriteFunctions(true, afterFunction) &&
                       (mode_ == Mode::kAutomatic || WriteFunctions(false, afterFunction));
  if (written || (stopped_ && count_ == CountToWrite())) {
    return Finish();
  }
  if (stopped_) {
    return EndStopped();
  }
  return Fail(file_->LineLimitReached()   ? MessageKey::kW9406
              : file_->CharLimitReached() ? MessageKey::kW9461
                                          : MessageKey::kW9404);
}

bool StkSpecWriter::WriteFunctions(bool adjusted, const AfterFunction& afterFunction) {
  for (const auto& function : table_.Functions()) {
    const bool isAdjusted = function->adjustment != nullptr;
    if (adjusted ? !isAdjusted : isAdjusted || !function->IsUnknown()) {
      continue;
    }
    if (!WriteFunction(*function)) {
      return false;
    }
    ++count_;
    stopped_ = !afterFunction(count_);
    if (stopped_) {
      return false;
    }
  }
  return true;
}

bool StkSpecWriter::WriteFunction(const StkFunction& function) {
  if (!file_->WriteString(NameToRead(function))) {
    return false;
  }
  const StkAppliedAdjustment* adjustment = function.adjustment.get();
  if (adjustment != nullptr) {
    if (adjustment->margin != kNoMargin && !WriteAttribute(", ADD=", adjustment->margin)) {
      return false;
    }
    if (adjustment->depth != kNoDepth && !WriteAttribute(", RECTIME=", adjustment->depth)) {
      return false;
    }
    for (const StkFunction* callee : function.extraCallees) {
      if (!file_->WriteString(", CALL=") || !file_->WriteString(NameToRead(*callee))) {
        return false;
      }
    }
  }
  return file_->WriteString("\n");
}

bool StkSpecWriter::WriteAttribute(std::string_view keyword, uint32_t value) {
  return file_->WriteString(keyword) && file_->WriteString(std::to_string(value));
}

// A C name that begins with "_" is also the symbol of another C name, which a reader prefers. Only
// brackets keep the two apart.
std::string StkSpecWriter::NameToRead(const StkFunction& function) const {
  std::string name = FunctionSpecName(function, host_.codePage);
  const std::string_view cName = CName(function);
  if (!cName.starts_with('_') || !function.Is(FN_DEFINED)) {
    return name;
  }
  const std::string_view file =
      function.IsStatic() ? function.file->BaseName(host_.codePage) : std::string_view();
  const bool ambiguous = table_.FindBySpecName(file, cName, false) != &function &&
                         table_.FindBySpecName(file, cName, true) == &function;
  return ambiguous ? "[" + name + "]" : name;
}

WorkEnd StkSpecWriter::Finish() {
  if (!file_->Close()) {
    return Fail(MessageKey::kW9404);
  }
  switch (target_.Finish(mayReplace_)) {
    case StkOutputTarget::End::kInPlace:
      break;
    case StkOutputTarget::End::kNotWritten:
      return Fail(MessageKey::kW9404);
    case StkOutputTarget::End::kNotReplaced:
      // Somebody holds the file, or it is protected: what opening it for writing meets.
      return Fail(MessageKey::kW9402);
  }
  return WorkEnd::kCompleted;
}

WorkEnd StkSpecWriter::EndStopped() {
  const bool flushed = file_->Close();
  return target_.Discard() && flushed ? WorkEnd::kStopped : Fail(MessageKey::kW9404);
}

WorkEnd StkSpecWriter::Fail(MessageKey key) {
  failure_ = key;
  file_.reset();
  target_.Discard();
  return WorkEnd::kFailed;
}

void StkSpecWriter::PostFailure(StkReporter& reporter) const {
  if (failure_ == MessageKey::kW9406) {
    reporter.PostWarning(failure_, {MessageFile{target_.Path()}, kMaxTextLines});
  } else {
    reporter.PostWarning(failure_, {MessageFile{target_.Path()}});
  }
}

}  // namespace velkor

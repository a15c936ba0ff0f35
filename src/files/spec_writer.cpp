#include "files/spec_writer.h"

#include <utility>

#include "core/function_text.h"
#include "files/sibling_path.h"
#include "platform/limits.h"

namespace velkor {

StkSpecWriter::StkSpecWriter(Mode mode, std::string path, const StkFunctionTable& table, Host& host)
    : mode_(mode), path_(std::move(path)), table_(table), host_(host) {}

StkSpecWriter::~StkSpecWriter() {
  Discard();
}

bool StkSpecWriter::Open() {
  std::string target = path_;
  if (mode_ == Mode::kAutomatic) {
    target = SiblingPath(path_, host_.codePage);
  }
  OpenResult<OutputFile> opened = host_.files.OpenForWrite(target);
  if (!opened.file) {
    failure_ = MessageKey::kW9402;
    return false;
  }
  file_ = std::make_unique<TextOutputFile>(std::move(opened.file));
  if (mode_ == Mode::kAutomatic) {
    sibling_ = std::move(target);
  }
  file_->SetLimits(kMaxTextLines, kMaxTextLength, false);
  return true;
}

WriteEnd StkSpecWriter::Write(const AfterFunction& afterFunction) {
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
    const bool isAdjusted = AdjustmentToWrite(*function) != nullptr;
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

const BroughtStatement* StkSpecWriter::BroughtTo(const StkFunction& function) const {
  return mode_ == Mode::kAutomatic ? table_.Brought(function) : nullptr;
}

const StkAppliedAdjustment* StkSpecWriter::AdjustmentToWrite(const StkFunction& function) const {
  if (const BroughtStatement* brought = BroughtTo(function)) {
    return brought->kept ? &*brought->kept : nullptr;
  }
  return function.adjustment.get();
}

bool StkSpecWriter::WriteFunction(const StkFunction& function) {
  if (!file_->WriteString(NameToRead(function))) {
    return false;
  }
  const StkAppliedAdjustment* adjustment = AdjustmentToWrite(function);
  if (adjustment != nullptr) {
    if (adjustment->margin != kNoMargin && !WriteAttribute(", ADD=", adjustment->margin)) {
      return false;
    }
    if (adjustment->depth != kNoDepth && !WriteAttribute(", RECTIME=", adjustment->depth)) {
      return false;
    }
    const BroughtStatement* brought = BroughtTo(function);
    for (const StkFunction* callee :
         brought != nullptr ? brought->keptCallees : function.extraCallees) {
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
  if (!function.shownName.empty()) {
    // The symbol means it as well, and stands on a line of this form.
    name.replace(name.size() - cName.size() - (function.Is(FN_DEFINED) ? 0 : 1), cName.size(),
                 function.name);
    return name;
  }
  if (!cName.starts_with('_') || !function.Is(FN_DEFINED)) {
    return name;
  }
  const std::string_view file =
      function.IsStatic() ? function.file->BaseName(host_.codePage) : std::string_view();
  const bool ambiguous = table_.FindBySpecName(file, cName, false) != &function &&
                         table_.FindBySpecName(file, cName, true) == &function;
  return ambiguous ? "[" + name + "]" : name;
}

WriteEnd StkSpecWriter::Finish() {
  const bool synchronized = mode_ == Mode::kUser || file_->Synchronize();
  if (!file_->Close() || !synchronized) {
    return Fail(MessageKey::kW9404);
  }
  if (mode_ == Mode::kAutomatic && !TakeOldPlace()) {
    // Somebody holds the file, or it is protected: what opening it for writing meets.
    return Fail(MessageKey::kW9402);
  }
  sibling_.clear();
  return WriteEnd::kCompleted;
}

bool StkSpecWriter::TakeOldPlace() {
  const auto mayReplace = [this](InputFile* old) { return mayReplace_(sibling_, old); };
  return host_.files.Replace(sibling_, path_,
                             mayReplace_ ? FileSystem::MayReplace(mayReplace) : nullptr);
}

WriteEnd StkSpecWriter::EndStopped() {
  if (mode_ == Mode::kUser && !file_->Close()) {
    return Fail(MessageKey::kW9404);
  }
  Discard();
  return WriteEnd::kStopped;
}

WriteEnd StkSpecWriter::Fail(MessageKey key) {
  failure_ = key;
  Discard();
  return WriteEnd::kFailed;
}

void StkSpecWriter::Discard() {
  file_.reset();
  if (!sibling_.empty()) {
    host_.files.Remove(sibling_);
    sibling_.clear();
  }
}

void StkSpecWriter::PostFailure(StkReporter& reporter) const {
  if (failure_ == MessageKey::kW9406) {
    reporter.PostWarning(failure_, {MessageFile{path_}, kMaxTextLines});
  } else {
    reporter.PostWarning(failure_, {MessageFile{path_}});
  }
}

}  // namespace velkor

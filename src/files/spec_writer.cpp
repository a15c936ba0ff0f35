#include "files/spec_writer.h"

#include <algorithm>
#include <set>
#include <utility>

#include "core/function_text.h"
#include "files/spec_line_parser.h"
#include "platform/limits.h"

namespace velkor {

namespace {

constexpr std::string_view kKeptLinesHeading =
    "# Kept without effect: each names a function that was not found.\n";

}  // namespace

StkSpecWriter::StkSpecWriter(Mode mode, std::string path, const StkFunctionTable& table, Host& host,
                             FileSystem::GiveUp giveUp)
    : mode_(mode),
      table_(table),
      host_(host),
      target_(std::move(path), host, std::move(giveUp)) {}

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
  const bool complete = written || (stopped_ && count_ == CountToWrite());
  if (complete && WriteKeptLines()) {
    return Finish();
  }
  if (stopped_ && !complete) {
    return EndStopped();
  }
  return Fail(file_->LineLimitReached()   ? MessageKey::kW9406
              : file_->CharLimitReached() ? MessageKey::kW9461
                                          : MessageKey::kW9404);
}

bool StkSpecWriter::WriteFunctions(bool stated, const AfterFunction& afterFunction) {
  for (const auto& function : table_.Functions()) {
    const bool hasStatement = !StatementToWrite(*function).None();
    if (stated ? !hasStatement : hasStatement || !function->IsUnknown()) {
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

KeptStatement StkSpecWriter::StatementToWrite(const StkFunction& function) const {
  return mode_ == Mode::kAutomatic ? table_.Kept(function) : table_.InForce(function);
}

// A line that is too long goes to the file, whose limit it is.
bool StkSpecWriter::WriteFunction(const StkFunction& function) {
  const std::optional<std::string> line = LineOf(function);
  if (!line || (line->size() <= kMaxTextLength && !ReadsBack(*line, function))) {
    refused_.push_back(FunctionSpecName(function, host_.codePage));
    return true;
  }
  return file_->WriteString(*line) && file_->WriteString("\n");
}

std::optional<std::string> StkSpecWriter::LineOf(const StkFunction& function) {
  std::optional<std::string> line = names_.Statement(function);
  if (!line) {
    return std::nullopt;
  }
  const KeptStatement stated = StatementToWrite(function);
  if (const StkAppliedAdjustment* adjustment = stated.adjustment) {
    if (adjustment->margin != kNoMargin) {
      *line += ", ADD=" + std::to_string(adjustment->margin);
    }
    if (adjustment->depth != kNoDepth) {
      *line += ", RECTIME=" + std::to_string(adjustment->depth);
    }
    if (!AddCallees(stated.callees, *line)) {
      return std::nullopt;
    }
  }
  return AddCallees(stated.directCallees, *line) ? line : std::nullopt;
}

bool StkSpecWriter::AddCallees(const StkFunctionList& callees, std::string& line) {
  return std::ranges::all_of(callees, [&](const StkFunction* callee) {
    const std::optional<std::string> name = names_.Statement(*callee);
    line += name ? ", CALL=" + *name : "";
    return name.has_value();
  });
}

bool StkSpecWriter::ReadsBack(std::string_view line, const StkFunction& function) {
  SpecLineParser parser(
      {table_, names_, SpecificationKind::kSystemFile, target_.Path(), 0, noMessages_}, line);
  if (!parser.Parse() || parser.Function() != &function) {
    return false;
  }
  const auto together = [](const StkFunctionList& some, const StkFunctionList& others) {
    std::set<const StkFunction*> all(some.begin(), some.end());
    all.insert(others.begin(), others.end());
    return all;
  };
  const KeptStatement stated = StatementToWrite(function);
  const StkAppliedAdjustment adjustment =
      stated.adjustment != nullptr ? *stated.adjustment : StkAppliedAdjustment();
  return parser.Margin() == adjustment.margin && parser.Depth() == adjustment.depth &&
         together(parser.Callees(), parser.DirectCallees()) ==
             together(stated.callees, stated.directCallees);
}

bool StkSpecWriter::WriteKeptLines() {
  if (keptLines_.empty()) {
    return true;
  }
  return file_->WriteString(kKeptLinesHeading) &&
         std::ranges::all_of(keptLines_, [this](const std::string& line) {
           return file_->WriteString(line) && file_->WriteString("\n");
         });
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
    case StkOutputTarget::End::kGivenUp:
      return WorkEnd::kStopped;
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

void StkSpecWriter::PostRefused(StkReporter& reporter) const {
  for (const std::string& name : refused_) {
    reporter.PostWarning(MessageKey::kW9467, {name, MessageFile{target_.Path()}});
  }
}

}  // namespace velkor

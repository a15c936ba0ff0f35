#include "files/spec_writer.h"

#include <algorithm>
#include <set>
#include <unordered_set>
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
      target_(std::move(path), host, std::move(giveUp)),
      fileLines_(
          table, names_,
          mode == Mode::kAutomatic ? SpecFileLines::Of::kKept : SpecFileLines::Of::kInForce) {}

uint32_t StkSpecWriter::CountToWrite() {
  if (!lines_) {
    lines_ = fileLines_.Stated(keptLines_);
    if (mode_ == Mode::kUser) {
      const std::vector<SpecFileLines::Line> unknown = fileLines_.Unknown();
      lines_->insert(lines_->end(), unknown.begin(), unknown.end());
    }
  }
  return static_cast<uint32_t>(lines_->size());
}

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
  const uint32_t count = CountToWrite();
  const bool complete = WriteFunctions(afterFunction) || (stopped_ && count_ == count);
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

bool StkSpecWriter::WriteFunctions(const AfterFunction& afterFunction) {
  for (const SpecFileLines::Line& line : *lines_) {
    if (!WriteFunction(line)) {
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

// A line that is too long goes to the file, whose limit it is.
bool StkSpecWriter::WriteFunction(const SpecFileLines::Line& line) {
  const std::optional<std::string> text = TextOf(line);
  if (!text || (text->size() <= kMaxTextLength && !ReadsBack(*text, line))) {
    refused_.push_back(FunctionSpecName(*line.function, host_.codePage));
    return true;
  }
  return file_->WriteString(*text) && file_->WriteString("\n");
}

std::optional<std::string> StkSpecWriter::TextOf(const SpecFileLines::Line& line) {
  std::optional<std::string> text =
      line.goneBase.empty() ? names_.Statement(*line.function) : line.goneBase;
  if (!text) {
    return std::nullopt;
  }
  const KeptStatement stated = fileLines_.Statement(*line.function);
  if (stated.adjustment != nullptr && stated.adjustment->margin != kNoMargin) {
    *text += ", ADD=" + std::to_string(stated.adjustment->margin);
  }
  if (line.depth != kNoDepth) {
    *text += ", RECTIME=" + std::to_string(line.depth);
  }
  return AddCallees(stated, *text) ? text : std::nullopt;
}

bool StkSpecWriter::AddCallees(const KeptStatement& statement, std::string& text) {
  StkFunctionList callees = statement.callees;
  callees.insert(callees.end(), statement.directCallees.begin(), statement.directCallees.end());
  const std::unordered_set<const StkFunction*> all(callees.begin(), callees.end());
  std::unordered_set<std::string> bases;
  return std::ranges::all_of(callees, [&](const StkFunction* callee) {
    std::optional<std::string> name = names_.GoneBase(*callee, all);
    const bool isBase = name.has_value();
    name = isBase ? name : names_.Statement(*callee);
    if (name && (!isBase || bases.insert(*name).second)) {
      text += ", CALL=" + *name;
    }
    return name.has_value();
  });
}

bool StkSpecWriter::ReadsBack(std::string_view text, const SpecFileLines::Line& line) {
  SpecLineParser parser(
      {table_, names_, SpecificationKind::kSystemFile, target_.Path(), 0, noMessages_}, text);
  if (!parser.Parse() ||
      (line.goneBase.empty() ? parser.Function() != line.function : parser.Clones().empty())) {
    return false;
  }
  const auto together = [](const StkFunctionList& some, const StkFunctionList& others) {
    std::set<const StkFunction*> all(some.begin(), some.end());
    all.insert(others.begin(), others.end());
    return all;
  };
  const KeptStatement stated = fileLines_.Statement(*line.function);
  const uint32_t margin = stated.adjustment != nullptr ? stated.adjustment->margin : kNoMargin;
  return parser.Margin() == margin && parser.Depth() == line.depth &&
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

#include "files/chain_report.h"

#include <utility>
#include <vector>

#include "core/function_text.h"
#include "files/paths.h"
#include "platform/limits.h"

namespace velkor {

namespace {

// What both formats have in common: a prefix for the lines that begin in the middle of a chain. It
// grows and shrinks at its end with the path, and is written only where such a line begins.
class Rendering : public ChainVisitor {
 public:
  Rendering(TextOutputFile& file, const CodePage& codePage,
            const StkChainReport::AfterChain& afterChain)
      : file_(file), codePage_(codePage), afterChain_(afterChain) {}

  bool EndOfChain() override { return Write("\n") && afterChain_(file_.LinesWritten()); }
  bool Failed() const { return failed_; }

 protected:
  bool Write(std::string_view text) {
    failed_ = failed_ || !file_.WriteString(text);
    return !failed_;
  }

  TextOutputFile& file_;
  const CodePage& codePage_;
  std::string prefix_;
  std::string item_;  // of the function visited last

 private:
  const StkChainReport::AfterChain& afterChain_;
  bool failed_ = false;
};

class TextRendering : public Rendering {
 public:
  using Rendering::Rendering;

  bool Visit(const StkFunction& function) override {
    item_ = TextItem(function, ",", codePage_);
    return Write(item_);
  }

  bool Branch(const StkFunction&, size_t index, size_t count, size_t calleeCount) override {
    if (index == 0) {
      levels_.push_back({prefix_.size(), prefix_.size() + item_.size()});
      prefix_.append(item_.size(), ' ');
    } else {
      prefix_.resize(levels_.back().branches);
      if (!Write(prefix_)) {
        return false;
      }
    }
    const bool last = index == count - 1;
    prefix_ += last ? "   " : "|  ";
    return Write(calleeCount == 1 ? "---" : "+--");
  }

  bool Leave(const StkFunction&) override {
    prefix_.resize(levels_.back().function);
    levels_.pop_back();
    return true;
  }

 private:
  // Where, in characters from the line's start, a function on the path and its branch marks stand.
  struct Level {
    size_t function;
    size_t branches;
  };
  std::vector<Level> levels_;
};

class CsvRendering : public Rendering {
 public:
  using Rendering::Rendering;

  bool Visit(const StkFunction& function) override {
    item_ = CsvItem(function, codePage_);
    return Write(item_);
  }

  bool Branch(const StkFunction&, size_t index, size_t, size_t) override {
    if (index != 0) {
      return Write(prefix_);
    }
    lengths_.push_back(prefix_.size());
    prefix_ += item_;
    prefix_ += ',';
    return Write(",");
  }

  bool Leave(const StkFunction&) override {
    prefix_.resize(lengths_.back());
    lengths_.pop_back();
    return true;
  }

 private:
  std::vector<size_t> lengths_;  // of the prefix before each function on the path
};

}  // namespace

StkChainReport::StkChainReport(Format format, std::string path, Host& host,
                               const StkMessages& messages, FileSystem::GiveUp giveUp)
    : format_(format),
      host_(host),
      messages_(messages),
      target_(std::move(path), host, std::move(giveUp)) {}

StkChainReport::Format StkChainReport::FormatOf(std::string_view path, const CodePage& codePage) {
  return codePage.EqualIgnoreCase(Extension(path, codePage), ".csv") ? Format::kCsv : Format::kText;
}

bool StkChainReport::Open() {
  if (!target_.Open(StkOutputTarget::Way::kAsIsNeeded)) {
    failure_ = MessageKey::kW9402;
    return false;
  }
  file_ = std::make_unique<TextOutputFile>(target_.Output());
  return true;
}

WorkEnd StkChainReport::Write(const StkFunction& start, ChainMode mode,
                              const AfterChain& afterChain) {
  file_->SetLimits(kMaxTextLines, kMaxTextLength, format_ == Format::kText);
  file_->KeepCharacters(host_.codePage);
  TextRendering text(*file_, host_.codePage, afterChain);
  CsvRendering csv(*file_, host_.codePage, afterChain);
  const bool isCsv = format_ == Format::kCsv;
  Rendering& rendering = isCsv ? static_cast<Rendering&>(csv) : text;
  const bool headed = !isCsv || (file_->WriteString(messages_.Text(MessageKey::kCsvHeading)) &&
                                 file_->WriteString("\n"));
  const bool finished = headed && WalkChains(start, mode, rendering);
  if (!headed || rendering.Failed()) {
    failure_ = file_->LineLimitReached()   ? MessageKey::kW9450
               : file_->CharLimitReached() ? MessageKey::kW9451
                                           : MessageKey::kW9404;
    file_.reset();
    target_.Discard();
    return WorkEnd::kFailed;
  }
  return Finish(finished);
}

WorkEnd StkChainReport::Finish(bool whole) {
  const bool flushed = file_->Close();
  StkOutputTarget::End end = StkOutputTarget::End::kNotWritten;
  if (flushed && whole) {
    end = target_.Finish();
  } else if (target_.Discard() && flushed) {
    end = StkOutputTarget::End::kGivenUp;
  }
  failure_ = end == StkOutputTarget::End::kNotReplaced ? MessageKey::kW9402 : MessageKey::kW9404;
  switch (end) {
    case StkOutputTarget::End::kInPlace:
      return WorkEnd::kCompleted;
    case StkOutputTarget::End::kGivenUp:
      return WorkEnd::kStopped;
    default:
      return WorkEnd::kFailed;
  }
}

void StkChainReport::PostFailure(StkReporter& reporter) const {
  reporter.PostWarning(failure_, {MessageFile{target_.Path()}});
}

}  // namespace velkor

#include "document/spec_read_job.h"

#include <set>
#include <string>
#include <utility>

#include "core/function_text.h"
#include "core/recompute.h"
#include "document/notifications.h"
#include "files/fingerprint.h"
#include "files/spec_language.h"
#include "files/text_reader.h"
#include "platform/limits.h"

namespace velkor {

namespace {

constexpr uint32_t kSpecLinesPerStopTest = 10;

}  // namespace

StkSpecReadJob::StkSpecReadJob(std::vector<std::unique_ptr<StkSpecReader>> sources,
                               StkFunctionTable& functions, StkRootList& roots, StkBounds& bounds,
                               bool findsCallers, StkReporter& reporter, MessageTarget& mainWindow)
    : StkJob(Event::Reset::kManual, mainWindow),
      sources_(std::move(sources)),
      functions_(functions),
      roots_(roots),
      bounds_(bounds),
      findsCallers_(findsCallers),
      reporter_(reporter) {}

StkSpecReadJob::~StkSpecReadJob() {
  Stop();
}

WorkEnd StkSpecReadJob::Run() {
  Post(WM_STK_SPECREAD_START);
  for (const auto& source : sources_) {
    current_ = source.get();
    ReadSource(*source);
    if (Stopped()) {
      break;
    }
  }
  if (roots_.empty()) {
    Recompute(functions_, roots_, true, nullptr, &stopEvent_, reporter_);
  }
  if (Stopped()) {
    return WorkEnd::kStopped;
  }
  // Here they keep nobody waiting.
  bounds_.Update();
  if (findsCallers_ && functions_.Count() != 0) {
    functions_.Callers(0);
  }
  PostEnd(WM_STK_SPECREAD_END);
  return WorkEnd::kCompleted;
}

// Half-computed totals must not be taken for results: without the memory to compute them there is
// no analysis.
void StkSpecReadJob::Abandon() {
  takenSystemFile_.reset();
  adjusted_.clear();
  stale_.clear();
  functions_.DiscardPendingAdjustments();
  try {
    Recompute(functions_, roots_, true, nullptr, &stopEvent_, reporter_);
  } catch (...) {
    roots_.Clear();
    functions_.Clear();
  }
  try {
    if (!sources_.empty()) {
      ReportCutShort(current_ != nullptr ? *current_ : *sources_.front());
    }
  } catch (...) {
    // The warning has no room; the notification is what matters.
  }
  PostEnd(WM_STK_SPECREAD_END);
}

void StkSpecReadJob::ReadSource(StkSpecReader& source) {
  const bool logged = source.Kind() != SpecificationKind::kSystemFile;
  if (logged) {
    reporter_.PostLog(MessageKey::kReadingStarted, {source.Path()});
  }
  if (source.Path().size() > kMaxPathLength) {
    reporter_.PostWarning(MessageKey::kW9407, {MessageFile{source.Path()}});
    return;
  }
  std::unique_ptr<StkByteSource> bytes = source.Open([this] { return StopSeen(); });
  if (!bytes) {
    return;
  }
  Post(WM_STK_SPECREAD_FILE, bytes->Length());
  StkFingerprint fingerprint;
  bytes = std::make_unique<StkFingerprintSource>(std::move(bytes), fingerprint);
  const bool reachedEnd = ReadLines(source, *bytes);
  bytes.reset();
  if (logged) {
    reporter_.PostLog(reachedEnd ? MessageKey::kReadingCompleted : MessageKey::kReadingAborted,
                      {source.Path()});
  }
  const bool systemFile = source.Kind() == SpecificationKind::kSystemFile;
  const bool discarded = IsDiscarded(source);
  if (!discarded) {
    source.EndLines(functions_);
  }
  const std::vector<PendingDepth> depths =
      systemFile ? PendingDepths() : std::vector<PendingDepth>();
  HandOver(source, discarded);
  if (Stopped()) {
    return;
  }
  if (systemFile && reachedEnd) {
    const bool whole = TakeSystemFile(source, depths);
    (whole ? takenSystemFile_ : incompleteSystemFile_) = fingerprint.Value();
  }
  Post(WM_STK_SPECREAD_FILE_END);
}

bool StkSpecReadJob::ReadLines(StkSpecReader& source, StkByteSource& bytes) {
  StkTextReader reader(bytes, &stopEvent_);
  TextLine line;
  statements_ = 0;
  cutShort_ = false;
  for (uint32_t number = 1; reader.ReadLine(line, kTextBufferSize) && !reader.CutShort();
       ++number) {
    if (reader.Stopped()) {
      SetStopped();
      return false;
    }
    if (number > kMaxTextLines) {
      reporter_.PostWarning(MessageKey::kW9406, {MessageFile{source.Path()}, kMaxTextLines});
      return false;
    }
    if (number % kSpecLinesPerStopTest == 0) {
      if (StopSeen()) {
        return false;
      }
      Post(WM_STK_SPECREAD_PROGRESS, reader.Position());
    }
    // What a line too long to be kept states may stand in the part that is lost.
    if (line.length > kMaxTextLength || IsSpecStatement(line.text, functions_.GetCodePage())) {
      ++statements_;
    }
    if (!source.ParseLine(functions_, number, line.text, line.length, stopEvent_)) {
      StopSeen();  // it may have ended the stop question
      return false;
    }
  }
  cutShort_ = reader.CutShort();
  if (cutShort_) {
    ReportCutShort(source);
  }
  return !cutShort_;
}

void StkSpecReadJob::ReportCutShort(const StkSpecReader& source) {
  const bool systemFile = source.Kind() == SpecificationKind::kSystemFile;
  reporter_.PostWarning(systemFile ? MessageKey::kW9429 : MessageKey::kW9401,
                        {MessageFile{source.Path()}});
}

bool StkSpecReadJob::IsDiscarded(const StkSpecReader& source) const {
  return Stopped() || cutShort_ || source.Answer() == StopAnswer::kAbort;
}

void StkSpecReadJob::HandOver(StkSpecReader& source, bool discarded) {
  StkFunctionList stated;
  if (discarded) {
    functions_.DiscardPendingAdjustments();
  } else {
    functions_.PutBroughtInForce();
    functions_.Clones().PutPendingInForce();
    stated = functions_.PutDirectCalleesInForce();
    const StkFunctionList pending = Pending();
    stated.insert(stated.end(), pending.begin(), pending.end());
  }
  adjusted_ = source.Kind() == SpecificationKind::kUserFile ? std::move(stated) : StkFunctionList();
  // The sizes that a library table set before it ended early stay: the totals must contain them.
  const bool library = source.Kind() == SpecificationKind::kLibraryTable;
  const bool changed = source.SpecCount() != 0 && (library || !discarded);
  if (roots_.empty()) {
    Recompute(functions_, roots_, true, &source, &stopEvent_, reporter_);
  } else if (changed) {
    Recompute(functions_, roots_, source.CallsSeen(), &source, &stopEvent_, reporter_);
  }
}

StkFunctionList StkSpecReadJob::Pending() const {
  StkFunctionList list;
  for (StkFunction* function : functions_.Functions()) {
    if (function->pendingAdjustment) {
      list.push_back(function);
    }
  }
  return list;
}

bool StkSpecReadJob::TakeSystemFile(const StkSpecReader& source,
                                    const std::vector<PendingDepth>& depths) {
  bool allKept = true;
  std::set<uint32_t> settled;  // lines
  for (const PendingDepth& pending : depths) {
    const StkAppliedAdjustment* adjustment = pending.function->adjustment.get();
    if (adjustment != nullptr && adjustment->depth != kNoDepth) {
      settled.insert(pending.line);
    }
  }
  for (const PendingDepth& pending : depths) {
    const StkFunction& function = *pending.function;
    if (settled.insert(pending.line).second) {
      allKept = false;
      const std::string name = FunctionSpecName(function, functions_.GetCodePage());
      reporter_.PostNote({.rule = "unused-statement",
                          .text = reporter_.Messages().FormatMessageText(
                              MessageKey::kNoteUnusedDepth, {pending.depth, name}),
                          .file = source.Path(),
                          .line = pending.line,
                          .function = function.index});
    }
  }
  for (const StaleStatement& stale : source.Stale()) {
    if (stale.function == nullptr || !stale.function->HasStatement()) {
      stale_.push_back(stale);
    } else {
      reporter_.PostNote(NoteOf(stale, source.Path(), reporter_.Messages()));
    }
  }
  return allKept && source.TakenCount() + stale_.size() == statements_;
}

std::vector<StkSpecReadJob::PendingDepth> StkSpecReadJob::PendingDepths() const {
  std::vector<PendingDepth> depths;
  for (StkFunction* function : functions_.Functions()) {
    const StkAdjustment* pending = function->pendingAdjustment.get();
    if (pending != nullptr && pending->depth != kNoDepth) {
      depths.push_back({function, pending->depth, pending->line});
    }
  }
  return depths;
}

}  // namespace velkor

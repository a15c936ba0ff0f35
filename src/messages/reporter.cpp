#include "messages/reporter.h"

#include <memory>
#include <new>
#include <utility>

namespace velkor {

namespace {

StopAnswer ToStopAnswer(BoxAnswer answer) {
  switch (answer) {
    case BoxAnswer::kRetry:
      return StopAnswer::kRetry;
    case BoxAnswer::kIgnore:
      return StopAnswer::kIgnore;
    default:  // also a box that went away without a button
      return StopAnswer::kAbort;
  }
}

// The view's share of a question. A view that drops the request unhandled answers with the
// question's initial Abort this way, so that no job waits for an answer that cannot come.
std::shared_ptr<StopQuestion> ShareWithView(const std::shared_ptr<StopQuestion>& question) {
  return {question.get(), [question](StopQuestion*) { question->answered.Set(); }};
}

}  // namespace

StkReporter::StkReporter(const StkMessages& messages, MessageBoxes& boxes)
    : messages_(messages), boxes_(boxes) {}

void StkReporter::RegisterLogView(LogView* logView) {
  const std::lock_guard lock(logViewMutex_);
  logView_ = logView;
}

void StkReporter::ShowFatal(MessageKey key, MessageArguments arguments) {
  boxes_.Show(FormatMessageText(key, arguments), BoxIcon::kExclamation, BoxButtons::kOk);
  if (openedFromCommandLine_ && postClose_) {
    postClose_();
  }
}

void StkReporter::ShowWarning(MessageKey key, MessageArguments arguments) {
  const std::string text = FormatMessageText(key, arguments);
  Append(text);
  boxes_.Show(text, BoxIcon::kExclamation, BoxButtons::kOk);
}

void StkReporter::LogMessage(MessageKey key, MessageArguments arguments) {
  Append(FormatMessageText(key, arguments));
}

bool StkReporter::AskYesNo(MessageKey key, MessageArguments arguments) {
  return boxes_.Show(FormatMessageText(key, arguments), BoxIcon::kQuestion, BoxButtons::kYesNo) ==
         BoxAnswer::kYes;
}

void StkReporter::PostWarning(MessageKey key, MessageArguments arguments) {
  Post(LogWarningRequest, FormatMessageText(key, arguments), nullptr);
}

void StkReporter::PostLog(MessageKey key, MessageArguments arguments) {
  Post(LogLineRequest, FormatMessageText(key, arguments), nullptr);
}

StopAnswer StkReporter::AskStopReading(Event& stopEvent, StopAnswer current,
                                       std::string_view text) {
  if (current == StopAnswer::kAbort) {
    return StopAnswer::kAbort;
  }
  if (current == StopAnswer::kIgnore) {
    return Post(LogLineRequest, text, nullptr) ? StopAnswer::kIgnore : StopAnswer::kAbort;
  }
  const auto question = std::make_shared<StopQuestion>();
  if (!Post(StopQuestionRequest, text, ShareWithView(question))) {
    return StopAnswer::kAbort;
  }
  const bool stopped = Event::WaitForEither(stopEvent, question->answered) == 0;
  return stopped ? StopAnswer::kAbort : question->answer;
}

void StkReporter::HandleLogRequest(LogRequest request) {
  Append(request.text);
  if (request.message == LogWarningRequest) {
    boxes_.Show(request.text, BoxIcon::kExclamation, BoxButtons::kOk);
  } else if (request.message == StopQuestionRequest && request.question) {
    request.text += messages_.Text(MessageKey::kStopReadingQuestion);
    request.question->answer =
        ToStopAnswer(boxes_.Show(request.text, BoxIcon::kQuestion, BoxButtons::kAbortRetryIgnore));
    request.question->answered.Set();
  }
}

// Not under the lock: only this thread changes the registration, and a view may take its time.
void StkReporter::Append(std::string_view text) {
  if (logView_ != nullptr) {
    logView_->Append(text);
  }
}

bool StkReporter::Post(uint32_t message, std::string_view text,
                       std::shared_ptr<StopQuestion> question) {
  const std::lock_guard lock(logViewMutex_);
  if (logView_ == nullptr) {
    return false;
  }
  try {
    return logView_->PostRequest({message, std::string(text), std::move(question)});
  } catch (const std::bad_alloc&) {
    return false;  // without memory for its copy a message is dropped
  }
}

}  // namespace velkor

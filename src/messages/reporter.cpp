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

// The queue's share of a question. A request that is dropped unhandled answers with the question's
// initial Abort this way, so that no job waits for an answer that cannot come.
std::shared_ptr<StopQuestion> ShareWithQueue(const std::shared_ptr<StopQuestion>& question) {
  return {question.get(), [question](StopQuestion*) { question->answered.Set(); }};
}

}  // namespace

StkReporter::StkReporter(const StkMessages& messages, MessageBoxes& boxes,
                         std::function<void()> requestPosted)
    : messages_(messages), boxes_(boxes), requestPosted_(std::move(requestPosted)) {}

void StkReporter::RegisterLogView(LogView* logView) {
  const std::lock_guard posting(postingMutex_);
  logView_ = logView;
  canPost_ = logView != nullptr && requestPosted_ != nullptr;
  if (!canPost_) {
    const std::lock_guard lock(requestsMutex_);
    requests_.clear();
  }
}

void StkReporter::ShowFatal(MessageKey key, MessageArguments arguments) {
  boxes_.Show(messages_.MakeMessage(key, arguments), BoxIcon::kExclamation, BoxButtons::kOk);
  if (openedFromCommandLine_ && postClose_) {
    postClose_();
  }
}

void StkReporter::ShowWarning(MessageKey key, MessageArguments arguments) {
  const StkMessage message = messages_.MakeMessage(key, arguments);
  Append(message);
  boxes_.Show(message, BoxIcon::kExclamation, BoxButtons::kOk);
}

void StkReporter::LogMessage(MessageKey key, MessageArguments arguments) {
  Append(messages_.MakeMessage(key, arguments));
}

bool StkReporter::AskYesNo(MessageKey key, MessageArguments arguments) {
  return boxes_.Show(messages_.MakeMessage(key, arguments), BoxIcon::kQuestion,
                     BoxButtons::kYesNo) == BoxAnswer::kYes;
}

void StkReporter::PostWarning(MessageKey key, MessageArguments arguments) {
  Post({.channel = Channel::kWarning, .message = messages_.MakeMessage(key, arguments)});
}

void StkReporter::PostLog(MessageKey key, MessageArguments arguments) {
  Post({.channel = Channel::kLog, .message = messages_.MakeMessage(key, arguments)});
}

void StkReporter::PostNote(StkNote note) {
  Post({.channel = Channel::kNote, .note = std::move(note)});
}

StopAnswer StkReporter::AskStopReading(Event& stopEvent, StopAnswer current, StkMessage message) {
  if (current == StopAnswer::kAbort) {
    return StopAnswer::kAbort;
  }
  if (current == StopAnswer::kIgnore) {
    const bool logged = Post({.channel = Channel::kLog, .message = std::move(message)});
    return logged ? StopAnswer::kIgnore : StopAnswer::kAbort;
  }
  const auto question = std::make_shared<StopQuestion>();
  if (!Post({.channel = Channel::kStopQuestion,
             .message = std::move(message),
             .question = ShareWithQueue(question)})) {
    return StopAnswer::kAbort;
  }
  const bool stopped = Event::WaitForEither(stopEvent, question->answered) == 0;
  return stopped ? StopAnswer::kAbort : question->answer;
}

void StkReporter::HandleRequest() {
  std::optional<Request> request = TakeRequest();
  if (!request) {
    return;
  }
  switch (request->channel) {
    case Channel::kLog:
      return Append(request->message);
    case Channel::kWarning:
      Append(request->message);
      boxes_.Show(request->message, BoxIcon::kExclamation, BoxButtons::kOk);
      return;
    case Channel::kStopQuestion:
      return ShowStopQuestion(*std::move(request));
    case Channel::kNote:
      if (logView_ != nullptr) {
        logView_->AppendNote(request->note);
      }
      return;
  }
}

void StkReporter::ShowStopQuestion(Request request) {
  Append(request.message);
  request.message.text += messages_.Text(MessageKey::kStopReadingQuestion);
  request.question->answer =
      ToStopAnswer(boxes_.Show(request.message, BoxIcon::kQuestion, BoxButtons::kAbortRetryIgnore));
  request.question->answered.Set();
}

// Not under a lock: only this thread changes the registration, and a view may take its time.
void StkReporter::Append(const StkMessage& message) {
  if (logView_ != nullptr) {
    logView_->Append(message);
  }
}

bool StkReporter::Post(Request request) {
  const std::lock_guard posting(postingMutex_);
  if (!canPost_) {
    return false;
  }
  try {
    const std::lock_guard lock(requestsMutex_);
    requests_.push_back(std::move(request));
  } catch (const std::bad_alloc&) {
    return false;  // without memory for it a message is dropped
  }
  try {
    requestPosted_();
  } catch (const std::bad_alloc&) {
    Withdraw();
    return false;
  }
  return true;
}

// The newest request. None is there when it has been handled all the same.
void StkReporter::Withdraw() {
  const std::lock_guard lock(requestsMutex_);
  if (!requests_.empty()) {
    requests_.pop_back();
  }
}

std::optional<StkReporter::Request> StkReporter::TakeRequest() {
  const std::lock_guard lock(requestsMutex_);
  if (requests_.empty()) {
    return std::nullopt;
  }
  std::optional<Request> request = std::move(requests_.front());
  requests_.pop_front();
  return request;
}

}  // namespace velkor

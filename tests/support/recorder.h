#pragma once

#include <functional>
#include <string>
#include <vector>

#include "messages/reporter.h"

namespace velkor::testing {

// Keeps every box that is shown, and answers it.
class RecordingBoxes : public MessageBoxes {
 public:
  struct Box {
    std::string text;
    BoxIcon icon;
    BoxButtons buttons;
  };

  BoxAnswer Show(std::string_view text, BoxIcon icon, BoxButtons buttons) override {
    boxes.push_back({std::string(text), icon, buttons});
    if (answerWith) {
      return answerWith(boxes.back());
    }
    return buttons == BoxButtons::kOk      ? BoxAnswer::kOk
           : buttons == BoxButtons::kYesNo ? BoxAnswer::kYes
                                           : BoxAnswer::kIgnore;
  }

  std::vector<Box> boxes;
  std::function<BoxAnswer(const Box&)> answerWith;
};

// Keeps every log line. Requests wait in the queue until the test drains it.
class RecordingLog : public LogView {
 public:
  explicit RecordingLog(MessageQueue& queue) : queue_(queue) {}

  void SetReporter(StkReporter& reporter) { reporter_ = &reporter; }
  void Append(std::string_view text) override { lines.emplace_back(text); }
  bool PostRequest(LogRequest request) override {
    queue_.Post([this, request = std::move(request)]() mutable {
      reporter_->HandleLogRequest(std::move(request));
    });
    return true;
  }

  std::vector<std::string> lines;

 private:
  MessageQueue& queue_;
  StkReporter* reporter_ = nullptr;
};

// A reporter with everything it needs, registered and recording. Messages that are posted reach
// log.lines when queue.Drain() is called.
struct Recorder {
  explicit Recorder(const CodePage& codePage)
      : messages(StkMessages::English(codePage)), reporter(messages, boxes) {
    log.SetReporter(reporter);
    reporter.RegisterLogView(&log);
  }
  ~Recorder() { reporter.RegisterLogView(nullptr); }

  StkMessages messages;
  RecordingBoxes boxes;
  MessageQueue queue;
  RecordingLog log{queue};
  StkReporter reporter;
};

}  // namespace velkor::testing

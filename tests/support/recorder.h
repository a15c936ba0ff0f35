#pragma once

#include <functional>
#include <string>
#include <vector>

#include "messages/reporter.h"
#include "platform/message_target.h"

namespace velkor::testing {

// Keeps every box that is shown, and answers it.
class RecordingBoxes : public MessageBoxes {
 public:
  struct Box {
    std::string text;
    BoxIcon icon;
    BoxButtons buttons;
  };

  BoxAnswer Show(const StkMessage& message, BoxIcon icon, BoxButtons buttons) override {
    boxes.push_back({message.text, icon, buttons});
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

// Keeps every message, and the texts of messages and notes in their order.
class RecordingLog : public LogView {
 public:
  void Append(const StkMessage& message) override {
    messages.push_back(message);
    lines.push_back(message.text);
  }
  void AppendNote(const StkNote& note) override { lines.push_back("note: " + note.text); }

  // Code, file and line of each warning: "W9410 C:\\p\\s.txt:1".
  std::vector<std::string> Warnings() const {
    std::vector<std::string> warnings;
    for (const StkMessage& message : messages) {
      if (message.IsWarning()) {
        warnings.push_back(message.Code() + " " + message.file + ":" +
                           std::to_string(message.line));
      }
    }
    return warnings;
  }

  std::vector<StkMessage> messages;
  std::vector<std::string> lines;
};

// A reporter with everything it needs, registered and recording. Messages that are posted reach
// log.lines when queue.Drain() is called.
struct Recorder {
  explicit Recorder(const CodePage& codePage)
      : messages(StkMessages::English(codePage)),
        reporter(messages, boxes, [this] { queue.Post([this] { reporter.HandleRequest(); }); }) {
    reporter.RegisterLogView(&log);
  }
  ~Recorder() { reporter.RegisterLogView(nullptr); }

  StkMessages messages;
  RecordingBoxes boxes;
  MessageQueue queue;
  RecordingLog log;
  StkReporter reporter;
};

}  // namespace velkor::testing

#pragma once

#include <string>
#include <vector>

#include "messages/reporter.h"
#include "support/recorder.h"
#include "support/test_host.h"

namespace velkor::testing {

// The catalogue in a code page that lives as long as the program. Made once: an input must not pay
// for it.
const StkMessages& MessagesIn(const CodePage& codePage);

// Handles a request in the thread that posts it, so that one thread is enough to answer stop
// questions.
class ImmediateLog : public LogView {
 public:
  void SetReporter(StkReporter& reporter) { reporter_ = &reporter; }
  void Append(std::string_view text) override { lines.emplace_back(text); }
  bool PostRequest(LogRequest request) override {
    reporter_->HandleLogRequest(std::move(request));
    return true;
  }

  std::vector<std::string> lines;

 private:
  StkReporter* reporter_ = nullptr;
};

// A host in memory and a reporter for one thread, whose messages are kept.
struct FuzzHost : TestHost {
  explicit FuzzHost(const CodePage& page) : TestHost(page), reporter(MessagesIn(page), boxes) {
    log.SetReporter(reporter);
    reporter.RegisterLogView(&log);
  }

  // Of every line of the log and every box.
  void CheckAllMessages(bool wholeInputs) const;

  RecordingBoxes boxes;
  ImmediateLog log;
  StkReporter reporter;
};

// A job's notifications, which nobody needs.
class NoWindow : public MessageTarget {
 public:
  void Post(uint32_t /*message*/, uint64_t /*parameter*/) override {}
};

}  // namespace velkor::testing

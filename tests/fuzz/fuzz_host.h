#pragma once

#include <map>
#include <string>
#include <vector>

#include "fuzz/invariants.h"
#include "messages/reporter.h"
#include "support/recorder.h"
#include "support/test_host.h"

namespace velkor::testing {

// The catalogue in a code page that lives as long as the program. Made once: an input must not pay
// for it.
inline const StkMessages& MessagesIn(const CodePage& codePage) {
  static std::map<const CodePage*, StkMessages> catalogues;
  if (!catalogues.contains(&codePage)) {
    catalogues.emplace(&codePage, StkMessages::English(codePage));
  }
  return catalogues.at(&codePage);
}

// A host in memory and a reporter for one thread, whose messages are kept. A request is handled
// in the thread that posts it, so that one thread is enough to answer stop questions.
struct FuzzHost : TestHost {
  explicit FuzzHost(const CodePage& page)
      : TestHost(page), reporter(MessagesIn(page), boxes, [this] { reporter.HandleRequest(); }) {
    reporter.RegisterLogView(&log);
  }

  // Of every line of the log and every box.
  void CheckAllMessages(bool wholeInputs) const {
    std::vector<std::string> texts = log.lines;
    for (const RecordingBoxes::Box& box : boxes.boxes) {
      if (box.buttons == BoxButtons::kOk) {  // a question adds a text of its own to a log line
        texts.push_back(box.text);
      }
    }
    CheckMessages(texts, codePage, wholeInputs);
  }

  RecordingBoxes boxes;
  RecordingLog log;
  StkReporter reporter;
};

// A job's notifications, which nobody needs.
class NoWindow : public MessageTarget {
 public:
  void Post(uint32_t /*message*/, uint64_t /*parameter*/) override {}
};

}  // namespace velkor::testing

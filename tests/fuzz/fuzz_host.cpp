#include "fuzz/fuzz_host.h"

#include <map>

#include "fuzz/invariants.h"

namespace velkor::testing {

const StkMessages& MessagesIn(const CodePage& codePage) {
  static std::map<const CodePage*, StkMessages> catalogues;
  if (!catalogues.contains(&codePage)) {
    catalogues.emplace(&codePage, StkMessages::English(codePage));
  }
  return catalogues.at(&codePage);
}

void FuzzHost::CheckAllMessages(bool wholeInputs) const {
  std::vector<std::string> texts = log.lines;
  for (const RecordingBoxes::Box& box : boxes.boxes) {
    if (box.buttons == BoxButtons::kOk) {  // a question adds a text of its own to a log line
      texts.push_back(box.text);
    }
  }
  CheckMessages(texts, codePage, wholeInputs);
}

}  // namespace velkor::testing

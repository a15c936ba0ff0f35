#include "fuzz/invariants.h"
#include "fuzz/require.h"
#include "messages/messages.h"

namespace velkor::testing {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD

}  // namespace

bool IsWhole(std::string_view text, const CodePage& codePage) {
  return codePage.ToUtf8(text).find(kReplacement) == std::string::npos;
}

void CheckMessages(const std::vector<std::string>& texts, const CodePage& codePage,
                   bool wholeInputs) {
  const CodePage utf8 = CodePage::Utf8();
  for (const std::string& text : texts) {
    Require(text.size() <= StkMessages::kMaxMessageLength, "a message has a limit");
    const std::string shown = codePage.ToUtf8(text);
    RequireEqual(utf8.ToUtf8(shown), shown, "what a screen gets is UTF-8");
    Require(!wholeInputs || IsWhole(text, codePage), "a message holds whole characters", shown);
  }
}

}  // namespace velkor::testing

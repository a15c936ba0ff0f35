#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <unordered_map>
#include <variant>

#include "messages/message_key.h"
#include "platform/code_page.h"

namespace velkor {

// One argument of a message: a text for "%s" and "%.0s", a number for "%lu", a character for "%c".
using MessageArgument = std::variant<std::string_view, uint32_t, char>;
using MessageArguments = std::initializer_list<MessageArgument>;

// The catalogue: every text that a user sees, by its key, in one language. Read-only once made;
// usable from any thread. A key without a text is a mistake of the build that the tests find; it
// reads as an empty text.
class StkMessages {
 public:
  // A formatted message holds at most this many bytes.
  static constexpr size_t kMaxMessageLength = 5119;

  // catalogue: lines of key, one space and text, with "\n" and "\\" as escapes and "#" comments.
  StkMessages(const CodePage& codePage, std::string_view catalogue);
  // The English set that is linked into the program.
  static StkMessages English(const CodePage& codePage);

  const CodePage& GetCodePage() const { return codePage_; }

  // The text as it stands in the catalogue, placeholders included.
  std::string_view Text(MessageKey key) const;
  // The key's text with its placeholders replaced in order, cut at kMaxMessageLength bytes, never
  // inside a character. Arguments are data: a "%" inside one means nothing. A placeholder without
  // a fitting argument shows nothing.
  std::string FormatMessageText(MessageKey key, MessageArguments arguments) const;

 private:
  const CodePage& codePage_;
  std::unordered_map<uint32_t, std::string> texts_;
};

}  // namespace velkor

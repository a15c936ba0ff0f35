#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <unordered_map>
#include <variant>

#include "messages/message.h"
#include "messages/message_key.h"
#include "platform/code_page.h"
#include "platform/limits.h"

namespace velkor {

// The path of the file that a message is about, and the line in it, from 1.
struct MessageFile {
  std::string_view path;
};
struct MessageLine {
  uint32_t number;
};

// One argument of a message: a text or a file for "%s" and "%.0s", one character of a text for
// "%c", a number or a line for "%lu".
using MessageArgument = std::variant<std::string_view, uint32_t, MessageFile, MessageLine>;
using MessageArguments = std::initializer_list<MessageArgument>;

// The catalogue: every text that a user sees, by its key, as bytes of the run's code page.
// Read-only once made; usable from any thread. A key without a text is a mistake of the build
// that the tests find; it reads as an empty text.
class StkMessages {
 public:
  // Each catalogue is UTF-8: lines of key, one space and text, with "\n" and "\\" as escapes and
  // "#" comments. A later one adds keys and replaces texts of the earlier ones; a text that the
  // code page has no characters for is passed over, so that the earlier one stays.
  StkMessages(const CodePage& codePage, std::initializer_list<std::string_view> catalogues);
  // The English messages, without the texts of the window.
  static StkMessages English(const CodePage& codePage);

  // The messages that are linked into the program.
  static std::string_view EnglishCatalogue();
  static std::string_view JapaneseCatalogue();

  const CodePage& GetCodePage() const { return codePage_; }

  // The text as it stands in the catalogue, placeholders included.
  std::string_view Text(MessageKey key) const;
  // The key's text with its placeholders replaced in order, cut at kMaxTextLength bytes, never
  // inside a character. Arguments are data: a "%" inside one means nothing. A placeholder without
  // a fitting argument shows nothing.
  std::string FormatMessageText(MessageKey key, MessageArguments arguments) const;
  // The same as a record, with the file and the line among the arguments. Either may stand behind
  // those that the text shows.
  StkMessage MakeMessage(MessageKey key, MessageArguments arguments) const;

 private:
  void Add(std::string_view catalogue);

  const CodePage& codePage_;
  std::unordered_map<uint32_t, std::string> texts_;
};

}  // namespace velkor
